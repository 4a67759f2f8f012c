#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/host/script/lexer.hpp>
#include <ravelin/host/script/syntax_error.hpp>
#include <string_view>
#include <utility>

namespace ravelin::script {

namespace {

// Reserved words in ASCII order, for a binary search on the lower-case spelling.
// clang-format off
constexpr std::array<std::pair<std::string_view, Keyword>, 57> kKeywords = {{
    {"and", Keyword::And},
    {"byref", Keyword::ByRef},
    {"byval", Keyword::ByVal},
    {"call", Keyword::Call},
    {"case", Keyword::Case},
    {"class", Keyword::Class},
    {"const", Keyword::Const},
    {"dim", Keyword::Dim},
    {"do", Keyword::Do},
    {"each", Keyword::Each},
    {"else", Keyword::Else},
    {"elseif", Keyword::ElseIf},
    {"empty", Keyword::Empty},
    {"end", Keyword::End},
    {"eqv", Keyword::Eqv},
    {"erase", Keyword::Erase},
    {"exit", Keyword::Exit},
    {"false", Keyword::False},
    {"for", Keyword::For},
    {"function", Keyword::Function},
    {"get", Keyword::Get},
    {"goto", Keyword::GoTo},
    {"if", Keyword::If},
    {"imp", Keyword::Imp},
    {"in", Keyword::In},
    {"is", Keyword::Is},
    {"let", Keyword::Let},
    {"loop", Keyword::Loop},
    {"me", Keyword::Me},
    {"mod", Keyword::Mod},
    {"new", Keyword::New},
    {"next", Keyword::Next},
    {"not", Keyword::Not},
    {"nothing", Keyword::Nothing},
    {"null", Keyword::Null},
    {"on", Keyword::On},
    {"option", Keyword::Option},
    {"optional", Keyword::Optional},
    {"or", Keyword::Or},
    {"preserve", Keyword::Preserve},
    {"private", Keyword::Private},
    {"property", Keyword::Property},
    {"public", Keyword::Public},
    {"redim", Keyword::ReDim},
    {"rem", Keyword::Rem},
    {"resume", Keyword::Resume},
    {"select", Keyword::Select},
    {"set", Keyword::Set},
    {"sub", Keyword::Sub},
    {"then", Keyword::Then},
    {"to", Keyword::To},
    {"true", Keyword::True},
    {"until", Keyword::Until},
    {"wend", Keyword::Wend},
    {"while", Keyword::While},
    {"with", Keyword::With},
    {"xor", Keyword::Xor},
}};
// clang-format on
static_assert(std::is_sorted(kKeywords.begin(), kKeywords.end(),
                             [](const auto& a, const auto& b) { return a.first < b.first; }),
              "the keyword lookup is a binary search");

constexpr bool isAsciiLetter(char16_t c) {
  return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z');
}
constexpr bool isDigit(char16_t c) {
  return c >= u'0' && c <= u'9';
}
constexpr bool isNameChar(char16_t c) {
  return isAsciiLetter(c) || isDigit(c) || c == u'_';
}
constexpr bool isBlank(char16_t c) {
  return c == u' ' || c == u'\t';
}
constexpr bool isLineEnd(char16_t c) {
  return c == u'\r' || c == u'\n';
}

int hexDigitValue(char16_t c) {
  if (isDigit(c)) return c - u'0';
  if (c >= u'a' && c <= u'f') return c - u'a' + 10;
  if (c >= u'A' && c <= u'F') return c - u'A' + 10;
  return -1;
}

// A failed lexical rule: the error number and where it points.
struct LexFailure {
  int32_t number;
  std::size_t offset;
};

class Lexer {
 public:
  explicit Lexer(StringView source) : src_(source) {}

  std::vector<Token> run() {
    // A byte-order mark at the start is no character of the script.
    if (!src_.empty() && src_[0] == u'\uFEFF') pos_ = lineStart_ = 1;
    tokens_.reserve(src_.size() / 4 + 8);
    try {
      while (scanOne()) {
      }
      tokens_.push_back(make(TokenKind::End, pos_));
    } catch (const LexFailure& failure) {
      Token& error = tokens_.emplace_back(make(TokenKind::Error, failure.offset));
      error.errorNumber = failure.number;
    }
    return std::move(tokens_);
  }

