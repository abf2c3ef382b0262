// Collection while the system refuses: the C library's calls are this executable's own.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <ifaddrs.h>
#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <new>
#include <string>

#include "tests/support/descriptors.h"
#include "tests/support/failing_allocation.h"
#include "tests/support/fresh_process.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_comn.h"
#include "zebcomn/util/time_zone.h"

namespace {

enum class Entry { kReal, kNone, kFailure, kLong, kEndless };

struct Faults {
  bool uname_fails = false;
  const char* node_name = nullptr;  ///< What uname answers; null asks the real one.
  bool localtime_fails = false;
  bool interfaces_fail = false;
  std::time_t now = 0;  ///< 0 asks the real clock.
  Entry entry = Entry::kReal;
  uid_t real_user = 0;       ///< What getuid answers; 0 asks the real one.
  uid_t looked_up_user = 0;  ///< Whose password entry was asked for last.
  bool watch_mutex = false;
  bool held_for_language = false;  ///< Whether the mutex was, while "LANG" was read.
  bool held_for_time = false;      ///< Whether it was while time was broken down.
  int hits = 0;
};
Faults g_faults;

bool IsMutexHeld() {
  if (pthread_mutex_trylock(&quenty_com::pelu::mutex) == EBUSY) return true;
  pthread_mutex_unlock(&quenty_com::pelu::mutex);
  return false;
}

constexpr size_t kLongEntry = 5000;

template <typename Function>
Function* Real(const char* name) {
  return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

int EntryOfMadeUpUser(passwd* entry, char* texts, size_t capacity, passwd** found) {
  const size_t needed = g_faults.entry == Entry::kLong ? kLongEntry : SIZE_MAX;
  if (capacity < needed) return ERANGE;
  std::strcpy(texts, "madeup");
  entry->pw_name = texts;
  *found = entry;
  return 0;
}

}  // namespace

extern "C" int uname(utsname* names) noexcept {
  if (g_faults.node_name != nullptr) {
    ++g_faults.hits;
    std::strcpy(names->nodename, g_faults.node_name);
    return 0;
  }
  if (!g_faults.uname_fails) return Real<int(utsname*)>("uname")(names);
  ++g_faults.hits;
  errno = EFAULT;
  return -1;
}

extern "C" tm* localtime_r(const time_t* time, tm* out) noexcept {
  if (g_faults.watch_mutex) {
    ++g_faults.hits;
    g_faults.held_for_time = IsMutexHeld();
  }
  if (!g_faults.localtime_fails) return Real<tm*(const time_t*, tm*)>("localtime_r")(time, out);
  ++g_faults.hits;
  return nullptr;
}

extern "C" time_t time(time_t* out) noexcept {
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  if (g_faults.now != 0) {
    ++g_faults.hits;
    now.tv_sec = g_faults.now;
  }
  if (out != nullptr) *out = now.tv_sec;
  return now.tv_sec;
}

extern "C" int getifaddrs(ifaddrs** list) noexcept {
  if (!g_faults.interfaces_fail) return Real<int(ifaddrs**)>("getifaddrs")(list);
  ++g_faults.hits;
  errno = ENOMEM;
  return -1;
}

extern "C" uid_t getuid() noexcept {
  if (g_faults.real_user == 0) return Real<uid_t()>("getuid")();
  ++g_faults.hits;
  return g_faults.real_user;
}

extern "C" char* getenv(const char* name) noexcept {
  if (g_faults.watch_mutex && std::strcmp(name, "LANG") == 0) {
    ++g_faults.hits;
    g_faults.held_for_language = IsMutexHeld();
  }
  const size_t length = std::strlen(name);
  for (char** entry = environ; entry != nullptr && *entry != nullptr; ++entry) {
    if (std::strncmp(*entry, name, length) == 0 && (*entry)[length] == '=') {
      return *entry + length + 1;
    }
  }
  return nullptr;
}

extern "C" int getpwuid_r(uid_t user, passwd* entry, char* texts, size_t capacity, passwd** found) {
  g_faults.looked_up_user = user;
  if (g_faults.entry == Entry::kReal) {
    return Real<int(uid_t, passwd*, char*, size_t, passwd**)>("getpwuid_r")(user, entry, texts,
                                                                            capacity, found);
  }
  ++g_faults.hits;
  *found = nullptr;
  if (g_faults.entry == Entry::kNone) return 0;
  if (g_faults.entry == Entry::kFailure) return EIO;
  return EntryOfMadeUpUser(entry, texts, capacity, found);
}

namespace {

namespace sysprops = quenty_com::pelu::sysprops;
using sysprops::ISysProps;

class SyspropsFaults : public ::testing::Test {
 protected:
  void SetUp() override { g_faults = Faults(); }
  void TearDown() override { g_faults = Faults(); }

