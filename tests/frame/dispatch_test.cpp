#include <gtest/gtest.h>

#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/class_registry.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/support/error_number.hpp>

namespace ravelin {
namespace {

// A small class with the parameter shapes late-bound callers meet.
class clsProbe : public PublicClass<clsProbe> {
 public:
  static constexpr StringView kClassName = u"clsProbe";

  int32_t sum(int32_t a, int16_t b) { return a + b; }
  void swap(int16_t& a, int16_t& b) { std::swap(a, b); }
  String greet(const String& name, bool shout) {
    String text = u"hello " + name;
    return shout ? toUpper(text) : text;
  }
  bool isOmitted(const Variant& value) const { return value.isMissing(); }
  int16_t item(int16_t index) const { return static_cast<int16_t>(index * 10 + last_); }
  void letItem(int16_t index, int16_t value) { last_ = static_cast<int16_t>(value - index); }
  std::shared_ptr<clsProbe> self() {
    return std::static_pointer_cast<clsProbe>(shared_from_this());
  }
  bool same(const std::shared_ptr<clsProbe>& other) { return other.get() == this; }

  static ClassInfo describe() {
    return ClassBuilder<clsProbe>(u"clsProbe")
        .method(u"sum", &clsProbe::sum, {u"vlA", u"viB"})
        .method(u"swap", &clsProbe::swap, {u"viA", u"viB"})
        .method(u"greet", &clsProbe::greet, {u"vsName", optional(u"vbShout", false)})
        .method(u"isOmitted", &clsProbe::isOmitted, {optional(u"vvntValue")})
        .get(u"item", &clsProbe::item, {u"viIndex"})
        .let(u"item", &clsProbe::letItem, {u"viIndex"})
        .method(u"self", &clsProbe::self)
        .method(u"same", &clsProbe::same, {u"voOther"})
        .method(u"twice", [](clsProbe&, double value) { return value * 2; }, {u"vdblValue"})
        .build();
  }

 private:
  int16_t last_ = 0;
};

class Unregistered : public PublicClass<Unregistered> {
 public:
  static constexpr StringView kClassName = u"Unregistered";
};

class DispatchTest : public ::testing::Test {
 protected:
  DispatchTest() {
    registry_.add<clsProbe>();
    probe_ = registry_.create(u"Ravelin.CLSPROBE");
  }

  Variant call(StringView name, std::vector<CallArgument> arguments,
               MemberKind kind = MemberKind::Method) {
    return callMember(probe_, name, kind, arguments);
  }

  int32_t errorOf(StringView name, std::vector<CallArgument> arguments,
                  MemberKind kind = MemberKind::Method) {
    return errorNumberOf([&] { call(name, std::move(arguments), kind); });
  }

  static CallArgument named(StringView name, Variant value) {
    return CallArgument::named(name, std::move(value));
  }

