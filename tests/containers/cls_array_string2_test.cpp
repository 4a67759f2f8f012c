#include <gtest/gtest.h>

#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <string>
#include <utility>
#include <vector>

#include "../support/error_number.hpp"

namespace ravelin {
namespace {

using Pairs = std::vector<std::pair<String, String>>;

std::shared_ptr<clsArrayString2> arrayOf(const Pairs& pairs) {
  auto array = std::make_shared<clsArrayString2>();
  for (const auto& [key, value] : pairs)
    EXPECT_TRUE(array->add(key, value));
  return array;
}

Pairs pairsOf(const clsArrayString2& array) {
  Pairs pairs;
  for (int16_t i = 0; i < array.getCount(); ++i)
    pairs.emplace_back(array.ItemKey(i), array.item(i));
  return pairs;
}

TEST(ClsArrayString2, SearchWalksBackwardsThroughOneSharedState) {
  enum Op { kValueFor, kKeyFor, kReset, kAppend };
  struct Step {
    Op op;
    const char16_t* text;
    bool ignoreCase;
    const char16_t* answer;
    bool found;
  };
  // Rows (a,1) (b,2) (a,3) (c,a); every run starts on a fresh array.
  const std::vector<std::vector<Step>> runs = {
      // Last row first, then sticky not found until resetSearch.
      {{kValueFor, u"a", false, u"3", true},
       {kValueFor, u"a", false, u"1", true},
       {kValueFor, u"a", false, u"", false},
       {kValueFor, u"a", false, u"", false},
       {kReset, u"", false, u"", false},
       {kValueFor, u"a", false, u"3", true}},
      // Trimmed text continues the same walk; another text restarts it.
      {{kValueFor, u"  a", false, u"3", true},
       {kValueFor, u"a  ", false, u"1", true},
       {kValueFor, u"b", false, u"2", true},
       {kValueFor, u"a", false, u"3", true}},
      // Case: "A" matches only when asked to ignore case, then walks on.
      {{kValueFor, u"A", false, u"", false},
       {kReset, u"", false, u"", false},
       {kValueFor, u"A", true, u"3", true},
       {kValueFor, u"A", true, u"1", true}},
      // Spaces only: not found and the walk is left where it was.
      {{kValueFor, u"a", false, u"3", true},
       {kValueFor, u"   ", false, u"", false},
       {kValueFor, u"", false, u"", false},
       {kValueFor, u"a", false, u"1", true}},
      // Keys for a value, and the two searches sharing one position: the key search for "a"
      // (row 3) leaves the position there, so the value search for "a" goes on below it.
      {{kKeyFor, u"a", false, u"c", true},
       {kValueFor, u"a", false, u"3", true},
       {kKeyFor, u"2", false, u"b", true},
       {kKeyFor, u"2", false, u"", false}},
      // Rows added after the walk started are not visited until it restarts.
      {{kValueFor, u"a", false, u"3", true},
       {kAppend, u"a", false, u"", false},
       {kValueFor, u"a", false, u"1", true},
       {kReset, u"", false, u"", false},
       {kValueFor, u"a", false, u"new", true}},
  };
  for (std::size_t r = 0; r < runs.size(); ++r) {
    const auto array = arrayOf({{u"a", u"1"}, {u"b", u"2"}, {u"a", u"3"}, {u"c", u"a"}});
    for (std::size_t s = 0; s < runs[r].size(); ++s) {
      SCOPED_TRACE("run " + std::to_string(r) + " step " + std::to_string(s));
      const Step& step = runs[r][s];
      bool found = !step.found;
      String answer;
      switch (step.op) {
        case kValueFor:
          answer = array->getNextValueForKey(step.text, found, step.ignoreCase);
          break;
        case kKeyFor:
          answer = array->getNextKeyForValue(step.text, found, step.ignoreCase);
          break;
        case kReset:
          array->resetSearch();
          continue;
        case kAppend:
          array->add(step.text, u"new");
          continue;
      }
      EXPECT_EQ(answer, step.answer);
      EXPECT_EQ(found, step.found);
    }
  }
}

TEST(ClsArrayString2, KeyedUpdatesTakeTheLastExactMatch) {
  struct Row {
    const char16_t* key;
    bool removed;
    Pairs afterSet;     // setItemForKey(key, "9")
    Pairs afterRemove;  // RemoveItemWithKey(key) on the original rows
  };
  const Row rows[] = {
      {u"x", true, {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"9"}}, {{u"x", u"1"}, {u"y", u"2"}}},
      {u"y", true, {{u"x", u"1"}, {u"y", u"9"}, {u"x", u"3"}}, {{u"x", u"1"}, {u"x", u"3"}}},
      {u"z",
       false,
       {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"3"}},
       {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"3"}}},
      {u"X",
       false,
       {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"3"}},
       {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"3"}}},
  };
  const Pairs original = {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"3"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    auto array = arrayOf(original);
    array->setItemForKey(row.key, u"9");
    EXPECT_EQ(pairsOf(*array), row.afterSet);
    array = arrayOf(original);
    EXPECT_EQ(array->RemoveItemWithKey(row.key), row.removed);
    EXPECT_EQ(pairsOf(*array), row.afterRemove);
  }
}

