// Public enumerations: the name of each and its members' names and values, declared beside the
// enumeration itself so that a host can offer the names (registry, listings, script constants).
//
//   enum RoundingTypes : int32_t { ArithmeticalAssimetric = 0, ArithmeticalSimetric = 1 };
//   template <>
//   const EnumInfo& enumInfo<RoundingTypes>();   // defined in the enumeration's source file
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <type_traits>
#include <utility>
#include <vector>

namespace ravelin {

// A public enumeration: its name and its members' names and values, in declaration order.
struct EnumInfo {
  String name;
  std::vector<std::pair<String, int32_t>> values;
};

// The description of enumeration E. Only the specializations declared beside each public
// enumeration exist; asking for any other enumeration does not compile.
template <typename E>
requires std::is_enum_v<E>
const EnumInfo& enumInfo() = delete;

}  // namespace ravelin
