// Built-in functions on types and values: the conversions, the Is... tests, TypeName and
// VarType, arrays and their bounds, and the locale.
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/host/script/builtin_args.hpp>

namespace ravelin::script::detail {
namespace {

using Args = std::span<const Variant>;

// CBool, CByte, ... CStr: the library's conversion of the one argument.
template <auto Convert>
Variant callConversion(Args a) {
  return Variant(Convert(a[0]));
}

Variant callIsArray(Args a) {
  return Variant(a[0].isArray());
}
Variant callIsEmpty(Args a) {
  return Variant(a[0].isEmpty());
}
Variant callIsNull(Args a) {
  return Variant(a[0].isNull());
}
Variant callIsObject(Args a) {
  return Variant(a[0].isObject());
}

// A Date, or text that reads as one; numbers are not dates.
Variant callIsDate(Args a) {
  const Variant& v = a[0];
  if (v.type() == VarType::Date) return Variant(true);
  return Variant(v.isString() && isDateText(v.asString()));
}

// Numbers, Booleans and Empty, and text that CDbl reads in the current locale; dates are not.
Variant callIsNumeric(Args a) {
  const Variant& v = a[0];
  if (v.isNumber() || v.isEmpty() || v.type() == VarType::Boolean) return Variant(true);
  if (!v.isString()) return Variant(false);
  try {
    (void)parseDouble(v.asString());
    return Variant(true);
  } catch (const AutomationError&) {
    return Variant(false);
  }
}

Variant callTypeName(Args a) {
  return Variant(a[0].typeName());
}
Variant callVarType(Args a) {
  return Variant(static_cast<int16_t>(a[0].varTypeCode()));
}

// Array(a, b, ...): a Variant array indexed from 0.
Variant callArray(Args a) {
  SafeArray array;
  array.elementType = VarType::Variant;
  array.bounds.push_back({0, static_cast<int32_t>(a.size())});
  array.elements.assign(a.begin(), a.end());
  return Variant(std::move(array));
}

// The bounds of dimension `dimension` (1 by default) of an array argument.
const SafeArray::Bound& boundOf(Args a) {
  if (a[0].isNull()) raiseRuntimeError(vb_error::kInvalidUseOfNull);
  if (!a[0].isArray()) raiseRuntimeError(vb_error::kTypeMismatch);
  const SafeArray& array = a[0].asArray();
  const int32_t dimension = longArgument(a, 1, 1);
  if (dimension < 1 || static_cast<std::size_t>(dimension) > array.bounds.size()) {
    raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  }
  return array.bounds[static_cast<std::size_t>(dimension - 1)];
}

Variant callLBound(Args a) {
  return Variant(boundOf(a).lower);
}
Variant callUBound(Args a) {
  return Variant(boundOf(a).upper());
}

Variant callGetLocale(Args) {
  return Variant(static_cast<int32_t>(currentLocale().lcid));
}

// SetLocale(id or name): sets the current locale and returns the previous one's id. 0 or ""
// return to the system's locale; an unknown locale raises 5.
Variant callSetLocale(Args a) {
  const auto previous = static_cast<int32_t>(currentLocale().lcid);
  const Variant& v = a[0];
  std::optional<Locale> next;
  if (v.isString()) {
    if (v.asString().empty()) {
      resetCurrentLocale();
      return Variant(previous);
    }
    next = findLocale(v.asString());
  } else {
    const int32_t id = CLng(v);
    if (id == 0) {
      resetCurrentLocale();
      return Variant(previous);
    }
    if (id > 0) next = findLocale(static_cast<uint32_t>(id));
  }
  if (!next) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  setCurrentLocale(*next);
  return Variant(previous);
}

constexpr Builtin kTable[] = {
    {u"Array", 0, kAnyArgumentCount, callArray},
    {u"CBool", 1, 1, callConversion<&CBool>},
    {u"CByte", 1, 1, callConversion<&CByte>},
    {u"CCur", 1, 1, callConversion<&CCur>},
    {u"CDate", 1, 1, callConversion<&CDate>},
    {u"CDbl", 1, 1, callConversion<&CDbl>},
    {u"CInt", 1, 1, callConversion<&CInt>},
    {u"CLng", 1, 1, callConversion<&CLng>},
    {u"CSng", 1, 1, callConversion<&CSng>},
    {u"CStr", 1, 1, callConversion<&CStr>},
    {u"GetLocale", 0, 0, callGetLocale},
    {u"IsArray", 1, 1, callIsArray, true},
    {u"IsDate", 1, 1, callIsDate, true, true},
    {u"IsEmpty", 1, 1, callIsEmpty, true, true},
    {u"IsNull", 1, 1, callIsNull, true, true},
    {u"IsNumeric", 1, 1, callIsNumeric, true, true},
    {u"IsObject", 1, 1, callIsObject, true},
    {u"LBound", 1, 2, callLBound},
    {u"SetLocale", 1, 1, callSetLocale},
    {u"TypeName", 1, 1, callTypeName, true},
    {u"UBound", 1, 2, callUBound},
    {u"VarType", 1, 1, callVarType, true, true},
};
static_assert(isSortedByName(kTable));

}  // namespace

std::span<const Builtin> conversionBuiltins() {
  return kTable;
}

}  // namespace ravelin::script::detail
