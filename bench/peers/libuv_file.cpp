#include <fcntl.h>
#include <uv.h>

#include "bench/file_bench.h"

// Its calls without a callback run at once, on the caller's thread. It has no pattern match.
namespace zebcomn_bench {
namespace {

/// One request at a time; gives its result.
template <typename Call, typename... Arguments>
ssize_t Do(Call call, Arguments... arguments) {
  uv_fs_t request;
  const ssize_t result = call(nullptr, &request, arguments..., nullptr);
  uv_fs_req_cleanup(&request);
  Require(result >= 0);
  return result;
}

uv_file OpenFile(const char* path, int flags) {
  return static_cast<uv_file>(Do(uv_fs_open, path, flags, 0660));
}

void OpenClose(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) { Do(uv_fs_close, OpenFile(path, O_RDONLY)); });
}
BENCHMARK(OpenClose)->Name("file_open_close/libuv");

void Read(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    const uv_file file = OpenFile(path, O_RDONLY);
    const uv_buf_t buffer = uv_buf_init(block, kBlock);
    std::size_t all = 0;
    while (const ssize_t got = Do(uv_fs_read, file, &buffer, 1u, int64_t{-1})) {
      all += static_cast<std::size_t>(got);
    }
    Do(uv_fs_close, file);
    return all;
  });
}
BENCHMARK(Read)->Name("file_read/libuv")->Apply(Transfer);

void Write(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, char* block, std::size_t count) {
    const uv_file file = OpenFile(path, O_WRONLY | O_CREAT | O_TRUNC);
    const uv_buf_t buffer = uv_buf_init(block, kBlock);
    for (std::size_t i = 0; i < count; ++i) Do(uv_fs_write, file, &buffer, 1u, int64_t{-1});
    Do(uv_fs_close, file);
  });
}
BENCHMARK(Write)->Name("file_write/libuv")->Apply(Transfer);

void CopyFile(benchmark::State& state) {
  MeasureCopy(state, [](const char* from, const char* to) { Do(uv_fs_copyfile, from, to, 0); });
}
BENCHMARK(CopyFile)->Name("file_copy/libuv")->Apply(Copy);

}  // namespace
}  // namespace zebcomn_bench
