// The counted list: order, index access, links at odd addresses, and the assertions' exact texts.
#include "zebcomn/lists/Linklist.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <list>
#include <random>
#include <string>
#include <vector>

namespace {

struct Element {
  void* previous;
  void* next;
  char name;
};

/// The fields of a list record, in their described order.
struct Record {
  void* tail;
  void* head;
  DWORD count;
};

Element kForeign[2];

Element MakeElement(char name) {
  return Element{&kForeign[0], &kForeign[1], name};
}

class LinkedListTest : public testing::Test {
 protected:
  LinkedListTest() { EXPECT_EQ(LinkedList_Init(&list_), 1); }
  ~LinkedListTest() override { LinkedList_End(&list_); }

  Record& record() { return *static_cast<Record*>(list_); }

  void AddTail(std::vector<Element*> elements) {
    for (Element* element : elements) EXPECT_EQ(LinkedList_AddTail(list_, element), 1);
  }

  /// The names from head to tail, checked against those from tail to head and against the count.
  std::string Names() {
    std::string forwards;
    std::string backwards;
    for (auto* item = static_cast<Element*>(record().head); item != nullptr;
         item = static_cast<Element*>(item->next)) {
      forwards += item->name;
    }
    for (auto* item = static_cast<Element*>(record().tail); item != nullptr;
         item = static_cast<Element*>(item->previous)) {
      backwards.insert(backwards.begin(), item->name);
    }
    EXPECT_EQ(forwards, backwards);
    EXPECT_EQ(forwards.size(), LinkedList_GetCount(list_));
    return forwards;
  }

