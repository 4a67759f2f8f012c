// SQLUtilities::FormatSqlValue against fmt::format building the same literal texts in UTF-8: a
// million values of mixed types (text with and without apostrophes, decimal and whole numbers,
// dates with and without a time, times, booleans) for both database kinds, in en-US. The library
// converts each value through its own number and date texts; the baseline does the same
// conversions by hand (shortest 15-digit text, civil date of the serial, 12-hour clock) and is
// checked to give the library's text for every input before anything is timed.
#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/frame/locale.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace {

using namespace ravelin;

constexpr int kCalls = 1'000'000;
constexpr int kInputs = 4096;  // distinct inputs, taken in turn

// One value, as the library gets it (value) and as the baseline gets it (the plain fields).
struct Input {
  enumDataTypesSql type = DTS_Text;
  DataBTypeEnum kind = dbtMDB;
  Variant value;
  std::string text;    // text types, UTF-8
  double number = 0;   // numbers, and the serial of dates and times
  bool whole = false;  // a Long rather than a Double
  bool flag = false;   // booleans
};

std::vector<Input> makeInputs() {
  static constexpr const char* kWords[] = {"Coffee", "O'Brien", "Tea 'special'", "Crème brûlée",
                                           "Bagel",  "It's",    "Müsli",         "Chef's salad"};
  std::mt19937 random(20240611);
  std::uniform_int_distribution<int> pick(0, 1 << 30);
  std::vector<Input> inputs(kInputs);
  for (int i = 0; i < kInputs; ++i) {
    Input& in = inputs[i];
    in.kind = (i / 8) % 2 == 0 ? dbtMDB : dbtMSSQL;
    const int r = pick(random);
    switch (i % 8) {
      case 0:  // text without apostrophes
        in.type = DTS_Text;
        in.text = "Item " + std::to_string(r % 100000);
        in.value = Variant(fromUtf8(in.text));
        break;
      case 1:  // text, often with apostrophes
        in.type = DTS_TextUnicode;
        in.text = std::string(kWords[r % 8]) + " " + std::to_string(r % 1000);
        in.value = Variant(fromUtf8(in.text));
        break;
      case 2:  // a price
        in.type = DTS_Numeric;
        in.number = static_cast<double>(r % 2000000 - 1000000) / 100.0;
        in.value = Variant(in.number);
        break;
      case 3:  // a whole number
        in.type = DTS_Numeric;
        in.whole = true;
        in.number = r % 200000 - 100000;
        in.value = Variant(static_cast<int32_t>(in.number));
        break;
      case 4:  // a date at midnight, 1990..2040
        in.type = DTS_Date;
        in.number = 32874 + r % 18262;
        in.value = Variant(Date{in.number});
        break;
      case 5:  // a date with a time to the second
        in.type = DTS_Date;
        in.number = 32874 + r % 18262 + (r % 86400) / 86400.0;
        in.value = Variant(Date{in.number});
        break;
      case 6:  // a time of day
        in.type = DTS_Time;
        in.number = (r % 86400) / 86400.0;
        in.value = Variant(Date{in.number});
        break;
      default:
        in.type = DTS_Boolean;
        in.flag = r % 2 == 0;
        in.value = Variant(in.flag);
        break;
    }
  }
  return inputs;
}

std::string doubledApostrophes(std::string_view text) {
  std::string result;
  result.reserve(text.size() + 2);
  for (const char c : text) {
    result += c;
    if (c == '\'') result += '\'';
  }
  return result;
}

// The runtime's shortest text of a Double: 15 significant digits, no trailing zeros.
std::string numberText(double value) {
  return fmt::format("{:.15g}", value);
}

// The civil date and time of a serial on or after 30 December 1899.
struct Civil {
  int year, month, day, hour, minute, second;
};

