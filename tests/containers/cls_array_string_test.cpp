#include <gtest/gtest.h>

#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

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

TEST(ClsArrayString, GrowsTwoSlotsAtATimeUpTo32766Texts) {
  // Slot counts run 4, 6, ..., 32766; the step to 32768 overflows.
  clsArrayString array;
  for (int i = 0; i < 32766; ++i) {
    ASSERT_TRUE(array.add(fromAscii(std::to_string(i))));
    ASSERT_EQ(array.slotCount(), i < 4 ? 4 : (i + 2) / 2 * 2);
  }
  EXPECT_FALSE(array.add(u"last"));
  EXPECT_EQ(array.getCount(), 32766);
  EXPECT_EQ(array.slotCount(), 32766);
  EXPECT_EQ(array.item(32765), u"32765");

  // Sized to an odd slot count, one more step reaches 32767 and the array fills completely.
  clsArrayString sized;
  sized.setArraySizeWithEmptyValues(32765);
  EXPECT_TRUE(sized.add(u"a"));
  EXPECT_TRUE(sized.add(u"b"));
  EXPECT_FALSE(sized.add(u"c"));
  EXPECT_EQ(sized.getCount(), 32767);
  EXPECT_EQ(sized.item(32766), u"b");
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
      // Nothing inside the texts is escaped.
      {{u"x,y", u"it's"}, u"'", u"'x,y','it's'"},
      {{u"", u""}, u"", u","},
      {{u"", u"\u00e7\U0001F600"}, u"<>", u"<><>,<>\u00e7\U0001F600<>"},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.expected));
    EXPECT_EQ(arrayOf(row.texts)->getItemsAsList(row.quote), row.expected);
  }
}

TEST(ClsArrayString, FindAndRemoveItemWithKeyAreExact) {
  struct Row {
    const char16_t* key;
    bool found;
    std::vector<String> left;  // after RemoveItemWithKey: the last match goes
  };
  const Row rows[] = {
      {u"x", true, {u"x", u"y", u""}},         {u"y", true, {u"x", u"x", u""}},
      {u"", true, {u"x", u"y", u"x"}},         {u"X", false, {u"x", u"y", u"x", u""}},
      {u"x ", false, {u"x", u"y", u"x", u""}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(toUtf8(row.key));
    const auto array = arrayOf({u"x", u"y", u"x", u""});
    EXPECT_EQ(array->find(row.key), row.found);
    EXPECT_EQ(array->RemoveItemWithKey(row.key), row.found);
    EXPECT_EQ(contentsOf(*array), row.left);
  }
}

TEST(ClsArrayString, BadIndexes) {
  const auto array = arrayOf({u"a", u"b"});
  EXPECT_FALSE(array->removeItem(2));
  try {
    array->letItem(2, u"z");
    ADD_FAILURE() << "index 2 was accepted";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), CCEC_InvalidIndex);
    EXPECT_EQ(error.source(), u"Tarn.Quillmark.Common");
    EXPECT_EQ(error.description(), u"clsArrayString.letItem()");
  }
}

}  // namespace
}  // namespace ravelin
