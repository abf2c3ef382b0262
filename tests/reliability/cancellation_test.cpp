// A thread is cancelled in the library: before a call of it, and before each call of the C library
// that it makes. The process goes on, no lock is left behind, no descriptor is lost.
//
// A cancellation that acts in a destructor, or in a function that cannot be unwound, ends the
// process. Each place is tried in a process of its own.
//
// The address sanitizer takes the frames that a cancellation has left for live ones, unless it
// keeps them elsewhere: it wants detect_stack_use_after_return=1, which ctest sets.
#include <gtest/gtest.h>
#include <netdb.h>
#include <pthread.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <vector>

#include "tests/support/call_plan.h"
#include "tests/support/command.h"
#include "tests/support/descriptors.h"
#include "tests/support/fresh_process.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/network/netinterface.h"
#include "zebcomn/network/netinterface_linux.h"
#include "zebcomn/network/network_util.h"
#include "zebcomn/portable/directory_search.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/file.h"
#include "zebcomn/portable/guid.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/named_file.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/tls.h"
#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/util/file_copy.h"
#include "zebcomn/util/filenameresolver.h"
#include "zebcomn/util/plugin_version.h"
#include "zebcomn/util/time_zone.h"
#include "zebcomn/util/uptime.h"

/// What an observed module's "DllMain" does.
extern "C" ZEBCOMN_EXPORT int32_t observe_dll_main(void* /*module*/, uint32_t /*reason*/,
                                                   void* /*reserved*/) {
  pthread_testcancel();
  return TRUE;
}

extern "C" ZEBCOMN_EXPORT int32_t observe_load_string(void* /*module*/, uint32_t /*id*/,
                                                      char* /*buffer*/, int32_t /*size*/) {
  return 0;
}

