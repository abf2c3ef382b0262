#ifndef ZEBCOMN_TESTS_UTIL_SAME_NUMBER_H_
#define ZEBCOMN_TESTS_UTIL_SAME_NUMBER_H_

#include <sys/mount.h>
#include <sys/stat.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace zebcomn_test {

inline ino_t NumberOf(const std::string& path) {
  struct stat status = {};
  if (stat(path.c_str(), &status) != 0) throw std::runtime_error("cannot look at " + path);
  return status.st_ino;
}

/// Mounts a new file system at `path`, which it makes, and has `make` make entries in that one
/// until one has the same inode number as `other`, which is elsewhere. Its path; empty where file
/// systems do not count their numbers each for itself. REQUIRES: a private host.
inline std::string EntryWithTheNumberOf(const std::string& other, const std::string& path,
                                        void (*make)(const std::string&)) {
  constexpr int kMostEntries = 10000;
  std::filesystem::create_directories(path);
  if (mount("numbers", path.c_str(), "tmpfs", 0, nullptr) != 0) {
    throw std::runtime_error("cannot mount on " + path);
  }
  for (int i = 0; i < kMostEntries; ++i) {
    const std::string entry = path + "/" + std::to_string(i);
    make(entry);
    if (NumberOf(entry) == NumberOf(other)) return entry;
  }
  return "";
}

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_UTIL_SAME_NUMBER_H_
