#include "zebcomn/lists/spin_lock.h"

#include <unistd.h>

#include "zebcomn/lists/spin_lock_internal.h"
#include "zebcomn/portable/cancellation_internal.h"

namespace zebcomn {
namespace {

/// A stage of the back-off: it lasts until `end` tries have failed, with this pause after each.
struct BackOffStage {
  unsigned int end;
  bool pauses;
  useconds_t microseconds;
};

constexpr BackOffStage kBackOff[] = {
    {4000, false, 0},      {4100, true, 0},         {4200, true, 10'000},
    {4300, true, 100'000}, {4400, true, 1'000'000},
};

// Kept: after the one-second stage the waiting is pure spinning again, so that a holder which was
// away for minutes is met at once when it comes back.
constexpr unsigned int kBackOffEnd = 4400;

void PauseAfterFailure(unsigned int attempt) {
  for (const BackOffStage& stage : kBackOff) {
    if (attempt >= stage.end) continue;
    if (stage.pauses) usleep(stage.microseconds);
    return;
  }
}

}  // namespace

void ContendForSpinWord(LONG* word) {
  // A pause is a cancellation point, and a lock's release that ended in it would be lost.
  const CancellationHeldOff no_cancellation;
  unsigned int attempt = 0;
  do {
    if (attempt == kBackOffEnd) continue;
    PauseAfterFailure(attempt);
    ++attempt;
  } while (tivInterlockedExchange(word, kSpinWordTaken) != kSpinWordFree);
}

}  // namespace zebcomn

void tiSL_Get(LONG* spin_word) {
  if (spin_word == nullptr) return;
  if (tivInterlockedExchange(spin_word, zebcomn::kSpinWordTaken) != zebcomn::kSpinWordFree) {
    zebcomn::ContendForSpinWord(spin_word);
  }
}

void tiSL_Release(LONG* spin_word) {
  if (spin_word != nullptr) tivInterlockedExchange(spin_word, zebcomn::kSpinWordFree);
}
