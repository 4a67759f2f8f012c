// Code pages: text to and from the single-byte ANSI and OEM code pages of files and devices.
#pragma once

#include <array>
#include <optional>
#include <ravelin/base/text.hpp>
#include <string>
#include <string_view>

namespace ravelin {

// Code pages the library converts without help from the system: the Windows pages 874, 1250,
// 1251, 1252, 1253, 1254, 1255, 1256 and 1257; the OEM pages 437, 737, 850, 852, 857, 860, 861,
// 863, 865 and 866; ISO-8859-1 (28591), US-ASCII (20127) and UTF-8 (65001).
bool isSupportedCodePage(int codePage);

// Text to bytes. A unit that the code page cannot represent becomes '?', the system's default
// character (best-fit mappings are not applied). Single-byte pages write one byte per unit, so a
// surrogate pair becomes "??" and widths counted in units hold. UTF-8 writes a lone surrogate as
// U+FFFD. Raises 5 for an unsupported code page.
std::string encode(StringView text, int codePage);

// Bytes to text. Bytes that the code page leaves undefined map to the same-numbered unit, as the
// system does for Windows-1252 (or, where the page already uses that unit, to U+F700 plus the
// byte), so every byte round-trips; US-ASCII reads a byte above 0x7F without its high
// bit; malformed UTF-8 becomes U+FFFD. Raises 5 for an unsupported code page.
String decode(std::string_view bytes, int codePage);

// The unit that decode gives for each byte of a single-byte page; nullopt for UTF-8 and for an
// unsupported page. Lets a reader of many short texts convert them without a call per text.
std::optional<std::array<char16_t, 256>> singleByteTable(int codePage);

}  // namespace ravelin
