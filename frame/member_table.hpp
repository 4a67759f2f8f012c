// Member tables: what late-bound callers can see of a class (each member's name, kind,
// parameters and result) and how to call it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ravelin/frame/enum_info.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/frame/variant.hpp>
#include <span>
#include <utility>
#include <vector>

namespace ravelin {

enum class MemberKind : uint8_t { Method, PropertyGet, PropertyLet, PropertySet };

struct ParameterInfo {
  String name;
  VarType type = VarType::Variant;  // Object for object references
  // The declared type where it says more than `type`: a record's name ("udtStringLong") or an
  // object parameter's class ("IObject"); empty otherwise.
  String typeName;
  bool optional = false;
  bool byRef = false;
  // The value an omitted optional parameter receives: the declared default, else the type's
  // zero value, or the missing-argument marker for an optional Variant.
  Variant defaultValue;
};

// Calls the member with one value per declared parameter. The values arrive as the caller gave
// them and are converted to the declared types inside; by-reference parameters are written back
// into `arguments` after the call, converted as the member left them.
using MemberInvoker = std::function<Variant(Object& self, std::span<Variant> arguments)>;

struct MemberInfo {
  String name;
  MemberKind kind = MemberKind::Method;
  std::vector<ParameterInfo> parameters;
  VarType resultType = VarType::Empty;  // Empty: the member returns nothing
  String resultTypeName;                // as ParameterInfo::typeName
  MemberInvoker invoke;
};

// An event that the class's objects raise to their connected sinks (events.hpp).
struct EventInfo {
  String name;
  std::vector<ParameterInfo> parameters;
};

// One public class: its name, how to create it, and its members. Each class builds its table
// once (public_class.hpp); its objects, the registry and late-bound calls share that one table.
class ClassInfo {
 public:
  using Factory = std::function<ObjectRef()>;

  // A class without a factory is not creatable by name (it can still be called by name).
  ClassInfo(String name, Factory factory);

  const String& name() const { return name_; }
  bool creatable() const { return static_cast<bool>(factory_); }
  ObjectRef create() const { return factory_ ? factory_() : nullptr; }

  // Adds a member; a second member of the same name and kind replaces the first, so a class's
  // own member wins over one that a shared interface added before it.
  void addMember(MemberInfo member);

  // The member of that name and kind, names compared without regard to case; null if none.
  const MemberInfo* find(StringView name, MemberKind kind) const;
  // Whether any member of any kind has that name.
  bool hasMember(StringView name) const;

  // All members in the order they were added.
  const std::vector<MemberInfo>& members() const { return members_; }

  void addEvent(EventInfo event) { events_.push_back(std::move(event)); }
  // The events the class raises, in the order they were added.
  const std::vector<EventInfo>& events() const { return events_; }

 private:
  // A member name of the class, upper-cased by the library's folding, with the index into
  // members_ of its member of each kind (-1 when absent).
  struct Name {
    String folded;
    uint32_t hash;
    std::array<int, 4> members;
  };

  // The index into names_ of that name in any case, or -1; no upper-case copy is made.
  int findName(StringView name) const;
  void indexName(int name);

  String name_;
  Factory factory_;
  std::vector<MemberInfo> members_;
  std::vector<EventInfo> events_;
  std::vector<Name> names_;
  // Open addressing over names_: a power of two of slots, at least twice the number of names,
  // each holding an index into names_ or -1.
  std::vector<int> slots_;
};

}  // namespace ravelin