TEST(ClsArrayString2, OrderValuesByCodeUnitWithKeysMoving) {
  struct Row {
    Pairs before;
    Pairs after;
  };
  const Row rows[] = {
      {{{u"k1", u"b"}, {u"k2", u"B"}, {u"k3", u"a"}},
       {{u"k2", u"B"}, {u"k3", u"a"}, {u"k1", u"b"}}},
      // Code units, not collation: "Z" < "a" < "\u00e9"; "" first; "10" before "9".
      {{{u"1", u"\u00e9"}, {u"2", u"a"}, {u"3", u""}, {u"4", u"Z"}},
       {{u"3", u""}, {u"4", u"Z"}, {u"2", u"a"}, {u"1", u"\u00e9"}}},
      {{{u"a", u"9"}, {u"b", u"10"}}, {{u"b", u"10"}, {u"a", u"9"}}},
      // Equal values: the exchange sort leaves the first of them at the front.
      {{{u"p", u"2"}, {u"q", u"1"}, {u"r", u"1"}}, {{u"q", u"1"}, {u"r", u"1"}, {u"p", u"2"}}},
      {{}, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.before.size());
    const auto array = arrayOf(row.before);
    array->orderValues();
    EXPECT_EQ(pairsOf(*array), row.after);
  }
}

TEST(ClsArrayString2, IndexesAreCheckedAgainstTheStorageOnly) {
  // Three rows in four slots: rows 0 to 4 are stored, row 3 and the spare row 4 are unused.
  const auto array = arrayOf({{u"a", u"1"}, {u"b", u"2"}, {u"c", u"3"}});
  ASSERT_EQ(array->slotCount(), 4);
  struct Row {
    int16_t index;
    int32_t error;
  };
  const Row rows[] = {{0, 0}, {2, 0}, {3, 0}, {4, 0}, {5, 9}, {-1, 9}, {32767, 9}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.index);
    EXPECT_EQ(errorNumberOf([&] { array->setItem(u"v", row.index); }), row.error);
    EXPECT_EQ(errorNumberOf([&] { array->setItemKey(u"k", row.index); }), row.error);
    EXPECT_EQ(errorNumberOf([&] { EXPECT_EQ(array->item(row.index), u"v"); }), row.error);
    EXPECT_EQ(errorNumberOf([&] { EXPECT_EQ(array->ItemKey(row.index), u"k"); }), row.error);
  }
  // Writing past the count changed no count; the next add overwrites the spare row.
  EXPECT_EQ(array->getCount(), 3);
  EXPECT_FALSE(array->removeItem(3));
  EXPECT_TRUE(array->add(u"d", u"4"));
  EXPECT_EQ(array->getItemKeysAsList(), u"k,b,k,d");
  EXPECT_EQ(array->getItemsAsList(u"'"), u"'v','2','v','4'");
}

