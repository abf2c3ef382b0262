// The clients of a lock that are called back: registering, the walk at a release, withdrawing.
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/lists/se_lock.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::OwnLock;
using zebcomn_test::StartAndQueue;
using zebcomn_test::ViewOf;
using zebcomn_test::Worker;

constexpr uint32_t kAccept = 0;
constexpr uint32_t kDecline = 7;

/// What the callbacks were called with, and what they answer.
struct Client {
  uint32_t answer = kAccept;
  std::vector<std::string> calls;
};

uint32_t Note(const char* callback, uintptr_t first, uint32_t event_code, uintptr_t second,
              uint32_t zero) {
  auto* client = reinterpret_cast<Client*>(first);
  EXPECT_EQ(zero, 0U);
  client->calls.push_back(callback + std::to_string(event_code) + "/" + std::to_string(second));
  return client->answer;
}

uint32_t OnEvent(uintptr_t first, uint32_t event_code, uintptr_t second, uint32_t zero) {
  return Note("", first, event_code, second, zero);
}

uint32_t OnEventElsewhere(uintptr_t first, uint32_t event_code, uintptr_t second, uint32_t zero) {
  return Note("elsewhere ", first, event_code, second, zero);
}

uintptr_t ParameterOf(Client& client) {
  return reinterpret_cast<uintptr_t>(&client);
}

using Calls = std::vector<std::string>;

class SeLockNotify : public AttachedTest {
 protected:
  SeLockNotify() { EXPECT_EQ(Occupy(), 1); }

  /// Another thread takes the lock; Free() gives that grant back.
  BOOL Occupy() {
    return other_.Call([this] { return tiSO_SELockExclusive(lock_, 1); });
  }
  void Free() { tiSO_SELockRelease(lock_); }

  BOOL Register(Client& client, uintptr_t second) {
    return tiSO_SELockExclusiveNotify(lock_, OnEvent, ParameterOf(client), second);
  }
  BOOL Withdraw(Client& client, uintptr_t second) {
    return tiSO_SELockExclusiveUnnotify(lock_, OnEvent, ParameterOf(client), second);
  }
  /// Withdraws a registration that is `place` from the newest, and frees its record.
  void WithdrawAndFree(Client& client, uintptr_t second, size_t place) {
    tiSO_NotifyRecord_t* record = ViewOf(lock_).notify.at(place);
    EXPECT_EQ(Withdraw(client, second), 1);
    std::free(record);
  }

  OwnLock lock_;
  Worker other_;
  Client client_;
  Client second_client_;
};

TEST_F(SeLockNotify, AFreeLockIsGrantedAtOnceInStateSix) {
  Free();
  EXPECT_EQ(Register(client_, 1), 1);
  EXPECT_EQ(lock_->owner, tiSO_GetThread());
  EXPECT_EQ(lock_->count, 1U);
  EXPECT_EQ(lock_->state, 6);
  EXPECT_EQ(lock_->pid, getpid());
  EXPECT_TRUE(ViewOf(lock_).notify.empty());
  Free();
  EXPECT_TRUE(client_.calls.empty());
}

TEST_F(SeLockNotify, TheOwnerIsGrantedOnceMoreAndTheStateStays) {
  Free();
  EXPECT_EQ(tiSO_SELockExclusive(lock_, 1), 1);
  EXPECT_EQ(Register(client_, 1), 1);
  EXPECT_EQ(lock_->count, 2U);
  EXPECT_EQ(lock_->state, 2);
  Free();
  Free();
}

TEST_F(SeLockNotify, ABusyLockRegistersAndTellsAtTheLastRelease) {
  EXPECT_EQ(other_.Call([this] { return tiSO_SELockExclusive(lock_, 1); }), 1);
  EXPECT_EQ(Register(client_, 5), 0);
  Free();
  EXPECT_TRUE(client_.calls.empty()) << "one grant is left";
  Free();
  EXPECT_EQ(client_.calls, (Calls{"4352/5"}));
  EXPECT_EQ(lock_->count, 0U) << "nothing is granted for the client";
  EXPECT_EQ(lock_->owner, TISO_NO_THREAD);
  EXPECT_EQ(lock_->state, 4);
  EXPECT_TRUE(ViewOf(lock_).notify.empty()) << "an accepted registration is gone";
}

