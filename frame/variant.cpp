#include <ravelin/frame/variant.hpp>

#include <ravelin/frame/error.hpp>

namespace ravelin {

SafeArray SafeArray::vector(VarType elementType, int32_t lower, int32_t upper) {
  SafeArray array;
  array.elementType = elementType;
  int32_t count = upper >= lower ? upper - lower + 1 : 0;
  array.bounds.push_back(Bound{lower, count});
  array.elements.assign(static_cast<std::size_t>(count), zeroValueOf(elementType));
  return array;
}

std::size_t SafeArray::offsetOf(const std::vector<int32_t>& subscripts) const {
  if (subscripts.size() != bounds.size()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  std::size_t offset = 0;
  std::size_t stride = 1;
  for (std::size_t d = 0; d < bounds.size(); ++d) {
    int64_t relative = static_cast<int64_t>(subscripts[d]) - bounds[d].lower;
    if (relative < 0 || relative >= bounds[d].count) {
      raiseRuntimeError(vb_error::kSubscriptOutOfRange);
    }
    offset += static_cast<std::size_t>(relative) * stride;
    stride *= static_cast<std::size_t>(bounds[d].count);
  }
  return offset;
}

Variant* Record::field(StringView name) {
  for (auto& [fieldName, value] : fields) {
    if (equalsIgnoreCase(fieldName, name)) return &value;
  }
  return nullptr;
}

const Variant* Record::field(StringView name) const {
  return const_cast<Record*>(this)->field(name);
}

bool Variant::isMissing() const {
  const auto* error = std::get_if<ErrorValue>(&value_);
  return error != nullptr && error->code == kMissingArgumentCode;
}

bool Variant::isNumber() const {
  switch (type()) {
    case VarType::Integer:
    case VarType::Long:
    case VarType::Single:
    case VarType::Double:
    case VarType::Currency:
    case VarType::Byte:
      return true;
    default:
      return false;
  }
}

VarType Variant::type() const {
  struct Visitor {
    VarType operator()(const EmptyTag&) const { return VarType::Empty; }
    VarType operator()(const NullTag&) const { return VarType::Null; }
    VarType operator()(int16_t) const { return VarType::Integer; }
    VarType operator()(int32_t) const { return VarType::Long; }
    VarType operator()(uint8_t) const { return VarType::Byte; }
    VarType operator()(bool) const { return VarType::Boolean; }
    VarType operator()(float) const { return VarType::Single; }
    VarType operator()(double) const { return VarType::Double; }
    VarType operator()(const Currency&) const { return VarType::Currency; }
    VarType operator()(const Date&) const { return VarType::Date; }
    VarType operator()(const String&) const { return VarType::String; }
    VarType operator()(const ObjectRef&) const { return VarType::Object; }
    VarType operator()(const ErrorValue&) const { return VarType::Error; }
    VarType operator()(const ArrayRef&) const { return VarType::Array; }
    VarType operator()(const RecordRef&) const { return VarType::Record; }
  };
  return std::visit(Visitor{}, value_);
}

int Variant::varTypeCode() const {
  if (isArray()) {
    return static_cast<int>(VarType::Array) | static_cast<int>(asArray().elementType);
  }
  return static_cast<int>(type());
}

SafeArray& Variant::mutableArray() {
  auto& ref = std::get<ArrayRef>(value_);
  if (ref.use_count() > 1) ref = makeDeferredShared<const SafeArray>(*ref);
  return const_cast<SafeArray&>(*ref);
}

Record& Variant::mutableRecord() {
  auto& ref = std::get<RecordRef>(value_);
  if (ref.use_count() > 1) ref = makeDeferredShared<const Record>(*ref);
  return const_cast<Record&>(*ref);
}

String Variant::typeName() const {
  switch (type()) {
    case VarType::Object: {
      const auto& object = asObject();
      return object ? String(object->className()) : String(u"Nothing");
    }
    case VarType::Array:
      return String(varTypeName(asArray().elementType)) + u"()";
    case VarType::Record:
      return asRecord().typeName;
    default:
      return String(varTypeName(type()));
  }
}

bool operator==(const Variant& a, const Variant& b) {
  if (a.value_.index() != b.value_.index()) return false;
  if (a.isArray()) {
    const auto& x = a.asArray();
    const auto& y = b.asArray();
    if (x.elementType != y.elementType || x.bounds.size() != y.bounds.size()) return false;
    for (std::size_t d = 0; d < x.bounds.size(); ++d) {
      if (x.bounds[d].lower != y.bounds[d].lower || x.bounds[d].count != y.bounds[d].count) {
        return false;
      }
    }
    return x.elements == y.elements;
  }
  if (a.isRecord()) {
    const auto& x = a.asRecord();
    const auto& y = b.asRecord();
    return x.typeName == y.typeName && x.fields == y.fields;
  }
  return a.value_ == b.value_;
}

Variant zeroValueOf(VarType type) {
  switch (type) {
    case VarType::Integer: return Variant(int16_t{0});
    case VarType::Long: return Variant(int32_t{0});
    case VarType::Single: return Variant(0.0f);
    case VarType::Double: return Variant(0.0);
    case VarType::Currency: return Variant(Currency());
    case VarType::Date: return Variant(Date());
    case VarType::String: return Variant(String());
    case VarType::Object: return Variant::nothing();
    case VarType::Boolean: return Variant(false);
    case VarType::Byte: return Variant(uint8_t{0});
    default: return Variant();
  }
}

StringView varTypeName(VarType type) {
  switch (type) {
    case VarType::Empty: return u"Empty";
    case VarType::Null: return u"Null";
    case VarType::Integer: return u"Integer";
    case VarType::Long: return u"Long";
    case VarType::Single: return u"Single";
    case VarType::Double: return u"Double";
    case VarType::Currency: return u"Currency";
    case VarType::Date: return u"Date";
    case VarType::String: return u"String";
    case VarType::Object: return u"Object";
    case VarType::Error: return u"Error";
    case VarType::Boolean: return u"Boolean";
    case VarType::Variant: return u"Variant";
    case VarType::Byte: return u"Byte";
    case VarType::Record: return u"UserDefinedType";
    case VarType::Array: return u"Array";
  }
  return u"Unknown";
}

}  // namespace ravelin
