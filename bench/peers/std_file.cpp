#include <fnmatch.h>

#include <filesystem>
#include <fstream>

#include "bench/file_bench.h"

namespace zebcomn_bench {
namespace {

void OpenClose(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) { std::ifstream file(path); });
}
BENCHMARK(OpenClose)->Name("file_open_close/std");

void Read(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    std::ifstream file(path, std::ios::binary);
    std::size_t all = 0;
    while (file.read(block, kBlock), file.gcount() > 0) {
      all += static_cast<std::size_t>(file.gcount());
    }
    return all;
  });
}
BENCHMARK(Read)->Name("file_read/std")->Apply(Transfer);

void Write(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    std::ofstream file(path, std::ios::binary);
    for (std::size_t i = 0; i < count; ++i) file.write(block, kBlock);
    file.close();
    Require(file.good());
  });
}
BENCHMARK(Write)->Name("file_write/std")->Apply(Transfer);

void SearchFolder(benchmark::State& state) {
  MeasureSearch(state, [](const char* folder) {
    std::size_t found = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
      if (fnmatch(kPattern, entry.path().filename().c_str(), 0) != 0) continue;
      benchmark::DoNotOptimize(entry.file_size());
      benchmark::DoNotOptimize(entry.last_write_time());
      ++found;
    }
    return found;
  });
}
BENCHMARK(SearchFolder)->Name("directory_search/std")->Apply(Search);

void CopyFile(benchmark::State& state) {
  MeasureCopy(state,
              [](const char* from, const char* to) { std::filesystem::copy_file(from, to); });
}
BENCHMARK(CopyFile)->Name("file_copy/std")->Apply(Copy);

void DeleteTree(benchmark::State& state) {
  MeasureDelete(state, [](const char* folder) { std::filesystem::remove_all(folder); });
}
BENCHMARK(DeleteTree)->Name("tree_delete/std")->Apply(Delete);

}  // namespace
}  // namespace zebcomn_bench