TEST_F(SeLockNotify, ALockHeldSharedRegistersToo) {
  Free();
  EXPECT_EQ(tiSO_SELockSharedWaitForExclusive(lock_, 1), 1);
  EXPECT_EQ(Register(client_, 5), 0);
  Free();
  EXPECT_EQ(client_.calls, (Calls{"4352/5"}));
}

TEST_F(SeLockNotify, TheNewestIsToldFirstAndTheWalkStopsAtTheFirstThatAccepts) {
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(Register(client_, 2), 0);
  Free();
  EXPECT_EQ(client_.calls, (Calls{"4352/2"}));
  EXPECT_EQ(Occupy(), 1);
  Free();
  EXPECT_EQ(client_.calls, (Calls{"4352/2", "4352/1"}));
}

TEST_F(SeLockNotify, OneThatDeclinesStaysAndTheWalkGoesOn) {
  second_client_.answer = kDecline;
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(Register(second_client_, 2), 0);
  EXPECT_EQ(Register(second_client_, 3), 0);
  Free();
  EXPECT_EQ(second_client_.calls, (Calls{"4352/3", "4352/2"}));
  EXPECT_EQ(client_.calls, (Calls{"4352/1"}));
  EXPECT_EQ(ViewOf(lock_).notify.size(), 2U);
  EXPECT_EQ(Occupy(), 1);
  Free();
  EXPECT_EQ(second_client_.calls.size(), 4U) << "told again at the next release";
}

TEST_F(SeLockNotify, CallbacksComeAfterWaitingThreads) {
  EXPECT_EQ(Register(client_, 1), 0);
  Worker writer;
  Worker reader;
  StartAndQueue(writer, lock_, [this] { return tiSO_SELockExclusive(lock_, 1); });
  StartAndQueue(reader, lock_, [this] { return tiSO_SELockSharedWaitForExclusive(lock_, 1); });
  Free();
  EXPECT_EQ(writer.Finish(), 1);
  EXPECT_TRUE(client_.calls.empty());
  Free();
  EXPECT_EQ(reader.Finish(), 1);
  EXPECT_TRUE(client_.calls.empty());
  Free();
  EXPECT_EQ(client_.calls, (Calls{"4352/1"}));
}

uint32_t LookAtTheSpinWord(uintptr_t first, uint32_t, uintptr_t second, uint32_t) {
  *reinterpret_cast<LONG*>(second) = reinterpret_cast<tiSO_SELock_t*>(first)->spin_word;
  return kAccept;
}

TEST_F(SeLockNotify, CallbacksRunWithTheSpinWordTaken) {
  LONG seen = 0;
  EXPECT_EQ(
      tiSO_SELockExclusiveNotify(lock_, LookAtTheSpinWord,
                                 reinterpret_cast<uintptr_t>(static_cast<tiSO_SELock_t*>(lock_)),
                                 reinterpret_cast<uintptr_t>(&seen)),
      0);
  Free();
  EXPECT_EQ(seen, 1);
  EXPECT_EQ(lock_->spin_word, 0);
}

TEST_F(SeLockNotify, ANullCallbackIsNotRegistered) {
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock_, nullptr, 1, 2), 0);
  EXPECT_TRUE(ViewOf(lock_).notify.empty());
  Free();
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock_, nullptr, 1, 2), 1) << "a grant needs no callback";
  Free();
}

TEST_F(SeLockNotify, ParametersArePointerSized) {
  const auto wide = static_cast<uintptr_t>(-2);
  EXPECT_EQ(Register(client_, wide), 0);
  Free();
  EXPECT_EQ(client_.calls, (Calls{"4352/" + std::to_string(wide)}));
}