  void* list_ = nullptr;
  Element a_ = MakeElement('A');
  Element b_ = MakeElement('B');
  Element c_ = MakeElement('C');
};

TEST_F(LinkedListTest, InitMakesAnEmptyRecord) {
  ASSERT_NE(list_, nullptr);
  EXPECT_EQ(record().head, nullptr);
  EXPECT_EQ(record().tail, nullptr);
  EXPECT_EQ(record().count, 0U);
}

TEST_F(LinkedListTest, EndNullsTheHandleAndLeavesTheElements) {
  AddTail({&a_, &b_});
  LinkedList_End(&list_);
  EXPECT_EQ(list_, nullptr);
  EXPECT_EQ(a_.next, &b_);
  EXPECT_EQ(b_.previous, &a_);
}

TEST_F(LinkedListTest, EndTakesANullHandleAndANullPointer) {
  void* none = nullptr;
  LinkedList_End(&none);
  EXPECT_EQ(none, nullptr);
  LinkedList_End(nullptr);
}

TEST_F(LinkedListTest, AddTailKeepsTheOrder) {
  AddTail({&a_, &b_, &c_});
  EXPECT_EQ(Names(), "ABC");
  EXPECT_EQ(LinkedList_PeekAt(list_, 0), &a_);
  EXPECT_EQ(LinkedList_PeekAt(list_, 1), &b_);
  EXPECT_EQ(LinkedList_PeekAt(list_, 2), &c_);
  EXPECT_EQ(LinkedList_PeekAt(list_, 3), nullptr);
  EXPECT_EQ(LinkedList_PeekAt(list_, 0xFFFFFFFFU), nullptr);
}

TEST_F(LinkedListTest, AddHeadTurnsTheOrder) {
  for (Element* element : {&a_, &b_, &c_}) EXPECT_EQ(LinkedList_AddHead(list_, element), 1);
  EXPECT_EQ(Names(), "CBA");
}

TEST_F(LinkedListTest, TheFirstElementIsHeadAndTail) {
  EXPECT_EQ(LinkedList_AddHead(list_, &a_), 1);
  EXPECT_EQ(record().head, &a_);
  EXPECT_EQ(record().tail, &a_);
  EXPECT_EQ(a_.previous, nullptr);
  EXPECT_EQ(a_.next, nullptr);
}

TEST_F(LinkedListTest, NullListsAndElementsAreRefused) {
  EXPECT_EQ(LinkedList_AddHead(nullptr, &a_), 0);
  EXPECT_EQ(LinkedList_AddHead(list_, nullptr), 0);
  EXPECT_EQ(LinkedList_AddTail(nullptr, &a_), 0);
  EXPECT_EQ(LinkedList_AddTail(list_, nullptr), 0);
  EXPECT_EQ(LinkedList_RemoveTail(nullptr), nullptr);
  EXPECT_EQ(LinkedList_RemoveAt(nullptr, 0), nullptr);
  EXPECT_EQ(Names(), "");
  EXPECT_EQ(a_.next, &kForeign[1]);
}

TEST_F(LinkedListTest, RemoveTailTakesTheLastAndKeepsItsLinks) {
  AddTail({&a_, &b_});
  EXPECT_EQ(LinkedList_RemoveTail(list_), &b_);
  EXPECT_EQ(b_.previous, &a_);
  EXPECT_EQ(b_.next, nullptr);
  EXPECT_EQ(Names(), "A");
  EXPECT_EQ(LinkedList_RemoveTail(list_), &a_);
  EXPECT_EQ(record().head, nullptr);
  EXPECT_EQ(record().tail, nullptr);
}

TEST_F(LinkedListTest, RemoveTailOfAnEmptyListGivesNull) {
  EXPECT_EQ(LinkedList_RemoveTail(list_), nullptr);
  EXPECT_EQ(LinkedList_GetCount(list_), 0U);
}

TEST_F(LinkedListTest, RemoveAtTakesTheElementAtTheIndexAndKeepsItsLinks) {
  struct Case {
    DWORD index;
    Element* removed;
    const char* left;
    void* previous;
    void* next;
  };
  // The head's new neighbour loses its link before the head's own links are read for the joining,
  // and neither changes the removed element.
  const Case cases[] = {
      {0, &a_, "BC", nullptr, &b_}, {1, &b_, "AC", &a_, &c_}, {2, &c_, "AB", &b_, nullptr}};
  for (const Case& one : cases) {
    SCOPED_TRACE(one.index);
    AddTail({&a_, &b_, &c_});
    EXPECT_EQ(LinkedList_RemoveAt(list_, one.index), one.removed);
    EXPECT_EQ(Names(), one.left);
    EXPECT_EQ(one.removed->previous, one.previous);
    EXPECT_EQ(one.removed->next, one.next);
    while (LinkedList_RemoveTail(list_) != nullptr) {
    }
  }
}

TEST_F(LinkedListTest, RemoveAtOfTheOnlyElementEmptiesTheList) {
  AddTail({&a_});
  EXPECT_EQ(LinkedList_RemoveAt(list_, 0), &a_);
  EXPECT_EQ(record().head, nullptr);
  EXPECT_EQ(record().tail, nullptr);
  EXPECT_EQ(record().count, 0U);
}

TEST_F(LinkedListTest, RemoveAtOfTheOnlyElementIsARemovalAtTheHeadThatNeedsNoTail) {
  AddTail({&a_});
  record().tail = nullptr;
  EXPECT_EQ(LinkedList_RemoveAt(list_, 0), &a_);
  EXPECT_EQ(record().head, nullptr);
  EXPECT_EQ(record().tail, nullptr);
  EXPECT_EQ(record().count, 0U);
}

TEST_F(LinkedListTest, RemoveAtPastTheEndGivesNull) {
  EXPECT_EQ(LinkedList_RemoveAt(list_, 0), nullptr);
  AddTail({&a_});
  EXPECT_EQ(LinkedList_RemoveAt(list_, 1), nullptr);
  EXPECT_EQ(LinkedList_RemoveAt(list_, 0xFFFFFFFFU), nullptr);
  EXPECT_EQ(Names(), "A");
}

TEST_F(LinkedListTest, ElementsAtEveryByteAddressWork) {
  for (std::size_t offset = 0; offset < sizeof(void*); ++offset) {
    SCOPED_TRACE(offset);
    constexpr std::size_t kStride = 3 * sizeof(void*) + 1;
    alignas(void*) std::array<unsigned char, 4 * kStride> bytes{};
    const auto element = [&](std::size_t index) -> void* {
      return &bytes[offset + index * kStride];
    };
    for (std::size_t index = 0; index < 3; ++index) LinkedList_AddTail(list_, element(index));
    EXPECT_EQ(LinkedList_PeekAt(list_, 2), element(2));
    EXPECT_EQ(LinkedList_RemoveAt(list_, 1), element(1));
    EXPECT_EQ(LinkedList_AddHead(list_, element(1)), 1);
    EXPECT_EQ(LinkedList_RemoveTail(list_), element(2));
    EXPECT_EQ(LinkedList_RemoveAt(list_, 1), element(0));
    EXPECT_EQ(LinkedList_RemoveAt(list_, 0), element(1));
    EXPECT_EQ(LinkedList_GetCount(list_), 0U);
  }
}

TEST_F(LinkedListTest, FollowsAModelThroughRandomCalls) {
  std::mt19937 random(20071);
  std::vector<Element> elements;
  for (char name = 'a'; name <= 'z'; ++name) elements.push_back(MakeElement(name));
  std::list<Element*> outside;
  for (Element& element : elements) outside.push_back(&element);
  std::vector<Element*> model;
  for (int step = 0; step < 20'000; ++step) {
    const auto index = static_cast<DWORD>(random() % 30U);
    switch (random() % 4U) {
      case 0:
      case 1: {
        if (outside.empty()) break;
        Element* element = outside.front();
        outside.pop_front();
        const bool at_head = index % 2 == 0;
        ASSERT_EQ(at_head ? LinkedList_AddHead(list_, element) : LinkedList_AddTail(list_, element),
                  1);
        model.insert(at_head ? model.begin() : model.end(), element);
        break;
      }
      case 2: {
        Element* expected = model.empty() ? nullptr : model.back();
        ASSERT_EQ(LinkedList_RemoveTail(list_), expected);
        if (expected == nullptr) break;
        model.pop_back();
        outside.push_back(expected);
        break;
      }
      default: {
        Element* expected = index < model.size() ? model[index] : nullptr;
        ASSERT_EQ(LinkedList_PeekAt(list_, index), expected);
        ASSERT_EQ(LinkedList_RemoveAt(list_, index), expected);
        if (expected == nullptr) break;
        model.erase(model.begin() + static_cast<std::ptrdiff_t>(index));
        outside.push_back(expected);
      }
    }
    std::string names;
    for (const Element* element : model) names += element->name;
    ASSERT_EQ(Names(), names) << "step " << step;
  }
}

// The C library's message, with the program's name before it.
std::string Message(const std::string& line_and_function, const std::string& expression) {
  std::string text =
      ": Linklist:" + line_and_function + ": Assertion `" + expression + "' failed\\.";
  for (std::size_t at = 0; (at = text.find_first_of("()*", at)) != std::string::npos; at += 2) {
    text.insert(at, "\\");
  }
  return text;
}

class LinkedListDeathTest : public LinkedListTest {
 protected:
  LinkedListDeathTest() { GTEST_FLAG_SET(death_test_style, "fast"); }
};

TEST_F(LinkedListDeathTest, InitIntoNullFailsTheAssertionOfLine31) {
  EXPECT_EXIT(LinkedList_Init(nullptr), testing::KilledBySignal(SIGABRT),
              Message("31: BOOL LinkedList_Init(void**)", "lphLinkedList"));
}

TEST_F(LinkedListDeathTest, CountOfANullListFailsTheAssertionOfLine167) {
  EXPECT_EXIT(LinkedList_GetCount(nullptr), testing::KilledBySignal(SIGABRT),
              Message("167: DWORD LinkedList_GetCount(void*)", "lpMain"));
}

TEST_F(LinkedListDeathTest, PeekInABrokenListFailsTheAssertionOfLine200) {
  AddTail({&a_, &b_, &c_});
  a_.next = nullptr;
  for (DWORD index : {1U, 2U}) {
    EXPECT_EXIT(LinkedList_PeekAt(list_, index), testing::KilledBySignal(SIGABRT),
                Message("200: void* LinkedList_PeekAt(void*, DWORD)", "lpItem"));
  }
  EXPECT_EQ(LinkedList_PeekAt(list_, 0), &a_);
}

TEST_F(LinkedListDeathTest, RemoveOfTheLastWithoutATailFailsTheAssertionOfLine238) {
  AddTail({&a_, &b_});
  record().tail = nullptr;
  EXPECT_EXIT(LinkedList_RemoveAt(list_, 1), testing::KilledBySignal(SIGABRT),
              Message("238: void* LinkedList_RemoveAt(void*, DWORD)", "lpMain->lpTail"));
  a_.next = nullptr;  // The tail is looked at before the way to the element.
  EXPECT_EXIT(LinkedList_RemoveAt(list_, 1), testing::KilledBySignal(SIGABRT),
              Message("238: void* LinkedList_RemoveAt(void*, DWORD)", "lpMain->lpTail"));
}

TEST_F(LinkedListDeathTest, RemoveInABrokenListFailsTheAssertionOfLine245) {
  AddTail({&a_, &b_, &c_});
  a_.next = nullptr;
  for (DWORD index : {1U, 2U}) {
    EXPECT_EXIT(LinkedList_RemoveAt(list_, index), testing::KilledBySignal(SIGABRT),
                Message("245: void* LinkedList_RemoveAt(void*, DWORD)", "lpItem"));
  }
}

TEST_F(LinkedListDeathTest, AMissingHeadIsABrokenListToo) {
  AddTail({&a_, &b_});
  record().head = nullptr;
  EXPECT_EXIT(LinkedList_PeekAt(list_, 0), testing::KilledBySignal(SIGABRT),
              Message("200: void* LinkedList_PeekAt(void*, DWORD)", "lpItem"));
  EXPECT_EXIT(LinkedList_RemoveAt(list_, 0), testing::KilledBySignal(SIGABRT),
              Message("245: void* LinkedList_RemoveAt(void*, DWORD)", "lpItem"));
}

}  // namespace
