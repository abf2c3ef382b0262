#include "tests/support/scratch_dir.h"

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace zebcomn_test {

ScratchDir::ScratchDir() {
  std::string pattern = (std::filesystem::temp_directory_path() / "zebcomn-test-XXXXXX").string();
  if (mkdtemp(pattern.data()) == nullptr) throw std::runtime_error("no scratch directory");
  path_ = pattern;
}

ScratchDir::~ScratchDir() {
  std::error_code ignored;
  std::filesystem::remove_all(path_, ignored);
}

std::string ScratchDir::Write(const std::string& name, const std::string& text) const {
  const std::filesystem::path target = std::filesystem::path(path_) / name;
  std::filesystem::create_directories(target.parent_path());
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
