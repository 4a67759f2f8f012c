// The registry of public classes and enumerations: creation by name and the member tables that
// late-bound calls go through.
#pragma once

#include <memory>
#include <optional>
#include <unordered_map>
#include <vector>

#include <ravelin/frame/member_table.hpp>

namespace ravelin {

class ClassRegistry {
 public:
  // The library's own registry with every public class and enumeration, built on first use.
  static const ClassRegistry& library();

  // Adds a class; a later class of the same name replaces the earlier one.
  void addClass(ClassInfo info);
  void addEnum(EnumInfo info);

  // The class named "Ravelin.clsArrayLong" or "clsArrayLong" (any case); null if none.
  const ClassInfo* findClass(StringView name) const;
  // The class of an object, by its class name; null for an object the registry does not know.
  const ClassInfo* classOf(const Object& object) const;
  // A new object of the named class; raises 429 when the name is unknown or not creatable.
  ObjectRef create(StringView name) const;

  const EnumInfo* findEnum(StringView name) const;
  // The value of an enumeration member by its bare name ("CCEC_InvalidIndex").
  std::optional<int32_t> findEnumValue(StringView memberName) const;

  // Every class and enumeration, sorted by name.
  std::vector<const ClassInfo*> classes() const;
  std::vector<const EnumInfo*> enums() const;

 private:
  std::vector<std::unique_ptr<ClassInfo>> classes_;
  std::vector<std::unique_ptr<EnumInfo>> enums_;
  std::unordered_map<String, std::size_t> classIndex_;  // upper-case name -> classes_
  std::unordered_map<String, std::size_t> enumIndex_;   // upper-case name -> enums_
  std::unordered_map<String, int32_t> enumValues_;      // upper-case member name -> value
};

// The prefix of the library's class names when created by programmatic identifier.
inline constexpr StringView kLibraryPrefix = u"Ravelin.";

// Fills a registry with the library's public classes and enumerations (ClassRegistry::library
// calls it once). Defined with the catalogue of classes in library_classes.cpp.
void registerLibraryClasses(ClassRegistry& registry);

}  // namespace ravelin
