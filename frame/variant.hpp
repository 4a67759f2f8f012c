// Variant: the automation runtime's tagged value.
#pragma once

#include <cstdint>
#include <memory>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include <ravelin/frame/currency.hpp>
#include <ravelin/frame/date.hpp>
#include <ravelin/frame/deferred_release.hpp>
#include <ravelin/frame/object.hpp>
#include <ravelin/base/text.hpp>

namespace ravelin {

// The automation variant-type codes (VarType's numbers).
enum class VarType : uint16_t {
  Empty = 0,
  Null = 1,
  Integer = 2,
  Long = 3,
  Single = 4,
  Double = 5,
  Currency = 6,
  Date = 7,
  String = 8,
  Object = 9,
  Error = 10,
  Boolean = 11,
  Variant = 12,
  Byte = 17,
  Record = 36,
  Array = 0x2000,
};

class Variant;

// An array with its bounds. Elements are stored with the first subscript varying fastest, as
// the automation runtime lays out its arrays.
struct SafeArray {
  struct Bound {
    int32_t lower = 0;
    int32_t count = 0;
    int32_t upper() const { return lower + count - 1; }
  };

  VarType elementType = VarType::Variant;
  std::vector<Bound> bounds;
  std::vector<Variant> elements;

  // A one-dimensional array lower..upper (upper = lower - 1 gives an empty array), each
  // element the zero value of elementType.
  static SafeArray vector(VarType elementType, int32_t lower, int32_t upper);

  // The position in `elements` of the given subscripts; raises 9 when one is out of its bounds
  // or the number of subscripts differs from the number of dimensions.
  std::size_t offsetOf(const std::vector<int32_t>& subscripts) const;
};

// A record (user-defined type): its type name and its fields in declaration order.
struct Record {
  String typeName;
  std::vector<std::pair<String, Variant>> fields;

  // The field of that name (matched without regard to case), or null.
  Variant* field(StringView name);
  const Variant* field(StringView name) const;
};

// The error value that marks an omitted optional argument (DISP_E_PARAMNOTFOUND).
inline constexpr int32_t kMissingArgumentCode = static_cast<int32_t>(0x80020004u);

class Variant {
 public:
  struct EmptyTag {};
  struct NullTag {};
  // A variant of type Error holding an error code (the missing-argument marker is one).
  struct ErrorValue {
    int32_t code = 0;
    bool operator==(const ErrorValue&) const = default;
  };

  Variant() = default;
  Variant(int16_t v) : value_(v) {}
  Variant(int32_t v) : value_(v) {}
  Variant(uint8_t v) : value_(v) {}
  Variant(bool v) : value_(v) {}
  Variant(float v) : value_(v) {}
  Variant(double v) : value_(v) {}
  Variant(Currency v) : value_(v) {}
  Variant(Date v) : value_(v) {}
  Variant(String v) : value_(std::move(v)) {}
  Variant(StringView v) : value_(String(v)) {}
  Variant(const char16_t* v) : value_(String(v)) {}
  Variant(ObjectRef v) : value_(std::move(v)) {}
  template <typename T, typename = std::enable_if_t<std::is_base_of_v<Object, T>>>
  Variant(std::shared_ptr<T> v) : value_(ObjectRef(std::move(v))) {}
  Variant(ErrorValue v) : value_(v) {}
  // Arrays and records are released without recursion, however deeply they nest.
  Variant(SafeArray v) : value_(makeDeferredShared<const SafeArray>(std::move(v))) {}
  Variant(Record v) : value_(makeDeferredShared<const Record>(std::move(v))) {}
  // Narrow text would silently become a Boolean; other integer widths have no automation type.
  Variant(const char*) = delete;
  Variant(int64_t) = delete;
  Variant(uint32_t) = delete;

  static Variant null() { return Variant(NullTag{}); }
  static Variant missing() { return Variant(ErrorValue{kMissingArgumentCode}); }
  static Variant nothing() { return Variant(ObjectRef()); }

  // The runtime's VarType: the held type, or Array plus the element type for an array.
  VarType type() const;
  // The type code as the runtime's VarType function returns it (8204 for an array of Variant).
  int varTypeCode() const;

  bool isEmpty() const { return std::holds_alternative<EmptyTag>(value_); }
  bool isNull() const { return std::holds_alternative<NullTag>(value_); }
  bool isMissing() const;
  bool isObject() const { return std::holds_alternative<ObjectRef>(value_); }
  bool isArray() const { return std::holds_alternative<ArrayRef>(value_); }
  bool isRecord() const { return std::holds_alternative<RecordRef>(value_); }
  bool isString() const { return std::holds_alternative<String>(value_); }
  // Integer, Long, Single, Double, Currency, Byte (and Boolean and Date, which count as numbers
  // in arithmetic, are not included: ask for them by type).
  bool isNumber() const;

  // Accessors of the held value; the type must match (checked by the standard library).
  int16_t asInteger() const { return std::get<int16_t>(value_); }
  int32_t asLong() const { return std::get<int32_t>(value_); }
  uint8_t asByte() const { return std::get<uint8_t>(value_); }
  bool asBoolean() const { return std::get<bool>(value_); }
  float asSingle() const { return std::get<float>(value_); }
  double asDouble() const { return std::get<double>(value_); }
  Currency asCurrency() const { return std::get<Currency>(value_); }
  Date asDate() const { return std::get<Date>(value_); }
  const String& asString() const { return std::get<String>(value_); }
  const ObjectRef& asObject() const { return std::get<ObjectRef>(value_); }
  ErrorValue asError() const { return std::get<ErrorValue>(value_); }
  const SafeArray& asArray() const { return *std::get<ArrayRef>(value_); }
  const Record& asRecord() const { return *std::get<RecordRef>(value_); }

  // Arrays and records have value semantics: a copy shares storage until one side writes.
  SafeArray& mutableArray();
  Record& mutableRecord();

  // The runtime's TypeName ("Long", "String", "Nothing", the class name of an object,
  // "Variant()" for an array of Variant).
  String typeName() const;

  // Same type and same value (arrays and records element by element, objects by identity).
  friend bool operator==(const Variant& a, const Variant& b);

 private:
  using ArrayRef = std::shared_ptr<const SafeArray>;
  using RecordRef = std::shared_ptr<const Record>;

  explicit Variant(NullTag) : value_(NullTag{}) {}

  friend bool operator==(const EmptyTag&, const EmptyTag&) { return true; }
  friend bool operator==(const NullTag&, const NullTag&) { return true; }

  std::variant<EmptyTag, NullTag, int16_t, int32_t, uint8_t, bool, float, double, Currency, Date,
               String, ObjectRef, ErrorValue, ArrayRef, RecordRef>
      value_;
};

// The zero value of an element type: 0, False, "", Empty, Nothing or a zero date.
Variant zeroValueOf(VarType type);

// The name of a VarType as TypeName writes it ("Integer", "Currency").
StringView varTypeName(VarType type);

}  // namespace ravelin
