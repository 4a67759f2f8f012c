// Text sections of user-defined formats: "@" and "&" placeholders, case and alignment.
#include <ravelin/frame/internal/format_tokens.hpp>

namespace ravelin::detail {

void appendFormattedText(StringView text, const ParsedFormat& parsed, const FormatSection& section,
                         StringView format, String& out) {
  String changed;
  if (section.caseChange == CaseChange::Upper) {
    changed = toUpper(text);
    text = changed;
  } else if (section.caseChange == CaseChange::Lower) {
    changed = toLower(text);
    text = changed;
  }

  // Placeholders take the characters in order. When the text is shorter, the missing ones are
  // the first placeholders (right alignment) or, with "!", the last; "@" shows them as blanks and
  // "&" as nothing. When it is longer, the rest of the text follows the whole section.
  const auto placeholders = static_cast<size_t>(section.placeholders);
  const size_t missing = text.size() < placeholders ? placeholders - text.size() : 0;
  size_t ordinal = 0;
  size_t next = 0;
  for (uint32_t i = section.firstToken; i < section.endToken; ++i) {
    const FormatToken& token = parsed.tokens[i];
    if (token.kind != TokenKind::CharOrSpace && token.kind != TokenKind::CharOrNothing) {
      out += tokenText(format, token);
      continue;
    }
    bool blank = section.leftAlign ? ordinal >= text.size() : ordinal < missing;
    ++ordinal;
    if (!blank) {
      out += text[next++];
    } else if (token.kind == TokenKind::CharOrSpace) {
      out += u' ';
    }
  }
  if (next < text.size()) out += text.substr(next);
}

}  // namespace ravelin::detail
