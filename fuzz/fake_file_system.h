#ifndef ZEBCOMN_FUZZ_FAKE_FILE_SYSTEM_H_
#define ZEBCOMN_FUZZ_FAKE_FILE_SYSTEM_H_

#include <sys/types.h>

#include <map>
#include <string>

namespace zebcomn_fuzz {

constexpr const char* kFakeWorkingDirectory = "/base/here";

/// A file system that exists only for the calls `lstat`, `readlink` and `getcwd`. It knows its
/// entries by their whole paths and follows no links among the directories.
class FakeFileSystem {
 public:
  /// Answers those calls from a system for as long as it lives.
  class Use {
   public:
    explicit Use(const FakeFileSystem& system);
    ~Use();
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
  };

  void AddFile(const std::string& path);
  void AddDirectory(const std::string& path);
  void AddLink(const std::string& path, const std::string& target);

  bool IsFile(const std::string& path) const { return ModeOf(path) == kFile; }
  bool IsLink(const std::string& path) const { return ModeOf(path) == kLink; }
  /// The target of a link. REQUIRES: IsLink(path).
  const std::string& TargetOf(const std::string& path) const { return entries_.at(path).target; }
  /// The kind of an entry as in `st_mode`, 0 when there is none.
  mode_t ModeOf(const std::string& path) const;

 private:
  static const mode_t kFile;
  static const mode_t kLink;

  struct Entry {
    mode_t mode;
    std::string target;
  };
  std::map<std::string, Entry> entries_;
};

}  // namespace zebcomn_fuzz

#endif  // ZEBCOMN_FUZZ_FAKE_FILE_SYSTEM_H_