namespace {

using zebcomn_test::CallPlan;
using zebcomn_test::ScratchDir;

using Use = void (*)();

/// Where files are made; the children of the test share it.
const ScratchDir& Folder() {
  static const ScratchDir folder;
  return folder;
}

void CancelSelf() {
  pthread_cancel(pthread_self());
}

/// One thread's run of a use.
struct Run {
  Use use;
  CallPlan plan;
  bool cancelled_before;
};

void* RunThread(void* argument) {
  auto* run = static_cast<Run*>(argument);
  if (run->cancelled_before) CancelSelf();
  zebcomn_test::ArmCalls(&run->plan);
  run->use();
  zebcomn_test::DisarmCalls();
  return nullptr;
}

/// Runs a use in a thread to its end, however that comes. The cancellation is asked for before the
/// `call`th call, before all of them (0), or never (-1). \return how many calls there were.
long RunInThread(Use use, long call) {
  Run run = {use, {}, call == 0};
  run.plan.failing_call = call;
  run.plan.instead = CancelSelf;
  pthread_t thread = 0;
  if (pthread_create(&thread, nullptr, RunThread, &run) != 0) throw std::runtime_error("no thread");
  pthread_join(thread, nullptr);
  return run.plan.calls;
}

/// Tries one place, in a child process. \return the number of calls, or what is wrong.
std::string TryPlace(Use use, long call) {
  constexpr unsigned kPatienceSeconds = 30;
  alarm(kPatienceSeconds);
  // The C library loads what it needs for a cancellation at the first one.
  RunInThread([] { pthread_testcancel(); }, 0);
  const int descriptors = zebcomn_test::OpenDescriptorCount();
  const long calls = RunInThread(use, call);
  if (zebcomn_test::OpenDescriptorCount() != descriptors) return "a descriptor is lost";
  RunInThread(use, -1);
  return std::to_string(calls);
}

std::string TryInProcess(Use use, long call) {
  try {
    return zebcomn_test::RunInFreshProcess([=] { return TryPlace(use, call); });
  } catch (const std::runtime_error& error) {
    return error.what();
  }
}

bool IsNumber(const std::string& text) {
  return text.find_first_not_of("0123456789") == std::string::npos;
}

void TryEveryPlace(Use use) {
  if (zebcomn_test::IsEmulated()) GTEST_SKIP() << "the emulator aborts in a cancelled thread";
  const std::string calls = TryInProcess(use, -1);
  ASSERT_TRUE(IsNumber(calls)) << calls;
  testing::Test::RecordProperty("places", std::stoi(calls) + 1);
  for (long call = 0; call <= std::stol(calls); ++call) {
    const std::string answer = TryInProcess(use, call);
    EXPECT_TRUE(IsNumber(answer)) << "call " << call << " of " << calls << ": " << answer;
  }
}

TEST(Cancellation, Guid) {
  TryEveryPlace([] {
    uint8_t guid[16];
    tivCoCreateGuid(guid);
  });
}

TEST(Cancellation, HardwareAddress) {
  TryEveryPlace([] {
    std::string text;
    getMacAddress(AF_INET, "lo", text);
  });
}

TEST(Cancellation, Interfaces) {
  TryEveryPlace([] { NetInterfaceList(true).initialize(); });
}

TEST(Cancellation, Scope) {
  TryEveryPlace([] {
    unsigned int scope = 0;
    ANetworkUtil().zebGetScopeId("fe80::1", scope);
  });
}

TEST(Cancellation, LocalAddress) {
  TryEveryPlace([] {
    std::string local;
    ANetworkUtil().zebGetLocalIPAddress("127.0.0.1", "1", local, true, NI_NUMERICHOST);
  });
}

TEST(Cancellation, Resolver) {
  TryEveryPlace([] {
    ANetworkUtil resolver;
    std::vector<char*> addresses;
    resolver.zebGetAddrinfo("127.0.0.1", "80", addresses, NI_NUMERICHOST);
    resolver.zebFreeAddrinfo(addresses);
  });
}

// Without the user's name: the C library loses a descriptor of its own where it looks for a service
// that knows it.
TEST(Cancellation, SystemFiles) {
  TryEveryPlace([] {
    quenty_com::pelu::sysprops::ISysProps properties;
    properties.GetOneSystemProperty(L"CPUType");
    properties.GetOneSystemProperty(L"OSVersion");
    properties.GetOneSystemProperty(L"TotalDiskSpace");
    quenty_com::pelu::tivmcomn_get_system_uptime();
  });
}

TEST(Cancellation, TimeZone) {
  TryEveryPlace([] {
    std::wstring zone;
    quenty_com::pelu::zebcomn_gettimezone(zone);
    std::tm time{};
    quenty_com::pelu::zebcomn_timegm(&time);
  });
}

TEST(Cancellation, FileHandle) {
  static const std::string path = Folder() / "handle";
  TryEveryPlace([] {
    HANDLE file = tivCreateFileAW(path.c_str(), TIV_ACCESS_READ_WRITE, 0, nullptr, TIV_OPEN_ALWAYS,
                                  TIV_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != nullptr) tivCloseHandle(file);
  });
}

TEST(Cancellation, DirectorySearch) {
  static const std::string pattern = Folder() / "*";
  TryEveryPlace([] {
    TivFindData entry = {};
    const int32_t search = tivFindFirstDirEnt(pattern.c_str(), &entry);
    while (tivFindNextDirEnt(search, &entry) == TRUE) {
    }
    tivFindCloseDirEnt(search);
  });
}

TEST(Cancellation, TemporaryFile) {
  static const std::string directory = Folder().path();
  TryEveryPlace([] {
    std::array<char, 300> name;
    tivGetTempFileName(directory.c_str(), "t", 0, name.data());
  });
}

TEST(Cancellation, CopiedFile) {
  static const std::string source = Folder().Write("source", "text");
  static const std::string destination = Folder() / "destination";
  TryEveryPlace([] {
    std::string from = source;
    std::string to = destination;
    tivmcomn_copy_file(from.data(), to.data(), 1);
  });
}

TEST(Cancellation, ResolvedPath) {
  static const std::string file = Folder().Write("file", "text");
  TryEveryPlace([] {
    void* resolver = nullptr;
    tivmcomn_filenameresolver_create(file.c_str(), &resolver);
    tivmcomn_filenameresolver_destroy(resolver);
  });
}

// No load that was cut short has left an entry taken.
TEST(Cancellation, LoadedLibrary) {
  TryEveryPlace([] {
    if (pDynamicLibraryList[0] != nullptr) std::abort();
    void* module = tivLoadLibrary(ZEBCOMN_OBSERVED_MODULE, nullptr);
    if (module != nullptr) tivFreeLibrary(module);
  });
}

TEST(Cancellation, PluginVersion) {
  TryEveryPlace([] {
    std::string path = ZEBCOMN_OBSERVED_MODULE;
    std::array<char, 17> stamp;
    tivmcomn_GetFileResourceVersionStamp(path.data(), stamp.data(), stamp.size());
  });
}

TEST(Cancellation, ThreadsAndSlots) {
  TryEveryPlace([] {
    DWORD slot = tivTlsAlloc();
    tivTlsSetValue(slot, &slot);
    tivTlsFree(slot);
    HANDLE thread = tivCreateThread(
        nullptr, 0, [](void*) -> DWORD { return 0; }, nullptr, 0, nullptr);
    if (thread != nullptr) tivCloseHandle(thread);
  });
}

// The callback accepts, so that the client is registered no more, whatever has been cancelled.
TEST(Cancellation, ReleaseThatTellsAClient) {
  TryEveryPlace([] {
    static tiSO_SELock_t* const lock = [] {
      tiSO_SELock_t* made = nullptr;
      tiSO_ProcessAttach();
      tiSO_SELockCreate(&made);
      return made;
    }();
    const auto accept = [](uintptr_t, uint32_t, uintptr_t, uint32_t) -> uint32_t {
      pthread_testcancel();
      return 0;
    };
    tiSO_ThreadAttach();
    // Shared, so that the notification is registered.
    if (tiSO_SELockSharedWaitForExclusive(lock, 0) == 0) std::abort();
    tiSO_SELockExclusiveNotify(lock, accept, 0, 0);
    tiSO_SELockRelease(lock);
    if (lock->count != 0 || lock->notify_list.next != nullptr) std::abort();
    tiSO_ThreadDetach();
  });
}

}  // namespace
