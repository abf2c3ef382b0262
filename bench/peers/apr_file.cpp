#include <apr_file_io.h>
#include <apr_fnmatch.h>
#include <apr_general.h>

#include "bench/file_bench.h"

namespace zebcomn_bench {
namespace {

/// A pool of its own for each use, as APR's callers do it.
class Pool {
 public:
  Pool() {
    static const bool started = apr_initialize() == APR_SUCCESS;
    Require(started && apr_pool_create(&pool_, nullptr) == APR_SUCCESS);
  }
  ~Pool() { apr_pool_destroy(pool_); }
  Pool(const Pool&) = delete;
  Pool& operator=(const Pool&) = delete;

  operator apr_pool_t*() const { return pool_; }

 private:
  apr_pool_t* pool_ = nullptr;
};

apr_file_t* OpenFile(const char* path, apr_int32_t flags, const Pool& pool) {
  apr_file_t* file = nullptr;
  Require(apr_file_open(&file, path, flags, APR_OS_DEFAULT, pool) == APR_SUCCESS);
  return file;
}

void OpenClose(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) {
    const Pool pool;
    apr_file_close(OpenFile(path, APR_FOPEN_READ, pool));
  });
}
BENCHMARK(OpenClose)->Name("file_open_close/apr");

void Read(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    const Pool pool;
    apr_file_t* const file = OpenFile(path, APR_FOPEN_READ, pool);
    std::size_t all = 0;
    apr_size_t got = kBlock;
    while (apr_file_read(file, block, &got) == APR_SUCCESS) {
      all += got;
      got = kBlock;
    }
    apr_file_close(file);
    return all;
  });
}
BENCHMARK(Read)->Name("file_read/apr")->Apply(Transfer);

void Write(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    const Pool pool;
    apr_file_t* const file =
        OpenFile(path, APR_FOPEN_WRITE | APR_FOPEN_CREATE | APR_FOPEN_TRUNCATE, pool);
    for (std::size_t i = 0; i < count; ++i) {
      apr_size_t size = kBlock;
      Require(apr_file_write(file, block, &size) == APR_SUCCESS && size == kBlock);
    }
    apr_file_close(file);
  });
}
BENCHMARK(Write)->Name("file_write/apr")->Apply(Transfer);

void SearchFolder(benchmark::State& state) {
  MeasureSearch(state, [](const char* folder) {
    const Pool pool;
    apr_dir_t* stream = nullptr;
    Require(apr_dir_open(&stream, folder, pool) == APR_SUCCESS);
    std::size_t found = 0;
    apr_finfo_t entry;
    // It looks at every entry before a caller can say which names it wants.
    while (apr_dir_read(&entry, APR_FINFO_MIN, stream) == APR_SUCCESS) {
      if (apr_fnmatch(kPattern, entry.name, 0) == APR_SUCCESS) ++found;
    }
    apr_dir_close(stream);
    return found;
  });
}
BENCHMARK(SearchFolder)->Name("directory_search/apr")->Apply(Search);

void CopyFile(benchmark::State& state) {
  MeasureCopy(state, [](const char* from, const char* to) {
    const Pool pool;
    Require(apr_file_copy(from, to, APR_FILE_SOURCE_PERMS, pool) == APR_SUCCESS);
  });
}
BENCHMARK(CopyFile)->Name("file_copy/apr")->Apply(Copy);

}  // namespace
}  // namespace zebcomn_bench
