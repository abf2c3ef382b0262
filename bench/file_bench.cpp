// Files and directories beside the system calls that they cannot do without.
#include "bench/file_bench.h"

#include <dirent.h>
#include <fcntl.h>
#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <memory>

#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/util/delete_tree.h"
#include "zebcomn/util/file_copy.h"

namespace zebcomn_bench {
namespace {

constexpr std::size_t kLargeBlock = std::size_t{256} << 10;

/// The paths that the library is given are char*, though it only reads them.
char* Writable(const char* path) {
  return const_cast<char*>(path);
}

// ---- the library

HANDLE OpenFile(const char* path, DWORD access, DWORD disposition) {
  HANDLE file = tivCreateFileAW(path, access, 0, nullptr, disposition, TIV_FLAG_NORMAL, nullptr);
  Require(file != nullptr);
  return file;
}

void OpenClose_Zebcomn(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) {
    tivCloseHandle(OpenFile(path, TIV_ACCESS_READ, TIV_OPEN_EXISTING));
  });
}

void Read_Zebcomn(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    HANDLE file = OpenFile(path, TIV_ACCESS_READ, TIV_OPEN_EXISTING);
    std::size_t all = 0;
    DWORD got = 0;
    while (tivReadFile(file, block, kBlock, &got, nullptr) == TRUE && got > 0) all += got;
    tivCloseHandle(file);
    return all;
  });
}

void Write_Zebcomn(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    HANDLE file = OpenFile(path, TIV_ACCESS_WRITE, TIV_CREATE_ALWAYS);
    DWORD written = 0;
    for (std::size_t i = 0; i < count; ++i) {
      Require(tivWriteFile(file, block, kBlock, &written) == TRUE && written == kBlock);
    }
    tivCloseHandle(file);
  });
}

void Search_Zebcomn(benchmark::State& state) {
  MeasureSearch(state, [](const char* folder) {
    const std::string pattern = std::string(folder) + "/" + kPattern;
    TivFindData data;
    const int32_t id = tivFindFirstDirEnt(pattern.c_str(), &data);
    Require(id > 0);
    std::size_t found = 1;
    while (tivFindNextDirEnt(id, &data) == TRUE) ++found;
    tivFindCloseDirEnt(id);
    return found;
  });
}

void Copy_Zebcomn(benchmark::State& state) {
  MeasureCopy(state, [](const char* from, const char* to) {
    Require(tivmcomn_copy_file(Writable(from), Writable(to), 1) == TRUE);
  });
}

void Delete_Zebcomn(benchmark::State& state) {
  MeasureDelete(state, [](const char* folder) {
    tivmcomn_deltree(Writable(folder));
    Require(access(folder, F_OK) != 0);
  });
}

// ---- the floor

/// What a handle has beside its descriptor: two records on the heap, with a lock and a condition.
struct BareHandle {
  BareHandle() : record(std::malloc(sizeof(_tivHandleObject_t))), file(std::malloc(276)) {
    pthread_cond_init(&cond, nullptr);
    pthread_mutex_init(&mutex, nullptr);
    benchmark::DoNotOptimize(record);
    benchmark::DoNotOptimize(file);
  }
  ~BareHandle() {
    pthread_mutex_destroy(&mutex);
    pthread_cond_destroy(&cond);
    std::free(file);
    std::free(record);
  }
  BareHandle(const BareHandle&) = delete;
  BareHandle& operator=(const BareHandle&) = delete;

  void* record;
  void* file;
  pthread_cond_t cond;
  pthread_mutex_t mutex;
};

int OpenBare(const char* path, int flags) {
  const int file = open(path, flags, 0660);
  Require(file >= 0);
  return file;
}

void OpenClose_Floor(benchmark::State& state) {
  MeasureOpenClose(state, [](const char* path) {
    const int file = OpenBare(path, O_RDONLY);
    const BareHandle handle;
    close(file);
  });
}

void Read_Floor(benchmark::State& state) {
  MeasureRead(state, [](const char* path, char* block) {
    const int file = OpenBare(path, O_RDONLY);
    const BareHandle handle;
    std::size_t all = 0;
    ssize_t got = 0;
    while ((got = read(file, block, kBlock)) > 0) all += static_cast<std::size_t>(got);
    close(file);
    return all;
  });
}

