#include "tests/reliability/quarantine.h"

#include <malloc.h>
#include <sched.h>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#ifndef ZEBCOMN_SANITIZED
extern "C" void __libc_free(void* block);
#endif

namespace zebcomn_test {
namespace {

[[noreturn]] void Die(const char* what) {
  std::fprintf(stderr, "quarantine: %s\n", what);
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

}  // namespace

void WatchFreedMemory(bool watch) {
  if (!kAllocationIsInterposed) return;
  SetFreeHook(watch ? [](void* block) { g_quarantine.Add(block); } : FreeHook{nullptr});
  if (!watch) g_quarantine.Empty();
}

void WatchUse(Call call, const void* object) {
  if (WorksOnAnObject(call)) ExpectUsable(object);
}

}  // namespace zebcomn_test
