#include "zebcomn/util/filenameresolver.h"

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstring>
#include <exception>
#include <memory>
#include <new>

#include "zebcomn/portable/types.h"
#include "zebcomn/util/filenameflattener.h"

/// Callers' object files hold the order of the members.
struct FileNameResolverLayout {
  static_assert(offsetof(FileNameResolver, m_bResolved) == 0);
  static_assert(offsetof(FileNameResolver, m_strPath) == alignof(std::string));
  static_assert(offsetof(FileNameResolver, m_strAbsolutePath) ==
                alignof(std::string) + sizeof(std::string));
  static_assert(sizeof(void*) != 4 || sizeof(FileNameResolver) == 52);
};

namespace {

constexpr int kMaxLinkHops = 50;
constexpr std::size_t kLinkTargetCapacity = 1024;

enum class EntryKind { kRegularFile, kLink, kNothingUsable };

EntryKind KindOf(const std::string& path) {
  struct stat entry {};
  // The system would see only what stands before a NUL, which is another path.
  if (path.find('\0') != std::string::npos) return EntryKind::kNothingUsable;
  if (lstat(path.c_str(), &entry) != 0) return EntryKind::kNothingUsable;
  if (S_ISREG(entry.st_mode)) return EntryKind::kRegularFile;
  return S_ISLNK(entry.st_mode) ? EntryKind::kLink : EntryKind::kNothingUsable;
}

/// Reads a link's target. A target without room for its terminator fails: cut, it would name
/// another file.
bool ReadLinkTarget(const std::string& link, std::string& target) {
  std::array<char, kLinkTargetCapacity> text{};
  const ssize_t length = readlink(link.c_str(), text.data(), text.size());
  if (length < 0 || static_cast<std::size_t>(length) >= text.size()) return false;
  target.assign(text.data(), static_cast<std::size_t>(length));
  return true;
}

/// The directory of an entry whose path is flat, in a form that flattens to that directory.
std::string DirectoryOf(const std::string& path) {
  const std::string directory = path.substr(0, path.rfind('/'));
  const bool is_root = directory.find_first_not_of('/') == std::string::npos;
  // "/" and the empty text would stand for the working directory.
  return is_root ? "/." : directory;
}

}  // namespace

FileNameResolver::FileNameResolver(const std::string& path) : m_bResolved(false), m_strPath(path) {
  std::string current;
  if (!FileNameFlattener(path).GetFlatPath(current)) return;
  EntryKind kind = KindOf(current);
  for (int hops = 0; kind == EntryKind::kLink && hops < kMaxLinkHops; ++hops) {
    std::string target;
    if (!ReadLinkTarget(current, target)) return;
    FileNameFlattener(target, DirectoryOf(current)).GetFlatPath(current);
    kind = KindOf(current);
  }
  if (kind != EntryKind::kRegularFile) return;
  m_strAbsolutePath = current;
  m_bResolved = true;
}

bool FileNameResolver::GetAbsolutePath(std::string& out) {
  if (m_bResolved) out = m_strAbsolutePath;
  return m_bResolved;
}

unsigned tivmcomn_filenameresolver_create(const char* path, void** resolver) {
  if (path == nullptr || resolver == nullptr) return ZEBCOMN_STATUS_FAILURE;
  try {
    auto created = std::unique_ptr<FileNameResolver>(new (std::nothrow) FileNameResolver(path));
    if (!created) return ZEBCOMN_STATUS_FAILURE;
    *resolver = created.release();
    return ZEBCOMN_STATUS_OK;
  } catch (const std::exception&) {  // No memory, or a path too long for any text.
    return ZEBCOMN_STATUS_FAILURE;
  }
}

unsigned tivmcomn_filenameresolver_destroy(void* resolver) {
  delete static_cast<FileNameResolver*>(resolver);
  return ZEBCOMN_STATUS_OK;
}

unsigned tivmcomn_filenameresolver_get_absolute_filename(void* resolver, char* buffer,
                                                         unsigned* size) {
  if (resolver == nullptr || buffer == nullptr || size == nullptr) return ZEBCOMN_STATUS_FAILURE;
  try {
    std::string path;
    if (!static_cast<FileNameResolver*>(resolver)->GetAbsolutePath(path)) {
      return ZEBCOMN_STATUS_FAILURE;
    }
    const auto needed = static_cast<unsigned>(path.size() + 1);
    const unsigned capacity = *size;
    *size = needed;
    if (capacity < needed) return ZEBCOMN_STATUS_FAILURE;
    std::memcpy(buffer, path.c_str(), needed);
    return ZEBCOMN_STATUS_OK;
  } catch (const std::bad_alloc&) {
    return ZEBCOMN_STATUS_FAILURE;
  }
}
