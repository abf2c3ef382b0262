#include "tests/support/call_plan.h"

#include <dlfcn.h>
#include <link.h>

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "tests/support/failing_call.h"

// The wrappers run before a sanitizer is ready, and so do these.
#define ZEBCOMN_PLAIN ZEBCOMN_TESTS_NOT_SANITIZED

namespace zebcomn_test {
namespace {

thread_local CallPlan* armed_plan = nullptr;
thread_local int inside_calls = 0;
std::atomic<long> live_blocks{0};

// The code of one loaded object.
struct CodeRange {
  uintptr_t first;
  uintptr_t end;
};

// Where the objects lie whose calls are not the library's.
struct Bystanders {
  static constexpr int kMost = 8;
  CodeRange ranges[kMost];
  int count;
  CodeRange standard_library;
};
Bystanders bystanders;

bool IsNamed(std::string_view path, std::string_view name) {
  const std::string_view file = path.substr(path.rfind('/') + 1);
  return file.substr(0, name.size()) == name;
}

CodeRange RangeOf(const dl_phdr_info& object) {
  CodeRange range = {UINTPTR_MAX, 0};
  for (int i = 0; i < object.dlpi_phnum; ++i) {
    const auto& segment = object.dlpi_phdr[i];
    if (segment.p_type != PT_LOAD) continue;
    const uintptr_t first = object.dlpi_addr + segment.p_vaddr;
    if (first < range.first) range.first = first;
    if (first + segment.p_memsz > range.end) range.end = first + segment.p_memsz;
  }
  return range;
}

int NoteObject(dl_phdr_info* object, size_t /*size*/, void* /*unused*/) {
  const std::string_view path = object->dlpi_name;
  if (IsNamed(path, "libstdc++.so")) bystanders.standard_library = RangeOf(*object);
  for (const char* name : {"libc.so", "libgcc_s.so", "ld", "libasan.so", "libubsan.so"}) {
    if (IsNamed(path, name) && bystanders.count < Bystanders::kMost) {
      bystanders.ranges[bystanders.count++] = RangeOf(*object);
    }
  }
  return 0;
}

ZEBCOMN_PLAIN bool IsIn(const CodeRange& range, const void* address) {
  const auto place = reinterpret_cast<uintptr_t>(address);
  return place >= range.first && place < range.end;
}

ZEBCOMN_PLAIN bool IsBystander(const void* caller) {
  for (int i = 0; i < bystanders.count; ++i) {
    if (IsIn(bystanders.ranges[i], caller)) return true;
  }
  return false;
}

// Which call of its function this is. A name has one address, since it has one wrapper.
ZEBCOMN_PLAIN int CountCall(CallPlan* plan, const char* function) {
  for (CallCount& count : plan->counts) {
    if (count.function != nullptr && count.function != function) continue;
    count.function = function;
    return ++count.calls;
  }
  std::abort();
}

// Counts a call; true if it is the one to fail.
ZEBCOMN_PLAIN bool IsDue(CallPlan* plan, const char* function, int error_count) {
  if (plan->before != nullptr) {
    const InsideCall inside;
    plan->before(plan);
  }
  const int nth = CountCall(plan, function);
  if (++plan->calls != plan->failing_call) return false;
  plan->function = function;
  plan->nth = nth;
  plan->error_choices = error_count;
  if (plan->instead == nullptr) return true;
  const InsideCall inside;
  plan->instead();
  return false;
}

}  // namespace

void ArmCalls(CallPlan* plan) {
  if (bystanders.count == 0) dl_iterate_phdr(NoteObject, nullptr);
  armed_plan = plan;
}

void DisarmCalls() {
  armed_plan = nullptr;
}

ZEBCOMN_PLAIN int ErrorDue(const char* function, const int* errors, int error_count,
                           const void* caller) {
  CallPlan* const plan = armed_plan;
  if (plan == nullptr || inside_calls != 0) return 0;
  if (IsBystander(caller) || IsIn(bystanders.standard_library, caller)) return 0;
  if (!IsDue(plan, function, error_count)) return 0;
  plan->error = errors[plan->error_choice < error_count ? plan->error_choice : 0];
  return plan->error;
}

ZEBCOMN_PLAIN int AllocationErrorDue(const char* function, const void* caller) {
  CallPlan* const plan = armed_plan;
  if (plan == nullptr || inside_calls != 0 || IsBystander(caller)) return 0;
  if (!IsDue(plan, function, 1)) return 0;
  plan->error = ENOMEM;
  return plan->error;
}

InsideCall::InsideCall() {
  ++inside_calls;
}

InsideCall::~InsideCall() {
  --inside_calls;
}

ZEBCOMN_PLAIN void NoteLock(const void* mutex) {
  CallPlan* const plan = armed_plan;
  if (plan == nullptr || inside_calls != 0) return;
  ++plan->locks_held;
  if (plan->given_back == mutex) plan->given_back = nullptr;
}

ZEBCOMN_PLAIN bool IsUnlockedAlready(const void* mutex) {
  CallPlan* const plan = armed_plan;
  if (plan == nullptr || plan->given_back != mutex) return false;
  plan->given_back = nullptr;
  return true;
}

ZEBCOMN_PLAIN void NoteUnlock() {
  CallPlan* const plan = armed_plan;
  if (plan != nullptr && inside_calls == 0) --plan->locks_held;
}

ZEBCOMN_PLAIN void NoteFailedUnlock(const void* mutex) {
  armed_plan->given_back = mutex;
  --armed_plan->locks_held;
}

void NoteFailedStream(const void* stream) {
  armed_plan->stream = stream;
}

bool HasFailedStream(const void* stream) {
  return armed_plan != nullptr && armed_plan->stream == stream;
}

long LiveBlocks() {
  return live_blocks.load();
}

ZEBCOMN_PLAIN void NoteBlocks(int change) {
  live_blocks.fetch_add(change, std::memory_order_relaxed);
}

void* NextSymbol(const char* name) {
  const InsideCall looking;
  // dlsym() itself has a wrapper.
  using Lookup = void*(void*, const char*);
  static auto* const look_up = reinterpret_cast<Lookup*>(dlvsym(RTLD_NEXT, "dlsym", "GLIBC_2.34"));
  void* const symbol = look_up == nullptr ? nullptr : look_up(RTLD_NEXT, name);
  if (symbol == nullptr) std::abort();
  return symbol;
}

}  // namespace zebcomn_test
