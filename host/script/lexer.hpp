// Turns script source into tokens.
#pragma once

#include <ravelin/host/script/token.hpp>
#include <vector>

namespace ravelin::script {

// The longest name the language accepts.
inline constexpr std::size_t kMaxIdentifierLength = 255;

// The tokens of a whole source, ending with an End token. Comments ("'" anywhere, Rem where a
// statement starts) and line continuations (" _" at the end of a line) leave no token; a Rem
// after code on its line stays a Rem token (the runtime wants a ":" before it) and the rest
// of the line is dropped. A lexical error (an invalid
// character, an unterminated string, a bad number or date) ends the list with an Error token
// at its position, so that the parser reports errors in source order. The tokens' text views
// point into `source`, which must outlive them.
std::vector<Token> tokenize(StringView source);

}  // namespace ravelin::script
