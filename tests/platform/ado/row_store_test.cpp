// Holding, erasing and stepping over rows.
#include "platform/ado/row_store.h"

#include <gtest/gtest.h>

namespace pelm::ado {
namespace {

RowStore store_of(int rows) {
  RowStore store;
  store.reset(1);
  for (int i = 0; i < rows; ++i) store.set(store.append(), 0, i);
  return store;
}

TEST(RowStore, AppendsRowsOfNulls) {
  RowStore store;
  store.reset(2);
  EXPECT_EQ(store.append(), 0U);
  EXPECT_TRUE(store.value(0, 0).is_null());
  EXPECT_TRUE(store.value(0, 1).is_null());
}

TEST(RowStore, KeepsNumbersWhileRowsAreErased) {
  RowStore store = store_of(4);
  store.erase(1);
  store.erase(1);
  EXPECT_EQ(store.size(), 4U);
  EXPECT_EQ(store.live(), 3U);
  EXPECT_FALSE(store.is_live(1));
  EXPECT_EQ(store.value(2, 0), Variant(2));
  EXPECT_EQ(store.append(), 4U);
  EXPECT_TRUE(store.is_live(4));
}

TEST(RowStore, StepsOverErasedRows) {
  RowStore store = store_of(5);
  store.erase(0);
  store.erase(2);
  store.erase(4);
  EXPECT_EQ(store.next_live(0), 1U);
  EXPECT_EQ(store.next_live(2), 3U);
  EXPECT_EQ(store.next_live(4), store.size());
  EXPECT_EQ(store.previous_live(4), 3);
  EXPECT_EQ(store.previous_live(0), -1);
  EXPECT_EQ(store.previous_live(-1), -1);
}

TEST(RowStore, ForgetsEverythingWhenReset) {
  RowStore store = store_of(3);
  store.erase(0);
  store.reset(2);
  EXPECT_EQ(store.size(), 0U);
  EXPECT_EQ(store.append(), 0U);
  EXPECT_TRUE(store.is_live(0));
}

}  // namespace
}  // namespace pelm::ado