TEST_F(SeLockNotify, AWithdrawnRecordBelongsToTheCaller) {
  EXPECT_EQ(Register(client_, 9), 0);
  tiSO_NotifyRecord_t* record = ViewOf(lock_).notify.at(0);
  EXPECT_EQ(Withdraw(client_, 9), 1);
  EXPECT_EQ(client_.calls, (Calls{"4354/9"}));
  EXPECT_TRUE(ViewOf(lock_).notify.empty());
  EXPECT_EQ(record->callback, &OnEvent) << "still there";
  EXPECT_EQ(record->first, ParameterOf(client_));
  EXPECT_EQ(record->second, 9U);
  std::free(record);
  Free();
  EXPECT_EQ(client_.calls.size(), 1U);
}

TEST_F(SeLockNotify, WithdrawalNeedsTheCallbackAndBothParameters) {
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(Withdraw(client_, 2), 0);
  EXPECT_EQ(Withdraw(second_client_, 1), 0);
  EXPECT_EQ(tiSO_SELockExclusiveUnnotify(lock_, OnEventElsewhere, ParameterOf(client_), 1), 0);
  EXPECT_EQ(tiSO_SELockExclusiveUnnotify(lock_, nullptr, ParameterOf(client_), 1), 0);
  EXPECT_TRUE(client_.calls.empty());
  EXPECT_TRUE(second_client_.calls.empty());
  WithdrawAndFree(client_, 1, 0);
  EXPECT_EQ(Withdraw(client_, 1), 0) << "once only";
}

TEST_F(SeLockNotify, WithdrawalThatIsDeclinedStaysAndTheSearchGoesOn) {
  client_.answer = kDecline;
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(Withdraw(client_, 1), 0);
  EXPECT_EQ(client_.calls, (Calls{"4354/1", "4354/1"}));
  EXPECT_EQ(ViewOf(lock_).notify.size(), 2U);
}

TEST_F(SeLockNotify, WithdrawalUnlinksAtEveryPlace) {
  for (size_t place = 0; place < 3; ++place) {
    SCOPED_TRACE(place);
    for (uintptr_t second : {1U, 2U, 3U}) EXPECT_EQ(Register(client_, second), 0);
    WithdrawAndFree(client_, 3 - place, place);
    Calls expected;
    for (uintptr_t second : {3U, 2U, 1U}) {
      if (second != 3 - place) expected.push_back("4352/" + std::to_string(second));
    }
    client_.calls.clear();
    for (size_t left = 0; left < 2; ++left) {
      Free();
      EXPECT_EQ(Occupy(), 1);
    }
    EXPECT_EQ(client_.calls, expected);
  }
  Free();
}

TEST_F(SeLockNotify, TheSameRegistrationCanBeMadeSeveralTimes) {
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(Register(client_, 1), 0);
  EXPECT_EQ(ViewOf(lock_).notify.size(), 2U);
  Free();
  EXPECT_EQ(client_.calls.size(), 1U);
}

TEST_F(SeLockNotify, ALockThatIsFreedDropsItsRegistrationsSilently) {
  tiSO_SELock_t* lock = nullptr;
  ASSERT_EQ(tiSO_SELockCreate(&lock), 0U);
  other_.Call([lock] { return tiSO_SELockExclusive(lock, 1); });
  EXPECT_EQ(tiSO_SELockExclusiveNotify(lock, OnEvent, ParameterOf(client_), 1), 0);
  tiSO_Release(lock);
  EXPECT_TRUE(client_.calls.empty());
}

TEST_F(SeLockNotify, AClientThatIsToldTakesTheLockItself) {
  EXPECT_EQ(Register(client_, 1), 0);
  Free();
  EXPECT_EQ(client_.calls.size(), 1U);
  EXPECT_EQ(Register(client_, 1), 1);
  EXPECT_EQ(lock_->owner, tiSO_GetThread());
  Free();
}

}  // namespace
