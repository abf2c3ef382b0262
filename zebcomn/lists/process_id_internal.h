#ifndef ZEBCOMN_LISTS_PROCESS_ID_INTERNAL_H_
#define ZEBCOMN_LISTS_PROCESS_ID_INTERNAL_H_

#include <atomic>
#include <cstdint>

namespace zebcomn {

constexpr std::int32_t kUnknownProcessId = 0;  // No process has this id.

/// What LearnProcessId() has found; unknown again in the child of a fork().
extern std::atomic<std::int32_t> g_process_id;

/// Asks the system, and keeps the answer.
std::int32_t LearnProcessId();

/// The process's id, as getpid() gives it, without a system call each time: it is asked for once in
/// a process, and once more in the child of a fork(). Safe in every thread.
inline std::int32_t ProcessId() {
  const std::int32_t id = g_process_id.load(std::memory_order_relaxed);
  return id != kUnknownProcessId ? id : LearnProcessId();
}

}  // namespace zebcomn

#endif  // ZEBCOMN_LISTS_PROCESS_ID_INTERNAL_H_
