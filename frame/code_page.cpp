// Conversions between automation text and the single-byte code pages of files and devices.
#include <algorithm>
#include <array>
#include <cstdint>
#include <ravelin/frame/code_page.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/internal/code_page_tables.hpp>
#include <unordered_map>
#include <utility>

namespace ravelin {
namespace {

using code_page_tables::HighHalf;

// Windows-1252. The five bytes the code page leaves undefined (0x81, 0x8D, 0x8F, 0x90, 0x9D)
// map to the same-numbered C1 control, as MultiByteToWideChar does, so they round-trip.
constexpr HighHalf kWindows1252 = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160, 0x2039,
    0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178, 0x00A0, 0x00A1, 0x00A2, 0x00A3,
    0x00A4, 0x00A5, 0x00A6, 0x00A7, 0x00A8, 0x00A9, 0x00AA, 0x00AB, 0x00AC, 0x00AD, 0x00AE, 0x00AF,
    0x00B0, 0x00B1, 0x00B2, 0x00B3, 0x00B4, 0x00B5, 0x00B6, 0x00B7, 0x00B8, 0x00B9, 0x00BA, 0x00BB,
    0x00BC, 0x00BD, 0x00BE, 0x00BF, 0x00C0, 0x00C1, 0x00C2, 0x00C3, 0x00C4, 0x00C5, 0x00C6, 0x00C7,
    0x00C8, 0x00C9, 0x00CA, 0x00CB, 0x00CC, 0x00CD, 0x00CE, 0x00CF, 0x00D0, 0x00D1, 0x00D2, 0x00D3,
    0x00D4, 0x00D5, 0x00D6, 0x00D7, 0x00D8, 0x00D9, 0x00DA, 0x00DB, 0x00DC, 0x00DD, 0x00DE, 0x00DF,
    0x00E0, 0x00E1, 0x00E2, 0x00E3, 0x00E4, 0x00E5, 0x00E6, 0x00E7, 0x00E8, 0x00E9, 0x00EA, 0x00EB,
    0x00EC, 0x00ED, 0x00EE, 0x00EF, 0x00F0, 0x00F1, 0x00F2, 0x00F3, 0x00F4, 0x00F5, 0x00F6, 0x00F7,
    0x00F8, 0x00F9, 0x00FA, 0x00FB, 0x00FC, 0x00FD, 0x00FE, 0x00FF,
};

// OEM 850, Multilingual Latin 1 (the published mapping table).
constexpr HighHalf kOem850 = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF,
    0x00EE, 0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9,
    0x00FF, 0x00D6, 0x00DC, 0x00F8, 0x00A3, 0x00D8, 0x00D7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA,
    0x00F1, 0x00D1, 0x00AA, 0x00BA, 0x00BF, 0x00AE, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB,
    0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x00C1, 0x00C2, 0x00C0, 0x00A9, 0x2563, 0x2551, 0x2557,
    0x255D, 0x00A2, 0x00A5, 0x2510, 0x2514, 0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x00E3, 0x00C3,
    0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550, 0x256C, 0x00A4, 0x00F0, 0x00D0, 0x00CA, 0x00CB,
    0x00C8, 0x0131, 0x00CD, 0x00CE, 0x00CF, 0x2518, 0x250C, 0x2588, 0x2584, 0x00A6, 0x00CC, 0x2580,
    0x00D3, 0x00DF, 0x00D4, 0x00D2, 0x00F5, 0x00D5, 0x00B5, 0x00FE, 0x00DE, 0x00DA, 0x00DB, 0x00D9,
    0x00FD, 0x00DD, 0x00AF, 0x00B4, 0x00AD, 0x00B1, 0x2017, 0x00BE, 0x00B6, 0x00A7, 0x00F7, 0x00B8,
    0x00B0, 0x00A8, 0x00B7, 0x00B9, 0x00B3, 0x00B2, 0x25A0, 0x00A0,
};

// OEM 437, the original PC set with box drawing (the published mapping table).
constexpr HighHalf kOem437 = {
    0x00C7, 0x00FC, 0x00E9, 0x00E2, 0x00E4, 0x00E0, 0x00E5, 0x00E7, 0x00EA, 0x00EB, 0x00E8, 0x00EF,
    0x00EE, 0x00EC, 0x00C4, 0x00C5, 0x00C9, 0x00E6, 0x00C6, 0x00F4, 0x00F6, 0x00F2, 0x00FB, 0x00F9,
    0x00FF, 0x00D6, 0x00DC, 0x00A2, 0x00A3, 0x00A5, 0x20A7, 0x0192, 0x00E1, 0x00ED, 0x00F3, 0x00FA,
    0x00F1, 0x00D1, 0x00AA, 0x00BA, 0x00BF, 0x2310, 0x00AC, 0x00BD, 0x00BC, 0x00A1, 0x00AB, 0x00BB,
    0x2591, 0x2592, 0x2593, 0x2502, 0x2524, 0x2561, 0x2562, 0x2556, 0x2555, 0x2563, 0x2551, 0x2557,
    0x255D, 0x255C, 0x255B, 0x2510, 0x2514, 0x2534, 0x252C, 0x251C, 0x2500, 0x253C, 0x255E, 0x255F,
    0x255A, 0x2554, 0x2569, 0x2566, 0x2560, 0x2550, 0x256C, 0x2567, 0x2568, 0x2564, 0x2565, 0x2559,
    0x2558, 0x2552, 0x2553, 0x256B, 0x256A, 0x2518, 0x250C, 0x2588, 0x2584, 0x258C, 0x2590, 0x2580,
    0x03B1, 0x00DF, 0x0393, 0x03C0, 0x03A3, 0x03C3, 0x00B5, 0x03C4, 0x03A6, 0x0398, 0x03A9, 0x03B4,
    0x221E, 0x03C6, 0x03B5, 0x2229, 0x2261, 0x00B1, 0x2265, 0x2264, 0x2320, 0x2321, 0x00F7, 0x2248,
    0x00B0, 0x2219, 0x00B7, 0x221A, 0x207F, 0x00B2, 0x25A0, 0x00A0,
};