 private:
  Token make(TokenKind kind, std::size_t start) const {
    Token t;
    t.kind = kind;
    t.line = line_;
    // The source offset and the line start are both below 2^32 for any source the parser
    // accepts; a longer one is refused before tokenizing.
    t.column = static_cast<uint32_t>(start - lineStart_ + 1);
    return t;
  }

  void push(TokenKind kind, std::size_t start) { tokens_.push_back(make(kind, start)); }

  char16_t at(std::size_t i) const { return i < src_.size() ? src_[i] : u'\0'; }

  // Consumes a line break at pos_ (CR, LF or CR LF) and starts the next line.
  void newLine() {
    if (src_[pos_] == u'\r' && at(pos_ + 1) == u'\n') ++pos_;
    ++pos_;
    ++line_;
    lineStart_ = pos_;
  }

  void skipToLineEnd() {
    while (pos_ < src_.size() && !isLineEnd(src_[pos_]))
      ++pos_;
  }

  // Scans one token (or skips blanks, a comment or a continuation); false at the end.
  bool scanOne() {
    if (pos_ >= src_.size()) return false;
    const std::size_t start = pos_;
    const char16_t c = src_[pos_];
    if (isBlank(c)) {
      ++pos_;
      return true;
    }
    if (isLineEnd(c)) {
      push(TokenKind::NewLine, start);
      newLine();
      return true;
    }
    if (c == u'\'') {
      skipToLineEnd();
      return true;
    }
    if (c == u'_') {
      scanContinuation();
      return true;
    }
    if (isAsciiLetter(c)) {
      scanName();
      return true;
    }
    if (isDigit(c) || (c == u'.' && isDigit(at(pos_ + 1)) && !followsOperand())) {
      scanNumber();
      return true;
    }
    switch (c) {
      case u'"':
        scanString();
        return true;
      case u'#':
        scanDate();
        return true;
      case u'[':
        scanBracketName();
        return true;
      case u'&':
        scanAmpersand();
        return true;
      case u'(':
        return single(TokenKind::LeftParen);
      case u')':
        return single(TokenKind::RightParen);
      case u',':
        return single(TokenKind::Comma);
      case u'.':
        return single(TokenKind::Dot);
      case u'+':
        return single(TokenKind::Plus);
      case u'-':
        return single(TokenKind::Minus);
      case u'*':
        return single(TokenKind::Star);
      case u'/':
        return single(TokenKind::Slash);
      case u'\\':
        return single(TokenKind::Backslash);
      case u'^':
        return single(TokenKind::Caret);
      case u'=':
        return single(TokenKind::Equal);
      case u':':
        if (at(pos_ + 1) == u'=') return pair(TokenKind::ColonEqual);
        return single(TokenKind::Colon);
      case u'<':
        if (at(pos_ + 1) == u'>') return pair(TokenKind::NotEqual);
        if (at(pos_ + 1) == u'=') return pair(TokenKind::LessEqual);
        return single(TokenKind::Less);
      case u'>':
        if (at(pos_ + 1) == u'=') return pair(TokenKind::GreaterEqual);
        return single(TokenKind::Greater);
      default:
        throw LexFailure{syntax_error::kInvalidCharacter, start};
    }
  }

  // Whether the character before pos_ ends a name or a parenthesis, so that a dot there is
  // member access (x.1 is no number).
  bool followsOperand() const {
    if (pos_ == 0) return false;
    const char16_t before = src_[pos_ - 1];
    return isNameChar(before) || before == u')' || before == u']';
  }

  bool single(TokenKind kind) {
    push(kind, pos_);
    pos_ += 1;
    return true;
  }
  bool pair(TokenKind kind) {
    push(kind, pos_);
    pos_ += 2;
    return true;
  }

  // " _" followed by blanks and a line break joins the next line to this one.
  void scanContinuation() {
    const std::size_t start = pos_;
    std::size_t i = pos_ + 1;
    while (i < src_.size() && isBlank(src_[i]))
      ++i;
    if (i >= src_.size() || !isLineEnd(src_[i]))
      throw LexFailure{syntax_error::kInvalidCharacter, start};
    pos_ = i;
    newLine();
  }

