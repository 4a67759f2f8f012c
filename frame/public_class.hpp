// The base of the library's public classes: it gives every object of a class the one member
// table that the class describes beside its code.
//
//   class clsArrayLong : public PublicClass<clsArrayLong> {
//    public:
//     static constexpr StringView kClassName = u"clsArrayLong";
//     static ClassInfo describe();   // ClassBuilder<clsArrayLong>(kClassName).method(...).build()
//   };
//
// A class that implements an interface or shares a base names it as the second argument:
// PublicClass<clsCollection, IgnoringCopyObject>.
#pragma once

#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object.hpp>

namespace ravelin {

// The member table of class C, built on first use from C::describe() and kept for the life of
// the program. A class without describe() (an enumerator, a test's stand-in) gets a table with
// its name, no members and no way to be created by name.
template <typename C>
const ClassInfo& classTableOf() {
  static const ClassInfo table = [] {
    if constexpr (requires { C::describe(); }) {
      return C::describe();
    } else {
      return ClassInfo(String(C::kClassName), ClassInfo::Factory());
    }
  }();
  return table;
}

template <typename Self, typename Parent = Object>
class PublicClass : public Parent {
 public:
  const ClassInfo& classInfo() const override { return classTableOf<Self>(); }

 protected:
  PublicClass() = default;
  // The parent's constructors (an interface base takes the class's identifier text).
  using Parent::Parent;
};

}  // namespace ravelin
