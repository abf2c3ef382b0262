// Version stamps of modules that were built for this test.
#include "zebcomn/util/plugin_version.h"

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <string>

#include "zebcomn/portable/dynamic_library.h"

/// Tells the leak checker, where there is one, that the loader leaves the record of a load that
/// failed behind, as it is meant to.
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
  return "leak:tivLoadLibrary\n";
}

namespace {

/// A call that reads a stamp.
struct Reader {
  int (*read)(char* module, char* out, unsigned size);
  const char* name;
};

const Reader kReaders[] = {
    {tivmcomn_GetFileResourceVersionStamp, "hexadecimal"},
    {tivmcomn_GetFileResourceStringVersionStamp, "dotted"},
};

std::string Module(const std::string& name) {
  return MODULE_FOLDER "/" + name + ".so";
}

bool IsLoaded(const std::string& module) {
  void* const handle = dlopen(module.c_str(), RTLD_LAZY | RTLD_NOLOAD);
  if (handle != nullptr) dlclose(handle);
  return handle != nullptr;
}

/// The result of a call on a module, and the stamp behind it. The buffer is found exactly used.
std::string Read(const Reader& reader, const std::string& module, unsigned size = 100) {
  std::string path = module;
  std::string out(size + 1, '#');
  const int result = reader.read(path.data(), out.data(), size);
  EXPECT_EQ(path, module) << "the path is not written to";
  EXPECT_EQ(out.back(), '#') << "nothing is written behind the buffer";
  const std::string stamp = size == 0 ? "" : out.c_str();
  EXPECT_EQ(out.find_first_not_of('\0', stamp.size()), size) << "the rest is all NUL";
  // An empty name is the program itself.
  EXPECT_EQ(IsLoaded(module), module.empty()) << module;
  return std::to_string(result) + " " + stamp;
}

TEST(PluginVersion, StampsShowTheFourNumbers) {
  const struct {
    const char* module;
    const char* hexadecimal;
    const char* dotted;
  } rows[] = {
      {"version_1_2_3_4", "1 0001000200030004", "1 1.2.3.4"},
      {"version_highest", "1 ffffffffffffffff", "1 65535.65535.65535.65535"},
      {"version_mixed", "1 80007fff0000abcd", "1 32768.32767.0.43981"},
      {"version_with_dllmain", "1 0005000600070008", "1 5.6.7.8"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Read(kReaders[0], Module(row.module)), row.hexadecimal);
    EXPECT_EQ(Read(kReaders[1], Module(row.module)), row.dotted);
  }
}

TEST(PluginVersion, FailuresGiveZeroAndAnEmptyBuffer) {
  for (const Reader& reader : kReaders) {
    for (const char* module : {"version_no_entry_point", "version_fails", "version_fails_negative",
                               "version_is_not_there"}) {
      EXPECT_EQ(Read(reader, Module(module)), "0 ") << reader.name << " of " << module;
    }
    EXPECT_EQ(Read(reader, __FILE__), "0 ") << reader.name << " of a text file";
    EXPECT_EQ(Read(reader, ""), "0 ") << reader.name << " of no name";
  }
}

TEST(PluginVersion, ReadingLoadsAndLooksUpAndSoOverwritesTheMessages) {
  const char* of_load = nullptr;
  EXPECT_EQ(tivLoadLibrary(Module("version_is_not_there").c_str(), &of_load), nullptr);
  const char* of_look_up = nullptr;
  void* const program = dlopen(nullptr, RTLD_LAZY);
  EXPECT_EQ(tivGetProcAddress(program, "no_such_symbol", &of_look_up), nullptr);
  dlclose(program);
  EXPECT_STRNE(of_load, "");
  EXPECT_STRNE(of_look_up, "");
  EXPECT_EQ(Read(kReaders[0], Module("version_1_2_3_4")), "1 0001000200030004");
  EXPECT_STREQ(of_load, "");
  EXPECT_STREQ(of_look_up, "");
}

TEST(PluginVersion, RefusedLoadGivesZero) {
  // What "DllMain" refuses stays loaded, so this is not one of the modules above.
  std::string path = Module("version_refused");
  for (const Reader& reader : kReaders) {
    char out[8] = "old";
    EXPECT_EQ(reader.read(path.data(), out, sizeof out), 0) << reader.name;
    EXPECT_STREQ(out, "");
  }
}

TEST(PluginVersion, BuffersOfEverySizeAreCutAndTerminated) {
  const std::string stamps[] = {"0001000200030004", "1.2.3.4"};
  for (size_t i = 0; i < 2; ++i) {
    for (unsigned size = 0; size <= 120; ++size) {
      const std::string cut = size == 0 ? "" : stamps[i].substr(0, size - 1);
      EXPECT_EQ(Read(kReaders[i], Module("version_1_2_3_4"), size), "1 " + cut) << size;
    }
  }
}

TEST(PluginVersion, FiveByteBufferKeepsFourDigitsAndATerminator) {
  EXPECT_EQ(Read(kReaders[0], Module("version_1_2_3_4"), 5), "1 0001");
}

TEST(PluginVersion, FailureIsReportedWithoutABufferToClear) {
  EXPECT_EQ(Read(kReaders[0], Module("version_fails"), 0), "0 ");
}

TEST(PluginVersion, NullArgumentsGiveZero) {
  std::string path = Module("version_1_2_3_4");
  for (const Reader& reader : kReaders) {
    EXPECT_EQ(reader.read(path.data(), nullptr, 10), 0);
    EXPECT_EQ(reader.read(path.data(), nullptr, 0), 0);
    char out[8] = "old";
    EXPECT_EQ(reader.read(nullptr, out, sizeof out), 0);
    EXPECT_STREQ(out, "");
  }
}

TEST(PluginVersion, ModuleThatWasLoadedBeforeStaysLoaded) {
  std::string path = Module("version_1_2_3_4");
  void* const module = tivLoadLibrary(path.c_str(), nullptr);
  ASSERT_NE(module, nullptr);
  char out[32];
  EXPECT_EQ(tivmcomn_GetFileResourceVersionStamp(path.data(), out, sizeof out), 1);
  EXPECT_TRUE(IsLoaded(path));
  EXPECT_EQ(tivFreeLibrary(module), 1);
  EXPECT_FALSE(IsLoaded(path));
}

TEST(PluginVersion, MoreCallsThanTheTableHasEntriesSucceed) {
  for (int round = 0; round < 60; ++round) {
    ASSERT_EQ(Read(kReaders[round % 2], Module("version_with_dllmain")).substr(0, 2), "1 ");
    ASSERT_EQ(Read(kReaders[round % 2], Module("version_fails")), "0 ");
  }
}

}  // namespace
