#include <gtest/gtest.h>

#include <ravelin/catalogue/library_classes.hpp>
#include <set>

namespace ravelin {
namespace {

// Each registered class is the one its objects belong to: an object created by the class's name
// answers the very table the registry holds, under that name (a class deriving from the wrong
// PublicClass, or describing itself under another name, fails here).
TEST(LibraryClassesTest, ObjectsCreatedByNameAnswerTheirRegisteredTable) {
  const ClassRegistry& registry = libraryRegistry();
  ASSERT_FALSE(registry.classes().empty());
  for (const ClassInfo* info : registry.classes()) {
    SCOPED_TRACE(toUtf8(info->name()));
    EXPECT_EQ(registry.findClass(info->name()), info);
    if (!info->creatable()) continue;
    const ObjectRef object = registry.create(info->name());
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(&object->classInfo(), info);
    EXPECT_EQ(object->className(), info->name());
  }
}

// Scripts see enumeration members by their bare names, so no two enumerations may share one.
TEST(LibraryClassesTest, EveryEnumerationMemberIsFoundByItsOwnName) {
  const ClassRegistry& registry = libraryRegistry();
  std::set<String> seen;
  for (const EnumInfo* info : registry.enums()) {
    SCOPED_TRACE(toUtf8(info->name));
    EXPECT_EQ(registry.findEnum(info->name), info);
    ASSERT_FALSE(info->values.empty());
    for (const auto& [name, value] : info->values) {
      SCOPED_TRACE(toUtf8(name));
      EXPECT_TRUE(seen.insert(toUpper(name)).second);
      EXPECT_EQ(registry.findEnumValue(name), value);
    }
  }
}

}  // namespace
}  // namespace ravelin