void Write_Floor(benchmark::State& state) {
  MeasureWrite(state, [](const char* path, const char* block, std::size_t count) {
    const int file = OpenBare(path, O_WRONLY | O_CREAT | O_TRUNC);
    const BareHandle handle;
    for (std::size_t i = 0; i < count; ++i) Require(write(file, block, kBlock) == kBlock);
    close(file);
  });
}

/// Whether kPattern takes the name: the whole test that this one pattern needs.
bool IsTaken(const char* name) {
  return std::strncmp(name, "entry-", 6) == 0 && std::strstr(name + 6, ".log") != nullptr;
}

void Search_Floor(benchmark::State& state) {
  MeasureSearch(state, [](const char* folder) {
    DIR* const stream = opendir(folder);
    Require(stream != nullptr);
    std::size_t found = 0;
    char path[260];
    char* const name = stpcpy(stpcpy(path, folder), "/");
    while (const dirent* entry = readdir(stream)) {
      if (!IsTaken(entry->d_name)) continue;
      std::strcpy(name, entry->d_name);
      struct stat status;
      Require(stat(path, &status) == 0);
      benchmark::DoNotOptimize(status);
      ++found;
    }
    closedir(stream);
    return found;
  });
}

void Copy_Floor(benchmark::State& state) {
  MeasureCopy(state, [](const char* from, const char* to) {
    const std::unique_ptr<char[]> block(new char[kLargeBlock]);
    const int source = open(from, O_RDONLY);
    const int destination = open(to, O_RDWR | O_CREAT | O_TRUNC, 0666);
    ssize_t got = 0;
    while ((got = read(source, block.get(), kLargeBlock)) > 0) {
      Require(write(destination, block.get(), static_cast<std::size_t>(got)) == got);
    }
    close(source);
    Require(close(destination) == 0 && got == 0);
  });
}

/// The status of every entry is asked for, as the described walk over a directory search does.
void DeleteBare(const char* folder) {
  DIR* const stream = opendir(folder);
  Require(stream != nullptr);
  char path[260];
  char* const name = stpcpy(stpcpy(path, folder), "/");
  while (const dirent* entry = readdir(stream)) {
    std::strcpy(name, entry->d_name);
    struct stat status;
    Require(stat(path, &status) == 0);
    if (!S_ISDIR(status.st_mode)) {
      unlink(path);
    } else if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0) {
      DeleteBare(path);
    }
  }
  closedir(stream);
  Require(rmdir(folder) == 0);
}

void Delete_Floor(benchmark::State& state) {
  MeasureDelete(state, DeleteBare);
}

BENCHMARK(OpenClose_Zebcomn)->Name("file_open_close/zebcomn");
BENCHMARK(OpenClose_Floor)->Name("file_open_close/floor");
BENCHMARK(Read_Zebcomn)->Name("file_read/zebcomn")->Apply(Transfer)->Arg(1 << 14)->Arg(1 << 17);
BENCHMARK(Read_Floor)->Name("file_read/floor")->Apply(Transfer);
BENCHMARK(Write_Zebcomn)->Name("file_write/zebcomn")->Apply(Transfer)->Arg(1 << 14)->Arg(1 << 17);
BENCHMARK(Write_Floor)->Name("file_write/floor")->Apply(Transfer);
BENCHMARK(Search_Zebcomn)->Name("directory_search/zebcomn")->Apply(Search)->Arg(1000)->Arg(100);
BENCHMARK(Search_Floor)->Name("directory_search/floor")->Apply(Search)->Arg(1000)->Arg(100);
BENCHMARK(Copy_Zebcomn)->Name("file_copy/zebcomn")->Apply(Copy)->Arg(8 << 20)->Arg(1 << 20);
BENCHMARK(Copy_Floor)->Name("file_copy/floor")->Apply(Copy);
BENCHMARK(Delete_Zebcomn)->Name("tree_delete/zebcomn")->Apply(Delete)->Arg(1000)->Arg(100);
BENCHMARK(Delete_Floor)->Name("tree_delete/floor")->Apply(Delete)->Arg(1000)->Arg(100);

}  // namespace
}  // namespace zebcomn_bench
