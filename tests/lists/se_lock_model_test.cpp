// A plain state machine of the lock beside the real one: random calls of several threads, one at a
// time, with the same answers, hand-overs, callbacks and fields expected after each.
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/lists/se_lock.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::LockView;
using zebcomn_test::OwnLock;
using zebcomn_test::Rounds;
using zebcomn_test::ViewOf;
using zebcomn_test::Worker;

constexpr int kNobody = -1;

/// Which clients answer "accept" to which event, and what they were told.
constexpr int kClients = 3;
struct Clients {
  bool accepts_free[kClients] = {};
  bool accepts_withdrawal[kClients] = {};
  std::vector<std::string> told;

  bool Tell(int client, uint32_t event_code) {
    told.push_back(std::to_string(client) + ":" + std::to_string(event_code));
    return event_code == 0x1100 ? accepts_free[client] : accepts_withdrawal[client];
  }
};

uint32_t CallClient(uintptr_t first, uint32_t event_code, uintptr_t second, uint32_t) {
  return reinterpret_cast<Clients*>(first)->Tell(static_cast<int>(second), event_code) ? 0 : 1;
}

enum class Request { kExclusive, kStarving, kPolite };

/// The lock's rules, with threads and clients as small numbers. A thread that is not attached is
/// kNobody.
struct Model {
  int owner = kNobody;
  uint32_t count = 0;
  int state = 1;
  bool granted_exclusively = false;  // So that the pid is set.
  std::vector<int> shared;           // The last is the next to be served.
  std::vector<int> exclusive;
  std::vector<int> notify;
  std::vector<int> served;  // By the last step.

  bool TakeExclusive(int self, int state_if_free) {
    if (count != 0 && owner != self) return false;
    ++count;
    if (owner == kNobody) {
      owner = self;
      state = state_if_free;
    }
    granted_exclusively = true;
    return true;
  }

  bool TakeShared(int self, Request request) {
    const bool starving = request == Request::kStarving && owner == kNobody;
    const bool polite =
        request == Request::kPolite && (count == 0 || (owner == kNobody && exclusive.empty()));
    if (owner != self && !starving && !polite) return false;
    ++count;
    return true;
  }

  /// The request's answer; nothing when it is queued.
  std::optional<BOOL> Ask(int self, Request request, bool wait) {
    const bool is_exclusive = request == Request::kExclusive;
    if (is_exclusive ? TakeExclusive(self, 2) : TakeShared(self, request)) return 1;
    if (!wait || self == kNobody) return 0;
    (is_exclusive ? exclusive : shared).push_back(self);
    return std::nullopt;
  }

  void ServeReaders() {
    for (; !shared.empty(); shared.pop_back()) {
      ++count;
      served.push_back(shared.back());
    }
  }

  void ToShared() {
    owner = kNobody;
    state = 3;
    ServeReaders();
  }

  void Release(Clients& clients) {
    if (--count != 0) return;
    owner = kNobody;
    state = 4;
    if (!exclusive.empty()) {
      owner = exclusive.back();
      exclusive.pop_back();
      count = 1;
      state = 5;
      granted_exclusively = true;
      served.push_back(owner);
    } else if (!shared.empty()) {
      ServeReaders();
    } else {
      RemoveFirst(0x1100, clients, [](int) { return true; });
    }
  }

  BOOL Notify(int self, int client) {
    if (TakeExclusive(self, 6)) return 1;
    notify.push_back(client);
    return 0;
  }

  BOOL Unnotify(int client, Clients& clients) {
    return RemoveFirst(0x1102, clients, [client](int other) { return other == client; });
  }

  template <typename Matches>
  bool RemoveFirst(uint32_t event_code, Clients& clients, Matches matches) {
    for (size_t place = notify.size(); place-- > 0;) {
      if (!matches(notify[place]) || !clients.Tell(notify[place], event_code)) continue;
      notify.erase(notify.begin() + static_cast<std::ptrdiff_t>(place));
      return true;
    }
    return false;
  }
};

class SeLockModel : public AttachedTest {
 protected:
  static constexpr int kThreads = 4;

  SeLockModel() {
    for (int thread = 0; thread < kThreads; ++thread) {
      threads_.push_back(std::make_unique<Worker>());
    }
    threads_.push_back(std::make_unique<Worker>(Worker::Kind::kNotAttached));
  }

  int Random(int below) { return static_cast<int>(random_() % static_cast<unsigned>(below)); }

  // The thread that is not attached comes last.
  int SelfOf(int thread) const { return thread == kThreads ? kNobody : thread; }
  uintptr_t IdentityOf(int self) {
    return self == kNobody ? TISO_NO_THREAD : threads_[static_cast<size_t>(self)]->identity();
  }
  Worker& WorkerOf(int thread) { return *threads_[static_cast<size_t>(thread)]; }

  bool IsQueued(int thread) const {
    return std::count(model_.shared.begin(), model_.shared.end(), thread) != 0 ||
           std::count(model_.exclusive.begin(), model_.exclusive.end(), thread) != 0;
  }

  std::vector<uintptr_t> Identities(const std::vector<int>& newest_last) {
    std::vector<uintptr_t> identities;
    for (size_t place = newest_last.size(); place-- > 0;) {
      identities.push_back(IdentityOf(newest_last[place]));
    }
    return identities;
  }

