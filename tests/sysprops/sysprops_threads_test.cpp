// Collectors on separate objects may run at once.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "zebcomn/sysprops/sysprops.h"
#include "zebcomn/sysprops/sysprops_api.h"

namespace sysprops = quenty_com::pelu::sysprops;

namespace {

constexpr int kThreads = 4;
constexpr int kRounds = 5;

/// Starts every thread's work at the same time.
void RunAtOnce(const std::function<void()>& work) {
  std::atomic<int> waiting{kThreads};
  std::vector<std::thread> threads;
  for (int i = 0; i < kThreads; ++i) {
    threads.emplace_back([&] {
      --waiting;
      while (waiting > 0) std::this_thread::yield();
      work();
    });
  }
  for (std::thread& thread : threads) thread.join();
}

TEST(SyspropsThreads, SeparateObjectsCollectAtOnce) {
  std::atomic<int> complete{0};
  RunAtOnce([&] {
    sysprops::ISysProps properties;
    sysprops::PropertyMap props;
    sysprops::FileSystemMap file_systems;
    for (int round = 0; round < kRounds; ++round) {
      properties.GetAllSystemProperties(props, file_systems);
      if (props.size() == 30 && !props[L"UserName"].empty()) ++complete;
    }
  });
  EXPECT_EQ(complete, kThreads * kRounds);
}

TEST(SyspropsThreads, FlatCallsRunAtOnce) {
  const std::wstring total = tivmcomn_get_total_memory();
  const std::wstring user = tivmcomn_get_user_name();
  std::atomic<int> same{0};
  RunAtOnce([&] {
    for (int round = 0; round < kRounds; ++round) {
      tivmcomn_get_fqdn_address();
      tivmcomn_get_total_disk_space();
      if (tivmcomn_get_total_memory() == total && tivmcomn_get_user_name() == user) ++same;
    }
  });
  EXPECT_EQ(same, kThreads * kRounds);
}

}  // namespace
