/* Every thread that locks is attached first. One grant, one release. */
#include <stdio.h>
#include <zebcomn/lists/se_lock.h>
#include <zebcomn/lists/spin_lock.h>
#include <zebcomn/lists/thread_attach.h>

int main(void) {
  tiSO_SELock_t* lock = NULL;
  if (tiSO_ProcessAttach() == TIV_INVALID_DWORD || tiSO_ThreadAttach() == 0) return 1;
  if (tiSO_SELockCreate(&lock) != ZEBCOMN_STATUS_OK) return 1;

  BOOL writer = tiSO_SELockExclusive(lock, TRUE);
  tiSO_SELockExclusiveToShared(lock); /* nobody gets in between */
  BOOL reader = tiSO_SELockSharedWaitForExclusive(lock, FALSE);
  BOOL refused = !tiSO_SELockExclusive(lock, FALSE);
  printf("exclusive %d, shared %d, refused %d, grants %u\n", writer, reader, refused, lock->count);
  tiSO_SELockRelease(lock);
  tiSO_SELockRelease(lock);

  LONG word = 0;
  tiSL_Get(&word);
  tiSL_Release(&word);

  tiSO_Release(lock);
  return tiSO_ThreadDetach() && tiSO_ProcessDetach() && writer && reader && refused ? 0 : 1;
}
