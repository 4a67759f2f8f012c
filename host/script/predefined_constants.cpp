// The runtime's predefined constants (vbCrLf, vbObjectError, vbLong...).
#include <array>
#include <ravelin/host/script/script_scope.hpp>

namespace ravelin::script::detail {
namespace {

struct NamedNumber {
  StringView name;
  int32_t value;
};

constexpr std::array<NamedNumber, 48> kNumbers{{
    {u"vbObjectError", static_cast<int32_t>(0x80040000u)},
    {u"vbBinaryCompare", 0},
    {u"vbTextCompare", 1},
    {u"vbUseSystemDayOfWeek", 0},
    {u"vbSunday", 1},
    {u"vbMonday", 2},
    {u"vbTuesday", 3},
    {u"vbWednesday", 4},
    {u"vbThursday", 5},
    {u"vbFriday", 6},
    {u"vbSaturday", 7},
    {u"vbUseSystem", 0},
    {u"vbFirstJan1", 1},
    {u"vbFirstFourDays", 2},
    {u"vbFirstFullWeek", 3},
    {u"vbEmpty", 0},
    {u"vbNull", 1},
    {u"vbInteger", 2},
    {u"vbLong", 3},
    {u"vbSingle", 4},
    {u"vbDouble", 5},
    {u"vbCurrency", 6},
    {u"vbDate", 7},
    {u"vbString", 8},
    {u"vbObject", 9},
    {u"vbError", 10},
    {u"vbBoolean", 11},
    {u"vbVariant", 12},
    {u"vbDataObject", 13},
    {u"vbDecimal", 14},
    {u"vbByte", 17},
    {u"vbArray", 8192},
    {u"vbTrue", -1},
    {u"vbFalse", 0},
    {u"vbUseDefault", -2},
    {u"vbGeneralDate", 0},
    {u"vbLongDate", 1},
    {u"vbShortDate", 2},
    {u"vbLongTime", 3},
    {u"vbShortTime", 4},
    {u"vbOKOnly", 0},
    {u"vbOKCancel", 1},
    {u"vbYesNo", 4},
    {u"vbOK", 1},
    {u"vbCancel", 2},
    {u"vbYes", 6},
    {u"vbNo", 7},
    {u"vbBlack", 0},
}};

}  // namespace

std::optional<Variant> predefinedConstant(StringView name) {
  if (name.size() < 4 || (name[0] != u'v' && name[0] != u'V')) return std::nullopt;
  if (equalsIgnoreCase(name, u"vbCr")) return Variant(u"\r");
  if (equalsIgnoreCase(name, u"vbLf")) return Variant(u"\n");
  if (equalsIgnoreCase(name, u"vbCrLf") || equalsIgnoreCase(name, u"vbNewLine")) {
    return Variant(u"\r\n");
  }
  if (equalsIgnoreCase(name, u"vbTab")) return Variant(u"\t");
  if (equalsIgnoreCase(name, u"vbNullChar")) return Variant(String(1, u'\0'));
  if (equalsIgnoreCase(name, u"vbNullString")) return Variant(String());
  if (equalsIgnoreCase(name, u"vbFormFeed")) return Variant(u"\f");
  if (equalsIgnoreCase(name, u"vbVerticalTab")) return Variant(u"\v");
  for (const NamedNumber& entry : kNumbers) {
    if (equalsIgnoreCase(entry.name, name)) {
      // Constants that fit an Integer are Integers, as the runtime's are.
      if (entry.value >= -32768 && entry.value <= 32767) {
        return Variant(static_cast<int16_t>(entry.value));
      }
      return Variant(entry.value);
    }
  }
  return std::nullopt;
}

}  // namespace ravelin::script::detail
