// The portability layer: the library's calls, and the floor of bare calls that the same results
// cannot do without.
#include <dlfcn.h>
#include <endian.h>
#include <pthread.h>
#include <sys/time.h>
#include <sys/times.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "bench/support/operations.h"
#include "zebcomn/portable/clock.h"
#include "zebcomn/portable/dynamic_library.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/guid.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/interlocked.h"
#include "zebcomn/portable/mutex.h"
#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/tls.h"
#include "zebcomn/portable/wait.h"

namespace {

constexpr char kOurs[] = "zebcomn";
constexpr char kFloor[] = "floor";

// ---- the library ----

class Event {
 public:
  Event() : handle_(tivCreateEvent(nullptr, 1, 0, nullptr)) {}
  ~Event() { tivCloseHandle(handle_); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  void Set() { tivSetEvent(handle_); }
  void Reset() { tivResetEvent(handle_); }
  bool Wait() { return tivWaitForSingleObject(handle_, TIV_WAIT_INFINITE) == TIV_WAIT_SIGNALLED; }
  bool IsSet() { return tivWaitForSingleObject(handle_, 0) == TIV_WAIT_SIGNALLED; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

class Mutex {
 public:
  Mutex() : handle_(tivCreateMutex(nullptr, 0, nullptr)) {}
  ~Mutex() { tivCloseHandle(handle_); }
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;
  void Lock() { tivWaitForSingleObject(handle_, TIV_WAIT_INFINITE); }
  void Unlock() { tivReleaseMutex(handle_); }

 private:
  HANDLE handle_;
};

struct Thread {
  static DWORD DoNothing(void* /*parameter*/) { return 0; }
  static void Live() {
    HANDLE thread = tivCreateThread(nullptr, 0, DoNothing, nullptr, 0, nullptr);
    tivWaitForSingleObject(thread, TIV_WAIT_INFINITE);
    tivCloseHandle(thread);
  }
};

class Slot {
 public:
  Slot() : index_(tivTlsAlloc()) {}
  ~Slot() { tivTlsFree(index_); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  void Set(void* value) { tivTlsSetValue(index_, value); }
  void* Get() { return tivTlsGetValue(index_); }

 private:
  DWORD index_;
};

struct Counter {
  LONG Increment() { return tivInterlockedIncrement(&value); }
  LONG Exchange(LONG next) { return tivInterlockedExchange(&value, next); }
  LONG value = 0;
};

// Which of three handles is signalled; each one before it costs its slice of 10 ms.
void MultiWait(benchmark::State& state, DWORD signalled) {
  Event events[3];
  const HANDLE handles[] = {events[0].get(), events[1].get(), events[2].get()};
  events[signalled].Set();
  for (auto _ : state) {
    // A slice that begins in the last 10 ms of a second fails, as described; it is no wait.
    while (tivWaitForMultipleObjects(3, handles, 0, 1000) != TIV_WAIT_SIGNALLED + signalled) {
    }
  }
}

char* GuidText() {
  static char text[37];
  uint8_t guid[16];
  tivCoCreateGuid(guid);
  return tivUuidToStringA(guid, text);
}

int32_t LoadLookupFree() {
  void* module = tivLoadLibrary(BENCH_LOADABLE, nullptr);
  auto* answer = reinterpret_cast<int32_t (*)()>(tivGetProcAddress(module, "Answer", nullptr));
  const int32_t got = answer();
  tivFreeLibrary(module);
  return got;
}

// ---- the floor ----

// What a handle record has. Its lock and its condition are never destroyed, as described.
struct BareRecord {
  pthread_cond_t cond;
  pthread_mutex_t mutex;
  pthread_mutex_t ownership;
  int32_t count;
  int32_t flag;
};

class BareEvent {
 public:
  BareEvent() : record_(static_cast<BareRecord*>(std::malloc(sizeof(BareRecord)))) {
    pthread_cond_init(&record_->cond, nullptr);
    pthread_mutex_init(&record_->mutex, nullptr);
    record_->count = 1;
    record_->flag = 0;
  }
  ~BareEvent() {
    pthread_mutex_lock(&record_->mutex);
    const int32_t count = --record_->count;
    pthread_mutex_unlock(&record_->mutex);
    if (count == 0) std::free(record_);
  }
  BareEvent(const BareEvent&) = delete;
  BareEvent& operator=(const BareEvent&) = delete;

  void Set() {
    pthread_mutex_lock(&record_->mutex);
    record_->flag = 1;
    pthread_cond_broadcast(&record_->cond);
    pthread_mutex_unlock(&record_->mutex);
  }
  void Reset() {
    pthread_mutex_lock(&record_->mutex);
    record_->flag = 0;
    pthread_mutex_unlock(&record_->mutex);
  }
  bool Wait() {
    pthread_mutex_lock(&record_->mutex);
    while (record_->flag == 0) pthread_cond_wait(&record_->cond, &record_->mutex);
    pthread_mutex_unlock(&record_->mutex);
    return true;
  }
  bool IsSet() {
    pthread_mutex_lock(&record_->mutex);
    const bool is_set = record_->flag == 1;
    pthread_mutex_unlock(&record_->mutex);
    return is_set;
  }
  // The slice of a wait for several handles.
  bool WaitSlice() {
    constexpr long kSlice = 10'000'000;
    constexpr long kSecond = 1'000'000'000;
    pthread_mutex_lock(&record_->mutex);
    if (record_->flag == 0) {
      timeval now;
      gettimeofday(&now, nullptr);
      const long nanoseconds = now.tv_usec * 1000 + kSlice;
      const timespec deadline = {now.tv_sec + nanoseconds / kSecond, nanoseconds % kSecond};
      pthread_cond_timedwait(&record_->cond, &record_->mutex, &deadline);
    }
    const bool is_set = record_->flag == 1;
    pthread_mutex_unlock(&record_->mutex);
    return is_set;
  }

 private:
  BareRecord* record_;
};

// The record's lock and the ownership lock, as a wait and a release take them.
class BareMutex {
 public:
  void Lock() {
    pthread_mutex_lock(&record_.mutex);
    benchmark::DoNotOptimize(record_.flag);
    pthread_mutex_lock(&record_.ownership);
    record_.flag = 0;
    pthread_mutex_unlock(&record_.mutex);
  }
  void Unlock() {
    pthread_mutex_lock(&record_.mutex);
    pthread_mutex_unlock(&record_.ownership);
    record_.flag = 1;
    pthread_cond_broadcast(&record_.cond);
    pthread_mutex_unlock(&record_.mutex);
  }

 private:
  BareRecord record_ = {PTHREAD_COND_INITIALIZER, PTHREAD_MUTEX_INITIALIZER,
                        PTHREAD_MUTEX_INITIALIZER, 1, 1};
};

// Three blocks are taken for a thread: the record, the cell of its identity, the start block.
struct BareThread {
  struct StartBlock {
    BareRecord* record;
    void* (*routine)(void*);
    void* parameter;
    void* more[2];
  };
  static void* DoNothing(void* /*parameter*/) { return nullptr; }
  static void TellEnd(void* argument) {
    auto* block = static_cast<StartBlock*>(argument);
    pthread_mutex_lock(&block->record->mutex);
    // Under the lock: a waiter that saw it sooner would free the record under this thread's feet.
    block->record->flag = 1;
    pthread_cond_broadcast(&block->record->cond);
    pthread_mutex_unlock(&block->record->mutex);
    std::free(block);
  }
  static void* Run(void* argument) {
    auto* block = static_cast<StartBlock*>(argument);
    pthread_cleanup_push(TellEnd, block);
    block->routine(block->parameter);
    pthread_cleanup_pop(1);
    return nullptr;
  }
  static void Live() {
    auto* record = static_cast<BareRecord*>(std::calloc(1, sizeof(BareRecord)));
    auto* cell = static_cast<pthread_t*>(std::calloc(1, sizeof(pthread_t)));
    pthread_cond_init(&record->cond, nullptr);
    pthread_mutex_init(&record->mutex, nullptr);
    auto* block = static_cast<StartBlock*>(std::calloc(1, sizeof(StartBlock)));
    *block = {record, DoNothing, nullptr, {}};
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    pthread_create(cell, &attributes, Run, block);
    pthread_attr_destroy(&attributes);
    pthread_mutex_lock(&record->mutex);
    while (record->flag == 0) pthread_cond_wait(&record->cond, &record->mutex);
    pthread_mutex_unlock(&record->mutex);
    pthread_mutex_lock(&record->mutex);
    pthread_mutex_unlock(&record->mutex);
    std::free(cell);
    std::free(record);
  }
};

class BareSlot {
 public:
  BareSlot() { pthread_key_create(&key_, nullptr); }
  ~BareSlot() { pthread_key_delete(key_); }
  BareSlot(const BareSlot&) = delete;
  BareSlot& operator=(const BareSlot&) = delete;
  void Set(void* value) { pthread_setspecific(key_, value); }
  void* Get() { return pthread_getspecific(key_); }

 private:
  pthread_key_t key_;
};

struct BareCounter {
  int32_t Increment() {
    pthread_mutex_lock(&mutex);
    ++value;
    pthread_mutex_unlock(&mutex);
    return value;
  }
  int32_t Exchange(int32_t next) {
    pthread_mutex_lock(&mutex);
    const int32_t previous = value;
    value = next;
    pthread_mutex_unlock(&mutex);
    return previous;
  }
  static inline pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  int32_t value = 0;
};

void BareMultiWait(benchmark::State& state, std::size_t signalled) {
  BareEvent events[3];
  events[signalled].Set();
  for (auto _ : state) {
    std::size_t index = 0;
    while (!events[index].WaitSlice()) index = (index + 1) % 3;
  }
}

uint32_t BareTickCount() {
  tms unused;
  const auto ticks = static_cast<uint32_t>(times(&unused));
  return ticks * 1000 / static_cast<uint32_t>(sysconf(_SC_CLK_TCK));
}

// The clock, and the generator's shared state under its lock; then the sixteen bytes as text, put
// together by hand: the C library's sprintf() alone would take five times as long as all of it.
void BareGuid(uint8_t* guid) {
  static pthread_mutex_t mutex = PTHREAD_MUTEX_INITIALIZER;
  static uint64_t last = 0;
  timeval now;
  pthread_mutex_lock(&mutex);
  gettimeofday(&now, nullptr);
  const uint64_t time = static_cast<uint64_t>(now.tv_sec) * 10'000'000 +
                        static_cast<uint64_t>(now.tv_usec) * 10 + 0x01B21DD213814000;
  const uint32_t low = htobe32(static_cast<uint32_t>(time));
  const uint16_t middle = htobe16(static_cast<uint16_t>(time >> 32));
  const uint16_t high = htobe16(static_cast<uint16_t>(time >> 48 | 0x1000));
  const uint64_t rest = htobe64(time < last ? 0x8001'0000'0000'0000 : 0x8000'0000'0000'0000);
  std::memcpy(guid, &low, 4);
  std::memcpy(guid + 4, &middle, 2);
  std::memcpy(guid + 6, &high, 2);
  std::memcpy(guid + 8, &rest, 8);
  pthread_mutex_unlock(&mutex);
}

char* BareGuidText() {
  constexpr char kDigits[] = "0123456789abcdef";
  static char text[37];
  uint8_t guid[16];
  BareGuid(guid);
  char* out = text;
  for (int i = 0; i < 16; ++i) {
    *out++ = kDigits[guid[i] >> 4];
    *out++ = kDigits[guid[i] & 0xF];
    if (i == 3 || i == 5 || i == 7 || i == 9) *out++ = '-';
  }
  *out = '\0';
  return text;
}

int32_t BareLoadLookupFree() {
  using Entry = int32_t (*)(void*, uint32_t, void*);
  void* module = dlopen(BENCH_LOADABLE, RTLD_LAZY);
  auto entry = reinterpret_cast<Entry>(dlsym(module, "DllMain"));
  entry(module, 1, nullptr);
  auto* answer = reinterpret_cast<int32_t (*)()>(dlsym(module, "Answer"));
  const int32_t got = answer();
  entry(module, 0, nullptr);
  dlclose(module);
  return got;
}

// ---- the list ----

using bench::Register;

template <auto kBody, auto kSignalled>
void MultiWaitOf(benchmark::State& state) {
  kBody(state, kSignalled);
}

// A turn of the slow ones sleeps for 20 ms.
void RegisterMultiWait(const char* subject, bench::Body first, bench::Body third) {
  Register("multi_wait_first", subject, first);
  Register("multi_wait_third", subject, third)->Iterations(3)->UseRealTime();
}

bool RegisterOurs() {
  bench::RegisterEvent<Event>(kOurs);
  Register("mutex_wait_release", kOurs, bench::LockUnlock<Mutex>);
  RegisterMultiWait(kOurs, MultiWaitOf<MultiWait, 0U>, MultiWaitOf<MultiWait, 2U>);
  Register("thread_life", kOurs, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kOurs, bench::SlotGet<Slot>);
  Register("tls_set", kOurs, bench::SlotSet<Slot>);
  Register("interlocked_increment", kOurs, bench::Increment<Counter>);
  Register("interlocked_exchange", kOurs, bench::Exchange<Counter>);
  Register("tick_count", kOurs, bench::Call<tivGetTickCount>);
  Register("guid_text", kOurs, bench::Call<GuidText>);
  Register("library_load_lookup_free", kOurs, bench::Call<LoadLookupFree>);
  return true;
}

bool RegisterFloor() {
  bench::RegisterEvent<BareEvent>(kFloor);
  Register("mutex_wait_release", kFloor, bench::LockUnlock<BareMutex>);
  RegisterMultiWait(kFloor, MultiWaitOf<BareMultiWait, 0U>, MultiWaitOf<BareMultiWait, 2U>);
  Register("thread_life", kFloor, bench::ThreadLife<BareThread>)->UseRealTime();
  Register("tls_get", kFloor, bench::SlotGet<BareSlot>);
  Register("tls_set", kFloor, bench::SlotSet<BareSlot>);
  Register("interlocked_increment", kFloor, bench::Increment<BareCounter>);
  Register("interlocked_exchange", kFloor, bench::Exchange<BareCounter>);
  Register("tick_count", kFloor, bench::Call<BareTickCount>);
  Register("guid_text", kFloor, bench::Call<BareGuidText>);
  Register("library_load_lookup_free", kFloor, bench::Call<BareLoadLookupFree>);
  return true;
}

const bool g_registered = RegisterOurs() && RegisterFloor();

}  // namespace
