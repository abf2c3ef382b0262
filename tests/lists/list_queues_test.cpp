// The two lists with locks as work queues between threads: every element is delivered once.
#include <gtest/gtest.h>
#include <sched.h>

#include <atomic>
#include <memory>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include "tests/lists/attached.h"
#include "zebcomn/lists/sll.h"
#include "zebcomn/lists/sll2.h"

namespace {

using zebcomn_test::AttachedTest;
using zebcomn_test::Rounds;

constexpr int kProducers = 2;
constexpr int kConsumers = 2;
constexpr int kPerProducer = Rounds(8000);
constexpr int kTotal = kProducers * kPerProducer;

/// A list by its calls.
struct SllQueue {
  using Links = tiLL_element_t;
  SllQueue() { EXPECT_EQ(tiSLL_Create(&list), 0U); }
  ~SllQueue() { tiSLL_Release(list); }
  void Insert(Links* links, int) { tiSLL_XInsertHead(list, links); }
  Links* Remove(int) { return tiSLL_XRemoveHead(list); }
  /// The number of elements, by a walk.
  int Walk() {
    int elements = 0;
    for (Links* links = tiSLL_XGetHead(list, 0, 1); tiLL_XIsEnd(links) == 0;
         links = tiLL_XGetNext(links)) {
      ++elements;
    }
    tiSLL_LockRelease(list);
    return elements;
  }
  BOOL IsEmpty() { return tiSLL_IsEmpty(list); }
  tiSLL_t* list = nullptr;
};

struct Sll2Queue {
  using Links = tiLL2_element_t;
  Sll2Queue() { EXPECT_EQ(tiSLL2_Create(&list), 0U); }
  ~Sll2Queue() { tiSLL2_Release(list); }
  void Insert(Links* links, int turn) {
    turn % 3 == 0 ? tiSLL2_XInsertHead(list, links) : tiSLL2_XInsertTail(list, links);
  }
  Links* Remove(int turn) {
    return turn % 3 == 0 ? tiSLL2_XRemoveTail(list) : tiSLL2_XRemoveHead(list);
  }
  int Walk() {
    int elements = 0;
    for (Links* links = tiSLL2_XGetHead(list, 0, 1); tiLL2_XIsEnd(links) == 0;
         links = tiLL2_XGetNext(links)) {
      ++elements;
    }
    tiSLL2_LockRelease(list);
    return elements;
  }
  BOOL IsEmpty() { return tiSLL2_IsEmpty(list); }
  tiSLL2_t* list = nullptr;
};

template <typename Queue>
class ListQueues : public AttachedTest {
 protected:
  struct Element {
    typename Queue::Links links;
    int delivered;  // Not atomic: only the thread that has removed the element may touch it.
  };

  template <typename Body>
  void StartThread(Body body) {
    threads_.emplace_back([body] {
      tiSO_ThreadAttach();
      body();
      tiSO_ThreadDetach();
    });
  }

  void Produce(int producer) {
    for (int turn = 0; turn < kPerProducer; ++turn) {
      Element& element = elements_[static_cast<size_t>(producer * kPerProducer + turn)];
      element.delivered = 0;
      queue_.Insert(&element.links, turn);
    }
  }

  void Consume() {
    for (int turn = 0; consumed_ < kTotal; ++turn) {
      if (auto* links = queue_.Remove(turn)) {
        ++reinterpret_cast<Element*>(links)->delivered;
        ++consumed_;
      } else {
        sched_yield();
      }
    }
  }

  void Watch() {
    while (consumed_ < kTotal) {
      const int elements = queue_.Walk();
      EXPECT_LE(elements, kTotal);
      sched_yield();
    }
  }

  std::unique_ptr<Element[]> elements_{new Element[static_cast<size_t>(kTotal)]};
  Queue queue_;
  std::atomic<int> consumed_{0};
  std::vector<std::thread> threads_;
};

struct QueueNames {
  template <typename Queue>
  static std::string GetName(int) {
    return std::is_same_v<Queue, SllQueue> ? "Sll" : "Sll2";
  }
};
using Queues = testing::Types<SllQueue, Sll2Queue>;
TYPED_TEST_SUITE(ListQueues, Queues, QueueNames);

TYPED_TEST(ListQueues, EveryElementIsDeliveredOnce) {
  for (int producer = 0; producer < kProducers; ++producer) {
    this->StartThread([this, producer] { this->Produce(producer); });
  }
  for (int consumer = 0; consumer < kConsumers; ++consumer) {
    this->StartThread([this] { this->Consume(); });
  }
  this->StartThread([this] { this->Watch(); });
  for (std::thread& thread : this->threads_) thread.join();
  EXPECT_EQ(this->queue_.IsEmpty(), 1);
  for (int index = 0; index < kTotal; ++index) {
    ASSERT_EQ(this->elements_[static_cast<size_t>(index)].delivered, 1) << index;
  }
}

}  // namespace
