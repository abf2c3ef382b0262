#ifndef ZEBCOMN_LISTS_SPIN_LOCK_INTERNAL_H_
#define ZEBCOMN_LISTS_SPIN_LOCK_INTERNAL_H_

#include "zebcomn/portable/interlocked.h"
#include "zebcomn/portable/types.h"

namespace zebcomn {

constexpr LONG kSpinWordFree = 0;
constexpr LONG kSpinWordTaken = 1;

/// Goes on trying for a spin word after a first try has failed, as tiSL_Get() describes.
void ContendForSpinWord(LONG* word);

/// Holds a spin word for as long as it lives: tiSL_Get() and tiSL_Release() without the calls.
/// Always inlined, the paths of exceptions too, so that an object of it stays out of memory.
class SpinHold {
 public:
  [[gnu::always_inline]] explicit SpinHold(LONG* word) : word_(word) {
    if (tivInterlockedExchange(word_, kSpinWordTaken) != kSpinWordFree) ContendForSpinWord(word_);
  }
  /// Takes over what HandOver() gave up.
  struct Taken {};
  [[gnu::always_inline]] SpinHold(LONG* word, Taken) : word_(word) {}
  [[gnu::always_inline]] ~SpinHold() {
    if (word_ != nullptr) Release();
  }
  SpinHold(const SpinHold&) = delete;
  SpinHold& operator=(const SpinHold&) = delete;

  /// Gives the word back now. REQUIRES: not called before, nor HandOver().
  [[gnu::always_inline]] void Release() {
    tivInterlockedExchange(word_, kSpinWordFree);
    word_ = nullptr;
  }
  /// The word stays taken; another SpinHold goes on with it.
  [[gnu::always_inline]] void HandOver() { word_ = nullptr; }

 private:
  LONG* word_;
};

}  // namespace zebcomn

#endif  // ZEBCOMN_LISTS_SPIN_LOCK_INTERNAL_H_