  ClassRegistry registry_;
  ObjectRef probe_;
};

TEST_F(DispatchTest, BindsPositionalNamedAndOmittedArguments) {
  EXPECT_EQ(call(u"SUM", {{Variant(2)}, {Variant(int16_t{3})}}), Variant(5));
  // Arguments are converted to the declared types with the runtime's rules.
  EXPECT_EQ(call(u"sum", {{Variant(u"2")}, {Variant(2.5)}}), Variant(4));
  EXPECT_EQ(call(u"sum", {named(u"viB", Variant(1)), named(u"VLA", Variant(10))}), Variant(11));
  EXPECT_EQ(call(u"greet", {{Variant(u"ann")}}), Variant(u"hello ann"));
  EXPECT_EQ(call(u"greet", {{Variant(u"ann")}, named(u"vbShout", Variant(true))}),
            Variant(u"HELLO ANN"));
  EXPECT_EQ(call(u"isOmitted", {}), Variant(true));
  EXPECT_EQ(call(u"isOmitted", {CallArgument::omittedArgument()}), Variant(true));
  EXPECT_EQ(call(u"isOmitted", {{Variant()}}), Variant(false));
  EXPECT_EQ(call(u"twice", {{Variant(1.25)}}), Variant(2.5));
}

TEST_F(DispatchTest, WritesByReferenceArgumentsBackToTheCallersVariables) {
  Variant a(int16_t{1});
  Variant b(u"2");  // converted on the way in, written back as the member's type
  std::vector<CallArgument> arguments{{a, &a}, {b, &b}};
  call(u"swap", arguments);
  EXPECT_EQ(a, Variant(int16_t{2}));
  EXPECT_EQ(b, Variant(int16_t{1}));
  // An expression (no variable behind it) is passed without write-back.
  Variant untouched(int16_t{7});
  call(u"swap", {{untouched}, {Variant(int16_t{8})}});
  EXPECT_EQ(untouched, Variant(int16_t{7}));
}

TEST_F(DispatchTest, PropertiesAndObjectsGoThroughTheirOwnKinds) {
  call(u"item", {{Variant(int16_t{2})}, {Variant(int16_t{5})}}, MemberKind::PropertyLet);
  EXPECT_EQ(call(u"Item", {{Variant(int16_t{1})}}, MemberKind::PropertyGet), Variant(int16_t{13}));
  Variant self = call(u"self", {});
  EXPECT_EQ(self.asObject(), probe_);
  EXPECT_EQ(call(u"same", {{self}}), Variant(true));
  EXPECT_EQ(call(u"same", {{Variant::nothing()}}), Variant(false));
}

TEST_F(DispatchTest, ReportsTheRuntimesErrors) {
  struct Row {
    const char* what;
    StringView member;
    std::vector<CallArgument> arguments;
    int32_t number;
  };
  const Row rows[] = {
      {"unknown member", u"nosuch", {}, 438},
      {"too many arguments", u"sum", {{Variant(1)}, {Variant(2)}, {Variant(3)}}, 450},
      {"required argument missing", u"sum", {{Variant(1)}}, 449},
      {"required argument omitted", u"sum", {CallArgument::omittedArgument(), {Variant(1)}}, 449},
      {"unknown named argument", u"sum", {{Variant(1)}, named(u"viC", Variant(1))}, 448},
      {"argument given twice", u"sum", {{Variant(1)}, named(u"vlA", Variant(1))}, 450},
      {"text that is no number", u"sum", {{Variant(u"x")}, {Variant(1)}}, 13},
      {"Integer overflow", u"sum", {{Variant(1)}, {Variant(40000)}}, 6},
      {"Null for a number", u"sum", {{Variant::null()}, {Variant(1)}}, 94},
      {"number for an object", u"same", {{Variant(1)}}, 13},
      {"object of another class", u"same", {{Variant(std::make_shared<Unregistered>())}}, 13},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.what);
    EXPECT_EQ(errorOf(row.member, row.arguments), row.number);
  }
  EXPECT_EQ(errorOf(u"item", {{Variant(int16_t{1})}}, MemberKind::PropertySet), 438);
  EXPECT_EQ(errorNumberOf([&] { callMember(nullptr, u"sum", MemberKind::Method, {}); }), 91);
}

TEST_F(DispatchTest, RegistryCreatesByNameAndPublishesTypes) {
  EXPECT_NE(registry_.create(u"clsprobe"), nullptr);
  for (StringView name : {u"Ravelin.", u"clsMissing", u"Other.clsProbe"}) {
    SCOPED_TRACE(toUtf8(name));
    EXPECT_EQ(errorNumberOf([&] { registry_.create(name); }), 429);
  }
  const MemberInfo* greet = registry_.findClass(u"clsProbe")->find(u"greet", MemberKind::Method);
  ASSERT_NE(greet, nullptr);
  EXPECT_EQ(greet->resultType, VarType::String);
  ASSERT_EQ(greet->parameters.size(), 2u);
  EXPECT_EQ(greet->parameters[1].type, VarType::Boolean);
  EXPECT_TRUE(greet->parameters[1].optional);
  EXPECT_EQ(greet->parameters[1].defaultValue, Variant(false));
  const MemberInfo* swap = registry_.findClass(u"clsProbe")->find(u"swap", MemberKind::Method);
  EXPECT_TRUE(swap->parameters[0].byRef);
  EXPECT_EQ(swap->resultType, VarType::Empty);
}

}  // namespace
}  // namespace ravelin
