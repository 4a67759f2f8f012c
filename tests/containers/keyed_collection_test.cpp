#include <gtest/gtest.h>

#include <functional>
#include <ravelin/containers/detail/keyed_collection.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

std::vector<int32_t> itemsOf(const KeyedCollection& collection) {
  std::vector<int32_t> items;
  collection.forEach(
      [&](const Variant& item, StringView, bool) { items.push_back(item.asLong()); });
  return items;
}

TEST(KeyedCollection, PositionsAndKeysThroughAddsAndRemovals) {
  KeyedCollection collection;
  collection.add(Variant(10), u"Alpha");
  collection.add(Variant(20));
  collection.add(Variant(30), u"\u00c7a");  // Ça
  collection.add(Variant(40), u"");

  EXPECT_EQ(collection.count(), 4);
  EXPECT_EQ(collection.item(u"ALPHA"), Variant(10));
  EXPECT_EQ(collection.item(u"\u00e7A"), Variant(30));  // folded beyond ASCII
  EXPECT_EQ(collection.item(u""), Variant(40));         // an empty text is a key like any other
  EXPECT_FALSE(collection.hasKey(2));
  EXPECT_EQ(collection.keyAt(1), u"Alpha");  // kept as it was given

  collection.remove(u"alpha");
  EXPECT_EQ(itemsOf(collection), (std::vector<int32_t>{20, 30, 40}));
  EXPECT_EQ(collection.positionOf(u"\u00c7A"), 2);
  collection.remove(1);
  EXPECT_EQ(collection.item(1), Variant(30));
  EXPECT_EQ(collection.item(u"\u00c7a"), Variant(30));
  // A removed key can be used again.
  collection.add(Variant(50), u"ALPHA");
  EXPECT_EQ(collection.item(3), Variant(50));
}

TEST(KeyedCollection, FailuresRaiseTheRuntimeErrorsAndChangeNothing) {
  KeyedCollection collection;
  collection.add(Variant(1), u"k");
  collection.add(Variant(2), u"m");
  struct Row {
    const char* what;
    std::function<void()> action;
    int number;
  };
  const Row rows[] = {
      {"duplicate key, other case", [&] { collection.add(Variant(3), u"K"); }, 457},
      {"missing key", [&] { collection.item(u"x"); }, 5},
      {"remove missing key", [&] { collection.remove(u"x"); }, 5},
      {"position 0", [&] { collection.item(0); }, 9},
      {"position past the end", [&] { collection.remove(3); }, 9},
      {"text address is a key", [&] { collection.itemAt(Variant(u"2")); }, 5},
      {"Null address", [&] { collection.itemAt(Variant::null()); }, 94},
      {"object address", [&] { collection.itemAt(Variant::nothing()); }, 13},
      {"address past Long", [&] { collection.itemAt(Variant(3e10)); }, 6},
      {"key of a bad position", [&] { collection.keyAt(-1); }, 9},
      {"True is position -1", [&] { collection.itemAt(Variant(true)); }, 9},
      {"remove by Null", [&] { collection.removeAt(Variant::null()); }, 94},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(errorNumberOf(row.action), row.number);
    EXPECT_EQ(itemsOf(collection), (std::vector<int32_t>{1, 2}));
  }
  // A number is a position as CLng reads it: 1.5 and 2.5 both round to 2.
  EXPECT_EQ(collection.itemAt(Variant(1.5)), Variant(2));
  EXPECT_EQ(collection.itemAt(Variant(2.5)), Variant(2));
  EXPECT_EQ(collection.itemAt(Variant(u"M")), Variant(2));
}

TEST(KeyedCollection, KeyIndexStaysRightAfterManyRemovals) {
  KeyedCollection collection;
  const int total = 3000;
  for (int i = 0; i < total; ++i)
    collection.add(Variant(i), fromAscii("key" + std::to_string(i)));
  // Remove every third item, by key and by position alternately.
  for (int i = total - 1; i >= 0; i -= 3) {
    if (i % 2 == 0) {
      collection.remove(fromAscii("KEY" + std::to_string(i)));
    } else {
      collection.remove(i + 1);
    }
  }
  int32_t position = 0;
  for (int i = 0; i < total; ++i) {
    const String key = fromAscii("key" + std::to_string(i));
    if (i % 3 == (total - 1) % 3) {
      ASSERT_EQ(collection.find(key), nullptr) << i;
      continue;
    }
    ++position;
    ASSERT_EQ(collection.positionOf(key), position);
    ASSERT_EQ(collection.item(position), Variant(i));
    ASSERT_EQ(collection.keyAt(position), key);
  }
  EXPECT_EQ(collection.count(), position);
}

}  // namespace
}  // namespace ravelin
