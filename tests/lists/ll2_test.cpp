// The doubly linked list between sentinels: steps, the end, removal, null links.
#include "zebcomn/lists/ll2.h"

#include <gtest/gtest.h>

namespace {

class Ll2Test : public testing::Test {
 protected:
  tiLL2_element_t list_[2] = {{&a_, &list_[0]}, {&list_[1], &b_}};
  tiLL2_element_t a_{&b_, &list_[0]};
  tiLL2_element_t b_{&list_[1], &a_};
};

TEST_F(Ll2Test, StepsGoBothWays) {
  EXPECT_EQ(tiLL2_XGetNext(&list_[0]), &a_);
  EXPECT_EQ(tiLL2_XGetNext(&a_), &b_);
  EXPECT_EQ(tiLL2_XGetNext(&b_), &list_[1]);
  EXPECT_EQ(tiLL2_XGetNext(&list_[1]), &list_[1]);
  EXPECT_EQ(tiLL2_XGetPrev(&list_[1]), &b_);
  EXPECT_EQ(tiLL2_XGetPrev(&b_), &a_);
  EXPECT_EQ(tiLL2_XGetPrev(&a_), &list_[0]);
  EXPECT_EQ(tiLL2_XGetPrev(&list_[0]), &list_[0]);
}

TEST_F(Ll2Test, TheTailSentinelIsTheEnd) {
  EXPECT_EQ(tiLL2_XIsEnd(&list_[1]), 1);
  EXPECT_EQ(tiLL2_XIsEnd(&b_), 0);
  EXPECT_EQ(tiLL2_XIsEnd(&list_[0]), 0);
}

TEST_F(Ll2Test, RemoveJoinsTheNeighboursAndKeepsTheElementsOwnLinks) {
  tiLL2_XRemove(&a_);
  EXPECT_EQ(list_[0].next, &b_);
  EXPECT_EQ(b_.previous, &list_[0]);
  EXPECT_EQ(a_.next, &b_);
  EXPECT_EQ(a_.previous, &list_[0]);
  tiLL2_XRemove(&b_);
  EXPECT_EQ(tiLL2_XIsEnd(list_[0].next), 1);
  EXPECT_EQ(list_[1].previous, &list_[0]);
}

TEST_F(Ll2Test, RemoveSkipsANullLink) {
  tiLL2_element_t last{nullptr, &a_};
  tiLL2_XRemove(&last);
  EXPECT_EQ(a_.next, nullptr);
  tiLL2_element_t first{&b_, nullptr};
  tiLL2_XRemove(&first);
  EXPECT_EQ(b_.previous, nullptr);
}

TEST_F(Ll2Test, NullElementsAreTolerated) {
  EXPECT_EQ(tiLL2_XGetNext(nullptr), nullptr);
  EXPECT_EQ(tiLL2_XGetPrev(nullptr), nullptr);
  EXPECT_EQ(tiLL2_XIsEnd(nullptr), 1);
  tiLL2_XRemove(nullptr);
}

}  // namespace
