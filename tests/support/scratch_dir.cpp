#include "tests/support/scratch_dir.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace zebcomn_test {

namespace {

namespace fs = std::filesystem;

/// An ordinary user cannot look into a directory that a test has closed, nor remove it.
void OpenUp(const fs::path& directory) {
  std::error_code ignored;
  fs::permissions(directory, fs::perms::owner_all, fs::perm_options::add, ignored);
  for (const fs::directory_entry& entry : fs::directory_iterator(directory, ignored)) {
    if (entry.symlink_status(ignored).type() == fs::file_type::directory) OpenUp(entry.path());
  }
}

}  // namespace

ScratchDir::ScratchDir() {
  std::string pattern = (fs::temp_directory_path() / "zebcomn-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch directory");
  path_ = pattern;
}

ScratchDir::~ScratchDir() {
  OpenUp(path_);
  std::error_code ignored;
  fs::remove_all(path_, ignored);
}

std::string ScratchDir::Write(const std::string& name, const std::string& text) const {
  const fs::path target = fs::path(path_) / name;
  fs::create_directories(target.parent_path());
  WriteFile(target.string(), text);
  return target.string();
}

void WriteFile(const std::string& path, const std::string& text) {
  std::ofstream file(path, std::ios::binary | std::ios::trunc);
  file << text;
  file.close();
  if (!file) throw std::runtime_error("cannot write " + path);
}

std::string ReadFile(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  std::ostringstream text;
  text << file.rdbuf();
  return text.str();
}

}  // namespace zebcomn_test
