// Slots of a process that has forked.
#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

#include "tests/portable/owned_handle.h"
#include "tests/support/fresh_process.h"
#include "zebcomn/portable/tls.h"

namespace {

using zebcomn_test::NewThread;
using zebcomn_test::OwnedHandle;
using zebcomn_test::WaitForEver;

void RunAndEndThread() {
  const OwnedHandle thread(NewThread([](void*) -> DWORD { return 0; }, nullptr));
  WaitForEver(thread.get());
}

TEST(TlsFork, EndOfAChildsThreadFreesTheChildsOwnSlotsAndLeavesTheParents) {
  int value = 0;
  const DWORD parents = tivTlsAlloc();
  EXPECT_EQ(tivTlsSetValue(parents, &value), TRUE);
  const std::string left = zebcomn_test::RunInFreshProcess([parents, &value] {
    const DWORD own = tivTlsAlloc();
    const bool is_owner = nTlsOwnerTable[own] == static_cast<int32_t>(getpid());
    RunAndEndThread();
    const bool own_is_free = pTlsKeyTable[own] == nullptr;
    const bool parents_stays = tivTlsGetValue(parents) == &value;
    return std::to_string(is_owner) + std::to_string(own_is_free) + std::to_string(parents_stays);
  });
  EXPECT_EQ(left, "111");
  EXPECT_EQ(tivTlsGetValue(parents), &value);
  EXPECT_EQ(tivTlsFree(parents), TRUE);
}

}  // namespace
