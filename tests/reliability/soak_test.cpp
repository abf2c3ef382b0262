// Load: the same work over and over, and nothing may pile up. Each load is done in ten parts;
// memory and descriptors are read after each of them, and must be flat from the first to the last.
//
// Flat means, for each of the nine later readings against the first one:
//   - no descriptor more;
//   - bytes in use in the heap, as the C library counts them: kHeapSlack more, for the small blocks
//     that it keeps at hand, and for those of threads that have ended and whose stacks it keeps. A
//     block lost in each cycle is more than that in the short form already;
//   - resident memory: kResidentSlack KiB more, a few pages of the same.
// A thread whose handle is signalled may still be on its way out, so a reading is repeated for a
// while until it is flat.
//
// ZEBCOMN_SOAK=full runs the whole loads, in place of the hundredth part (scripts/soak).
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include "tests/portable/owned_handle.h"
#include "tests/support/command.h"
#include "tests/support/descriptors.h"
#include "tests/support/scratch_dir.h"
#include "zebcomn/lists/se_lock.h"
#include "zebcomn/lists/thread_attach.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/sysprops/sysprops.h"

namespace {

using zebcomn_test::NewEvent;
using zebcomn_test::NewThread;
using zebcomn_test::WaitForEver;

constexpr int kParts = 10;
constexpr size_t kHeapSlack = 4096;
constexpr long kResidentSlack = 128;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || defined(ZEBCOMN_UNDER_VALGRIND)
constexpr bool kUnderChecker = true;
#else
constexpr bool kUnderChecker = false;
#endif

struct Usage {
  int descriptors;
  size_t heap;
  long resident;  // In KiB.
};

Usage ReadUsage() {
  long pages = 0;
  std::ifstream("/proc/self/statm") >> pages >> pages;
  return {zebcomn_test::OpenDescriptorCount(), kUnderChecker ? 0 : mallinfo2().uordblks,
          pages * (sysconf(_SC_PAGESIZE) / 1024)};
}

// An emulator's own memory is not the program's.
bool ResidentIsOurs() {
  return !kUnderChecker && zebcomn_test::EmulatorWords().empty();
}

bool IsFlat(const Usage& now, const Usage& first) {
  return now.descriptors <= first.descriptors && now.heap <= first.heap + kHeapSlack &&
         (!ResidentIsOurs() || now.resident <= first.resident + kResidentSlack);
}

// The usage when everything that is on its way out is gone.
Usage SettledUsage(const Usage& first) {
  constexpr int kLooks = 500;
  constexpr timespec kPause{0, 2'000'000};
  Usage usage = ReadUsage();
  for (int look = 0; look < kLooks && !IsFlat(usage, first); ++look) {
    nanosleep(&kPause, nullptr);
    usage = ReadUsage();
  }
  return usage;
}

class Soak : public ::testing::Test {
 protected:
  // One heap for all threads: each further one would count as in use with its own bookkeeping.
  static void SetUpTestSuite() { mallopt(M_ARENA_MAX, 1); }

  // `times` in the full form, the hundredth part otherwise; never so few that the C library is
  // still filling its stores of small blocks after the first tenth.
  static int Scaled(int times) {
    constexpr int kLeast = 200;
    const char* form = std::getenv("ZEBCOMN_SOAK");
    return form != nullptr && std::string(form) == "full" ? times : std::max(times / 100, kLeast);
  }

  // Does a load of `times` in ten parts: `part` does the number that it is given.
  template <typename Part>
  void Load(int times, const Part& part) {
    std::array<Usage, kParts> usage{};
    for (size_t i = 0; i < kParts; ++i) {
      part(Scaled(times) / kParts);
      ASSERT_FALSE(HasFailure());
      if (i == 0) {
        const timespec pause{0, 50'000'000};
        nanosleep(&pause, nullptr);
        usage[i] = ReadUsage();
      } else {
        usage[i] = SettledUsage(usage[0]);
      }
    }
    Report(Scaled(times), usage);
    for (const Usage& later : usage) {
      EXPECT_LE(later.descriptors, usage[0].descriptors);
      EXPECT_LE(later.heap, usage[0].heap + kHeapSlack);
      if (ResidentIsOurs()) {
        EXPECT_LE(later.resident, usage[0].resident + kResidentSlack);
      }
    }
    if (kUnderChecker) GTEST_SKIP() << "only descriptors are counted: a checker keeps freed memory";
  }

