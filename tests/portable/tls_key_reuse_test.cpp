// A slot that is freed while its value is being set: the C library gives the key's number to the
// next one who asks, and that one's value must stay its own.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <pthread.h>

#include <cerrno>

#include "zebcomn/portable/error.h"
#include "zebcomn/portable/tls.h"

namespace {

// What happens on the way from the library into the C library's next pthread_setspecific().
void (*g_before_set)() = nullptr;

DWORD g_slot = 0;
pthread_key_t g_foreign_key = 0;

void FreeTheSlotAndTakeItsKey() {
  const pthread_key_t key = *pTlsKeyTable[g_slot];
  EXPECT_EQ(tivTlsFree(g_slot), TRUE);
  EXPECT_EQ(pthread_key_create(&g_foreign_key, nullptr), 0);
  ASSERT_EQ(g_foreign_key, key) << "the C library gives the lowest free key";
}

void AllocateTheSlotAgain() {
  EXPECT_EQ(tivTlsFree(g_slot), TRUE);
  EXPECT_EQ(tivTlsAlloc(), g_slot);
}

}  // namespace

extern "C" int pthread_setspecific(pthread_key_t key, const void* value) noexcept {
  using Real = int (*)(pthread_key_t, const void*);
  static const auto real = reinterpret_cast<Real>(dlsym(RTLD_NEXT, "pthread_setspecific"));
  if (void (*before)() = g_before_set; before != nullptr) {
    g_before_set = nullptr;
    before();
  }
  return real(key, value);
}

namespace {

// The lowest slots have a copy of the value for each thread; the others have not.
class TlsKeyReuse : public testing::TestWithParam<int> {
 protected:
  void SetUp() override {
    for (int i = 0; i < GetParam(); ++i) tivTlsAlloc();
    g_slot = tivTlsAlloc();
    ASSERT_EQ(g_slot, static_cast<DWORD>(GetParam()));
  }
  void TearDown() override {
    for (int i = 0; i < GetParam(); ++i) tivTlsFree(static_cast<DWORD>(i));
  }
  int value_ = 0;
};

TEST_P(TlsKeyReuse, ValueOfAFreedSlotDoesNotReachTheNextOwnerOfItsKey) {
  g_before_set = FreeTheSlotAndTakeItsKey;
  nErrno = 0;
  EXPECT_EQ(tivTlsSetValue(g_slot, &value_), FALSE);
  EXPECT_EQ(nErrno, EINVAL);
  EXPECT_EQ(g_before_set, nullptr) << "the library's call does not come by";
  EXPECT_EQ(pthread_getspecific(g_foreign_key), nullptr);
  EXPECT_EQ(pthread_key_delete(g_foreign_key), 0);
}

TEST_P(TlsKeyReuse, ValueOfAFreedSlotDoesNotReachItsNextAllocation) {
  g_before_set = AllocateTheSlotAgain;
  EXPECT_EQ(tivTlsSetValue(g_slot, &value_), FALSE);
  EXPECT_EQ(tivTlsGetValue(g_slot), nullptr);
  EXPECT_EQ(tivTlsFree(g_slot), TRUE);
}

INSTANTIATE_TEST_SUITE_P(EachEndOfTheTable, TlsKeyReuse, testing::Values(0, 20));

}  // namespace
