#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_array_string2.hpp>
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

// "key=value" rows joined by ",".
String rowsOf(const clsArrayString2& array) {
  String rows;
  for (int16_t i = 0; i < array.getCount(); ++i)
    rows += (i ? u"," : u"") + array.ItemKey(i) + u"=" + array.item(i);
  return rows;
}

TEST(ClsArrayString2, SearchWalksBackwardsThroughOneSharedState) {
  enum Op { kValueFor, kKeyFor, kReset };
  struct Step {
    Op op;
    const char16_t* text;
    const char16_t* answer;  // null: not found
  };
  // Each run starts on rows (a,1) (b,2) (a,3) (c,a). The walk to the end, resetSearch, the
  // trimming and the case rule run in examples/pair_arrays.vbs.
  const std::vector<std::vector<Step>> runs = {
      // Another text restarts the walk; the not-found answer is repeated until resetSearch.
      {{kValueFor, u"  a", u"3"},
       {kValueFor, u"b", u"2"},
       {kValueFor, u"a", u"3"},
       {kValueFor, u"a", u"1"},
       {kValueFor, u"a", nullptr},
       {kValueFor, u"a", nullptr},
       {kReset, u"", nullptr},
       {kValueFor, u"a", u"3"}},
      // Spaces only: not found, and the walk stays where it was.
      {{kValueFor, u"a", u"3"}, {kValueFor, u"   ", nullptr}, {kValueFor, u"a", u"1"}},
      // Both searches share one position: the key for value "a" is row 3, so the value
      // search for "a" goes on below it.
      {{kKeyFor, u"a", u"c"},
       {kValueFor, u"a", u"3"},
       {kKeyFor, u"2", u"b"},
       {kKeyFor, u"2", nullptr}},
  };
  for (std::size_t r = 0; r < runs.size(); ++r) {
    const auto array = arrayOf({{u"a", u"1"}, {u"b", u"2"}, {u"a", u"3"}, {u"c", u"a"}});
    for (std::size_t s = 0; s < runs[r].size(); ++s) {
      SCOPED_TRACE("run " + std::to_string(r) + " step " + std::to_string(s));
      const Step& step = runs[r][s];
      bool found = step.answer == nullptr;  // the opposite of what is expected
      String answer;
      if (step.op == kReset) {
        array->resetSearch();
        continue;
      }
      answer = step.op == kValueFor ? array->getNextValueForKey(step.text, found, false)
                                    : array->getNextKeyForValue(step.text, found, false);
      EXPECT_EQ(answer, step.answer ? step.answer : u"");
      EXPECT_EQ(found, step.answer != nullptr);
    }
  }
}

// The last exact match is updated or removed (examples/pair_arrays.vbs); a key that differs in
// case is missing, and a missing key changes nothing.
TEST(ClsArrayString2, KeyedUpdatesOfAMissingKeyChangeNothing) {
  const auto array = arrayOf({{u"x", u"1"}, {u"y", u"2"}});
  array->setItemForKey(u"X", u"9");
  EXPECT_FALSE(array->RemoveItemWithKey(u"X"));
  EXPECT_EQ(rowsOf(*array), u"x=1,y=2");
}

TEST(ClsArrayString2, OrderValuesByCodeUnitWithKeysMoving) {
  struct Row {
    Pairs before;
    const char16_t* after;
  };
  const Row rows[] = {
      // Code units, not collation: "" < "Z" < "a" < "\u00e9".
      {{{u"1", u"\u00e9"}, {u"2", u"a"}, {u"3", u""}, {u"4", u"Z"}}, u"3=,4=Z,2=a,1=\u00e9"},
      // Equal values: the exchange sort brings the first of them to the front.
      {{{u"p", u"2"}, {u"q", u"1"}, {u"r", u"1"}}, u"q=1,r=1,p=2"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.after));
    const auto array = arrayOf(row.before);
    array->orderValues();
    EXPECT_EQ(rowsOf(*array), row.after);
  }
}

TEST(ClsArrayString2, IndexesAreCheckedAgainstTheStorageOnly) {
  // Three rows in four slots: the table has rows 0 to 3, row 3 unused.
  const auto array = arrayOf({{u"a", u"1"}, {u"b", u"2"}, {u"c", u"3"}});
  ASSERT_EQ(array->slotCount(), 4);
  for (const int16_t index : std::initializer_list<int16_t>{0, 3, 4, -1, 32767}) {
    SCOPED_TRACE(index);
    const int32_t error = index >= 0 && index < 4 ? 0 : vb_error::kSubscriptOutOfRange;
    EXPECT_EQ(errorNumberOf([&] { array->setItem(u"v", index); }), error);
    EXPECT_EQ(errorNumberOf([&] { array->setItemKey(u"k", index); }), error);
    EXPECT_EQ(errorNumberOf([&] { EXPECT_EQ(array->item(index), u"v"); }), error);
    EXPECT_EQ(errorNumberOf([&] { EXPECT_EQ(array->ItemKey(index), u"k"); }), error);
  }
  // The count did not move, and the next add overwrites row 3.
  EXPECT_FALSE(array->removeItem(3));
  EXPECT_TRUE(array->add(u"d", u"4"));
  EXPECT_EQ(rowsOf(*array), u"k=v,b=2,c=3,d=4");
  EXPECT_EQ(array->getItemKeysAsList(u"'"), u"'k','b','c','d'");
}

TEST(ClsArrayString2, GrowsByItsSlotIncrementUntilTheIntegerOverflows) {
  clsArrayString2 array;
  for (int i = 0; i < 32766; ++i)
    ASSERT_TRUE(array.add(u"k", u"v"));
  EXPECT_EQ(array.slotCount(), 32766);
  // The step to 32768 overflows: the add fails and changes nothing; removal never shrinks.
  EXPECT_FALSE(array.add(u"last", u"x"));
  EXPECT_EQ(array.getCount(), 32766);
  EXPECT_TRUE(array.removeLastItem());
  EXPECT_EQ(array.slotCount(), 32766);

  clsArrayString2 stepped;
  stepped.setSlotIncrement(5);
  for (int i = 0; i < 3; ++i)
    stepped.add(u"k", u"v");
  EXPECT_EQ(stepped.slotCount(), 7);
  EXPECT_EQ(errorNumberOf([&] { stepped.setSlotIncrement(0); }), 5);
}

TEST(ClsArrayString2, CopyObjectReplacesThePairs) {
  // copyObject replaces what the target held; copying onto itself changes nothing.
  const auto source = arrayOf({{u"a", u"1"}, {u"b", u"2"}, {u"a", u"3"}});
  const auto target = arrayOf({{u"old", u"0"}, {u"x", u"y"}, {u"z", u"w"}, {u"q", u"r"}});
  target->copyObject(source);
  EXPECT_EQ(rowsOf(*target), u"a=1,b=2,a=3");
  source->copyObject(source);
  EXPECT_EQ(rowsOf(*source), u"a=1,b=2,a=3");
  target->setItem(u"changed", 0);
  EXPECT_EQ(rowsOf(*source), u"a=1,b=2,a=3");

  // Another class is the failed conversion's type mismatch, Nothing a call on Nothing.
  EXPECT_EQ(errorNumberOf([&] { source->copyObject(std::make_shared<clsArrayString>()); }), 13);
  EXPECT_EQ(errorNumberOf([&] { source->copyObject(nullptr); }), 91);
  EXPECT_EQ(rowsOf(*source), u"a=1,b=2,a=3");
}

}  // namespace
}  // namespace ravelin
