// Central operations of the library, a thousand times each, for scripts/check-instructions to count
// under callgrind. Counting is on for the operation only, and each one is a dump of its own; what
// an operation needs is made before.
#include <valgrind/callgrind.h>

#include <cstdint>
#include <cstdio>
#include <string>

#include "zebcomn/zebcomn.h"

namespace {

constexpr int kTimes = 1000;

// The objects that the operations work on.
HANDLE g_event = nullptr;
HANDLE g_mutex = nullptr;
DWORD g_slot = 0;
LONG g_word = 0;
tiSO_SELock_t* g_lock = nullptr;
tiSLL_t* g_list = nullptr;
tiLL_element_t g_element;

// Keeps the compiler from leaving out a result that nobody looks at.
template <typename Value>
void Use(const Value& value) {
  asm volatile("" : : "g"(&value) : "memory");
}

void EventSetReset() {
  for (int i = 0; i < kTimes; ++i) {
    tivResetEvent(g_event);
    tivSetEvent(g_event);
  }
}

void WaitSignalled() {
  for (int i = 0; i < kTimes; ++i) tivWaitForSingleObject(g_event, TIV_WAIT_INFINITE);
}

void EventCreateClose() {
  for (int i = 0; i < kTimes; ++i) tivCloseHandle(tivCreateEvent(nullptr, 1, 0, nullptr));
}

void MutexWaitRelease() {
  for (int i = 0; i < kTimes; ++i) {
    tivWaitForSingleObject(g_mutex, TIV_WAIT_INFINITE);
    tivReleaseMutex(g_mutex);
  }
}

void TlsSetGet() {
  for (int i = 0; i < kTimes; ++i) {
    tivTlsSetValue(g_slot, &g_word);
    Use(tivTlsGetValue(g_slot));
  }
}

void InterlockedExchange() {
  for (int i = 0; i < kTimes; ++i) Use(tivInterlockedExchange(&g_word, i));
}

void LockExclusivePair() {
  for (int i = 0; i < kTimes; ++i) {
    tiSO_SELockExclusive(g_lock, 1);
    tiSO_SELockRelease(g_lock);
  }
}

void LockSharedPair() {
  for (int i = 0; i < kTimes; ++i) {
    tiSO_SELockSharedWaitForExclusive(g_lock, 1);
    tiSO_SELockRelease(g_lock);
  }
}

void LockedListPushPop() {
  for (int i = 0; i < kTimes; ++i) {
    tiSLL_XInsertHead(g_list, &g_element);
    Use(tiSLL_XRemoveHead(g_list));
  }
}

void GuidText() {
  const uint8_t guid[16] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15};
  char text[37];
  for (int i = 0; i < kTimes; ++i) Use(tivUuidToStringA(guid, text));
}

void WildcardMatch() {
  const std::string name(200, 'a');
  for (int i = 0; i < kTimes; ++i) Use(tivWildCardMatch("*aaaaaaaaaaaaaaaaaaab", name.c_str()));
}

void PathFlatten() {
  for (int i = 0; i < kTimes; ++i) {
    FileNameFlattener flattener("some/../folder/./of/a/longer//path/../name.txt", "/opt/base");
    Use(flattener);
  }
}

void Ipv6Expand() {
  for (int i = 0; i < kTimes; ++i) Use(expandIPV6Address("2001:db8::8a2e:370:7334"));
}

void Utf8ToWide() {
  const std::string text(1024, 'x');
  for (int i = 0; i < kTimes; ++i) Use(quenty_com::pelu::tivmcomn_ansi_to_wide(text));
}

struct Operation {
  const char* name;
  void (*run)();
};
constexpr Operation kOperations[] = {
    {"event_set_reset", EventSetReset},
    {"wait_signalled", WaitSignalled},
    {"event_create_close", EventCreateClose},
    {"mutex_wait_release", MutexWaitRelease},
    {"tls_set_get", TlsSetGet},
    {"interlocked_exchange", InterlockedExchange},
    {"lock_exclusive_pair", LockExclusivePair},
    {"lock_shared_pair", LockSharedPair},
    {"locked_list_push_pop", LockedListPushPop},
    {"guid_text", GuidText},
    {"wildcard_match", WildcardMatch},
    {"path_flatten", PathFlatten},
    {"ipv6_expand", Ipv6Expand},
    {"utf8_to_wide", Utf8ToWide},
};

bool MakeObjects() {
  tiSO_ProcessAttach();
  tiSO_ThreadAttach();
  g_event = tivCreateEvent(nullptr, 1, 1, nullptr);
  g_mutex = tivCreateMutex(nullptr, 0, nullptr);
  g_slot = tivTlsAlloc();
  tiSO_SELockCreate(&g_lock);
  tiSLL_Create(&g_list);
  return g_event != nullptr && g_mutex != nullptr && g_slot != TIV_INVALID_DWORD &&
         g_lock != nullptr && g_list != nullptr;
}

}  // namespace

int main() {
  if (!MakeObjects()) return 1;
  for (const Operation& operation : kOperations) {
    CALLGRIND_TOGGLE_COLLECT;
    operation.run();
    CALLGRIND_TOGGLE_COLLECT;
    CALLGRIND_DUMP_STATS_AT(operation.name);
  }
  return 0;
}