  void scanName() {
    const std::size_t start = pos_;
    while (pos_ < src_.size() && isNameChar(src_[pos_]))
      ++pos_;
    if (pos_ - start > kMaxIdentifierLength)
      throw LexFailure{syntax_error::kIdentifierTooLong, start};
    Token t = make(TokenKind::Identifier, start);
    t.text = src_.substr(start, pos_ - start);
    t.keyword = keywordOf(t.text);
    if (t.keyword == Keyword::Rem) {
      const Token* before = tokens_.empty() ? nullptr : &tokens_.back();
      // After a dot Rem is a member name.
      if (before != nullptr && before->is(TokenKind::Dot)) {
        tokens_.push_back(std::move(t));
        return;
      }
      // Rem is a statement of its own: after other code on the line it needs a ":" first.
      // Elsewhere the Rem token stays, for the parser to refuse, and the rest of the line goes.
      skipToLineEnd();
      if (before == nullptr || before->is(TokenKind::NewLine) || before->is(TokenKind::Colon) ||
          before->is(Keyword::Then) || before->is(Keyword::Else)) {
        return;
      }
    }
    tokens_.push_back(std::move(t));
  }

  // [any text] is a name that may hold blanks or reserved words.
  void scanBracketName() {
    const std::size_t start = pos_;
    std::size_t i = pos_ + 1;
    while (i < src_.size() && src_[i] != u']' && !isLineEnd(src_[i]))
      ++i;
    if (i >= src_.size() || src_[i] != u']')
      throw LexFailure{syntax_error::kInvalidCharacter, start};
    if (i - start - 1 > kMaxIdentifierLength)
      throw LexFailure{syntax_error::kIdentifierTooLong, start};
    Token t = make(TokenKind::Identifier, start);
    t.text = src_.substr(start + 1, i - start - 1);
    tokens_.push_back(std::move(t));
    pos_ = i + 1;
  }

  void scanNumber() {
    const std::size_t start = pos_;
    bool isFloat = false;
    while (isDigit(at(pos_)))
      ++pos_;
    if (at(pos_) == u'.') {
      isFloat = true;
      ++pos_;
      while (isDigit(at(pos_)))
        ++pos_;
    }
    if (at(pos_) == u'e' || at(pos_) == u'E') {
      std::size_t i = pos_ + 1;
      if (at(i) == u'+' || at(i) == u'-') ++i;
      if (isDigit(at(i))) {
        isFloat = true;
        pos_ = i;
        while (isDigit(at(pos_)))
          ++pos_;
      }
    }
    std::string text(pos_ - start, '0');
    std::transform(src_.begin() + static_cast<std::ptrdiff_t>(start),
                   src_.begin() + static_cast<std::ptrdiff_t>(pos_), text.begin(),
                   [](char16_t u) { return static_cast<char>(u); });
    Token t = make(TokenKind::Literal, start);
    t.value = numberValue(text, isFloat, start);
    tokens_.push_back(std::move(t));
  }

  // Integer when the value fits 16 bits, Long when it fits 32, Double otherwise.
  static Variant numberValue(const std::string& text, bool isFloat, std::size_t start) {
    if (!isFloat) {
      std::size_t first = text.find_first_not_of('0');
      if (first == std::string::npos) return Variant(int16_t{0});
      if (text.size() - first <= 10) {
        int64_t v = 0;
        for (std::size_t i = first; i < text.size(); ++i)
          v = v * 10 + (text[i] - '0');
        if (v <= 32767) return Variant(static_cast<int16_t>(v));
        if (v <= 2147483647) return Variant(static_cast<int32_t>(v));
      }
    }
    double d = 0.0;
    const char* begin = text.data();
    auto [end, ec] = std::from_chars(begin, begin + text.size(), d);
    if (ec == std::errc::result_out_of_range) {
      if (isUnderflow(text)) return Variant(0.0);
      throw LexFailure{syntax_error::kInvalidNumber, start};
    }
    if (ec != std::errc() || end != begin + text.size()) {
      throw LexFailure{syntax_error::kInvalidNumber, start};
    }
    return Variant(d);
  }

  // Whether an out-of-range decimal text is too small (rather than too large) for a Double:
  // its decimal exponent, counted from the first significant digit, is negative.
  static bool isUnderflow(const std::string& text) {
    int64_t magnitude = 0;
    bool seenPoint = false;
    bool seenDigit = false;
    std::size_t i = 0;
    for (; i < text.size() && text[i] != 'e' && text[i] != 'E'; ++i) {
      if (text[i] == '.') {
        seenPoint = true;
      } else if (!seenDigit && text[i] == '0') {
        if (seenPoint) --magnitude;
      } else {
        if (!seenDigit && seenPoint) --magnitude;
        seenDigit = true;
        if (!seenPoint) ++magnitude;
      }
    }
    if (!seenDigit) return true;
    int64_t exponent = 0;
    if (i < text.size()) {
      ++i;
      bool negative = false;
      if (text[i] == '+' || text[i] == '-') negative = text[i++] == '-';
      for (; i < text.size() && exponent < 100000000; ++i)
        exponent = exponent * 10 + (text[i] - '0');
      if (negative) exponent = -exponent;
    }
    return magnitude + exponent < 0;
  }