  sysprops::MiscInformation Misc() {
    sysprops::MiscInformation misc;
    EXPECT_EQ(properties_.GetMiscInformation(misc), 1);
    return misc;
  }

  ISysProps properties_;
};

TEST_F(SyspropsFaults, ComputerNameIsLeftAloneWithoutNodeNames) {
  g_faults.uname_fails = true;
  std::string name = "old";
  EXPECT_EQ(sysprops::getComputerName(name), 0);
  EXPECT_EQ(name, "old");
  EXPECT_EQ(g_faults.hits, 1);
}

TEST_F(SyspropsFaults, ComputerNameIsLeftAloneWithoutMemory) {
  const std::string node_name(40, 'n');
  g_faults.node_name = node_name.c_str();
  std::string name = "old";
  zebcomn_test::FailThrowingAllocation(1);
  const int result = sysprops::getComputerName(name);
  zebcomn_test::FailThrowingAllocation(0);
  EXPECT_EQ(zebcomn_test::TakeFailedAllocations(), 1);
  EXPECT_EQ(result, 0);
  EXPECT_EQ(name, "old");
  EXPECT_EQ(sysprops::getComputerName(name), 1);
  EXPECT_EQ(name, node_name);
}

TEST_F(SyspropsFaults, ComputerNamePropertyIsNotAvailableWithoutNodeNames) {
  g_faults.uname_fails = true;
  sysprops::NetworkInformation network;
  network.m_wstrComputerName = L"old";
  properties_.GetNetworkInformation(network);
  EXPECT_EQ(network.m_wstrComputerName, L"N/A");
  EXPECT_GE(g_faults.hits, 1);
}

TEST_F(SyspropsFaults, WithoutInterfacesTheNamesAreWrittenAndTheAddressFieldsAreNot) {
  g_faults.interfaces_fail = true;
  sysprops::NetworkInformation network;
  network.m_wstrDomainName = network.m_wstrComputerName = network.m_wstrIPHostName = L"old";
  network.m_wstrIPXAddress = network.m_wstrIPAddress = network.m_wstrNETAddress = L"old";
  network.m_wstrSubnetAddress = network.m_wstrSubnetMask = L"old";
  EXPECT_EQ(properties_.GetNetworkInformation(network), 0);
  EXPECT_GE(g_faults.hits, 1);
  EXPECT_NE(network.m_wstrComputerName, L"old");
  EXPECT_NE(network.m_wstrDomainName, L"old");
  EXPECT_NE(network.m_wstrIPHostName, L"old");
  EXPECT_EQ(network.m_wstrIPXAddress, L"N/A");
  for (const std::wstring* field : {&network.m_wstrIPAddress, &network.m_wstrNETAddress,
                                    &network.m_wstrSubnetAddress, &network.m_wstrSubnetMask}) {
    EXPECT_EQ(*field, L"old");
  }
}

TEST_F(SyspropsFaults, FailingCollectorDoesNotFailTheAggregation) {
  g_faults.interfaces_fail = true;
  sysprops::PropertyMap props;
  EXPECT_EQ(properties_.GetAllSystemProperties(props), 1);
  EXPECT_EQ(props[L"IPAddress"], L"N/A");
  EXPECT_EQ(props[L"OSType"], L"Linux");
}

TEST_F(SyspropsFaults, UserWithoutPasswordEntryIsRoot) {
  for (const Entry entry : {Entry::kNone, Entry::kFailure, Entry::kEndless}) {
    g_faults.entry = entry;
    EXPECT_EQ(Misc().m_wstrUserName, L"root");
  }
  EXPECT_GE(g_faults.hits, 3);
}

TEST_F(SyspropsFaults, LongPasswordEntryIsRead) {
  g_faults.entry = Entry::kLong;
  EXPECT_EQ(Misc().m_wstrUserName, L"madeup");
  EXPECT_GT(g_faults.hits, 1);
}

TEST_F(SyspropsFaults, UserNameIsThatOfTheRealUser) {
  const passwd* entry = getpwuid(getuid());
  const std::string expected = entry == nullptr ? "root" : entry->pw_name;
  EXPECT_EQ(Misc().m_wstrUserName, sysprops::sysprops_ansi_to_wide(expected));
}

TEST_F(SyspropsFaults, TheRealUserIsLookedUpWhateverTheEffectiveOne) {
  g_faults.entry = Entry::kNone;
  g_faults.real_user = 4711;
  Misc();
  EXPECT_EQ(g_faults.looked_up_user, 4711u);
  EXPECT_GE(g_faults.hits, 2);
}

TEST_F(SyspropsFaults, LastUpdateIsTheLocalTimeOfTheCollection) {
  const std::string seen = zebcomn_test::RunInFreshProcess([this] {
    setenv("TZ", "XYZ-2", 1);
    tzset();
    g_faults.now = 1709615289;  // 2024-03-05 05:08:09 UTC
    return sysprops::sysprops_wide_to_ansi(Misc().m_wstrLastUpdate);
  });
  EXPECT_EQ(seen, "03/05/2024 07:08:09");
}

TEST_F(SyspropsFaults, LastUpdateStaysWhenTheTimeHasNoLocalForm) {
  g_faults.localtime_fails = true;
  sysprops::MiscInformation misc;
  misc.m_wstrLastUpdate = L"old";
  EXPECT_EQ(properties_.GetMiscInformation(misc), 1);
  EXPECT_EQ(misc.m_wstrLastUpdate, L"old");
  EXPECT_EQ(Misc().m_wstrLastUpdate, L"N/A");
  EXPECT_EQ(g_faults.hits, 2);
}

TEST_F(SyspropsFaults, TimeZoneIsTheOneThatWasSetUp) {
  const std::string seen = zebcomn_test::RunInFreshProcess([this] {
    setenv("TZ", "ABC3DEF", 1);
    tzset();
    setenv("TZ", "QRS4", 1);
    return sysprops::sysprops_wide_to_ansi(Misc().m_wstrTimeZone);
  });
  EXPECT_EQ(seen, "ABC");
}

TEST_F(SyspropsFaults, TimeZoneIsUnknownWhenThereIsNone) {
  const std::string seen = zebcomn_test::RunInFreshProcess([this] {
    tzname[0] = nullptr;
    return sysprops::sysprops_wide_to_ansi(Misc().m_wstrTimeZone);
  });
  EXPECT_EQ(seen, "Unknown");
}

TEST_F(SyspropsFaults, LanguageComesFromTheEnvironment) {
  const std::pair<const char*, const char*> kCases[] = {
      {"en_UK.UTF-8", "0809"}, {"en_GB.UTF-8", "0409"}, {"ja_JP.eucJP", "0411"},
      {"ja_JP:en_UK", "0809"}, {nullptr, "0409"},       {"", "0409"}};
  for (const auto& [lang, id] : kCases) {
    const std::string seen = zebcomn_test::RunInFreshProcess([this, lang = lang] {
      lang == nullptr ? unsetenv("LANG") : setenv("LANG", lang, 1);
      return sysprops::sysprops_wide_to_ansi(Misc().m_wstrDefaultLangID);
    });
    EXPECT_EQ(seen, id) << (lang == nullptr ? "unset" : lang);
  }
}

TEST_F(SyspropsFaults, TheEnvironmentIsReadWhereNoZoneChangeCanRewriteIt) {
  g_faults.watch_mutex = true;
  Misc();
  EXPECT_EQ(g_faults.hits, 2);
  EXPECT_TRUE(g_faults.held_for_language);
  EXPECT_FALSE(IsMutexHeld()) << "it is given back";
}

// Breaking time down takes the zone's name away for a moment.
TEST_F(SyspropsFaults, TimeIsBrokenDownWhereNobodyReadsTheZonesName) {
  g_faults.watch_mutex = true;
  for (const bool fails : {false, true}) {
    g_faults.localtime_fails = fails;
    g_faults.held_for_time = false;
    Misc();
    EXPECT_TRUE(g_faults.held_for_time);
    EXPECT_FALSE(IsMutexHeld()) << "it is given back";
  }
}

TEST_F(SyspropsFaults, ConversionWithoutMemoryGivesEmptyText) {
  const std::string narrow = "some text";
  const std::wstring wide = L"some text";
  for (int nth = 1; nth <= 3; ++nth) {
    zebcomn_test::FailNothrowAllocation(nth);
    const std::wstring to_wide = sysprops::sysprops_ansi_to_wide(narrow);
    zebcomn_test::FailNothrowAllocation(nth);
    const std::string to_narrow = sysprops::sysprops_wide_to_ansi(wide);
    zebcomn_test::FailNothrowAllocation(0);
    EXPECT_EQ(zebcomn_test::TakeFailedAllocations(), 2) << nth;
    EXPECT_EQ(to_wide, L"") << nth;
    EXPECT_EQ(to_narrow, "") << nth;
  }
  EXPECT_EQ(sysprops::sysprops_ansi_to_wide(narrow), wide);
}

TEST_F(SyspropsFaults, MapsAreEmptiedOnlyAfterTheCollection) {
  const sysprops::PropertyMap old = {{L"old", L"1"}};
  const sysprops::FileSystemMap old_systems = {{L"/old", {L"1", L"2"}}};
  for (const bool with_systems : {false, true}) {
    sysprops::PropertyMap props = old;
    sysprops::FileSystemMap systems = old_systems;
    bool threw = false;
    for (int nth = 1; nth < 100 && !threw; ++nth) {
      zebcomn_test::FailThrowingAllocation(nth);
      try {
        with_systems ? properties_.GetAllSystemProperties(props, systems)
                     : properties_.GetAllSystemProperties(props);
        props = old;
        systems = old_systems;
      } catch (const std::bad_alloc&) {
        threw = true;
      }
      zebcomn_test::FailThrowingAllocation(0);
    }
    EXPECT_TRUE(threw);
    EXPECT_EQ(props, old);
    EXPECT_EQ(systems, old_systems);
  }
  zebcomn_test::TakeFailedAllocations();
}

// Whichever allocation fails, the collection either still returns or throws std::bad_alloc, keeps
// nothing open, and the object stays usable.
TEST_F(SyspropsFaults, CollectionWithoutMemoryKeepsNothingOpen) {
  sysprops::PropertyMap props;
  sysprops::FileSystemMap file_systems;
  properties_.GetAllSystemProperties(props, file_systems);
  const int before = zebcomn_test::OpenDescriptorCount();
  int threw = 0;
  bool nothing_failed = false;
  for (int nth = 1; nth < 3000 && !nothing_failed; ++nth) {
    zebcomn_test::TakeFailedAllocations();
    zebcomn_test::FailThrowingAllocation(nth);
    try {
      ISysProps fresh;
      sysprops::PropertyMap some;
      fresh.GetAllSystemProperties(some);
    } catch (const std::bad_alloc&) {
      ++threw;
    }
    zebcomn_test::FailThrowingAllocation(0);
    nothing_failed = zebcomn_test::TakeFailedAllocations() == 0;
  }
  EXPECT_GT(threw, 0);
  EXPECT_TRUE(nothing_failed) << "every allocation of a collection was tried";
  EXPECT_EQ(zebcomn_test::OpenDescriptorCount(), before);
  EXPECT_EQ(properties_.GetAllSystemProperties(props, file_systems), 1);
  EXPECT_EQ(props.size(), 30u);
}

}  // namespace
