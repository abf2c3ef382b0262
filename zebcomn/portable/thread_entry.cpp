// Compiled without exceptions: the clean-up handler then also runs for a routine that was compiled
// without unwind tables, as C routines may be.
#include <cstdlib>

#include "zebcomn/portable/thread.h"
#include "zebcomn/portable/thread_end_internal.h"
#include "zebcomn/portable/tls_internal.h"

#ifdef __EXCEPTIONS
#error "pthread_cleanup_push() must take its C form here"
#endif

void* tivThreadJuggle(void* pStartBlock) {
  auto* block = static_cast<TivThreadStartBlock*>(pStartBlock);
  if (block == nullptr) return nullptr;
  uintptr_t result = 0;
  int cancellation = PTHREAD_CANCEL_ENABLE;
  pthread_cleanup_push(tivCleanupThread, block);
  result = block->pfnStart(block->pParam);
  // A cancellation must not cut the clean-up short from here on.
  pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &cancellation);
  pthread_cleanup_pop(1);
  pthread_setcancelstate(cancellation, nullptr);
  return reinterpret_cast<void*>(result);
}

void tivCleanupThread(void* pStartBlock) {
  auto* block = static_cast<TivThreadStartBlock*>(pStartBlock);
  if (block == nullptr) return;
  // Kept: every slot of the process goes, not only those of this thread.
  zebcomn::FreeOwnTlsSlots();
  zebcomn::SignalThreadEnd(block);
  std::free(block);
}
