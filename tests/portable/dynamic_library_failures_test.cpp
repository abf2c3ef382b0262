// What loading and freeing leave behind when a call underneath fails.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <malloc.h>
#include <pthread.h>

#include <cerrno>
#include <functional>
#include <string>
#include <utility>

#include "tests/portable/module_fixture.h"
#include "tests/portable/tables_in_use.h"
#include "tests/support/error_slot.h"
#include "tests/support/expected_leak.h"
#include "tests/support/failing_call.h"
#include "tests/support/next_function.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/global_mutexes.h"
#include "zebcomn/util/text_conversion.h"

namespace {

/// Runs once, right before the table's lock is next taken.
std::function<void()> before_table_lock;

}  // namespace

extern "C" int pthread_mutex_lock(pthread_mutex_t* mutex) noexcept {
  static auto* const next = zebcomn_test::NextFunction<int(pthread_mutex_t*)>("pthread_mutex_lock");
  if (mutex != &MutexDynamicLibraryList) return next(mutex);
  if (zebcomn_test::IsToFail("table lock")) return EDEADLK;
  if (before_table_lock) std::exchange(before_table_lock, nullptr)();
  return next(mutex);
}

namespace {

using zebcomn_test::ClearErrorSlot;
using zebcomn_test::DllMainCalls;
using zebcomn_test::ExpectedLeak;
using zebcomn_test::FailingCall;
using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::LibrariesInTable;

class DynamicLibraryFailuresTest : public zebcomn_test::ModuleTest {};

TEST_F(DynamicLibraryFailuresTest, LockThatCannotBeHadRefusesTheLoadWith16) {
  const std::string path = ObservedModule();
  const FailingCall failing("table lock");
  const char* message = nullptr;
  EXPECT_EQ(tivLoadLibrary(path.c_str(), &message), nullptr);
  EXPECT_TRUE(failing.Happened());
  EXPECT_STREQ(message, "locked");
  EXPECT_EQ(nErrno, EBUSY);
  EXPECT_FALSE(IsLoaded(path));
}

TEST_F(DynamicLibraryFailuresTest, LockThatCannotBeHadGivesTheWideMessage) {
  const FailingCall failing("table lock");
  const wchar_t* message = nullptr;
  EXPECT_EQ(tivLoadLibraryW(L"any", &message), nullptr);
  EXPECT_TRUE(failing.Happened());
  EXPECT_STREQ(message, L"locked");
  EXPECT_EQ(nErrno, EBUSY);
}

TEST_F(DynamicLibraryFailuresTest, LockThatCannotBeHadRefusesTheFreeWith16) {
  void* module = tivLoadLibrary(ObservedModule().c_str(), nullptr);
  {
    const FailingCall failing("table lock");
    EXPECT_EQ(tivFreeLibrary(module), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(nErrno, EBUSY);
  EXPECT_EQ(pDynamicLibraryList[0]->reference_count, 1);
  EXPECT_EQ(DllMainCalls().size(), 1u);
  EXPECT_EQ(tivFreeLibrary(module), TRUE);
}

TEST_F(DynamicLibraryFailuresTest, UnknownHandleIsRefusedBeforeTheLockIsTried) {
  int unknown = 0;
  const FailingCall failing("table lock");
  EXPECT_EQ(tivFreeLibrary(&unknown), FALSE);
  EXPECT_FALSE(failing.Happened());
  EXPECT_EQ(nErrno, EINVAL);
}

TEST_F(DynamicLibraryFailuresTest, LibraryFreedBetweenTheLookAndTheLockIsRefusedWith22) {
  const std::string path = ObservedModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  BOOL first = FALSE;
  before_table_lock = [&first, module] { first = tivFreeLibrary(module); };
  EXPECT_EQ(tivFreeLibrary(module), FALSE);
  EXPECT_EQ(first, TRUE);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(DllMainCalls().size(), 2u) << "the module is told of one unload";
}

TEST_F(DynamicLibraryFailuresTest, NoMemoryForTheRecordIsReportedByMessageAlone) {
  const std::string path = ObservedModule();
  const char* message = nullptr;
  const FailingCall failing("malloc", 1, ENOMEM);
  EXPECT_EQ(tivLoadLibrary(path.c_str(), &message), nullptr);
  EXPECT_TRUE(failing.Happened());
  EXPECT_STREQ(message, "out of memory");
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_FALSE(IsLoaded(path));
}

TEST_F(DynamicLibraryFailuresTest, LoaderThatFailsWithoutATextGivesNoMessage) {
  const std::string path = ObservedModule();
  dlerror();
  // A failed load leaves its record behind.
  const ExpectedLeak record;
  const FailingCall failing("dlopen");
  const char* message = nullptr;
  EXPECT_EQ(tivLoadLibrary(path.c_str(), &message), nullptr);
  EXPECT_TRUE(failing.Happened());
  EXPECT_STREQ(message, "");
  EXPECT_EQ(LibrariesInTable(), 0);
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

TEST_F(DynamicLibraryFailuresTest, RecordOfAFailedLoadIsNeverFreed) {
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZEBCOMN_UNDER_VALGRIND)
  GTEST_SKIP() << "the allocator of a sanitizer or of valgrind does not count";
#else
  const std::string path = scratch_ / "absent.so";
  constexpr size_t kLoads = 100;
  tivLoadLibrary(path.c_str(), nullptr);
  const size_t before = mallinfo2().uordblks;
  for (size_t i = 0; i < kLoads; ++i) EXPECT_EQ(tivLoadLibrary(path.c_str(), nullptr), nullptr);
  EXPECT_GE(mallinfo2().uordblks - before, kLoads * sizeof(TivLibraryRecord));
  EXPECT_EQ(LibrariesInTable(), 0);
#endif
}

TEST_F(DynamicLibraryFailuresTest, LibraryThatDoesNotUnloadIsFreedFromTheTableAllTheSame) {
  const std::string path = ObservedModule();
  void* module = tivLoadLibrary(path.c_str(), nullptr);
  {
    const FailingCall failing("dlclose");
    EXPECT_EQ(tivFreeLibrary(module), FALSE);
    EXPECT_TRUE(failing.Happened());
  }
  EXPECT_EQ(nErrno, kErrorLeftAlone);
  EXPECT_EQ(LibrariesInTable(), 0);
  EXPECT_EQ(DllMainCalls().size(), 2u);
  EXPECT_EQ(tivFreeLibrary(module), FALSE);
  EXPECT_EQ(nErrno, EINVAL);
  dlclose(module);
}

TEST_F(DynamicLibraryFailuresTest, NoMemoryInAWideLoadGivesNullOrTheLibrary) {
  // A load that fails in the loader leaves its record behind, and the loader what it had begun.
  const ExpectedLeak record;
  const std::string path = PlainModule();
  const std::wstring name = quenty_com::pelu::tivmcomn_ansi_to_wide(path);
  // The C library remembers for good that it had no memory when it first looked for a converter.
  ASSERT_EQ(quenty_com::pelu::tivmcomn_wide_to_ansi(name), path);
  int failures = 0;
  bool succeeded = false;
  for (int nth = 1; nth <= 60 && !succeeded; ++nth) {
    const wchar_t* message = nullptr;
    void* module = nullptr;
    {
      const FailingCall failing("malloc", nth, ENOMEM);
      module = tivLoadLibraryW(name.c_str(), &message);
      succeeded = !failing.Happened();
    }
    failures += module == nullptr ? 1 : 0;
    if (module != nullptr) {
      EXPECT_EQ(reinterpret_cast<int32_t (*)()>(tivGetProcAddress(module, "answer", nullptr))(), 17)
          << "what is loaded is the named library";
      EXPECT_EQ(tivFreeLibrary(module), TRUE);
    }
    EXPECT_EQ(LibrariesInTable(), 0) << nth;
  }
  EXPECT_TRUE(succeeded);
  EXPECT_GE(failures, 2) << "the name's conversion and the record";
  EXPECT_EQ(nErrno, kErrorLeftAlone);
}

}  // namespace