Civil civilOf(double serial) {
  using namespace std::chrono;
  const double whole = std::floor(serial);
  const auto seconds = static_cast<int>(std::lround((serial - whole) * 86400.0));
  // Serial 25569 is 1 January 1970.
  const year_month_day date{sys_days{days{static_cast<int>(whole) - 25569}}};
  return {static_cast<int>(date.year()),
          static_cast<int>(static_cast<unsigned>(date.month())),
          static_cast<int>(static_cast<unsigned>(date.day())),
          seconds / 3600,
          seconds / 60 % 60,
          seconds % 60};
}

std::string baselineText(const Input& in) {
  const bool desktop = in.kind == dbtMDB;
  switch (in.type) {
    case DTS_Date: {
      const Civil c = civilOf(in.number);
      if (!desktop) {
        if (c.year <= 1899) return " CAST('' AS datetime) ";
        return fmt::format(" CAST('{:04}{:02}{:02}' AS datetime)", c.year, c.month, c.day);
      }
      // en-US short date, then the 12-hour time when there is one.
      if (c.hour == 0 && c.minute == 0 && c.second == 0) {
        return fmt::format(" DATEVALUE('{}/{}/{:04}')", c.month, c.day, c.year);
      }
      return fmt::format(" DATEVALUE('{}/{}/{:04} {}:{:02}:{:02} {}')", c.month, c.day, c.year,
                         c.hour % 12 == 0 ? 12 : c.hour % 12, c.minute, c.second,
                         c.hour < 12 ? "AM" : "PM");
    }
    case DTS_Time: {
      // Str: a blank before a non-negative number, no zero before the decimal point.
      std::string text = numberText(in.number);
      if (text.starts_with("0.")) text.erase(0, 1);
      return fmt::format(" {}", text);
    }
    case DTS_Boolean:
      if (desktop) return in.flag ? "True" : "False";
      return in.flag ? "1" : "0";
    case DTS_Numeric:
      if (in.whole) return fmt::format("{}", static_cast<int32_t>(in.number));
      return numberText(in.number);
    default:
      return fmt::format("'{}'", doubledApostrophes(in.text));
  }
}

// Both sides must write the same text for every input, or the comparison means nothing.
void checkSameTexts(const std::vector<Input>& inputs) {
  static bool checked = false;
  if (checked) return;
  ScopedLocale locale(u"en-US");
  const auto sql = makeObject<SQLUtilities>();
  for (const Input& in : inputs) {
    const std::string library = toUtf8(sql->FormatSqlValue(in.type, in.value, in.kind));
    const std::string baseline = baselineText(in);
    if (library != baseline) {
      std::fprintf(stderr, "texts differ: library \"%s\", baseline \"%s\"\n", library.c_str(),
                   baseline.c_str());
      std::abort();
    }
  }
  checked = true;
}

void BM_FormatSqlValue(benchmark::State& state) {
  const std::vector<Input> inputs = makeInputs();
  checkSameTexts(inputs);
  ScopedLocale locale(u"en-US");
  const auto sql = makeObject<SQLUtilities>();
  for (auto _ : state) {
    for (int i = 0; i < kCalls; ++i) {
      const Input& in = inputs[i % kInputs];
      String text = sql->FormatSqlValue(in.type, in.value, in.kind);
      benchmark::DoNotOptimize(text.data());
    }
  }
  state.SetItemsProcessed(state.iterations() * kCalls);
}
BENCHMARK(BM_FormatSqlValue)->Unit(benchmark::kMillisecond);

void BM_FmtFormat(benchmark::State& state) {
  const std::vector<Input> inputs = makeInputs();
  checkSameTexts(inputs);
  for (auto _ : state) {
    for (int i = 0; i < kCalls; ++i) {
      std::string text = baselineText(inputs[i % kInputs]);
      benchmark::DoNotOptimize(text.data());
    }
  }
  state.SetItemsProcessed(state.iterations() * kCalls);
}
BENCHMARK(BM_FmtFormat)->Unit(benchmark::kMillisecond);

}  // namespace