 private:
  static void Report(int times, const std::array<Usage, kParts>& usage) {
    const auto& name = *::testing::UnitTest::GetInstance()->current_test_info();
    const auto [low, high] =
        std::minmax_element(usage.begin(), usage.end(),
                            [](const Usage& a, const Usage& b) { return a.resident < b.resident; });
    std::printf(
        "soak: %-22s %8d times; from the first tenth to the last: descriptors %d to %d, "
        "heap %zu to %zu B, resident %ld to %ld KiB (%ld to %ld between)\n",
        name.name(), times, usage.front().descriptors, usage.back().descriptors, usage.front().heap,
        usage.back().heap, usage.front().resident, usage.back().resident, low->resident,
        high->resident);
  }
};

TEST_F(Soak, EventCycles) {
  Load(1'000'000, [](int times) {
    for (int i = 0; i < times; ++i) {
      HANDLE event = NewEvent();
      EXPECT_EQ(tivSetEvent(event), TRUE);
      EXPECT_EQ(WaitForEver(event), TIV_WAIT_SIGNALLED);
      EXPECT_EQ(tivResetEvent(event), TRUE);
      EXPECT_EQ(zebcomn_test::Poll(event), TIV_WAIT_TIMEOUT);
      EXPECT_EQ(tivCloseHandle(event), TRUE);
    }
  });
}

DWORD EndAtOnce(void*) {
  return 0;
}

TEST_F(Soak, ThreadsInSequence) {
  Load(100'000, [](int times) {
    for (int i = 0; i < times; ++i) {
      HANDLE thread = NewThread(EndAtOnce, nullptr);
      ASSERT_NE(thread, nullptr);
      EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
      EXPECT_EQ(tivCloseHandle(thread), TRUE);
    }
  });
}

TEST_F(Soak, SixtyFourThreadsAtOnce) {
  Load(2'000, [](int times) {
    for (int i = 0; i < times; ++i) {
      // All of them wait for one event, so all of them are there when it is set.
      HANDLE gate = NewEvent();
      std::array<HANDLE, 64> threads{};
      for (HANDLE& thread : threads) {
        thread = NewThread([](void* event) -> DWORD { return WaitForEver(event); }, gate);
        ASSERT_NE(thread, nullptr);
      }
      EXPECT_EQ(tivSetEvent(gate), TRUE);
      for (HANDLE thread : threads) {
        EXPECT_EQ(WaitForEver(thread), TIV_WAIT_SIGNALLED);
        EXPECT_EQ(tivCloseHandle(thread), TRUE);
      }
      EXPECT_EQ(tivCloseHandle(gate), TRUE);
    }
  });
}

TEST_F(Soak, LockPairsOnEightThreads) {
  constexpr int kThreads = 8;
  ASSERT_NE(tiSO_ProcessAttach(), TIV_INVALID_DWORD);
  tiSO_SELock_t* lock = nullptr;
  ASSERT_EQ(tiSO_SELockCreate(&lock), ZEBCOMN_STATUS_OK);
  int exclusive = 0;  // Guarded by the lock.
  Load(1'000'000, [lock, &exclusive](int times) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread) {
      threads.emplace_back([lock, &exclusive, pairs = times / kThreads] {
        tiSO_ThreadAttach();
        for (int pair = 0; pair < pairs; ++pair) {
          const BOOL writes = pair % 4 == 0 ? TRUE : FALSE;
          EXPECT_EQ(tiSO_SELock(lock, writes, TRUE), 1);
          if (writes == TRUE) ++exclusive;
          tiSO_SELockRelease(lock);
        }
        tiSO_ThreadDetach();
      });
    }
    for (std::thread& thread : threads) thread.join();
  });
  EXPECT_EQ(lock->count, 0U);
  EXPECT_GT(exclusive, 0);
  tiSO_Release(lock);
  EXPECT_EQ(tiSO_ProcessDetach(), TRUE);
}

TEST_F(Soak, LoadsAndFrees) {
  const zebcomn_test::ScratchDir scratch;
  const std::string path = scratch / "module.so";
  std::filesystem::copy_file(ZEBCOMN_PLAIN_MODULE, path);
  Load(10'000, [&path](int times) {
    for (int i = 0; i < times; ++i) {
      void* module = tivLoadLibrary(path.c_str(), nullptr);
      ASSERT_NE(module, nullptr);
      EXPECT_NE(tivGetProcAddress(module, "answer", nullptr), nullptr);
      EXPECT_EQ(tivFreeLibrary(module), TRUE);
    }
  });
}

TEST_F(Soak, FullCatalogues) {
  Load(1'000, [](int times) {
    for (int i = 0; i < times; ++i) {
      quenty_com::pelu::sysprops::ISysProps properties;
      std::map<std::wstring, std::wstring> catalogue;
      properties.GetAllSystemProperties(catalogue);
      EXPECT_EQ(catalogue.count(L"OSType"), 1U);
    }
  });
}

}  // namespace
