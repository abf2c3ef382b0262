// Paths that are resolved through the links of a made-up file system. The input's last line is the
// path; each line before it is an entry: "path>target" is a link, "path/" a directory, any other
// line a regular file.
#include <memory>
#include <string>
#include <vector>

#include "fuzz/fake_file_system.h"
#include "fuzz/fuzz_input.h"
#include "tests/util/flatten_step_by_step.h"
#include "zebcomn/util/filenameresolver.h"

namespace {

using namespace zebcomn_fuzz;
using zebcomn_test::FlattenStepByStep;
using zebcomn_test::kFails;

constexpr int kMostLinks = 50;
constexpr size_t kTargetCapacity = 1024;
constexpr uint32_t kFailure = 0x80000008;

/// The entries of an input, and the path that it asks for.
FakeFileSystem SystemOf(const std::string& input, std::string& path) {
  FakeFileSystem system;
  std::vector<std::string> lines = LinesOf(input);
  if (lines.empty()) return system;
  path = lines.back();
  lines.pop_back();
  for (const std::string& line : lines) {
    const auto [name, target] = CutAt(UpToNul(line), '>');
    if (line.find('>') != std::string::npos) {
      system.AddLink(name, target);
    } else if (!name.empty() && name.back() == '/') {
      system.AddDirectory(name.substr(0, name.size() - 1));
    } else {
      system.AddFile(name);
    }
  }
  return system;
}

std::string Flatten(const std::string& path, const std::string& base) {
  return base == kFails ? kFails : FlattenStepByStep(path, base);
}

/// The directory that a link's relative target is taken against: the root for a link in the root.
std::string FlatDirectoryOf(const std::string& link) {
  const std::string directory = link.substr(0, link.rfind('/'));
  if (directory.find_first_not_of('/') == std::string::npos) return "";
  return FlattenStepByStep(directory, kFakeWorkingDirectory);
}

/// The regular file that a path leads to, link after link; kFails when it leads to none.
std::string Resolve(const std::string& path, const FakeFileSystem& system) {
  std::string current = FlattenStepByStep(path, kFakeWorkingDirectory);
  if (current == kFails || current.find('\0') != std::string::npos) return kFails;
  for (int links = 0; system.IsLink(current); ++links) {
    const std::string target = system.TargetOf(current);
    if (links == kMostLinks || target.size() >= kTargetCapacity) return kFails;
    const std::string next = Flatten(target, FlatDirectoryOf(current));
    if (next != kFails) current = next;
  }
  return system.IsFile(current) ? current : kFails;
}

struct DestroyResolver {
  void operator()(void* resolver) const { tivmcomn_filenameresolver_destroy(resolver); }
};

/// The flat calls: a buffer too small by one is told its size, one that just fits is filled.
void CheckFlatCalls(const std::string& path, const std::string& expected) {
  void* created = nullptr;
  Require(tivmcomn_filenameresolver_create(path.c_str(), &created) == 0);
  const std::unique_ptr<void, DestroyResolver> resolver(created);
  const size_t needed = expected.size() + 1;
  std::vector<char> buffer(needed, '#');
  auto size = static_cast<unsigned>(needed - 1);
  const unsigned small =
      tivmcomn_filenameresolver_get_absolute_filename(created, buffer.data(), &size);
  Require(small == kFailure && buffer == std::vector<char>(needed, '#'));
  if (expected == kFails) return Require(size == needed - 1);
  Require(size == needed);
  Require(tivmcomn_filenameresolver_get_absolute_filename(created, buffer.data(), &size) == 0);
  Require(size == needed && expected == buffer.data());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  std::string path;
  FakeFileSystem system = SystemOf(TextOf(data, size), path);
  const FakeFileSystem::Use use(system);
  const std::string expected = Resolve(path, system);
  std::string absolute = kFails;
  Require(FileNameResolver(path).GetAbsolutePath(absolute) == (expected != kFails));
  Require(absolute == expected);
  CheckFlatCalls(path, Resolve(UpToNul(path), system));
  return 0;
}
