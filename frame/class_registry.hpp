// The registry of public classes and enumerations: creation by name, and the names a host offers
// (listings, script constants). It holds the classes' own tables, not copies of them.
#pragma once

#include <optional>
#include <ravelin/frame/enum_info.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <type_traits>
#include <unordered_map>
#include <vector>

namespace ravelin {

class ClassRegistry {
 public:
  // Adds a class (from its describe()) or an enumeration (from its enumInfo):
  // registry.add<clsArrayLong>(), registry.add<RoundingTypes>().
  template <typename T>
  void add() {
    if constexpr (std::is_enum_v<T>) {
      addEnum(enumInfo<T>());
    } else {
      static_assert(
          requires { T::describe(); }, "a registered class describes its members");
      addClass(classTableOf<T>());
      // A class that stands in for a system object is also created by that object's
      // programmatic identifier (kProgId, "ADODB.Recordset").
      if constexpr (requires { T::kProgId; }) addProgId(T::kProgId, classTableOf<T>());
    }
  }

  // Adds a class by its table, which must outlive the registry; a later class of the same name
  // replaces the earlier one.
  void addClass(const ClassInfo& info);
  void addClass(ClassInfo&&) = delete;
  // Makes an added class creatable under a second, full programmatic identifier (any case).
  void addProgId(StringView progId, const ClassInfo& info);
  void addProgId(StringView, ClassInfo&&) = delete;
  // Adds an enumeration, which must outlive the registry.
  void addEnum(const EnumInfo& info);
  void addEnum(EnumInfo&&) = delete;

  // The class named "Ravelin.clsArrayLong" or "clsArrayLong", or by a programmatic identifier
  // of its own (any case); null if none.
  const ClassInfo* findClass(StringView name) const;
  // A new object of the named class; raises 429 when the name is unknown or not creatable.
  ObjectRef create(StringView name) const;

  const EnumInfo* findEnum(StringView name) const;
  // The value of an enumeration member by its bare name ("CCEC_InvalidIndex").
  std::optional<int32_t> findEnumValue(StringView memberName) const;

  // Every class and enumeration, sorted by name.
  std::vector<const ClassInfo*> classes() const;
  std::vector<const EnumInfo*> enums() const;

 private:
  std::vector<const ClassInfo*> classes_;
  std::vector<const EnumInfo*> enums_;
  std::unordered_map<String, std::size_t> classIndex_;    // upper-case name -> classes_
  std::unordered_map<String, const ClassInfo*> progIds_;  // upper-case identifier -> class
  std::unordered_map<String, std::size_t> enumIndex_;     // upper-case name -> enums_
  std::unordered_map<String, int32_t> enumValues_;        // upper-case member name -> value
};

// The prefix of the library's class names when created by programmatic identifier.
inline constexpr StringView kLibraryPrefix = u"Ravelin.";

}  // namespace ravelin
