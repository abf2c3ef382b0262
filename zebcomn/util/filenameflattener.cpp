#include "zebcomn/util/filenameflattener.h"

#include <unistd.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string_view>

/// Callers' object files hold the order of the members.
struct FileNameFlattenerLayout {
  static_assert(offsetof(FileNameFlattener, m_bFlat) == 0);
  static_assert(offsetof(FileNameFlattener, m_strPath) == alignof(std::string));
  static_assert(offsetof(FileNameFlattener, m_strFlatPath) ==
                alignof(std::string) + sizeof(std::string));
  static_assert(offsetof(FileNameFlattener, m_strBaseDir) ==
                alignof(std::string) + 2 * sizeof(std::string));
  static_assert(sizeof(void*) != 4 || sizeof(FileNameFlattener) == 76);
};

namespace {

constexpr std::size_t kWorkingDirectoryCapacity = 1024;

/// The working directory, or the empty text when it does not fit or cannot be read.
std::string WorkingDirectory() {
  const std::unique_ptr<char[]> buffer(new (std::nothrow) char[kWorkingDirectoryCapacity]);
  if (!buffer || getcwd(buffer.get(), kWorkingDirectoryCapacity) == nullptr) return {};
  return buffer.get();
}

/// The absolute form of a path, one "/" at its end dropped: the base directory for an empty rest.
std::string Absolute(std::string_view path, const std::string& base) {
  if (!path.empty() && path.back() == '/') path.remove_suffix(1);
  // Kept: the path "/" is empty here, and so means the base directory and not the root.
  if (path.empty()) return base;
  if (path.front() == '/') return std::string(path);
  return base + "/" + std::string(path);
}

/// Adds one component to a flat path; a ".." takes the last one away, and fails at the root.
bool Append(std::string_view component, std::string& flat) {
  if (component == ".") return true;
  if (component == "..") {
    if (flat.empty()) return false;
    flat.resize(flat.rfind('/'));
    return true;
  }
  flat.append(1, '/').append(component);
  return true;
}

/// Flattens an absolute path, which is empty or begins with "/".
bool FlattenAbsolute(std::string_view path, std::string& flat) {
  flat.clear();
  flat.reserve(path.size());
  while (!path.empty()) {
    path.remove_prefix(1);
    const std::string_view component = path.substr(0, path.find('/'));
    if (!Append(component, flat)) return false;
    path.remove_prefix(component.size());
  }
  return true;
}

}  // namespace

FileNameFlattener::FileNameFlattener(const std::string& path)
    : m_bFlat(false), m_strPath(path), m_strBaseDir(WorkingDirectory()) {
  Flatten();
}

FileNameFlattener::FileNameFlattener(const std::string& path, const std::string& baseDir)
    : m_bFlat(false), m_strPath(path) {
  if (FileNameFlattener(baseDir).GetFlatPath(m_strBaseDir)) Flatten();
}

bool FileNameFlattener::Flatten() {
  m_bFlat = false;  // Also where there is no memory for the flat path.
  m_bFlat = FlattenAbsolute(Absolute(m_strPath, m_strBaseDir), m_strFlatPath);
  return m_bFlat;
}

bool FileNameFlattener::GetFlatPath(std::string& out) {
  if (m_bFlat) out = m_strFlatPath;
  return m_bFlat;
}
