// The copy interface of every class that implements it, driven by name as late-bound callers
// reach it: the identifier texts and which of the four behaviours each operation has.
#include <gtest/gtest.h>

#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <vector>

namespace ravelin {
namespace {

enum class Outcome { Nothing, Copy, RefuseA, RefuseC, RefuseDataColumn };

struct ClassRow {
  StringView className;
  StringView identifier;
  Outcome copyObject, copyToObject, generateCopy, getParameterValue;
};

constexpr Outcome N = Outcome::Nothing, Y = Outcome::Copy, A = Outcome::RefuseA,
                  C = Outcome::RefuseC;

const ClassRow kClasses[] = {
    {u"clsArrayString", u"clsArrayString", N, N, N, N},
    {u"clsArrayStringLong", u"clsArrayStringLong", N, N, N, N},
    {u"clsArrayObject", u"clsObjectArray", N, N, N, N},
    {u"clsArrayAnyObject", u"clsArrayAnyObject", N, N, N, N},
    {u"clsCollection", u"clsCollection", N, N, N, N},
    {u"clsCollectionAccessKey", u"clsCollection", N, N, N, N},
    {u"clsCollectionObjects", u"clsCollectionObjects", N, N, N, N},
    {u"clsArrayString2", u"clsArrayString2", Y, N, Y, N},
    {u"clsDataColumn", u"clsDataColumn", Y, Y, Y, Outcome::RefuseDataColumn},
    {u"clsArrayObject2", u"clsArrayObject2", C, C, C, C},
    {u"clsArrayVariObject", u"clsArrayVariObject", C, C, C, C},
    {u"clsLArrayObject", u"clsLArrayObject", A, A, A, N},
    {u"clsLArrayDouble", u"clsLArrayDouble", A, A, A, N},
    {u"clsLArrayDouble2", u"clsLArrayDouble2", A, A, A, N},
    {u"clsLArrayLongObject", u"clsLArrayLongObject", A, A, A, N},
};

// What a refusal must carry: number, source and description.
void expectRefusal(const AutomationError& error, Outcome outcome, StringView identifier,
                   StringView operation) {
  EXPECT_EQ(error.number(), CCEC_FeatureNotImplemented);
  switch (outcome) {
    case Outcome::RefuseA:
      EXPECT_EQ(error.source(), kCommonErrorSource);
      EXPECT_EQ(error.description(), String(identifier) + u".IObject_" + String(operation) + u"()");
      break;
    case Outcome::RefuseC:
      EXPECT_EQ(error.source(), identifier);
      EXPECT_EQ(error.description(), u"." + String(operation) + u"()");
      break;
    case Outcome::RefuseDataColumn:
      EXPECT_EQ(error.source(), identifier);
      EXPECT_EQ(error.description(), u"IObject_getParameterValue");
      break;
    default:
      ADD_FAILURE() << "refused: " << error.what();
  }
}

TEST(CopyInterface, EveryImplementingClassByName) {
  const ClassRegistry& registry = libraryRegistry();
  for (const auto& row : kClasses) {
    SCOPED_TRACE(toUtf8(row.className));
    const ObjectRef object = registry.create(row.className);
    ASSERT_NE(object, nullptr);
    ASSERT_NE(std::dynamic_pointer_cast<IObject>(object), nullptr);
    const ObjectRef other = registry.create(row.className);

    std::vector<CallArgument> none;
    EXPECT_EQ(callMember(object, u"getClassIdAsString", MemberKind::Method, none),
              Variant(row.identifier));

    const struct {
      StringView name;
      std::vector<CallArgument> arguments;
      Outcome outcome;
    } operations[] = {
        {u"copyObject", {{Variant(other)}, {Variant(-1)}}, row.copyObject},
        {u"copyToObject", {{Variant(other)}}, row.copyToObject},
        {u"generateCopy", {}, row.generateCopy},
        {u"getParameterValue", {{Variant(u"name")}}, row.getParameterValue},
    };
    for (auto operation : operations) {
      SCOPED_TRACE(toUtf8(operation.name));
      try {
        const Variant result =
            callMember(object, operation.name, MemberKind::Method, operation.arguments);
        if (operation.name == u"generateCopy") {
          ASSERT_TRUE(result.isObject());
          if (operation.outcome == Outcome::Copy) {
            ASSERT_NE(result.asObject(), nullptr);
            EXPECT_NE(result.asObject(), object);
            EXPECT_EQ(result.asObject()->className(), row.className);
          } else {
            EXPECT_EQ(result.asObject(), nullptr);
          }
        } else {
          EXPECT_TRUE(result.isEmpty());
        }
        EXPECT_TRUE(operation.outcome == Outcome::Nothing || operation.outcome == Outcome::Copy);
      } catch (const AutomationError& error) {
        expectRefusal(error, operation.outcome, row.identifier, operation.name);
      }
    }
  }
}

// The interface itself is listed but cannot be created.
TEST(CopyInterface, IsAPublicClassThatCannotBeCreated) {
  const ClassInfo* info = libraryRegistry().findClass(u"Ravelin.IObject");
  ASSERT_NE(info, nullptr);
  EXPECT_FALSE(info->creatable());
  EXPECT_EQ(info->members().size(), 5u);
}

// The ignoring classes accept a source of any class (the copying ones refuse it: see their tests).
TEST(CopyInterface, IgnoringClassTakesASourceOfAnotherClass) {
  const ClassRegistry& registry = libraryRegistry();
  std::vector<CallArgument> arguments{{Variant(registry.create(u"clsCollection"))}};
  EXPECT_NO_THROW(
      callMember(registry.create(u"clsArrayString"), u"copyObject", MemberKind::Method, arguments));
}

}  // namespace
}  // namespace ravelin
