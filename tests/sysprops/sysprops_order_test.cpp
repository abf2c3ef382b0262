// What a collection asks the system for, and in which order: the calls that begin with a source are
// noted by this executable before the C library gets them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <mntent.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <algorithm>
#include <cstdarg>
#include <string>
#include <vector>

#include "tests/support/next_function.h"
#include "zebcomn/sysprops/sysprops.h"

using zebcomn_test::NextFunction;

namespace {

using Sources = std::vector<std::string>;

Sources* g_asked = nullptr;  ///< Where sources are noted; null for nowhere.

const Sources kAll = {"the node's names", "/proc/cpuinfo", "/proc/meminfo",
                      "/etc/fstab",       "the user",      "/etc/zebosplatform.conf",
                      "/etc/wrs-release"};

// Nothing else is noted: a module that the C library loads to look up a host or a user may open
// files of its own.
void Note(const char* source) {
  if (g_asked == nullptr || std::find(kAll.begin(), kAll.end(), source) == kAll.end()) return;
  if (g_asked->empty() || g_asked->back() != source) g_asked->push_back(source);
}

}  // namespace

extern "C" int uname(utsname* names) noexcept {
  static auto* const next = NextFunction<int(utsname*)>("uname");
  Note("the node's names");
  return next(names);
}

extern "C" int open(const char* path, int flags, ...) {
  static auto* const next =
      NextFunction<int(const char*, int, ...)>(ZEBCOMN_LARGE_FILE_SYMBOL(open));
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
  va_end(arguments);
  Note(path);
  return next(path, flags, mode);
}

extern "C" FILE* setmntent(const char* path, const char* mode) noexcept {
  static auto* const next = NextFunction<FILE*(const char*, const char*)>("setmntent");
  Note(path);
  return next(path, mode);
}

extern "C" uid_t getuid() noexcept {
  static auto* const next = NextFunction<uid_t()>("getuid");
  Note("the user");
  return next();
}

namespace {

namespace sysprops = quenty_com::pelu::sysprops;
using sysprops::ISysProps;

/// The sources that `collect` asks.
template <typename Collect>
Sources AskedBy(const Collect& collect) {
  ISysProps properties;
  Sources asked;
  g_asked = &asked;
  collect(properties);
  g_asked = nullptr;
  return asked;
}

TEST(SyspropsOrder, WholeCollectionAsksNetworkCpuMemoryDiskMiscAndOs) {
  EXPECT_EQ(AskedBy([](ISysProps& properties) {
              sysprops::PropertyMap props;
              properties.GetAllSystemProperties(props);
            }),
            kAll);
  EXPECT_EQ(AskedBy([](ISysProps& properties) {
              sysprops::PropertyMap props;
              sysprops::FileSystemMap file_systems;
              properties.GetAllSystemProperties(props, file_systems);
            }),
            kAll);
}

TEST(SyspropsOrder, LookupAsksTheSourcesOfItsGroupAndNoOther) {
  struct {
    const wchar_t* name;
    Sources asked;
  } const kCases[] = {
      {L"ComputerName", {kAll[0]}},  {L"CPUType", {kAll[1]}},      {L"FreeMemory", {kAll[2]}},
      {L"FreeDiskSpace", {kAll[3]}}, {L"UserName", {kAll[4]}},     {L"OSType", {kAll[5], kAll[6]}},
      {L"IsPortable", {kAll[1]}},    {L"NumberOfFileSystems", {}}, {L"SystemInfo", {}},
  };
  for (const auto& item : kCases) {
    EXPECT_EQ(AskedBy([&](ISysProps& properties) { properties.GetOneSystemProperty(item.name); }),
              item.asked)
        << std::string(item.name, item.name + std::wstring(item.name).size());
  }
}

}  // namespace
