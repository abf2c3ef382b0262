// Loads, frees and looks of several threads at once.
#include <gtest/gtest.h>

#include <atomic>
#include <cwchar>
#include <string>
#include <thread>
#include <vector>

#include "tests/portable/module_fixture.h"
#include "tests/support/expected_leak.h"
#include "zebcomn/portable/dynamic_library.h"

namespace {

using zebcomn_test::DllMainCall;
using zebcomn_test::DllMainCalls;
using zebcomn_test::ExpectedLeak;

class DynamicLibraryConcurrencyTest : public zebcomn_test::ModuleTest {};

// A handle that is unknown is looked for without the table's lock, while other threads free what
// they have loaded.
TEST_F(DynamicLibraryConcurrencyTest, ConcurrentLoadsFreesAndLooksLeaveNothing) {
  constexpr int kThreads = 4;
  constexpr int kRounds = 100;
  const std::string shared = ObservedModule("shared.so");
  std::vector<std::string> own;
  for (int i = 0; i < kThreads; ++i) own.push_back(PlainModule("own" + std::to_string(i) + ".so"));
  std::atomic<int> wrong{0};
  std::atomic<bool> stop{false};
  std::thread looker([&stop, &wrong] {
    int unknown = 0;
    while (!stop) {
      if (tivDisableThreadLibraryCalls(&unknown) != FALSE) ++wrong;
      if (tivFreeLibrary(&unknown) != FALSE) ++wrong;
    }
  });
  std::vector<std::thread> threads;
  for (const std::string& path : own) {
    threads.emplace_back([&shared, &path, &wrong] {
      for (int round = 0; round < kRounds; ++round) {
        void* first = tivLoadLibrary(shared.c_str(), nullptr);
        void* second = tivLoadLibrary(path.c_str(), nullptr);
        const bool right = first != nullptr && second != nullptr &&
                           tivDisableThreadLibraryCalls(second) == TRUE &&
                           tivGetProcAddress(second, "answer", nullptr) != nullptr &&
                           tivFreeLibrary(second) == TRUE && tivFreeLibrary(first) == TRUE;
        if (!right) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  stop = true;
  looker.join();
  EXPECT_EQ(wrong.load(), 0);
  EXPECT_FALSE(IsLoaded(shared));
  int attached = 0;
  for (const DllMainCall& call : DllMainCalls()) attached += call.reason == 1 ? 1 : -1;
  EXPECT_EQ(attached, 0) << "as many unloads as loads";
}

TEST_F(DynamicLibraryConcurrencyTest, ConcurrentFailuresKeepTheirMessagesTerminated) {
  constexpr int kThreads = 4;
  std::vector<std::thread> threads;
  std::atomic<int> wrong{0};
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([i, &wrong] {
      // A failed load leaves its record behind.
      const ExpectedLeak record;
      const std::wstring name = L"/absent" + std::wstring(static_cast<size_t>(i) * 200, L'n');
      for (int round = 0; round < 50; ++round) {
        const wchar_t* message = nullptr;
        if (tivLoadLibraryW(name.c_str(), &message) != nullptr) ++wrong;
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(wrong.load(), 0);
  const ExpectedLeak record;
  const wchar_t* message = nullptr;
  EXPECT_EQ(tivLoadLibraryW(L"/absent.so", &message), nullptr);
  EXPECT_LT(std::wcslen(message), 512u);
}

}  // namespace
