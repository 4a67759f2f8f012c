#include <gtest/gtest.h>

#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

template <typename F>
AutomationError errorOf(F&& action) {
  try {
    action();
  } catch (const AutomationError& error) {
    return error;
  }
  ADD_FAILURE() << "no error raised";
  return AutomationError(0, u"", u"");
}

std::shared_ptr<clsArrayString> arrayOf(const std::vector<String>& texts) {
  auto array = std::make_shared<clsArrayString>();
  for (const String& text : texts)
    EXPECT_TRUE(array->add(text));
  return array;
}

std::vector<String> contentsOf(const clsArrayString& array) {
  std::vector<String> texts;
  for (int16_t i = 0; i < array.getCount(); ++i)
    texts.push_back(array.item(i));
  return texts;
}

TEST(ClsArrayString, GrowsTwoSlotsAtATimeFromFour) {
  clsArrayString array;
  EXPECT_EQ(array.className(), u"clsArrayString");
  const int16_t expectedSlots[] = {4, 4, 4, 4, 6, 6, 8, 8, 10};
  for (int i = 0; i < 9; ++i) {
    EXPECT_TRUE(array.add(u"v" + fromAscii(std::to_string(i))));
    EXPECT_EQ(array.slotCount(), expectedSlots[i]) << "after add " << i;
  }
  EXPECT_EQ(array.getCount(), 9);
  EXPECT_EQ(array.item(8), u"v8");
}

TEST(ClsArrayString, LimitFollowsTheEvenSlotCounts) {
  // Slot counts run 4, 6, ..., 32766; the step to 32768 overflows, so 32766 texts fit.
  clsArrayString array;
  for (int i = 0; i < 32766; ++i)
    ASSERT_TRUE(array.add(u"x"));
  EXPECT_FALSE(array.add(u"last"));
  EXPECT_EQ(array.getCount(), 32766);
  EXPECT_EQ(array.slotCount(), 32766);
  EXPECT_EQ(array.item(32765), u"x");

  // Sized to an odd slot count, one more step reaches 32767 and the array fills completely.
  clsArrayString sized;
  sized.setArraySizeWithEmptyValues(32765);
  EXPECT_TRUE(sized.add(u"a"));
  EXPECT_TRUE(sized.add(u"b"));
  EXPECT_EQ(sized.slotCount(), 32767);
  EXPECT_FALSE(sized.add(u"c"));
  EXPECT_EQ(sized.getCount(), 32767);
  EXPECT_EQ(sized.item(32766), u"b");
  EXPECT_EQ(sized.item(0), u"");
}

TEST(ClsArrayString, GetItemsAsList) {
  struct Row {
    std::vector<String> texts;
    const char16_t* quote;
    const char16_t* expected;
  };
  const Row rows[] = {
      {{}, u"'", u""},
      {{u"a", u"b"}, u"'", u"'a','b'"},
      {{u"a", u"b"}, u"", u"a,b"},
      {{u"only"}, u"\"", u"\"only\""},
      // Nothing inside the texts is escaped.
      {{u"x,y", u"it's"}, u"'", u"'x,y','it's'"},
      {{u"", u""}, u"", u","},
      {{u"", u"a"}, u"<>", u"<><>,<>a<>"},
      {{u"\u00e7\u00e3o", u"\U0001F600"}, u"", u"\u00e7\u00e3o,\U0001F600"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.expected));
    EXPECT_EQ(arrayOf(row.texts)->getItemsAsList(row.quote), row.expected);
  }
  EXPECT_EQ(arrayOf({u"p", u"q"})->getItemsAsList(), u"p,q");
}

TEST(ClsArrayString, FindIsExactAndCaseSensitive) {
  const auto array = arrayOf({u"Apple", u"", u"pear "});
  struct Row {
    const char16_t* key;
    bool found;
  };
  const Row rows[] = {{u"Apple", true}, {u"apple", false}, {u"", true},
                      {u"pear", false}, {u"pear ", true},  {u"App", false}};
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    EXPECT_EQ(array->find(row.key), row.found);
  }
  EXPECT_FALSE(clsArrayString().find(u""));
}

TEST(ClsArrayString, RemoveItemWithKeyRemovesTheLastMatchOnly) {
  struct Row {
    std::vector<String> texts;
    const char16_t* key;
    bool removed;
    std::vector<String> left;
  };
  const Row rows[] = {
      {{u"x", u"y", u"x"}, u"x", true, {u"x", u"y"}},
      {{u"x", u"y", u"x"}, u"y", true, {u"x", u"x"}},
      {{u"x", u"y", u"x"}, u"X", false, {u"x", u"y", u"x"}},
      {{u"a", u"b", u"c"}, u"a", true, {u"b", u"c"}},
      {{}, u"a", false, {}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    const auto array = arrayOf(row.texts);
    EXPECT_EQ(array->RemoveItemWithKey(row.key), row.removed);
    EXPECT_EQ(contentsOf(*array), row.left);
  }
}

TEST(ClsArrayString, RemovalAndBadIndexes) {
  const auto array = arrayOf({u"a", u"b", u"c"});
  EXPECT_FALSE(array->removeItem(3));
  EXPECT_FALSE(array->removeItem(-1));
  EXPECT_TRUE(array->removeItem(1));
  EXPECT_EQ(contentsOf(*array), (std::vector<String>{u"a", u"c"}));

  const AutomationError onGet = errorOf([&] { (void)array->item(2); });
  const AutomationError onLet = errorOf([&] { array->letItem(-1, u"z"); });
  EXPECT_EQ(onGet.number(), CCEC_InvalidIndex);
  EXPECT_EQ(onGet.source(), u"Tarn.Quillmark.Common");
  EXPECT_EQ(onGet.description(), u"clsArrayString.getItem()");
  EXPECT_EQ(onLet.description(), u"clsArrayString.letItem()");

  array->letItem(1, u"d");
  EXPECT_TRUE(array->removeLastItem());
  EXPECT_TRUE(array->removeLastItem());
  EXPECT_FALSE(array->removeLastItem());
  EXPECT_EQ(array->getItemsAsList(u"'"), u"");
  EXPECT_EQ(array->slotCount(), 4);
}

TEST(ClsArrayString, CopyInterfaceAcceptsAndIgnores) {
  const auto array = arrayOf({u"a", u"b"});
  const auto other = arrayOf({u"z"});
  EXPECT_EQ(array->getClassIdAsString(), u"clsArrayString");
  array->copyObject(other);
  array->copyToObject(other, 0);
  EXPECT_EQ(contentsOf(*array), (std::vector<String>{u"a", u"b"}));
  EXPECT_EQ(contentsOf(*other), (std::vector<String>{u"z"}));
  EXPECT_EQ(array->generateCopy(), nullptr);
  EXPECT_TRUE(array->getParameterValue(u"Count").isEmpty());
}

}  // namespace
}  // namespace ravelin
