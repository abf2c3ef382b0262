// WinPR, the Win32 look-alike of FreeRDP.
#include <winpr/interlocked.h>
#include <winpr/library.h>
#include <winpr/rpc.h>
#include <winpr/synch.h>
#include <winpr/sysinfo.h>
#include <winpr/thread.h>

#include "bench/support/operations.h"

namespace {

class Event {
 public:
  Event() : handle_(CreateEventA(nullptr, TRUE, FALSE, nullptr)) {}
  ~Event() { CloseHandle(handle_); }
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;
  void Set() { SetEvent(handle_); }
  void Reset() { ResetEvent(handle_); }
  bool Wait() { return WaitForSingleObject(handle_, INFINITE) == WAIT_OBJECT_0; }
  bool IsSet() { return WaitForSingleObject(handle_, 0) == WAIT_OBJECT_0; }
  HANDLE get() const { return handle_; }

 private:
  HANDLE handle_;
};

class Mutex {
 public:
  Mutex() : handle_(CreateMutexA(nullptr, FALSE, nullptr)) {}
  ~Mutex() { CloseHandle(handle_); }
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;
  void Lock() { WaitForSingleObject(handle_, INFINITE); }
  void Unlock() { ReleaseMutex(handle_); }

 private:
  HANDLE handle_;
};

struct Thread {
  static DWORD WINAPI DoNothing(LPVOID /*parameter*/) { return 0; }
  static void Live() {
    HANDLE thread = CreateThread(nullptr, 0, DoNothing, nullptr, 0, nullptr);
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
  }
};

class Slot {
 public:
  Slot() : index_(TlsAlloc()) {}
  ~Slot() { TlsFree(index_); }
  Slot(const Slot&) = delete;
  Slot& operator=(const Slot&) = delete;
  void Set(void* value) { TlsSetValue(index_, value); }
  void* Get() { return TlsGetValue(index_); }

 private:
  DWORD index_;
};

struct Counter {
  LONG Increment() { return InterlockedIncrement(&value); }
  LONG Exchange(LONG next) { return InterlockedExchange(&value, next); }
  LONG value = 0;
};

template <int kSignalled>
void MultiWait(benchmark::State& state) {
  Event events[3];
  const HANDLE handles[] = {events[0].get(), events[1].get(), events[2].get()};
  events[kSignalled].Set();
  for (auto _ : state) {
    benchmark::DoNotOptimize(WaitForMultipleObjects(3, handles, FALSE, 1000));
  }
}

char GuidText() {
  UUID uuid;
  RPC_CSTR text = nullptr;
  UuidCreate(&uuid);
  UuidToStringA(&uuid, &text);
  const auto first = static_cast<char>(*text);
  RpcStringFreeA(&text);
  return first;
}

int LoadLookupFree() {
  HMODULE module = LoadLibraryA(BENCH_LOADABLE);
  auto* answer = reinterpret_cast<int (*)()>(GetProcAddress(module, "Answer"));
  const int got = answer();
  FreeLibrary(module);
  return got;
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "winpr";
  bench::RegisterEvent<Event>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Mutex>);
  Register("multi_wait_first", kName, MultiWait<0>);
  Register("multi_wait_third", kName, MultiWait<2>)->UseRealTime();
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("interlocked_increment", kName, bench::Increment<Counter>);
  Register("interlocked_exchange", kName, bench::Exchange<Counter>);
  Register("tick_count", kName, bench::Call<GetTickCount>);
  Register("guid_text", kName, bench::Call<GuidText>);
  Register("library_load_lookup_free", kName, bench::Call<LoadLookupFree>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