TEST(ClsArrayString2, GrowsByItsSlotIncrementUntilTheIntegerOverflows) {
  clsArrayString2 array;
  for (int i = 0; i < 32766; ++i) {
    ASSERT_TRUE(array.add(u"k", u"v"));
    ASSERT_EQ(array.slotCount(), i < 2 ? 2 : (i + 2) / 2 * 2);
  }
  // The step from 32766 to 32768 overflows: the add fails and changes nothing.
  EXPECT_FALSE(array.add(u"last", u"x"));
  EXPECT_EQ(array.getCount(), 32766);
  // Removal never shrinks the storage.
  EXPECT_TRUE(array.removeLastItem());
  EXPECT_EQ(array.slotCount(), 32766);

  clsArrayString2 stepped;
  stepped.setSlotIncrement(5);
  for (int i = 0; i < 3; ++i)
    stepped.add(u"k", u"v");
  EXPECT_EQ(stepped.slotCount(), 7);
  EXPECT_EQ(errorNumberOf([&] { stepped.setSlotIncrement(0); }), 5);
  stepped.setArraySizeWithEmptyValues(1);
  EXPECT_EQ(pairsOf(stepped), (Pairs{{u"", u""}}));
  EXPECT_EQ(stepped.slotCount(), 1);
}

TEST(ClsArrayString2, CopyInterfaceCopiesPairs) {
  const Pairs pairs = {{u"a", u"1"}, {u"b", u"2"}, {u"a", u"3"}};
  const auto source = arrayOf(pairs);
  const auto copy = std::dynamic_pointer_cast<clsArrayString2>(source->generateCopy());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(pairsOf(*copy), pairs);
  copy->setItem(u"changed", 0);
  copy->add(u"c", u"4");
  EXPECT_EQ(pairsOf(*source), pairs);

  // copyObject replaces what the target held; copying onto itself changes nothing.
  const auto target = arrayOf({{u"old", u"0"}, {u"older", u"00"}, {u"x", u"y"}, {u"z", u"w"}});
  target->copyObject(source);
  EXPECT_EQ(pairsOf(*target), pairs);
  EXPECT_EQ(target->slotCount(), 3);
  source->copyObject(source);
  EXPECT_EQ(pairsOf(*source), pairs);
  target->copyToObject(copy);
  EXPECT_EQ(copy->getCount(), 4);
  EXPECT_TRUE(target->getParameterValue(u"Count").isEmpty());

  // Another class is the failed conversion's type mismatch, Nothing a call on Nothing.
  EXPECT_EQ(errorNumberOf([&] { target->copyObject(std::make_shared<clsArrayString>()); }), 13);
  EXPECT_EQ(errorNumberOf([&] { target->copyObject(nullptr); }), 91);
  EXPECT_EQ(pairsOf(*target), pairs);
}

TEST(ClsArrayString2, LateBoundSearchWritesFoundBack) {
  ObjectRef array = ClassRegistry::library().create(u"Ravelin.clsArrayString2");
  ASSERT_NE(array, nullptr);
  auto call = [&](StringView name, std::vector<CallArgument> arguments) {
    return callMember(array, name, MemberKind::Method, arguments);
  };
  call(u"add", {{u"a"}, {u"1"}});
  call(u"add", {{u"A"}, {u"2"}});
  struct Row {
    Variant ignoreCase;  // Empty: omitted
    Variant answer;
    bool found;
  };
  const Row rows[] = {{Variant(), Variant(u"1"), true},
                      {Variant(true), Variant(u"2"), true},
                      {Variant(u"False"), Variant(u"1"), true}};
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.answer.asString()));
    call(u"resetSearch", {});
    Variant found(int16_t{7});
    Variant ignoreCase = row.ignoreCase;
    std::vector<CallArgument> arguments = {{u" a"}, {found, &found}};
    if (!row.ignoreCase.isEmpty()) arguments.emplace_back(ignoreCase, &ignoreCase);
    EXPECT_EQ(callMember(array, u"getNextValueForKey", MemberKind::Method, arguments), row.answer);
    EXPECT_EQ(found, Variant(row.found));
  }
  Variant found;
  std::vector<CallArgument> byKey = {{u"2"}, {found, &found}, {Variant(true)}};
  EXPECT_EQ(callMember(array, u"getNextKeyForValue", MemberKind::Method, byKey), Variant(u"A"));
  EXPECT_EQ(found, Variant(true));
  EXPECT_EQ(call(u"getClassIdAsString", {}), Variant(u"clsArrayString2"));
}

}  // namespace
}  // namespace ravelin
