#ifndef ZEBCOMN_TESTS_SUPPORT_SCRATCH_DIR_H_
#define ZEBCOMN_TESTS_SUPPORT_SCRATCH_DIR_H_

#include <string>

namespace zebcomn_test {

/// A new empty directory under the system's temporary directory. It goes, with everything in it,
/// when the object does; the removal never follows a symbolic link and does not use the library.
class ScratchDir {
 public:
  ScratchDir();
  ~ScratchDir();
  ScratchDir(const ScratchDir&) = delete;
  ScratchDir& operator=(const ScratchDir&) = delete;

  const std::string& path() const { return path_; }
  /// The path of `name` inside the directory.
  std::string operator/(const std::string& name) const { return path_ + "/" + name; }
  /// Writes `text` to `name` (directories on the way are made) and returns its path.
  std::string Write(const std::string& name, const std::string& text) const;

 private:
  std::string path_;
};

/// Writes `text` to the file at `path`, replacing it. Throws when that fails.
void WriteFile(const std::string& path, const std::string& text);
/// The whole content of the file at `path`. Throws when it cannot be read.
std::string ReadFile(const std::string& path);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_SCRATCH_DIR_H_
