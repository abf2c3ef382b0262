#ifndef ZEBCOMN_PORTABLE_PLAIN_ATOMIC_INTERNAL_H_
#define ZEBCOMN_PORTABLE_PLAIN_ATOMIC_INTERNAL_H_

/// \file
/// Atomic access to the plain objects of the C interface that several threads touch by design. The
/// objects keep their plain types, since callers read them as such.

namespace zebcomn {

template <typename Value>
Value LoadRelaxed(const Value* object) {
  return __atomic_load_n(object, __ATOMIC_RELAXED);
}

/// Whoever reads a value here that StoreRelease() wrote sees what the writer did before.
template <typename Value>
Value LoadAcquire(const Value* object) {
  return __atomic_load_n(object, __ATOMIC_ACQUIRE);
}

template <typename Value>
void StoreRelaxed(Value* object, Value value) {
  __atomic_store_n(object, value, __ATOMIC_RELAXED);
}

template <typename Value>
void StoreRelease(Value* object, Value value) {
  __atomic_store_n(object, value, __ATOMIC_RELEASE);
}

/// Keeps the loads and stores that follow behind the loads before, the C library's own among them.
/// gcc's thread sanitizer refuses fences; the processors that it runs on need none here.
inline void AcquireFence() {
#ifndef __SANITIZE_THREAD__
  __atomic_thread_fence(__ATOMIC_ACQUIRE);
#endif
}

/// Keeps the loads and stores before in front of the stores that follow, the C library's own among
/// them. What AcquireFence() says of the thread sanitizer holds here too.
inline void ReleaseFence() {
#ifndef __SANITIZE_THREAD__
  __atomic_thread_fence(__ATOMIC_RELEASE);
#endif
}

/// Stores `value` and gives what was there before; acquires and releases.
template <typename Value>
Value Exchange(Value* object, Value value) {
  return __atomic_exchange_n(object, value, __ATOMIC_ACQ_REL);
}

}  // namespace zebcomn

#endif  // ZEBCOMN_PORTABLE_PLAIN_ATOMIC_INTERNAL_H_
