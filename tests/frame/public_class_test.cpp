#include <gtest/gtest.h>

#include <cstdint>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/class_registry.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/object_copy.hpp>

namespace ravelin {
namespace {

// The state and members a class publishes without showing its base to C++ callers.
class Counter {
 public:
  void add(int32_t amount) { total_ += amount; }
  int32_t total() const { return total_; }

 private:
  int32_t total_ = 0;
};

class clsTally : public PublicClass<clsTally>, private Counter {
 public:
  static constexpr StringView kClassName = u"clsTally";
  static ClassInfo describe() {
    return ClassBuilder<clsTally, Counter>(kClassName,
                                           [](clsTally& self) -> Counter& { return self; })
        .method(u"add", &clsTally::add, {u"vlAmount"})
        .get(u"total", &clsTally::total)
        .method(u"twice", [](clsTally& self) { return self.total() * 2; })
        .build();
  }
  using Counter::add;
  using Counter::total;
};

// An implementation of the copy interface, which it publishes beside its own members.
class clsCopyable : public PublicClass<clsCopyable, IgnoringCopyObject> {
 public:
  static constexpr StringView kClassName = u"clsCopyable";
  clsCopyable() : PublicClass(u"Copyable.Id") {}
  static ClassInfo describe() {
    ClassBuilder<clsCopyable> builder(kClassName);
    return publishCopyInterface(builder).build();
  }
};

// An object with no members of its own.
class Bare : public PublicClass<Bare> {
 public:
  static constexpr StringView kClassName = u"Bare";
};

Variant call(const ObjectRef& object, StringView name, MemberKind kind,
             std::vector<CallArgument> arguments = {}) {
  return callMember(object, name, kind, arguments);
}

TEST(PublicClassTest, EveryObjectAndTheRegistryShareTheClassesOneTable) {
  ClassRegistry registry;
  registry.add<clsTally>();
  registry.add<clsCopyable>();
  const ObjectRef first = registry.create(u"clsTally");
  const ObjectRef second = std::make_shared<clsTally>();
  EXPECT_EQ(&first->classInfo(), registry.findClass(u"CLSTALLY"));
  EXPECT_EQ(&second->classInfo(), &first->classInfo());
  EXPECT_EQ(first->className(), u"clsTally");
  const ObjectRef copyable = registry.create(u"Ravelin.clsCopyable");
  EXPECT_EQ(&copyable->classInfo(), registry.findClass(u"clsCopyable"));
  EXPECT_NE(&copyable->classInfo(), &first->classInfo());

  const ObjectRef bare = std::make_shared<Bare>();
  EXPECT_EQ(bare->className(), u"Bare");
  EXPECT_TRUE(bare->classInfo().members().empty());
  EXPECT_FALSE(bare->classInfo().creatable());
}

TEST(PublicClassTest, MembersOfAPrivateBaseAndOfAnInterfaceAreCalledByName) {
  const ObjectRef tally = std::make_shared<clsTally>();
  call(tally, u"add", MemberKind::Method, {{Variant(5)}});
  call(tally, u"ADD", MemberKind::Method, {{Variant(u"2")}});
  EXPECT_EQ(call(tally, u"total", MemberKind::PropertyGet), Variant(7));
  EXPECT_EQ(call(tally, u"twice", MemberKind::Method), Variant(14));
  EXPECT_EQ(tally->classInfo().find(u"total", MemberKind::PropertyGet)->resultType, VarType::Long);

  const ObjectRef copyable = std::make_shared<clsCopyable>();
  EXPECT_EQ(call(copyable, u"getClassIdAsString", MemberKind::Method), Variant(u"Copyable.Id"));
  const Variant copy = call(copyable, u"generateCopy", MemberKind::Method);
  EXPECT_TRUE(copy.isObject() && copy.asObject() == nullptr);
}

}  // namespace
}  // namespace ravelin
