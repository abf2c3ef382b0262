// Copying a file beside the plain read() and write() calls of 64 KiB that a copy cannot do without.
// Both write a new file each time, in the system's temporary directory. The rounds alternate, so
// that both meet the same machine; the line is the ratio of the best processor times, and a ratio
// above the limit makes the program fail.
#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <string>

#include "zebcomn/util/file_copy.h"

namespace {

constexpr double kLimit = 1.25;
constexpr int kRounds = 80;
constexpr size_t kFileSize = size_t{16} << 20;

bool CopyPlainly(const char* from, const char* to) {
  static std::array<char, size_t{64} << 10> block;
  const int source = open(from, O_RDONLY);
  const int destination = open(to, O_RDWR | O_CREAT | O_TRUNC, 0666);
  bool whole = source >= 0 && destination >= 0;
  ssize_t got = 0;
  while (whole && (got = read(source, block.data(), block.size())) > 0) {
    whole = write(destination, block.data(), static_cast<size_t>(got)) == got;
  }
  close(source);
  return close(destination) == 0 && whole && got == 0;
}

double MillisecondsOf(bool (*copy)(const char*, const char*), const std::string& from,
                      const std::string& to) {
  std::filesystem::remove(to);
  const std::clock_t start = std::clock();
  if (!copy(from.c_str(), to.c_str())) std::abort();
  return 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC;
}

bool CopyByLibrary(const char* from, const char* to) {
  return tivmcomn_copy_file(const_cast<char*>(from), const_cast<char*>(to), 1) == 1;
}

void WriteSource(const std::string& path) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  const std::string block(size_t{1} << 20, 'z');
  for (size_t done = 0; done < kFileSize; done += block.size()) {
    if (std::fwrite(block.data(), 1, block.size(), file) != block.size()) std::abort();
  }
  if (std::fclose(file) != 0) std::abort();
}

}  // namespace

int main() {
  std::string folder = std::filesystem::temp_directory_path() / "zebcomn-bench-XXXXXX";
  if (mkdtemp(folder.data()) == nullptr) return 1;
  const std::string source = folder + "/source";
  const std::string destination = folder + "/destination";
  WriteSource(source);
  double plain = 1e9;
  double library = 1e9;
  for (int round = 0; round < kRounds; ++round) {
    plain = std::min(plain, MillisecondsOf(CopyPlainly, source, destination));
    library = std::min(library, MillisecondsOf(CopyByLibrary, source, destination));
  }
  std::filesystem::remove_all(folder);
  std::printf("copy of %zu MiB  %8.2f ms / %8.2f ms = %5.2f (limit %.2f)\n", kFileSize >> 20,
              library, plain, library / plain, kLimit);
  return library / plain <= kLimit ? 0 : 1;
}
