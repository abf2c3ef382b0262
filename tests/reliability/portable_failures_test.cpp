#include <cerrno>

#include "tests/reliability/sweep.h"
#include "zebcomn/portable/event.h"
#include "zebcomn/portable/handle.h"
#include "zebcomn/portable/mutex.h"
#include "zebcomn/portable/tls.h"
#include "zebcomn/portable/wildcard.h"

namespace {

using zebcomn_test::kErrorLeftAlone;
using zebcomn_test::Trial;

ZEBCOMN_USE(EventFailures, CreationNotSignalled, "tivCreateEvent") {
  HANDLE event = nullptr;
  trial.Call([&] { event = tivCreateEvent(nullptr, TRUE, FALSE, nullptr); });
  EXPECT_EQ(event == nullptr, trial.Failed());
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? ENOMEM : kErrorLeftAlone);
  tivCloseHandle(event);
}

ZEBCOMN_USE(TlsFailures, Allocation, "tivTlsAlloc") {
  DWORD slot = 0;
  trial.Call([&] { slot = tivTlsAlloc(); });
  const bool fails = trial.FailedIn("malloc") || trial.FailedIn("pthread_key_create");
  EXPECT_EQ(slot == TIV_INVALID_DWORD, fails);
  EXPECT_EQ(trial.ErrorSlot(), trial.FailedIn("malloc") ? ENOMEM : kErrorLeftAlone);
  if (!fails) tivTlsFree(slot);
}

ZEBCOMN_USE_WITHOUT_CALLS(WildcardFailures, Match, "tivWildCardMatch") {
  int32_t match = 1;
  trial.Call([&] { match = tivWildCardMatch("a*c", "abc"); });
  EXPECT_EQ(match, 0);
}

}  // namespace
