#include <boost/filesystem.hpp>

#include "bench/file_bench.h"

namespace zebcomn_bench {
namespace {

void CopyFile(benchmark::State& state) {
  MeasureCopy(state,
              [](const char* from, const char* to) { boost::filesystem::copy_file(from, to); });
}
BENCHMARK(CopyFile)->Name("file_copy/boost")->Apply(Copy);

void DeleteTree(benchmark::State& state) {
  MeasureDelete(state, [](const char* folder) { boost::filesystem::remove_all(folder); });
}
BENCHMARK(DeleteTree)->Name("tree_delete/boost")->Apply(Delete);

}  // namespace
}  // namespace zebcomn_bench
