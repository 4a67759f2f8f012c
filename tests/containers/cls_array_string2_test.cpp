#include <gtest/gtest.h>

#include <initializer_list>
#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/frame/dispatch.hpp>
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
    bool ignoreCase;
    const char16_t* answer;  // null: not found
  };
  // Each run starts on rows (a,1) (b,2) (a,3) (c,a).
  const std::vector<std::vector<Step>> runs = {
      // Last row first, then not found until resetSearch.
      {{kValueFor, u"a", false, u"3"},
       {kValueFor, u"a", false, u"1"},
       {kValueFor, u"a", false, nullptr},
       {kValueFor, u"a", false, nullptr},
       {kReset, u"", false, nullptr},
       {kValueFor, u"a", false, u"3"}},
      // The trimmed text continues the walk; another text restarts it.
      {{kValueFor, u"  a", false, u"3"},
       {kValueFor, u"a  ", false, u"1"},
       {kValueFor, u"b", false, u"2"},
       {kValueFor, u"a", false, u"3"}},
      // Case matters unless ignored.
      {{kValueFor, u"A", false, nullptr},
       {kReset, u"", false, nullptr},
       {kValueFor, u"A", true, u"3"}},
      // Spaces only: not found, and the walk stays where it was.
      {{kValueFor, u"a", false, u"3"},
       {kValueFor, u"   ", false, nullptr},
       {kValueFor, u"a", false, u"1"}},
      // Both searches share one position: the key for value "a" is row 3, so the value
      // search for "a" goes on below it.
      {{kKeyFor, u"a", false, u"c"},
       {kValueFor, u"a", false, u"3"},
       {kKeyFor, u"2", false, u"b"},
       {kKeyFor, u"2", false, nullptr}},
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
      answer = step.op == kValueFor ? array->getNextValueForKey(step.text, found, step.ignoreCase)
                                    : array->getNextKeyForValue(step.text, found, step.ignoreCase);
      EXPECT_EQ(answer, step.answer ? step.answer : u"");
      EXPECT_EQ(found, step.answer != nullptr);
    }
  }
}

TEST(ClsArrayString2, KeyedUpdatesTakeTheLastExactMatch) {
  struct Row {
    const char16_t* key;
    const char16_t* afterSet;  // setItemForKey(key, "9")
    const char16_t* afterRemove;
  };
  const Row rows[] = {{u"x", u"x=1,y=2,x=9", u"x=1,y=2"},
                      {u"z", u"x=1,y=2,x=3", u"x=1,y=2,x=3"},
                      {u"X", u"x=1,y=2,x=3", u"x=1,y=2,x=3"}};
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    const Pairs original = {{u"x", u"1"}, {u"y", u"2"}, {u"x", u"3"}};
    auto array = arrayOf(original);
    array->setItemForKey(row.key, u"9");
    EXPECT_EQ(rowsOf(*array), row.afterSet);
    array = arrayOf(original);
    const bool removes = rowsOf(*array) != row.afterRemove;
    EXPECT_EQ(array->RemoveItemWithKey(row.key), removes);
    EXPECT_EQ(rowsOf(*array), row.afterRemove);
  }
}

TEST(ClsArrayString2, OrderValuesByCodeUnitWithKeysMoving) {
  struct Row {
    Pairs before;
    const char16_t* after;
  };
  const Row rows[] = {
      {{{u"k1", u"b"}, {u"k2", u"B"}, {u"k3", u"a"}}, u"k2=B,k3=a,k1=b"},
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

TEST(ClsArrayString2, CopyInterfaceCopiesPairs) {
  const auto source = arrayOf({{u"a", u"1"}, {u"b", u"2"}, {u"a", u"3"}});
  const auto copy = std::dynamic_pointer_cast<clsArrayString2>(source->generateCopy());
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(rowsOf(*copy), u"a=1,b=2,a=3");
  copy->setItem(u"changed", 0);
  copy->add(u"c", u"4");
  EXPECT_EQ(rowsOf(*source), u"a=1,b=2,a=3");

  // copyObject replaces what the target held; copying onto itself changes nothing.
  const auto target = arrayOf({{u"old", u"0"}, {u"x", u"y"}, {u"z", u"w"}, {u"q", u"r"}});
  target->copyObject(source);
  EXPECT_EQ(rowsOf(*target), u"a=1,b=2,a=3");
  source->copyObject(source);
  EXPECT_EQ(rowsOf(*source), u"a=1,b=2,a=3");
  target->copyToObject(copy);
  EXPECT_EQ(copy->getCount(), 4);

  // Another class is the failed conversion's type mismatch, Nothing a call on Nothing.
  EXPECT_EQ(errorNumberOf([&] { target->copyObject(std::make_shared<clsArrayString>()); }), 13);
  EXPECT_EQ(errorNumberOf([&] { target->copyObject(nullptr); }), 91);
  EXPECT_EQ(rowsOf(*target), u"a=1,b=2,a=3");
}

TEST(ClsArrayString2, LateBoundSearchWritesFoundBack) {
  ObjectRef array = ClassRegistry::library().create(u"Ravelin.clsArrayString2");
  ASSERT_NE(array, nullptr);
  for (const char16_t* key : {u"a", u"A"}) {
    std::vector<CallArgument> add = {{key}, {String(key) + u"!"}};
    callMember(array, u"add", MemberKind::Method, add);
  }
  // vbIgnoreCase omitted (false), and given as a text that converts to True.
  Variant found(int16_t{7});
  std::vector<CallArgument> exact = {{u" a "}, {found, &found}};
  EXPECT_EQ(callMember(array, u"getNextValueForKey", MemberKind::Method, exact), Variant(u"a!"));
  EXPECT_EQ(found, Variant(true));
  std::vector<CallArgument> anyCase = {{u"a!"}, {found, &found}, {u"True"}};
  EXPECT_EQ(callMember(array, u"getNextKeyForValue", MemberKind::Method, anyCase), Variant(u"A"));
  EXPECT_EQ(found, Variant(true));
}

}  // namespace
}  // namespace ravelin
