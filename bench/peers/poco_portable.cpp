// POCO.
#include <Poco/AtomicCounter.h>
#include <Poco/Clock.h>
#include <Poco/Event.h>
#include <Poco/Mutex.h>
#include <Poco/SharedLibrary.h>
#include <Poco/Thread.h>
#include <Poco/ThreadLocal.h>
#include <Poco/UUIDGenerator.h>

#include "bench/support/operations.h"

namespace {

class Event {
 public:
  void Set() { event_.set(); }
  void Reset() { event_.reset(); }
  bool Wait() {
    event_.wait();
    return true;
  }
  bool IsSet() { return event_.tryWait(0); }

 private:
  Poco::Event event_{Poco::Event::EVENT_MANUALRESET};
};

class Mutex {
 public:
  void Lock() { mutex_.lock(); }
  void Unlock() { mutex_.unlock(); }

 private:
  Poco::FastMutex mutex_;
};

struct Thread {
  static void DoNothing(void* /*data*/) {}
  static void Live() {
    Poco::Thread thread;
    thread.start(DoNothing);
    thread.join();
  }
};

class Slot {
 public:
  void Set(void* value) { *value_ = value; }
  void* Get() { return *value_; }

 private:
  Poco::ThreadLocal<void*> value_;
};

struct Counter {
  int Increment() { return ++value; }
  Poco::AtomicCounter value;
};

int64_t TickCount() {
  return Poco::Clock().microseconds() / 1000;
}

std::string GuidText() {
  return Poco::UUIDGenerator::defaultGenerator().create().toString();
}

int LoadLookupFree() {
  Poco::SharedLibrary library(BENCH_LOADABLE);
  const int got = reinterpret_cast<int (*)()>(library.getSymbol("Answer"))();
  library.unload();
  return got;
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "poco";
  bench::RegisterEvent<Event>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Mutex>);
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("interlocked_increment", kName, bench::Increment<Counter>);
  Register("tick_count", kName, bench::Call<TickCount>);
  Register("guid_text", kName, bench::Call<GuidText>);
  Register("library_load_lookup_free", kName, bench::Call<LoadLookupFree>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
