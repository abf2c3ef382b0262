// The singly linked list: insertion, the walk with its pseudo-element, removal, null arguments.
#include "zebcomn/lists/ll.h"

#include <gtest/gtest.h>

#include <string>

namespace {

struct Element {
  tiLL_element_t link;
  char name;
};

class LlTest : public testing::Test {
 protected:
  LlTest() { tiLL_Init(&head_); }

  void InsertAll() {
    for (Element* element : {&c_, &b_, &a_}) tiLL_XInsertHead(&head_, &element->link);
  }

  std::string Names() {
    std::string names;
    for (tiLL_element_t* link = tiLL_XGetNext(tiLL_XGetStart(&head_)); tiLL_XIsEnd(link) == 0;
         link = tiLL_XGetNext(link)) {
      names += reinterpret_cast<Element*>(link)->name;
    }
    return names;
  }

  tiLL_head_t head_{&a_.link};
  Element a_{{nullptr}, 'A'};
  Element b_{{nullptr}, 'B'};
  Element c_{{nullptr}, 'C'};
};

TEST_F(LlTest, InitMakesTheListEmpty) {
  EXPECT_EQ(head_.next, nullptr);
  EXPECT_EQ(tiLL_IsEmpty(&head_), 1);
  EXPECT_EQ(Names(), "");
}

TEST_F(LlTest, InsertHeadPutsTheElementFirst) {
  tiLL_XInsertHead(&head_, &b_.link);
  tiLL_XInsertHead(&head_, &a_.link);
  EXPECT_EQ(head_.next, &a_.link);
  EXPECT_EQ(a_.link.next, &b_.link);
  EXPECT_EQ(b_.link.next, nullptr);
  EXPECT_EQ(tiLL_IsEmpty(&head_), 0);
}

TEST_F(LlTest, RemoveHeadGivesTheNewestFirst) {
  InsertAll();
  EXPECT_EQ(tiLL_XRemoveHead(&head_), &a_.link);
  EXPECT_EQ(tiLL_XRemoveHead(&head_), &b_.link);
  EXPECT_EQ(tiLL_XRemoveHead(&head_), &c_.link);
  EXPECT_EQ(tiLL_XRemoveHead(&head_), nullptr);
}

TEST_F(LlTest, RemoveHeadOfAnEmptyListGivesNullAndLeavesItEmpty) {
  EXPECT_EQ(tiLL_XRemoveHead(&head_), nullptr);
  EXPECT_EQ(head_.next, nullptr);
}

TEST_F(LlTest, StartIsTheHeadItself) {
  InsertAll();
  EXPECT_EQ(static_cast<void*>(tiLL_XGetStart(&head_)), &head_);
  EXPECT_EQ(tiLL_XGetNext(tiLL_XGetStart(&head_)), &a_.link);
  EXPECT_EQ(Names(), "ABC");
}

TEST_F(LlTest, RemoveUnlinksAtEveryPlace) {
  InsertAll();
  tiLL_XRemove(&a_.link, &b_.link);
  EXPECT_EQ(Names(), "AC");
  EXPECT_EQ(b_.link.next, &c_.link);
  tiLL_XRemove(tiLL_XGetStart(&head_), &a_.link);
  EXPECT_EQ(Names(), "C");
  tiLL_XRemove(tiLL_XGetStart(&head_), &c_.link);
  EXPECT_EQ(tiLL_IsEmpty(&head_), 1);
}

TEST_F(LlTest, OnlyNullIsTheEnd) {
  EXPECT_EQ(tiLL_XIsEnd(nullptr), 1);
  EXPECT_EQ(tiLL_XIsEnd(&a_.link), 0);
}

TEST_F(LlTest, NullPointersAreTolerated) {
  InsertAll();
  tiLL_Init(nullptr);
  EXPECT_EQ(tiLL_IsEmpty(nullptr), 1);
  tiLL_XInsertHead(nullptr, &a_.link);
  tiLL_XInsertHead(&head_, nullptr);
  EXPECT_EQ(tiLL_XRemoveHead(nullptr), nullptr);
  EXPECT_EQ(tiLL_XGetStart(nullptr), nullptr);
  EXPECT_EQ(tiLL_XGetNext(nullptr), nullptr);
  tiLL_XRemove(nullptr, &a_.link);
  tiLL_XRemove(&a_.link, nullptr);
  EXPECT_EQ(Names(), "ABC");
}

}  // namespace
