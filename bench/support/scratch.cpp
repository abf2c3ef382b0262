#include "bench/support/scratch.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <stdexcept>
#include <system_error>

namespace zebcomn_bench {
namespace {

constexpr std::size_t kFilesOfSubfolder = 100;

std::string Parent() {
  const char* const wanted = std::getenv("TMPDIR");
  if (wanted != nullptr && *wanted != '\0') return wanted;
  return access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp";
}

class Folder {
 public:
  Folder() : path_(Parent() + "/zebcomn-bench-XXXXXX") {
    if (mkdtemp(path_.data()) == nullptr) throw std::runtime_error("no scratch folder " + path_);
  }
  ~Folder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

void MakeEmptyFile(const std::string& path) {
  if (!std::ofstream(path)) throw std::runtime_error("cannot make " + path);
}

void WriteFile(const std::string& path, std::size_t bytes) {
  const std::string block(64 * 1024, 'z');
  std::ofstream file(path, std::ios::binary);
  for (std::size_t left = bytes; left > 0;) {
    const std::size_t part = std::min(left, block.size());
    file.write(block.data(), static_cast<std::streamsize>(part));
    left -= part;
  }
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

}  // namespace

const std::string& ScratchFolder() {
  static const Folder folder;
  return folder.path();
}

const std::string& FileOfSize(std::size_t bytes) {
  static std::map<std::size_t, std::string> files;
  const auto [entry, is_new] = files.emplace(bytes, "");
  if (is_new) {
    entry->second = ScratchFolder() + "/bytes-" + std::to_string(bytes);
    WriteFile(entry->second, bytes);
  }
  return entry->second;
}

const std::string& FolderOfEntries(std::size_t entries) {
  static std::map<std::size_t, std::string> folders;
  const auto [entry, is_new] = folders.emplace(entries, "");
  if (is_new) {
    entry->second = ScratchFolder() + "/entries-" + std::to_string(entries);
    std::filesystem::create_directory(entry->second);
    for (std::size_t i = 0; i < entries; ++i) {
      MakeEmptyFile(entry->second + "/entry-" + std::to_string(i) + (i % 2 == 0 ? ".log" : ".txt"));
    }
  }
  return entry->second;
}

void MakeTree(const std::string& folder, std::size_t files) {
  std::filesystem::create_directory(folder);
  std::string subfolder;
  for (std::size_t i = 0; i < files; ++i) {
    if (i % kFilesOfSubfolder == 0) {
      subfolder = folder + "/folder-" + std::to_string(i / kFilesOfSubfolder);
      std::filesystem::create_directory(subfolder);
    }
    MakeEmptyFile(subfolder + "/file-" + std::to_string(i));
  }
}

}  // namespace zebcomn_bench