// One entry of a reverse table: a text unit and the byte that writes it.
struct ReverseEntry {
  char16_t unit;
  uint8_t byte;
};
using ReverseTable = std::array<ReverseEntry, 128>;

// The high half sorted by unit, so encoding finds a unit by binary search.
constexpr ReverseTable makeReverse(const HighHalf& table) {
  ReverseTable reverse{};
  for (std::size_t i = 0; i < table.size(); ++i) {
    reverse[i] = {table[i], static_cast<uint8_t>(0x80 + i)};
  }
  std::sort(reverse.begin(), reverse.end(),
            [](const ReverseEntry& a, const ReverseEntry& b) { return a.unit < b.unit; });
  return reverse;
}

constexpr ReverseTable kWindows1252Reverse = makeReverse(kWindows1252);
constexpr ReverseTable kOem850Reverse = makeReverse(kOem850);
constexpr ReverseTable kOem437Reverse = makeReverse(kOem437);

// What encode writes for a unit the code page cannot represent: the system's default character.
constexpr char kDefaultChar = '?';

struct TablePage {
  const HighHalf* forward;
  const ReverseTable* reverse;
};

constexpr TablePage k1252{&kWindows1252, &kWindows1252Reverse};
constexpr TablePage k850{&kOem850, &kOem850Reverse};
constexpr TablePage k437{&kOem437, &kOem437Reverse};

// The generated pages with their reverse tables, built once on first use.
struct GeneratedPages {
  std::unordered_map<int, ReverseTable> reverse;
  std::unordered_map<int, TablePage> pages;

  GeneratedPages() {
    for (int codePage : code_page_tables::generatedCodePages()) {
      const HighHalf* forward = code_page_tables::generatedHighHalf(codePage);
      reverse.emplace(codePage, makeReverse(*forward));
    }
    for (const auto& [codePage, table] : reverse)
      pages.emplace(codePage, TablePage{code_page_tables::generatedHighHalf(codePage), &table});
  }
};

// The tables of a table-driven page, or null for the others.
const TablePage* tablePage(int codePage) {
  switch (codePage) {
    case 1252:
      return &k1252;
    case 850:
      return &k850;
    case 437:
      return &k437;
    default:
      break;
  }
  static const GeneratedPages generated;
  auto it = generated.pages.find(codePage);
  return it == generated.pages.end() ? nullptr : &it->second;
}

constexpr int kIso8859_1 = 28591;
constexpr int kUsAscii = 20127;
constexpr int kUtf8 = 65001;

char encodeWithTable(char16_t unit, const ReverseTable& reverse) {
  if (unit < 0x80) return static_cast<char>(unit);
  auto it = std::lower_bound(reverse.begin(), reverse.end(), unit,
                             [](const ReverseEntry& e, char16_t u) { return e.unit < u; });
  if (it != reverse.end() && it->unit == unit) return static_cast<char>(it->byte);
  return kDefaultChar;
}

}  // namespace

bool isSupportedCodePage(int codePage) {
  return tablePage(codePage) != nullptr || codePage == kIso8859_1 || codePage == kUsAscii ||
         codePage == kUtf8;
}

std::string encode(StringView text, int codePage) {
  if (codePage == kUtf8) return toUtf8(text);
  // Single-byte pages write one byte per unit: a surrogate pair becomes two default characters,
  // so positions and widths counted in units stay the same in the bytes.
  std::string bytes;
  bytes.reserve(text.size());
  if (const TablePage* page = tablePage(codePage)) {
    for (char16_t unit : text)
      bytes.push_back(encodeWithTable(unit, *page->reverse));
  } else if (codePage == kIso8859_1) {
    for (char16_t unit : text)
      bytes.push_back(unit <= 0xFF ? static_cast<char>(unit) : kDefaultChar);
  } else if (codePage == kUsAscii) {
    for (char16_t unit : text)
      bytes.push_back(unit < 0x80 ? static_cast<char>(unit) : kDefaultChar);
  } else {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  return bytes;
}

std::optional<std::array<char16_t, 256>> singleByteTable(int codePage) {
  if (codePage == kUtf8 || !isSupportedCodePage(codePage)) return std::nullopt;
  std::array<char16_t, 256> units{};
  for (int byte = 0; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    units[byte] = decode(std::string_view(&c, 1), codePage)[0];
  }
  return units;
}

String decode(std::string_view bytes, int codePage) {
  if (codePage == kUtf8) return fromUtf8(bytes);
  String text;
  text.reserve(bytes.size());
  if (const TablePage* page = tablePage(codePage)) {
    for (char c : bytes) {
      auto byte = static_cast<uint8_t>(c);
      text.push_back(byte < 0x80 ? char16_t{byte} : (*page->forward)[byte - 0x80u]);
    }
  } else if (codePage == kIso8859_1) {
    for (char c : bytes)
      text.push_back(char16_t{static_cast<uint8_t>(c)});
  } else if (codePage == kUsAscii) {
    // The system's US-ASCII table reads a byte above 0x7F without its high bit.
    for (char c : bytes)
      text.push_back(char16_t{static_cast<uint8_t>(static_cast<uint8_t>(c) & 0x7F)});
  } else {
    raiseRuntimeError(vb_error::kInvalidProcedureCall);
  }
  return text;
}

}  // namespace ravelin
