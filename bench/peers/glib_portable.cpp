// GLib.
#include <glib.h>
#include <gmodule.h>

#include "bench/support/operations.h"

namespace {

class Parts {
 public:
  Parts() {
    g_mutex_init(&mutex_);
    g_cond_init(&cond_);
  }
  ~Parts() {
    g_cond_clear(&cond_);
    g_mutex_clear(&mutex_);
  }
  Parts(const Parts&) = delete;
  Parts& operator=(const Parts&) = delete;
  void Lock() { g_mutex_lock(&mutex_); }
  void Unlock() { g_mutex_unlock(&mutex_); }
  void Broadcast() { g_cond_broadcast(&cond_); }
  void WaitOnce() { g_cond_wait(&cond_, &mutex_); }

 private:
  GMutex mutex_;
  GCond cond_;
};

struct Thread {
  static gpointer DoNothing(gpointer /*data*/) { return nullptr; }
  static void Live() { g_thread_join(g_thread_new("bench", DoNothing, nullptr)); }
};

// A GPrivate lives as long as the process.
GPrivate g_slot = G_PRIVATE_INIT(nullptr);

struct Slot {
  static void Set(void* value) { g_private_set(&g_slot, value); }
  static void* Get() { return g_private_get(&g_slot); }
};

// GLib 2.74 has no exchange of an integer yet; a compare-and-exchange loop takes its place.
struct Counter {
  int Increment() { return g_atomic_int_add(&value, 1) + 1; }
  int Exchange(int next) {
    int previous = g_atomic_int_get(&value);
    while (!g_atomic_int_compare_and_exchange_full(&value, previous, next, &previous)) {
    }
    return previous;
  }
  gint value = 0;
};

char GuidText() {
  char* text = g_uuid_string_random();
  const char first = *text;
  g_free(text);
  return first;
}

int LoadLookupFree() {
  GModule* module = g_module_open(BENCH_LOADABLE, G_MODULE_BIND_LAZY);
  gpointer answer = nullptr;
  g_module_symbol(module, "Answer", &answer);
  const int got = reinterpret_cast<int (*)()>(answer)();
  g_module_close(module);
  return got;
}

bool RegisterAll() {
  using bench::Register;
  constexpr char kName[] = "glib";
  bench::RegisterEvent<bench::HandMadeEvent<Parts>>(kName);
  Register("mutex_wait_release", kName, bench::LockUnlock<Parts>);
  Register("thread_life", kName, bench::ThreadLife<Thread>)->UseRealTime();
  Register("tls_get", kName, bench::SlotGet<Slot>);
  Register("tls_set", kName, bench::SlotSet<Slot>);
  Register("interlocked_increment", kName, bench::Increment<Counter>);
  Register("interlocked_exchange", kName, bench::Exchange<Counter>);
  Register("tick_count", kName, bench::Call<g_get_monotonic_time>);
  Register("guid_text", kName, bench::Call<GuidText>);
  Register("library_load_lookup_free", kName, bench::Call<LoadLookupFree>);
  return true;
}

const bool g_registered = RegisterAll();

}  // namespace
