// Boost.
#include <boost/atomic.hpp>
#include <boost/chrono.hpp>
#include <boost/dll/shared_library.hpp>
#include <boost/thread.hpp>
#include <boost/thread/tss.hpp>
#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "bench/support/operations.h"

namespace {

class Parts {
 public:
  void Lock() { mutex_.lock(); }
  void Unlock() { mutex_.unlock(); }
  void Broadcast() { cond_.notify_all(); }
  void WaitOnce() {
    boost::unique_lock<boost::mutex> lock(mutex_, boost::adopt_lock);
    cond_.wait(lock);
    lock.release();
  }

 private:
  boost::mutex mutex_;
  boost::condition_variable cond_;
};

struct Thread {
  static void Live() {
    boost::thread([] {}).join();
  }
};

class Slot {
 public:
  void Set(Slot* value) { value_.reset(value); }
  Slot* Get() { return value_.get(); }

 private:
  static void KeepValue(Slot* /*value*/) {}
  boost::thread_specific_ptr<Slot> value_{KeepValue};
};

struct Counter {
  int Increment() { return ++value; }
  int Exchange(int next) { return value.exchange(next); }
  boost::atomic<int> value{0};
};

int64_t TickCount() {
  return boost::chrono::duration_cast<boost::chrono::milliseconds>(
             boost::chrono::steady_clock::now().time_since_epoch())
      .count();
}

std::string GuidText() {
  static boost::uuids::random_generator generator;
  return boost::uuids::to_string(generator());
}

int LoadLookupFree() {
  const boost::dll::shared_library library(BENCH_LOADABLE);
  return library.get<int()>("Answer")();
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "boost";
  bench::RegisterEvent<bench::HandMadeEvent<Parts>>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Parts>);
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("interlocked_increment", kName, bench::Increment<Counter>);
  Register("interlocked_exchange", kName, bench::Exchange<Counter>);
  Register("tick_count", kName, bench::Call<TickCount>);
  Register("guid_text", kName, bench::Call<GuidText>);
  Register("library_load_lookup_free", kName, bench::Call<LoadLookupFree>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
