#include <gtest/gtest.h>

#include <memory>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/containers/cls_collection.hpp>
#include <ravelin/containers/cls_collection_access_key.hpp>
#include <ravelin/containers/cls_collection_objects.hpp>
#include <ravelin/containers/cls_data_column.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <vector>

namespace ravelin {
namespace {

// Keys and items of a clsCollectionAccessKey in position order, as "key=item".
std::vector<String> contentsOf(const clsCollectionAccessKey& collection) {
  std::vector<String> rows;
  for (int32_t position = 1; position <= collection.getCount(); ++position) {
    String key;
    const Variant item = collection.ItemAndKey(position, key);
    rows.push_back(key + u"=" + CStr(item));
  }
  return rows;
}

// A refused duplicate and each flag alone run in examples/collections.vbs.
TEST(Collections, AddWithTheTwoFlags) {
  struct Row {
    const char* what;
    bool override;
    bool ignoreIfExists;
    bool result;
    std::vector<String> contents;
  };
  const Row rows[] = {
      {"override: new item at the end", true, false, true, {u"k2=2", u"K1=9"}},
      {"both: ignore wins", true, true, true, {u"k1=1", u"k2=2"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    clsCollectionAccessKey collection;
    ASSERT_TRUE(collection.add(Variant(1), u"k1"));
    ASSERT_TRUE(collection.add(Variant(2), u"k2"));
    EXPECT_EQ(collection.add(Variant(9), u"K1", row.override, row.ignoreIfExists), row.result);
    EXPECT_EQ(contentsOf(collection), row.contents);
  }
}

TEST(Collections, ReplacementMovesTheItemToTheEnd) {
  struct Row {
    Variant address;
    bool result;
    std::vector<String> contents;
  };
  const Row rows[] = {
      {Variant(u"K3"), true, {u"k1=1", u"k2=2", u"K3=9"}},  // the address becomes the key
      {Variant(u"k4"), false, {u"k1=1", u"k2=2", u"k3=3"}},
      // A position names no key to add the new value under: nothing is removed.
      {Variant(2), false, {u"k1=1", u"k2=2", u"k3=3"}},
      {Variant::null(), false, {u"k1=1", u"k2=2", u"k3=3"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(CStr(row.address.isNull() ? Variant(u"Null") : row.address)));
    clsCollectionAccessKey collection;
    for (int32_t i = 1; i <= 3; ++i)
      collection.add(Variant(i), u"k" + CStr(Variant(i)));
    EXPECT_EQ(collection.setNewValueForItem(row.address, Variant(9)), row.result);
    EXPECT_EQ(contentsOf(collection), row.contents);
  }
}

TEST(Collections, ReadingMissingItems) {
  clsCollection collection;
  auto held = std::make_shared<clsDataColumn>();
  collection.add(Variant(u"text"), u"Key");
  collection.add(Variant(held), u"obj");

  EXPECT_FALSE(collection.itemExists(u"1"));  // a text is always a key, never a position
  EXPECT_EQ(collection.ItemObject(Variant(u"OBJ")), held);
  EXPECT_EQ(collection.ItemObject(Variant(u"key")), nullptr);  // not an object

  struct Row {
    std::function<void()> read;
    int32_t number;
    const char16_t* description;
  };
  // item's own not-found texts run in examples/collections.vbs.
  const Row rows[] = {
      {[&] { collection.ItemObject(Variant(0), true); }, CCEC_InvalidIndex,
       u"clsCollection.ItemObject()"},
      {[&] { collection.ItemObject(Variant(u"key"), true); }, 13, u"Type mismatch"},
      // The address itself is read whether or not the caller asked for errors.
      {[&] { collection.item(Variant::null()); }, 94, u"Invalid use of Null"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.description));
    try {
      row.read();
      ADD_FAILURE() << "no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number);
      EXPECT_EQ(error.description(), row.description);
    }
  }
  EXPECT_TRUE(collection.item(Variant(3)).isEmpty());
}

TEST(Collections, RemovalEnumerationAndKeys) {
  clsCollection collection;
  collection.removeAll();  // empty: nothing happens
  for (int32_t i = 1; i <= 4; ++i)
    collection.add(Variant(i * 10), u"k" + CStr(Variant(i)));
  EXPECT_TRUE(collection.remove(Variant(u"K2")));
  EXPECT_FALSE(collection.remove(Variant(u"k2")));
  EXPECT_FALSE(collection.remove(Variant(4)));
  EXPECT_TRUE(collection.remove(Variant(3)));
  std::vector<Variant> items;
  ASSERT_TRUE(collection.enumerate(items));
  EXPECT_EQ(items, (std::vector<Variant>{Variant(10), Variant(30)}));
  // NewEnum walks the items as they were when it was made.
  const ObjectRef enumerator = collection.NewEnum();
  collection.add(Variant(50), u"k5");
  ASSERT_TRUE(enumerator->enumerate(items));
  EXPECT_EQ(items, (std::vector<Variant>{Variant(10), Variant(30)}));
  collection.removeAll();
  EXPECT_EQ(collection.getCount(), 0);

  clsCollectionAccessKey keyed;
  keyed.add(Variant(1), u"B");
  keyed.add(Variant(2), u"a");
  String key = u"stale";
  EXPECT_TRUE(keyed.ItemAndKey(3, key).isEmpty());
  EXPECT_EQ(key, u"");
  try {
    keyed.ItemAndKey(0, key, true);
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.description(), u"clsCollection.ItemAndKey()");
  }
}

TEST(Collections, ByNameAsScriptsUseThem) {
  const ClassRegistry& registry = libraryRegistry();
  ObjectRef objects = registry.create(u"Ravelin.clsCollectionObjects");
  ObjectRef column = registry.create(u"clsDataColumn");
  auto call = [](const ObjectRef& object, StringView name, std::vector<CallArgument> arguments) {
    return callMember(object, name, MemberKind::Method, arguments);
  };
  Variant ignore(true);
  EXPECT_EQ(call(objects, u"add", {{Variant(column)}, {Variant(u"c")}}), Variant(true));
  EXPECT_EQ(call(objects, u"add",
                 {{Variant(column)},
                  {Variant(u"C")},
                  CallArgument::named(u"vbIgnoreErrorIfAlreadyExists", Variant(true), &ignore)}),
            Variant(true));
  EXPECT_EQ(call(objects, u"item", {{Variant(u"c")}}), Variant(column));
  // A collection of copy-interface objects takes no other object.
  EXPECT_EQ(errorNumberOf([&] {
              call(objects, u"add", {{Variant(registry.create(u"clsError"))}, {Variant(u"e")}});
            }),
            vb_error::kTypeMismatch);
}

}  // namespace
}  // namespace ravelin
