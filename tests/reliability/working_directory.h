#ifndef ZEBCOMN_TESTS_RELIABILITY_WORKING_DIRECTORY_H_
#define ZEBCOMN_TESTS_RELIABILITY_WORKING_DIRECTORY_H_

#include <filesystem>
#include <string>

namespace zebcomn_test {

/// The working directory for the length of a run.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) : old_(std::filesystem::current_path()) {
    std::filesystem::current_path(path);
  }
  ~WorkingDirectory() { std::filesystem::current_path(old_); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

 private:
  std::filesystem::path old_;
};

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_RELIABILITY_WORKING_DIRECTORY_H_
