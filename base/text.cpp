#include <cstdint>
#include <ravelin/base/text.hpp>

namespace ravelin {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t cp) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

void appendUtf16(String& out, char32_t cp) {
  if (cp < 0x10000) {
    out += static_cast<char16_t>(cp);
  } else {
    cp -= 0x10000;
    out += static_cast<char16_t>(0xD800 + (cp >> 10));
    out += static_cast<char16_t>(0xDC00 + (cp & 0x3FF));
  }
}

bool isHighSurrogate(char16_t u) {
  return u >= 0xD800 && u <= 0xDBFF;
}
bool isLowSurrogate(char16_t u) {
  return u >= 0xDC00 && u <= 0xDFFF;
}

}  // namespace

std::string toUtf8(StringView text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t i = 0; i < text.size(); ++i) {
    char16_t u = text[i];
    if (u < 0x80) {
      out.push_back(static_cast<char>(u));
    } else if (isHighSurrogate(u) && i + 1 < text.size() && isLowSurrogate(text[i + 1])) {
      char32_t cp = 0x10000 + ((static_cast<char32_t>(u) - 0xD800) << 10) +
                    (static_cast<char32_t>(text[i + 1]) - 0xDC00);
      appendUtf8(out, cp);
      ++i;
    } else if (isHighSurrogate(u) || isLowSurrogate(u)) {
      appendUtf8(out, kReplacement);
    } else {
      appendUtf8(out, u);
    }
  }
  return out;
}

String fromUtf8(std::string_view text) {
  String out;
  out.reserve(text.size());
  std::size_t i = 0;
  while (i < text.size()) {
    auto lead = static_cast<unsigned char>(text[i]);
    if (lead < 0x80) {
      out.push_back(lead);
      ++i;
      continue;
    }
    int extra = 0;
    char32_t cp = 0;
    char32_t minimum = 0;
    if (lead < 0x80) {
      cp = lead;
    } else if ((lead & 0xE0) == 0xC0) {
      extra = 1, cp = lead & 0x1F, minimum = 0x80;
    } else if ((lead & 0xF0) == 0xE0) {
      extra = 2, cp = lead & 0x0F, minimum = 0x800;
    } else if ((lead & 0xF8) == 0xF0) {
      extra = 3, cp = lead & 0x07, minimum = 0x10000;
    } else {
      appendUtf16(out, kReplacement);
      ++i;
      continue;
    }
    std::size_t j = i + 1;
    bool valid = true;
    for (int k = 0; k < extra; ++k, ++j) {
      if (j >= text.size() || (static_cast<unsigned char>(text[j]) & 0xC0) != 0x80) {
        valid = false;
        break;
      }
      cp = (cp << 6) | (static_cast<unsigned char>(text[j]) & 0x3F);
    }
    if (!valid || cp < minimum || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
      appendUtf16(out, kReplacement);
      i = valid ? j : i + 1;
      continue;
    }
    appendUtf16(out, cp);
    i = j;
  }
  return out;
}

String fromAscii(std::string_view text) {
  String out(text.size(), u'\0');
  for (std::size_t i = 0; i < text.size(); ++i)
    out[i] = static_cast<unsigned char>(text[i]);
  return out;
}

char16_t toUpper(char16_t u) {
  if (u >= u'a' && u <= u'z') return static_cast<char16_t>(u - 32);
  if (u < 0xE0) return u;
  if (u <= 0xFE && u != 0xF7) return static_cast<char16_t>(u - 32);  // Latin-1 à..þ
  if (u == 0xFF) return 0x178;                                       // ÿ
  if (u >= 0x100 && u <= 0x17F) {
    // Latin Extended-A pairs: even upper / odd lower, except the 0x139..0x148 and
    // 0x179..0x17E runs, which are odd upper / even lower; ı (0x131) and ĸ (0x138) stand alone.
    bool oddUpper = (u >= 0x139 && u <= 0x148) || (u >= 0x179 && u <= 0x17E);
    if (u == 0x131 || u == 0x138 || u == 0x149 || u == 0x17F) return u;
    bool isLower = oddUpper ? (u % 2 == 0) : (u % 2 == 1);
    return isLower ? static_cast<char16_t>(u - 1) : u;
  }
  if (u == 0x192) return 0x191;
  return u;
}

char16_t toLower(char16_t u) {
  if (u >= u'A' && u <= u'Z') return static_cast<char16_t>(u + 32);
  if (u < 0xC0) return u;
  if (u <= 0xDE && u != 0xD7) return static_cast<char16_t>(u + 32);  // Latin-1 À..Þ
  if (u == 0x178) return 0xFF;
  if (u >= 0x100 && u <= 0x17F) {
    bool oddUpper = (u >= 0x139 && u <= 0x148) || (u >= 0x179 && u <= 0x17E);
    if (u == 0x130 || u == 0x131 || u == 0x138 || u == 0x149 || u == 0x17F) return u;
    bool isUpper = oddUpper ? (u % 2 == 1) : (u % 2 == 0);
    return isUpper ? static_cast<char16_t>(u + 1) : u;
  }
  if (u == 0x191) return 0x192;
  return u;
}

String toUpper(StringView text) {
  String out(text);
  for (auto& u : out)
    u = toUpper(u);
  return out;
}

String toLower(StringView text) {
  String out(text);
  for (auto& u : out)
    u = toLower(u);
  return out;
}

bool equalsIgnoreCase(StringView a, StringView b) {
  if (a.size() != b.size()) return false;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && toUpper(a[i]) != toUpper(b[i])) return false;
  }
  return true;
}

}  // namespace ravelin
