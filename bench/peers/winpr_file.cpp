#include <winpr/file.h>
#include <winpr/handle.h>

#include "bench/file_bench.h"

// Its directory search gives names without sizes and times, and it has no copy.
namespace zebcomn_bench {
namespace {

HANDLE OpenFile(const char* path, DWORD access, DWORD disposition) {
  HANDLE file = CreateFileA(path, access, 0, nullptr, disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
  Require(file != INVALID_HANDLE_VALUE);
  return file;
}

void OpenClose(benchmark::State& state) {
  MeasureOpenClose(
      state, [](const char* path) { CloseHandle(OpenFile(path, GENERIC_READ, OPEN_EXISTING)); });
}
BENCHMARK(OpenClose)->Name("file_open_close/winpr");

void Read(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    HANDLE file = OpenFile(path, GENERIC_READ, OPEN_EXISTING);
    std::size_t all = 0;
    DWORD got = 0;
    while (ReadFile(file, block, kBlock, &got, nullptr) && got > 0) all += got;
    CloseHandle(file);
    return all;
  });
}
BENCHMARK(Read)->Name("file_read/winpr")->Apply(Transfer);

void Write(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    HANDLE file = OpenFile(path, GENERIC_WRITE, CREATE_ALWAYS);
    DWORD written = 0;
    for (std::size_t i = 0; i < count; ++i) {
      Require(WriteFile(file, block, kBlock, &written, nullptr) && written == kBlock);
    }
    CloseHandle(file);
  });
}
BENCHMARK(Write)->Name("file_write/winpr")->Apply(Transfer);

}  // namespace
}  // namespace zebcomn_bench
