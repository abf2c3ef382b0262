#include <pthread.h>
#include <unistd.h>

#include "zebcomn/lists/process_id_internal.h"

namespace zebcomn {

std::atomic<std::int32_t> g_process_id{kUnknownProcessId};

namespace {

void Forget() {
  g_process_id.store(kUnknownProcessId, std::memory_order_relaxed);
}

// Set while the library is loaded, and not at the first use: a fork() in the middle of that would
// leave the child waiting for the end of an initialisation that nobody goes on with.
const bool forgotten_in_a_child = pthread_atfork(nullptr, nullptr, &Forget) == 0;

}  // namespace

std::int32_t LearnProcessId() {
  const std::int32_t id = getpid();
  if (forgotten_in_a_child) g_process_id.store(id, std::memory_order_relaxed);
  return id;
}

}  // namespace zebcomn
