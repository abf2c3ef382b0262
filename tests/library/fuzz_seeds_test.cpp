// Runs every fuzz target on its seeds, on targets without a fuzzer too. A finding ends the program;
// the last seed that it names is the one.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#define ZEBCOMN_FUZZ_TARGET(name) extern "C" int Fuzz_##name(const uint8_t* data, size_t size);
#include "fuzz_targets.inc"
#undef ZEBCOMN_FUZZ_TARGET

namespace {

struct Target {
  const char* name;
  int (*run)(const uint8_t* data, size_t size);
};

const Target kTargets[] = {
#define ZEBCOMN_FUZZ_TARGET(name) {#name, Fuzz_##name},
#include "fuzz_targets.inc"
#undef ZEBCOMN_FUZZ_TARGET
};

class FuzzSeeds : public testing::TestWithParam<Target> {};

TEST_P(FuzzSeeds, AgreeWithTheReference) {
  const std::filesystem::path folder = std::filesystem::path(ZEBCOMN_FUZZ_SEEDS) / GetParam().name;
  int seeds = 0;
  for (const auto& entry : std::filesystem::directory_iterator(folder)) {
    std::printf("%s\n", entry.path().c_str());
    std::fflush(stdout);
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    ASSERT_TRUE(file.is_open());
    GetParam().run(reinterpret_cast<const uint8_t*>(input.data()), input.size());
    ++seeds;
  }
  EXPECT_GT(seeds, 0);
  const uint8_t nothing = 0;
  EXPECT_EQ(GetParam().run(&nothing, 0), 0) << "the empty input";
}

INSTANTIATE_TEST_SUITE_P(, FuzzSeeds, testing::ValuesIn(kTargets),
                         [](const auto& target) { return std::string(target.param.name); });

}  // namespace
