#ifndef ZEBCOMN_BENCH_FILE_BENCH_H_
#define ZEBCOMN_BENCH_FILE_BENCH_H_

// The work of file_bench, the same for the library, the floor and each peer, which give the calls.

#include <benchmark/benchmark.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "bench/support/scratch.h"

namespace zebcomn_bench {

/// What one read or write call moves.
constexpr std::size_t kBlock = 4096;

/// The half of a folder of FolderOfEntries() that has these names is looked for.
constexpr const char* kPattern = "entry-*.log";

/// The sizes that every subject is measured with. The library is measured with smaller ones too, to
/// see how its cost grows.
constexpr int64_t kTransferBytes = 1 << 20;
constexpr int64_t kCopyBytes = 64 << 20;
constexpr int64_t kEntries = 10000;
constexpr int64_t kTreeFiles = 10000;

/// Ends the program: a call that fails would measure nothing.
inline void Require(bool succeeded) {
  if (!succeeded) std::abort();
}

/// `open_and_close(path)`.
template <typename Call>
void MeasureOpenClose(benchmark::State& state, Call open_and_close) {
  const std::string& path = FileOfSize(kBlock);
  for (auto _ : state) open_and_close(path.c_str());
}

/// `read_all(path, block)` opens a file, reads it block by block to its end, closes it, and gives
/// the number of bytes.
template <typename Call>
void MeasureRead(benchmark::State& state, Call read_all) {
  const auto bytes = static_cast<std::size_t>(state.range(0));
  const std::string& path = FileOfSize(bytes);
  static std::array<char, kBlock> block;
  for (auto _ : state) Require(read_all(path.c_str(), block.data()) == bytes);
}

/// `write_all(path, block, count)` makes or empties a file, writes `count` blocks to it and closes
/// it.
template <typename Call>
void MeasureWrite(benchmark::State& state, Call write_all) {
  const std::string path = ScratchFolder() + "/written";
  const std::size_t count = static_cast<std::size_t>(state.range(0)) / kBlock;
  static std::array<char, kBlock> block;
  for (auto _ : state) write_all(path.c_str(), block.data(), count);
}

/// `search(folder)` looks for kPattern and gives the number of entries found, each with its size
/// and times.
template <typename Call>
void MeasureSearch(benchmark::State& state, Call search) {
  const auto entries = static_cast<std::size_t>(state.range(0));
  const std::string& folder = FolderOfEntries(entries);
  for (auto _ : state) Require(search(folder.c_str()) == entries / 2);
}

/// `copy(from, to)`, where there is no file yet.
template <typename Call>
void MeasureCopy(benchmark::State& state, Call copy) {
  const std::string& source = FileOfSize(static_cast<std::size_t>(state.range(0)));
  const std::string destination = ScratchFolder() + "/copy";
  for (auto _ : state) {
    copy(source.c_str(), destination.c_str());
    state.PauseTiming();
    Require(std::remove(destination.c_str()) == 0);
    state.ResumeTiming();
  }
}

/// `remove(folder)`, with everything in it.
template <typename Call>
void MeasureDelete(benchmark::State& state, Call remove) {
  const std::string tree = ScratchFolder() + "/tree";
  for (auto _ : state) {
    state.PauseTiming();
    MakeTree(tree, static_cast<std::size_t>(state.range(0)));
    state.ResumeTiming();
    remove(tree.c_str());
  }
}

/// How the benchmarks of each operation are run.
using Benchmark = benchmark::internal::Benchmark;
inline void Transfer(Benchmark* one) {
  one->ArgName("bytes")->Arg(kTransferBytes);
}
inline void Search(Benchmark* one) {
  one->ArgName("entries")->Arg(kEntries);
}
inline void Copy(Benchmark* one) {
  one->ArgName("bytes")->Arg(kCopyBytes)->Iterations(1);
}
inline void Delete(Benchmark* one) {
  one->ArgName("files")->Arg(kTreeFiles)->Iterations(1);
}

}  // namespace zebcomn_bench

#endif  // ZEBCOMN_BENCH_FILE_BENCH_H_
