// The conversions of a dBASE record's "N", "L" and "D" fields.
#include <cmath>
#include <ravelin/data/internal/dbf_values.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin::dbf {
namespace {

// Powers of ten that a double holds exactly.
constexpr double kExactPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

// Up to 15 significant digits fit a double exactly, so one division by an exact power of ten is
// the correctly rounded value, as Val gives.
constexpr int kMaxDirectDigits = 15;

double throughVal(std::string_view text) {
  String wide(text.size(), u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    wide[i] = static_cast<unsigned char>(text[i]);
  return Val(wide);
}

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

double decimalDivisor(uint8_t decimalByte) {
  if (decimalByte == 0x20) return 1.0;
  const String oneCharacter(1, static_cast<char16_t>(decimalByte));
  return std::pow(10.0, Val(oneCharacter));
}

double numericText(std::string_view text) {
  std::size_t i = 0;
  const std::size_t n = text.size();
  while (i < n && text[i] == ' ')
    ++i;
  bool negative = false;
  if (i < n && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
  uint64_t mantissa = 0;
  int digits = 0;
  int fractionDigits = 0;
  bool anyDigit = false;
  bool point = false;
  for (; i < n; ++i) {
    const char c = text[i];
    if (isDigit(c)) {
      anyDigit = true;
      if (mantissa != 0 || c != '0') ++digits;
      mantissa = mantissa * 10 + static_cast<uint64_t>(c - '0');
      if (point) ++fractionDigits;
      if (digits > kMaxDirectDigits) return throughVal(text);
    } else if (c == '.' && !point) {
      point = true;
    } else {
      break;
    }
  }
  while (i < n && text[i] == ' ')
    ++i;
  // Anything after the number (an exponent, a blank between digits, other text) or no digit at
  // all: Val's own rules apply.
  if (i != n || !anyDigit || fractionDigits > 22) return throughVal(text);
  // Val gives a plain zero for "-0".
  if (mantissa == 0) return 0.0;
  const double value = static_cast<double>(mantissa) / kExactPowers[fractionDigits];
  return negative ? -value : value;
}

DateText readDateText(std::string_view text, double& serial) {
  if (text.find_first_not_of(' ') == std::string_view::npos) return DateText::Blank;
  if (text.size() < 8) return DateText::Unreadable;
  for (std::size_t i = 0; i < 8; ++i) {
    if (!isDigit(text[i])) return DateText::Unreadable;
  }
  const auto part = [&](std::size_t from, std::size_t count) {
    int value = 0;
    for (std::size_t i = from; i < from + count; ++i)
      value = value * 10 + (text[i] - '0');
    return value;
  };
  try {
    serial = DateSerial(part(0, 4), part(4, 2), part(6, 2)).serial;
  } catch (const AutomationError&) {
    return DateText::Unreadable;
  }
  return DateText::Date;
}

}  // namespace ravelin::dbf
