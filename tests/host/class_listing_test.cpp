#include <gtest/gtest.h>

#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/records.hpp>
#include <ravelin/host/class_listing.hpp>

namespace ravelin::host {
namespace {

// A class with one member of each shape the listing has to write.
class Sample : public PublicClass<Sample> {
 public:
  static constexpr StringView kClassName = u"Sample";
  static ClassInfo describe() {
    return ClassBuilder<Sample>(kClassName)
        .method(u"add", &Sample::add, {u"vlValue"})
        .method(u"grow", &Sample::grow,
                {u"viSize", optional(u"vbPreserve", true), optional(u"vsName", u"a b")})
        .get(u"item", &Sample::item, {u"viIndex"})
        .let(u"item", &Sample::letItem, {u"viIndex"})
        .get(u"Self", &Sample::self)
        .method(u"pair", &Sample::pair, {u"voSource"})
        .build();
  }
  int16_t add(int32_t) { return 0; }
  void grow(int16_t, bool&, String) {}
  int32_t item(int16_t) const { return 0; }
  void letItem(int16_t, int32_t) {}
  ObjectRef self() { return shared_from_this(); }
  udtStringLong pair(IObjectRef) { return {}; }
};

ClassRegistry sampleRegistry() {
  static const ClassInfo hidden = ClassBuilder<Sample>(u"Hidden", false).build();
  static const EnumInfo sampleEnum{u"enumSample", {{u"S_One", 1}, {u"S_Big", -2147221504}}};
  ClassRegistry registry;
  registry.add<Sample>();
  registry.addClass(hidden);
  registry.addEnum(sampleEnum);
  return registry;
}

TEST(ClassListing, WritesMembersAsBasicDeclarations) {
  ClassRegistry registry = sampleRegistry();
  EXPECT_EQ(listClass(registry, u"SAMPLE"),
            "Class Sample\n"
            "  Function add(ByVal vlValue As Long) As Integer\n"
            "  Sub grow(ByVal viSize As Integer, Optional ByRef vbPreserve As Boolean = True, "
            "Optional ByVal vsName As String = \"a b\")\n"
            "  Property Get item(ByVal viIndex As Integer) As Long\n"
            "  Property Let item(ByVal viIndex As Integer, ByVal value As Long)\n"
            "  Property Get Self() As Object\n"
            "  Function pair(ByVal voSource As IObject) As udtStringLong\n"
            "End Class\n");
  EXPECT_EQ(listClass(registry, u"enumsample"),
            "Enum enumSample\n  S_One = 1\n  S_Big = -2147221504\nEnd Enum\n");
  EXPECT_EQ(listClass(registry, u"Nowhere"), "");
}

TEST(ClassListing, ListsClassesAndEnumerations) {
  EXPECT_EQ(listLibrary(sampleRegistry()),
            "Classes:\n  Hidden (not creatable)\n  Sample\nEnumerations:\n  enumSample\n");
  // The library's own catalogue lists its classes.
  std::string library = listLibrary(libraryRegistry());
  EXPECT_NE(library.find("  clsArrayLong\n"), std::string::npos);
  EXPECT_NE(library.find("  enumCommonCode_ErrorCodes\n"), std::string::npos);
}

}  // namespace
}  // namespace ravelin::host
