// The tokens of the script language: kinds, reserved words and one token with its position.
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/variant.hpp>

namespace ravelin::script {

enum class TokenKind : uint8_t {
  End,    // end of the source
  Error,  // a lexical error; errorNumber says which
  NewLine,
  Colon,       // statement separator
  Identifier,  // a name (keyword is None) or a reserved word (keyword says which)
  Literal,     // number, string or date: value holds it
  LeftParen,
  RightParen,
  Comma,
  Dot,
  ColonEqual,  // ":=" of a named argument
  Plus,
  Minus,
  Star,
  Slash,
  Backslash,
  Caret,
  Ampersand,
  Equal,
  NotEqual,
  Less,
  Greater,
  LessEqual,
  GreaterEqual,
};

// Reserved words. True, False, Null, Empty and Nothing are reserved words too; the parser turns
// them into literals.
enum class Keyword : uint8_t {
  None,
  And,
  ByRef,
  ByVal,
  Call,
  Case,
  Class,
  Const,
  Dim,
  Do,
  Each,
  Else,
  ElseIf,
  Empty,
  End,
  Erase,
  Eqv,
  Exit,
  False,
  For,
  Function,
  Get,
  GoTo,
  If,
  Imp,
  In,
  Is,
  Let,
  Loop,
  Me,
  Mod,
  New,
  Next,
  Not,
  Nothing,
  Null,
  On,
  Option,
  Optional,
  Or,
  Preserve,
  Private,
  Property,
  Public,
  ReDim,
  Rem,
  Resume,
  Select,
  Set,
  Sub,
  Then,
  To,
  True,
  Until,
  Wend,
  While,
  With,
  Xor,
};

// The reserved word spelled by a name (any case), or None.
Keyword keywordOf(StringView name);

// One token. Identifiers and reserved words keep their text (a view into the source); literals
// their value.
struct Token {
  TokenKind kind = TokenKind::End;
  Keyword keyword = Keyword::None;
  uint32_t line = 1;
  uint32_t column = 1;
  int32_t errorNumber = 0;
  StringView text;
  Variant value;

  bool is(TokenKind k) const { return kind == k; }
  bool is(Keyword k) const { return kind == TokenKind::Identifier && keyword == k; }
  // A name that is not a reserved word.
  bool isName() const { return kind == TokenKind::Identifier && keyword == Keyword::None; }
};

}  // namespace ravelin::script
