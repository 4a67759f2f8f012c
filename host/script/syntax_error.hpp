// The error a script that does not compile raises: its number and message, and where it is.
#pragma once

#include <cstdint>
#include <ravelin/frame/error.hpp>
#include <ravelin/base/text.hpp>

namespace ravelin::script {

// Numbers of the compilation errors, as the Windows script host reports them.
namespace syntax_error {
inline constexpr int32_t kOutOfStackSpace = 28;
inline constexpr int32_t kSyntaxError = 1002;
inline constexpr int32_t kExpectedLeftParen = 1005;
inline constexpr int32_t kExpectedRightParen = 1006;
inline constexpr int32_t kExpectedIdentifier = 1010;
inline constexpr int32_t kExpectedEqual = 1011;
inline constexpr int32_t kExpectedIf = 1012;
inline constexpr int32_t kExpectedTo = 1013;
inline constexpr int32_t kExpectedEnd = 1014;
inline constexpr int32_t kExpectedFunction = 1015;
inline constexpr int32_t kExpectedSub = 1016;
inline constexpr int32_t kExpectedThen = 1017;
inline constexpr int32_t kExpectedWend = 1018;
inline constexpr int32_t kExpectedLoop = 1019;
inline constexpr int32_t kExpectedNext = 1020;
inline constexpr int32_t kExpectedCase = 1021;
inline constexpr int32_t kExpectedSelect = 1022;
inline constexpr int32_t kExpectedExpression = 1023;
inline constexpr int32_t kExpectedStatement = 1024;
inline constexpr int32_t kExpectedEndOfStatement = 1025;
inline constexpr int32_t kExpectedIntegerConstant = 1026;
inline constexpr int32_t kExpectedWhileOrUntil = 1027;
inline constexpr int32_t kExpectedWhileUntilOrEnd = 1028;
inline constexpr int32_t kExpectedWith = 1029;
inline constexpr int32_t kIdentifierTooLong = 1030;
inline constexpr int32_t kInvalidNumber = 1031;
inline constexpr int32_t kInvalidCharacter = 1032;
inline constexpr int32_t kUnterminatedString = 1033;
inline constexpr int32_t kLoopWithoutDo = 1038;
inline constexpr int32_t kInvalidExit = 1039;
inline constexpr int32_t kInvalidForVariable = 1040;
inline constexpr int32_t kNameRedefined = 1041;
inline constexpr int32_t kCannotUseParentheses = 1044;
inline constexpr int32_t kExpectedLiteralConstant = 1045;
inline constexpr int32_t kExpectedIn = 1046;
inline constexpr int32_t kUnexpectedNext = 1055;
}  // namespace syntax_error

// The source text the runtime gives its compilation errors.
inline constexpr StringView kCompilationErrorSource = u"Microsoft VBScript compilation error";

// The English message of a compilation error number ("Expected end of statement"); "Syntax
// error" for a number that has none.
StringView syntaxErrorMessage(int32_t number);

// A compilation error: an automation error (so Eval and Execute can raise it like any other)
// that also knows its 1-based line and column (counted in UTF-16 units).
class SyntaxError : public AutomationError {
 public:
  SyntaxError(int32_t number, uint32_t line, uint32_t column);

  uint32_t line() const noexcept { return line_; }
  uint32_t column() const noexcept { return column_; }
  const String& message() const noexcept { return description(); }

 private:
  uint32_t line_;
  uint32_t column_;
};

}  // namespace ravelin::script