  // "&" is concatenation unless it starts &H (hex) or &O (octal) digits.
  void scanAmpersand() {
    const std::size_t start = pos_;
    const char16_t kind = at(pos_ + 1);
    const bool hex = (kind == u'h' || kind == u'H') && hexDigitValue(at(pos_ + 2)) >= 0;
    const bool octal =
        (kind == u'o' || kind == u'O') && at(pos_ + 2) >= u'0' && at(pos_ + 2) <= u'7';
    if (!hex && !octal) {
      single(TokenKind::Ampersand);
      return;
    }
    const int base = hex ? 16 : 8;
    pos_ += 2;
    uint64_t v = 0;
    for (int d; (d = hexDigitValue(at(pos_))) >= 0 && d < base; ++pos_) {
      v = v * static_cast<unsigned>(base) + static_cast<unsigned>(d);
      if (v > 0xFFFFFFFFu) throw LexFailure{syntax_error::kInvalidNumber, start};
    }
    bool forceLong = false;
    if (at(pos_) == u'&') {
      forceLong = true;
      ++pos_;
    }
    Token t = make(TokenKind::Literal, start);
    // The runtime keeps the bit pattern: &HFFFF is the Integer -1, &HFFFFFFFF the Long -1.
    if (!forceLong && v <= 0xFFFFu) {
      t.value = Variant(static_cast<int16_t>(static_cast<uint16_t>(v)));
    } else {
      t.value = Variant(static_cast<int32_t>(static_cast<uint32_t>(v)));
    }
    tokens_.push_back(std::move(t));
  }

  void scanString() {
    const std::size_t start = pos_;
    String value;
    ++pos_;
    for (;;) {
      if (pos_ >= src_.size() || isLineEnd(src_[pos_])) {
        throw LexFailure{syntax_error::kUnterminatedString, start};
      }
      const char16_t c = src_[pos_++];
      if (c == u'"') {
        if (at(pos_) != u'"') break;
        ++pos_;
      }
      value.push_back(c);
    }
    Token t = make(TokenKind::Literal, start);
    t.value = Variant(std::move(value));
    tokens_.push_back(std::move(t));
  }

  void scanDate() {
    const std::size_t start = pos_;
    std::size_t i = pos_ + 1;
    while (i < src_.size() && src_[i] != u'#' && !isLineEnd(src_[i]))
      ++i;
    if (i >= src_.size() || src_[i] != u'#') throw LexFailure{syntax_error::kSyntaxError, start};
    // The literal reads the same in every locale, by the frame's rules for date literals.
    const std::optional<Date> date = readDateLiteral(src_.substr(start + 1, i - start - 1));
    if (!date) throw LexFailure{syntax_error::kSyntaxError, start};
    Token t = make(TokenKind::Literal, start);
    t.value = Variant(*date);
    tokens_.push_back(std::move(t));
    pos_ = i + 1;
  }

  StringView src_;
  std::size_t pos_ = 0;
  std::size_t lineStart_ = 0;
  uint32_t line_ = 1;
  std::vector<Token> tokens_;
};

}  // namespace

Keyword keywordOf(StringView name) {
  if (name.size() < 2 || name.size() > 8) return Keyword::None;
  char lower[8];
  for (std::size_t i = 0; i < name.size(); ++i) {
    const char16_t c = name[i];
    if (!isAsciiLetter(c)) return Keyword::None;
    lower[i] = static_cast<char>(c | 0x20);
  }
  const std::string_view key(lower, name.size());
  auto it = std::lower_bound(kKeywords.begin(), kKeywords.end(), key,
                             [](const auto& entry, std::string_view k) { return entry.first < k; });
  return it != kKeywords.end() && it->first == key ? it->second : Keyword::None;
}

std::vector<Token> tokenize(StringView source) {
  return Lexer(source).run();
}

}  // namespace ravelin::script