  void ExpectSame(tiSO_SELock_t* lock) {
    const LockView view = ViewOf(lock);
    ASSERT_EQ(view.owner, IdentityOf(model_.owner));
    ASSERT_EQ(view.count, model_.count);
    ASSERT_EQ(view.state, model_.state);
    ASSERT_EQ(view.pid, model_.granted_exclusively ? getpid() : 0);
    ASSERT_EQ(view.shared, Identities(model_.shared));
    ASSERT_EQ(view.exclusive, Identities(model_.exclusive));
    std::vector<int> clients;
    for (tiSO_NotifyRecord_t* record : view.notify) {
      clients.insert(clients.begin(), static_cast<int>(record->second));
    }
    ASSERT_EQ(clients, model_.notify);
    ASSERT_EQ(real_clients_.told, model_clients_.told);
  }

  /// Everybody whom the last step served returns 1, and nobody else does.
  void ExpectServed() {
    for (int thread : model_.served) ASSERT_EQ(WorkerOf(thread).Finish(), 1);
    model_.served.clear();
    for (int thread = 0; thread < kThreads; ++thread) {
      if (IsQueued(thread)) {
        ASSERT_FALSE(WorkerOf(thread).finished());
      }
    }
  }

  void Ask(tiSO_SELock_t* lock, int thread) {
    const auto request = static_cast<Request>(Random(3));
    const bool wait = Random(3) != 0;
    Worker& worker = WorkerOf(thread);
    const std::optional<BOOL> answer = model_.Ask(SelfOf(thread), request, wait);
    worker.Start([=] {
      switch (request) {
        case Request::kExclusive:
          return tiSO_SELockExclusive(lock, wait);
        case Request::kStarving:
          return tiSO_SELockSharedStarveExclusive(lock, wait);
        default:
          return tiSO_SELock(lock, 0, wait);
      }
    });
    if (answer.has_value()) {
      ASSERT_EQ(worker.Finish(), *answer);
      return;
    }
    const auto all_queued = [&] {
      const LockView view = ViewOf(lock);
      return view.shared.size() + view.exclusive.size() ==
             model_.shared.size() + model_.exclusive.size();
    };
    while (!all_queued()) {
      ASSERT_FALSE(worker.finished());
      sched_yield();
    }
  }

  void Release(tiSO_SELock_t* lock) {
    model_.Release(model_clients_);
    tiSO_SELockRelease(lock);
  }

  void Unnotify(tiSO_SELock_t* lock, int client) {
    const std::vector<tiSO_NotifyRecord_t*> before = ViewOf(lock).notify;
    const BOOL answer = model_.Unnotify(client, model_clients_);
    ASSERT_EQ(tiSO_SELockExclusiveUnnotify(lock, CallClient, ClientsParameter(),
                                           static_cast<uintptr_t>(client)),
              answer);
    if (answer == 0) return;
    std::vector<tiSO_NotifyRecord_t*> after = ViewOf(lock).notify;
    after.push_back(nullptr);
    std::free(*std::mismatch(before.begin(), before.end(), after.begin()).first);
  }

  uintptr_t ClientsParameter() { return reinterpret_cast<uintptr_t>(&real_clients_); }

  void ChooseAnswers() {
    for (int client = 0; client < kClients; ++client) {
      real_clients_.accepts_free[client] = model_clients_.accepts_free[client] = Random(2) == 0;
      real_clients_.accepts_withdrawal[client] = model_clients_.accepts_withdrawal[client] =
          Random(2) == 0;
    }
  }

  void Step(tiSO_SELock_t* lock) {
    const int thread = Random(kThreads + 1);
    const bool queued = IsQueued(thread);
    ChooseAnswers();
    switch (Random(8)) {
      case 0:
      case 1:
      case 2:
        if (!queued) Ask(lock, thread);
        break;
      case 3:
        if (model_.count == 0) break;
        model_.ToShared();
        tiSO_SELockExclusiveToShared(lock);
        break;
      case 4: {
        if (queued) break;
        const int client = Random(kClients);
        const BOOL answer = model_.Notify(SelfOf(thread), client);
        ASSERT_EQ(WorkerOf(thread).Call([&] {
          return tiSO_SELockExclusiveNotify(lock, CallClient, ClientsParameter(),
                                            static_cast<uintptr_t>(client));
        }),
                  answer);
        break;
      }
      case 5:
        Unnotify(lock, Random(kClients));
        break;
      default:
        if (model_.count != 0) Release(lock);
    }
  }

  void RunSchedule() {
    OwnLock lock;
    model_ = Model{};
    real_clients_ = model_clients_ = Clients{};
    const int steps = 5 + Random(40);
    for (int step = 0; step < steps || model_.count != 0; ++step) {
      SCOPED_TRACE("step " + std::to_string(step));
      if (step < steps) {
        Step(lock);
      } else {
        Release(lock);
      }
      if (HasFatalFailure()) return;
      ExpectServed();
      if (HasFatalFailure()) return;
      ExpectSame(lock);
      if (HasFatalFailure()) return;
    }
    ASSERT_TRUE(model_.shared.empty() && model_.exclusive.empty());
  }

  std::mt19937 random_;
  std::vector<std::unique_ptr<Worker>> threads_;
  Model model_;
  Clients real_clients_;
  Clients model_clients_;
};

TEST_F(SeLockModel, RealLockAnswersAsThePlainStateMachine) {
  for (unsigned schedule = 0; schedule < static_cast<unsigned>(Rounds(4000)); ++schedule) {
    SCOPED_TRACE("schedule " + std::to_string(schedule));
    random_.seed(schedule);
    RunSchedule();
    // What a failure left queued would wait for ever.
    if (HasFatalFailure()) std::_Exit(1);
  }
}

}  // namespace
