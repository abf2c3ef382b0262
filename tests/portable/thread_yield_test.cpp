// The ends of threads against closes, waits and slots, with the processor given away at random
// before and after each step, and with freed memory kept aside and watched: a lock or a broadcast
// in freed memory, a write to it and a second free end the test. Under the address sanitizer it is
// the sanitizer that watches.
#include <gtest/gtest.h>
#include <malloc.h>
#include <sched.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "tests/portable/interposed_calls.h"
#include "tests/portable/thread_end_scenarios.h"

#ifndef ZEBCOMN_SANITIZED
extern "C" void __libc_free(void* block);
#endif

namespace {

using zebcomn_test::Call;
using zebcomn_test::ScaledRounds;

[[noreturn]] void Die(const char* what) {
  std::fprintf(stderr, "thread_yield_test: %s\n", what);
  std::abort();
}

// Blocks that were freed lately, filled with a pattern.
class Quarantine {
 public:
  // Takes a freed block in, and gives the one back that has been here longest.
  void Add(void* block) {
    const Guard guard(&busy_);
    if (Find(block) != nullptr) Die("freed twice");
    Entry& oldest = entries_[next_];
    next_ = (next_ + 1) % entries_.size();
    Release(&oldest);
    oldest = {static_cast<unsigned char*>(block), malloc_usable_size(block)};
    std::memset(block, kPattern, oldest.size);
  }

  void ExpectUsable(const void* object) {
    const Guard guard(&busy_);
    if (Find(object) != nullptr) Die("a lock or a condition in freed memory is used");
  }

  void Empty() {
    const Guard guard(&busy_);
    for (Entry& entry : entries_) Release(&entry);
  }

 private:
  struct Entry {
    unsigned char* start;
    size_t size;
  };
  static constexpr unsigned char kPattern = 0xDB;

  class Guard {
   public:
    explicit Guard(std::atomic_flag* busy) : busy_(busy) {
      while (busy_->test_and_set(std::memory_order_acquire)) sched_yield();
    }
    ~Guard() { busy_->clear(std::memory_order_release); }
    Guard(const Guard&) = delete;
    Guard& operator=(const Guard&) = delete;

   private:
    std::atomic_flag* busy_;
  };

  const Entry* Find(const void* address) const {
    const auto* byte = static_cast<const unsigned char*>(address);
    for (const Entry& entry : entries_) {
      if (byte >= entry.start && byte < entry.start + entry.size) return &entry;
    }
    return nullptr;
  }

  void Release(Entry* entry) {
    for (size_t i = 0; i < entry->size; ++i) {
      if (entry->start[i] != kPattern) Die("freed memory was written to");
    }
#ifndef ZEBCOMN_SANITIZED
    __libc_free(entry->start);
#endif
    *entry = {};
  }

  std::atomic_flag busy_ = ATOMIC_FLAG_INIT;
  size_t next_ = 0;
  std::array<Entry, 512> entries_{};
};

Quarantine g_quarantine;

bool WorksOnAnObject(Call call) {
  return call == Call::kMutexLock || call == Call::kMutexUnlock || call == Call::kCondBroadcast ||
         call == Call::kCondWait || call == Call::kCondTimedwait;
}

void ExpectUsable([[maybe_unused]] const void* object) {
#if defined(__SANITIZE_ADDRESS__)
  // The sanitizer does not look into the C library's own accesses.
  static_cast<void>(*static_cast<const volatile char*>(object));
#elif !defined(ZEBCOMN_SANITIZED)
  g_quarantine.ExpectUsable(object);
#endif
}

// The next of a sequence of numbers that each thread has for itself.
uint32_t Random() {
  static std::atomic<uint32_t> seed{1};
  thread_local uint32_t state = 2654435761u * seed.fetch_add(1, std::memory_order_relaxed);
  state ^= state << 13;
  state ^= state >> 17;
  state ^= state << 5;
  return state;
}

void GiveProcessorAway() {
  const uint32_t number = Random();
  if (number % 8 == 0) {
    const timespec nap{0, static_cast<long>(number / 8 % 100000)};
    nanosleep(&nap, nullptr);
  } else if (number % 2 == 0) {
    sched_yield();
  }
}

std::atomic<int> g_steps{0};

void YieldAtStep(Call call, bool before, void* object) {
  g_steps.fetch_add(1, std::memory_order_relaxed);
  GiveProcessorAway();
  if (before && WorksOnAnObject(call)) ExpectUsable(object);
}

class ThreadYield : public testing::Test {
 protected:
  void SetUp() override {
    g_steps = 0;
    if (zebcomn_test::kAllocationIsInterposed) {
      zebcomn_test::SetFreeHook([](void* block) { g_quarantine.Add(block); });
    }
    zebcomn_test::SetStepHook(YieldAtStep);
  }
  void TearDown() override {
    zebcomn_test::SetStepHook(nullptr);
    zebcomn_test::SetFreeHook(nullptr);
    g_quarantine.Empty();
    EXPECT_GT(g_steps, 0) << "the library's calls do not come by";
  }

  static void Repeat(int rounds, void (*scenario)()) {
    for (int i = 0; i < ScaledRounds(rounds); ++i) scenario();
  }
};

TEST_F(ThreadYield, CloseAfterWait) {
  Repeat(1000, zebcomn_test::CloseAfterWait);
}

TEST_F(ThreadYield, CloseOnFlag) {
  Repeat(1000, zebcomn_test::CloseOnFlag);
}

TEST_F(ThreadYield, CloseWithoutWait) {
  Repeat(1000, zebcomn_test::CloseWithoutWait);
}

TEST_F(ThreadYield, CloseAfterFlagSetByHand) {
  Repeat(1000, zebcomn_test::CloseAfterFlagSetByHand);
}

TEST_F(ThreadYield, EndTogetherWithSlots) {
  Repeat(200, zebcomn_test::EndTogetherWithSlots);
}

TEST_F(ThreadYield, LastWaiterClosesTheEvent) {
  Repeat(300, zebcomn_test::LastWaiterClosesTheEvent);
}

}  // namespace
