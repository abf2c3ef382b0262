#include <Poco/DirectoryIterator.h>
#include <Poco/File.h>
#include <Poco/FileStream.h>
#include <Poco/Glob.h>

#include "bench/file_bench.h"

namespace zebcomn_bench {
namespace {

void OpenClose(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) { Poco::FileInputStream file(path); });
}
BENCHMARK(OpenClose)->Name("file_open_close/poco");

void Read(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    Poco::FileInputStream file(path);
    std::size_t all = 0;
    while (file.read(block, kBlock), file.gcount() > 0) {
      all += static_cast<std::size_t>(file.gcount());
    }
    return all;
  });
}
BENCHMARK(Read)->Name("file_read/poco")->Apply(Transfer);

void Write(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    Poco::FileOutputStream file(path);
    for (std::size_t i = 0; i < count; ++i) file.write(block, kBlock);
    file.close();
  });
}
BENCHMARK(Write)->Name("file_write/poco")->Apply(Transfer);

void SearchFolder(benchmark::State& state) {
  MeasureSearch(state, [](const char* folder) {
    Poco::Glob glob(kPattern);
    std::size_t found = 0;
    for (Poco::DirectoryIterator entry{std::string(folder)}, end; entry != end; ++entry) {
      if (!glob.match(entry.name())) continue;
      benchmark::DoNotOptimize(entry->getSize());
      benchmark::DoNotOptimize(entry->getLastModified());
      ++found;
    }
    return found;
  });
}
BENCHMARK(SearchFolder)->Name("directory_search/poco")->Apply(Search);

void CopyFile(benchmark::State& state) {
  MeasureCopy(state, [](const char* from, const char* to) { Poco::File(from).copyTo(to); });
}
BENCHMARK(CopyFile)->Name("file_copy/poco")->Apply(Copy);

void DeleteTree(benchmark::State& state) {
  MeasureDelete(state, [](const char* folder) { Poco::File(folder).remove(true); });
}
BENCHMARK(DeleteTree)->Name("tree_delete/poco")->Apply(Delete);

}  // namespace
}  // namespace zebcomn_bench
