// The first allocation of the process clears the tables. The executable has this one test, since
// there is only one first allocation.
#include <gtest/gtest.h>

#include "zebcomn/portable/tls.h"

namespace {

TEST(TlsFirstUse, ClearsTheTables) {
  pthread_key_t key = 0;
  for (DWORD slot = 0; slot < TIV_TLS_SLOT_COUNT; ++slot) {
    pTlsKeyTable[slot] = &key;
    nTlsOwnerTable[slot] = 5;
  }
  EXPECT_EQ(tivTlsAlloc(), 0u);
  for (DWORD slot = 1; slot < TIV_TLS_SLOT_COUNT; ++slot) {
    EXPECT_EQ(pTlsKeyTable[slot], nullptr) << slot;
    EXPECT_EQ(nTlsOwnerTable[slot], 0) << slot;
  }
  EXPECT_EQ(tivTlsAlloc(), 1u) << "the second allocation clears nothing";
  EXPECT_EQ(tivTlsFree(0), TRUE);
  EXPECT_EQ(tivTlsFree(1), TRUE);
}

}  // namespace
