#include <gtest/gtest.h>

#include <functional>
#include <ravelin/containers/cls_array_string_long.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

std::vector<int32_t> keysOf(const clsArrayStringLong& array) {
  std::vector<int32_t> keys;
  for (int16_t i = 0; i < array.getCount(); ++i)
    keys.push_back(array.getItemLong(i));
  return keys;
}

String textsOf(const clsArrayStringLong& array) {
  String texts;
  for (int16_t i = 0; i < array.getCount(); ++i)
    texts += array.getItemString(i);
  return texts;
}

TEST(ClsArrayStringLong, AddSortAscByKeyIsStable) {
  struct Row {
    std::vector<int32_t> keys;
    std::vector<int16_t> indexes;
    std::vector<int32_t> sorted;
  };
  const Row rows[] = {
      {{5, 3, 5, 1}, {0, 0, 2, 0}, {1, 3, 5, 5}},
      {{1, 2, 3}, {0, 1, 2}, {1, 2, 3}},
      {{-1, INT32_MIN, INT32_MAX, 0}, {0, 0, 2, 2}, {INT32_MIN, -1, 0, INT32_MAX}},
      {{7, 7, 7}, {0, 1, 2}, {7, 7, 7}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(::testing::PrintToString(row.keys));
    clsArrayStringLong array;
    std::vector<int16_t> indexes;
    String letter = u"a";
    for (int32_t key : row.keys) {
      indexes.push_back(array.addSortAscByKey(letter, key));
      ++letter[0];
    }
    EXPECT_EQ(indexes, row.indexes);
    EXPECT_EQ(keysOf(array), row.sorted);
  }
  // Equal keys keep their order of arrival: the texts show which 5 came first.
  clsArrayStringLong array;
  for (const auto& [text, key] : {std::pair{u"first", 5}, {u"low", 3}, {u"second", 5}})
    array.addSortAscByKey(text, key);
  EXPECT_EQ(textsOf(array), u"lowfirstsecond");

  // A full array cannot grow: both adds fail and change nothing.
  clsArrayStringLong full;
  full.setArraySizeWithEmptyValues(32767);
  EXPECT_EQ(full.addSortAscByKey(u"x", -1), -1);
  EXPECT_FALSE(full.add(u"x", 0));
  EXPECT_EQ(full.getCount(), 32767);
  EXPECT_EQ(full.getItemLong(0), 0);
}

TEST(ClsArrayStringLong, FindKeyBothWays) {
  clsArrayStringLong array;
  for (int32_t key : {4, 9, 4, -2, 9})
    array.add(u"t", key);
  struct Row {
    int32_t key;
    int16_t fromStart;
    int16_t fromEnd;
  };
  const Row rows[] = {{4, 0, 2}, {9, 1, 4}, {-2, 3, 3}, {5, -1, -1}, {0, -1, -1}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.key);
    EXPECT_EQ(array.findKey(row.key, false), row.fromStart);
    EXPECT_EQ(array.findKey(row.key, true), row.fromEnd);
  }
  EXPECT_EQ(clsArrayStringLong().findKey(0, true), -1);
}

TEST(ClsArrayStringLong, BadIndexesRaiseInStyleAOrAnswerFalse) {
  clsArrayStringLong array;
  array.add(u"x", 1);
  array.add(u"y", 2);
  using Action = std::function<void(int16_t)>;
  struct Row {
    const char* member;
    Action action;
    const char16_t* description;
  };
  const Row rows[] = {
      {"getItem", [&](int16_t i) { array.getItem(i); }, u"clsArrayStringLong.item()"},
      {"setItem",
       [&](int16_t i) {
         array.setItem({u"z", 9}, i);
       },
       u"clsArrayStringLong.item()"},
      {"getItemLong", [&](int16_t i) { array.getItemLong(i); },
       u"clsArrayStringLong.getItemLong()"},
      {"getItemString", [&](int16_t i) { array.getItemString(i); },
       u"clsArrayStringLong.getItemString()"},
      {"setItemLong", [&](int16_t i) { array.setItemLong(9, i); },
       u"clsArrayStringLong.setItemLong()"},
      {"setItemString", [&](int16_t i) { array.setItemString(u"z", i); },
       u"clsArrayStringLong.setItemString()"},
  };
  for (const Row& row : rows) {
    for (int16_t index : {int16_t{-1}, int16_t{2}, int16_t{3}}) {
      SCOPED_TRACE(std::string(row.member) + " " + std::to_string(index));
      try {
        row.action(index);
        ADD_FAILURE() << "no error";
      } catch (const AutomationError& error) {
        EXPECT_EQ(error.number(), CCEC_InvalidIndex);
        EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
        EXPECT_EQ(error.description(), row.description);
      }
    }
  }
  EXPECT_FALSE(array.removeItem(2));
  EXPECT_FALSE(array.removeItem(-1));
  EXPECT_EQ(keysOf(array), (std::vector<int32_t>{1, 2}));
  EXPECT_EQ(textsOf(array), u"xy");
  EXPECT_TRUE(array.removeItem(0));
  EXPECT_TRUE(array.removeLastItem());
  EXPECT_FALSE(array.removeLastItem());
  EXPECT_EQ(array.getSlotCount(), 2);
}

TEST(ClsArrayStringLong, RecordsAndTheIgnoredCopyInterfaceByName) {
  ObjectRef array = ClassRegistry::library().create(u"Ravelin.clsArrayStringLong");
  ASSERT_NE(array, nullptr);
  auto call = [&](StringView name, std::vector<CallArgument> arguments) {
    return callMember(array, name, MemberKind::Method, arguments);
  };
  call(u"add", {{u"one"}, {Variant(1)}});
  call(u"setItem", {{Variant(toRecord(udtStringLong{u"two", 2}))}, {Variant(int16_t{0})}});
  const udtStringLong row = udtStringLongFrom(call(u"getItem", {{Variant(0)}}));
  EXPECT_EQ(row.sValue, u"two");
  EXPECT_EQ(row.lValue, 2);
  // A text is no record: type mismatch, and the row is unchanged.
  try {
    call(u"setItem", {{u"three"}, {Variant(0)}});
    ADD_FAILURE() << "a text was taken for a record";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), vb_error::kTypeMismatch);
  }
  EXPECT_EQ(call(u"getItemString", {{Variant(0)}}), Variant(u"two"));

  call(u"copyObject", {{ClassRegistry::library().create(u"clsArrayStringLong")}});
  EXPECT_EQ(call(u"getCount", {}), Variant(int16_t{1}));
  EXPECT_EQ(call(u"generateCopy", {}), Variant::nothing());
  EXPECT_EQ(call(u"getClassIdAsString", {}), Variant(u"clsArrayStringLong"));
}

}  // namespace
}  // namespace ravelin
