// Automation text: UTF-16 code units, with UTF-8 only at the edges of the library.
#pragma once

#include <string>
#include <string_view>

namespace ravelin {

// The automation String: a counted sequence of 16-bit units. Lengths, positions and padding
// count units, as the automation runtime does.
using String = std::u16string;
using StringView = std::u16string_view;

// UTF-8 to and from automation text. Malformed UTF-8 becomes U+FFFD; a lone surrogate in the
// UTF-16 text is written as U+FFFD too, so the output is always valid UTF-8.
std::string toUtf8(StringView text);
String fromUtf8(std::string_view text);

// Widens 7-bit text (literals, digits produced by the number formatter) unit for unit.
String fromAscii(std::string_view text);

// Upper and lower case of one unit and of a text, for the Latin-1 and Latin Extended-A range
// the suite's code pages cover; other units are returned unchanged.
char16_t toUpper(char16_t unit);
char16_t toLower(char16_t unit);
String toUpper(StringView text);
String toLower(StringView text);

// Comparison without regard to case, by the same folding as toUpper.
bool equalsIgnoreCase(StringView a, StringView b);

}  // namespace ravelin
