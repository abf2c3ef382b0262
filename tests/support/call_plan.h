#ifndef ZEBCOMN_TESTS_SUPPORT_CALL_PLAN_H_
#define ZEBCOMN_TESTS_SUPPORT_CALL_PLAN_H_

/// \file
/// What the wrappers of wrapped_calls.cpp and wrapped_allocation.cpp ask and tell. A plan belongs
/// to one thread; while it is armed, it counts that thread's calls and makes one of them fail. No
/// system header is included here, since the wrappers declare the C library's functions themselves.

namespace zebcomn_test {

/// How often a function has been called.
struct CallCount {
  const char* function;
  int calls;
};

/// What one armed stretch is to do, and what came of it.
struct CallPlan {
  long failing_call;  ///< Which call fails, counted from 1; 0 for none.
  int error_choice;   ///< Which of the failing function's errors it fails with, counted from 0.
  void (*instead)();  ///< Called before that call, which then does not fail; null for a failure.
  void (*before)(CallPlan*);  ///< Called before every call; null for nothing.

  long calls;              ///< Calls seen so far.
  const char* function;    ///< The function that was made to fail; null for none so far.
  int nth;                 ///< Which of its calls that was, counted from 1.
  int error;               ///< The error that it failed with.
  int error_choices;       ///< How many errors it can fail with.
  int locks_held;          ///< Mutexes locked less mutexes unlocked.
  const void* given_back;  ///< The mutex whose unlock was made to fail.
  const void* stream;      ///< The stream whose reading was made to fail.
  int inherited;           ///< Kept by `before`: the most descriptors that exec() leaves open.
  CallCount counts[64];    ///< The functions seen so far; null after the last.
};

/// The calling thread's plan counts and fails calls from ArmCalls() to DisarmCalls().
void ArmCalls(CallPlan* plan);
void DisarmCalls();

/// For the wrappers: the error with which a call of `function` from `caller` must fail; 0 to let it
/// pass. The calls of the C library itself, and of the compiler's runtime, always pass.
int ErrorDue(const char* function, const int* errors, int error_count, const void* caller);
/// The same for a function that allocates memory: the C++ library's allocations count too.
int AllocationErrorDue(const char* function, const void* caller);

/// Keeps what the C library calls in turn from being counted.
class InsideCall {
 public:
  InsideCall();
  ~InsideCall();
  InsideCall(const InsideCall&) = delete;
  InsideCall& operator=(const InsideCall&) = delete;
};

/// For the wrappers of a mutex. An unlock that is made to fail gives the mutex back all the same,
/// so that nobody waits for it for ever; trying again does nothing then.
void NoteLock(const void* mutex);
void NoteUnlock();
void NoteFailedUnlock(const void* mutex);
bool IsUnlockedAlready(const void* mutex);

/// For the wrappers of a stream: whether a read of it was made to fail.
void NoteFailedStream(const void* stream);
bool HasFailedStream(const void* stream);

/// Blocks of memory taken less blocks given back by the whole process.
long LiveBlocks();
void NoteBlocks(int change);

/// The definition that a wrapper stands in front of, by its symbol's name.
void* NextSymbol(const char* name);

}  // namespace zebcomn_test

#endif  // ZEBCOMN_TESTS_SUPPORT_CALL_PLAN_H_
