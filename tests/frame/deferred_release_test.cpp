#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/deferred_release.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/variant.hpp>
#include <vector>

namespace ravelin {
namespace {

// An object holding one value, counting the links alive.
class Link : public PublicClass<Link> {
 public:
  static constexpr StringView kClassName = u"Link";
  static ClassInfo describe() { return ClassBuilder<Link>(kClassName).build(); }

  Link() { ++alive; }
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;
  ~Link() override { --alive; }

  Variant held;
  static inline std::size_t alive = 0;
};

// The ways one level of a nest can hold the level below it.
enum class Level {
  Array,         // a one-element array, built whole
  CopiedArray,   // an array written through a shared copy (the copy-on-write path)
  Record,        // a record field
  CopiedRecord,  // a record field written through a shared copy
  ClassObject,   // an object made by its class's table, as creation by name makes it
  DirectObject,  // an object made with makeObject, as the host makes its own objects
};

Variant wrap(Level level, Variant inner) {
  switch (level) {
    case Level::Array: {
      SafeArray array = SafeArray::vector(VarType::Variant, 0, 0);
      array.elements[0] = std::move(inner);
      return Variant(std::move(array));
    }
    case Level::CopiedArray: {
      static const Variant shared(SafeArray::vector(VarType::Variant, 0, 0));
      Variant copy = shared;
      copy.mutableArray().elements[0] = std::move(inner);
      return copy;
    }
    case Level::Record:
      return Variant(Record{u"udtLink", {{u"inner", std::move(inner)}}});
    case Level::CopiedRecord: {
      static const Variant shared(Record{u"udtLink", {{u"inner", Variant()}}});
      Variant copy = shared;
      copy.mutableRecord().fields[0].second = std::move(inner);
      return copy;
    }
    case Level::ClassObject: {
      const ObjectRef object = classTableOf<Link>().create();
      static_cast<Link&>(*object).held = std::move(inner);
      return Variant(object);
    }
    case Level::DirectObject: {
      auto object = makeObject<Link>();
      object->held = std::move(inner);
      return Variant(object);
    }
  }
  return Variant();
}

// Far deeper than a release by recursion survives on a thread's stack.
constexpr int kDepth = 300000;

// Letting go of a nest releases every level in a loop, not by recursion, and every level is gone
// by the time the release returns; a level of each kind may sit anywhere in the nest.
TEST(DeferredReleaseTest, DeepNestsAreReleasedWithoutRecursion) {
  struct Row {
    const char* name;
    std::vector<Level> pattern;  // repeated from the innermost level out
  };
  const Row rows[] = {
      {"arrays", {Level::Array}},
      {"arrays copied on write", {Level::CopiedArray}},
      {"records", {Level::Record}},
      {"records copied on write", {Level::CopiedRecord}},
      {"objects made by their class", {Level::ClassObject}},
      {"objects made directly", {Level::DirectObject}},
      {"all kinds in turn",
       {Level::Array, Level::ClassObject, Level::Record, Level::DirectObject, Level::CopiedArray,
        Level::CopiedRecord}},
  };
  for (const Row& row : rows) {
    SCOPED_TRACE(row.name);
    Variant nest;
    for (int i = 0; i < kDepth; ++i)
      nest = wrap(row.pattern[i % row.pattern.size()], nest);
    nest = Variant();
    EXPECT_EQ(Link::alive, 0u);
  }
}

// A value that holds many nests (a wide level above deep ones) is released the same way, and a
// nest that is still referenced elsewhere survives the release of its holder.
TEST(DeferredReleaseTest, WideHoldersAndSharedNests) {
  Variant kept;
  {
    SafeArray wide = SafeArray::vector(VarType::Variant, 0, 9);
    for (Variant& element : wide.elements) {
      for (int i = 0; i < kDepth / 10; ++i)
        element = wrap(Level::ClassObject, element);
    }
    kept = wide.elements[3];
    Variant holder(std::move(wide));
  }
  EXPECT_EQ(Link::alive, static_cast<std::size_t>(kDepth / 10));
  // Each level still reaches the one below it.
  const Link& top = static_cast<const Link&>(*kept.asObject());
  ASSERT_TRUE(top.held.isObject());
  kept = Variant();
  EXPECT_EQ(Link::alive, 0u);
}

// Objects made with the deferred release are ordinary shared objects to their users.
TEST(DeferredReleaseTest, ObjectsKeepSharedFromThisAndWeakReferences) {
  for (const ObjectRef& object : {classTableOf<Link>().create(), ObjectRef(makeObject<Link>())}) {
    EXPECT_EQ(object->shared_from_this(), object);
    std::weak_ptr<Object> weak = object;
    EXPECT_FALSE(weak.expired());
  }
  // Both temporaries are gone, and so are the objects.
  EXPECT_EQ(Link::alive, 0u);
  std::weak_ptr<Link> weak;
  {
    auto object = makeObject<Link>();
    weak = object;
  }
  EXPECT_TRUE(weak.expired());
}

}  // namespace
}  // namespace ravelin
