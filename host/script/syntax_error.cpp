#include <ravelin/host/script/syntax_error.hpp>

namespace ravelin::script {

StringView syntaxErrorMessage(int32_t number) {
  using namespace syntax_error;
  switch (number) {
    case kOutOfStackSpace:
      return u"Out of stack space";
    case kSyntaxError:
      return u"Syntax error";
    case kExpectedLeftParen:
      return u"Expected '('";
    case kExpectedRightParen:
      return u"Expected ')'";
    case kExpectedIdentifier:
      return u"Expected identifier";
    case kExpectedEqual:
      return u"Expected '='";
    case kExpectedIf:
      return u"Expected 'If'";
    case kExpectedTo:
      return u"Expected 'To'";
    case kExpectedEnd:
      return u"Expected 'End'";
    case kExpectedFunction:
      return u"Expected 'Function'";
    case kExpectedSub:
      return u"Expected 'Sub'";
    case kExpectedThen:
      return u"Expected 'Then'";
    case kExpectedWend:
      return u"Expected 'Wend'";
    case kExpectedLoop:
      return u"Expected 'Loop'";
    case kExpectedNext:
      return u"Expected 'Next'";
    case kExpectedCase:
      return u"Expected 'Case'";
    case kExpectedSelect:
      return u"Expected 'Select'";
    case kExpectedExpression:
      return u"Expected expression";
    case kExpectedStatement:
      return u"Expected statement";
    case kExpectedEndOfStatement:
      return u"Expected end of statement";
    case kExpectedIntegerConstant:
      return u"Expected integer constant";
    case kExpectedWhileOrUntil:
      return u"Expected 'While' or 'Until'";
    case kExpectedWhileUntilOrEnd:
      return u"Expected 'While,' 'Until,' or end of statement";
    case kExpectedWith:
      return u"Expected 'With'";
    case kIdentifierTooLong:
      return u"Identifier too long";
    case kInvalidNumber:
      return u"Invalid number";
    case kInvalidCharacter:
      return u"Invalid character";
    case kUnterminatedString:
      return u"Unterminated string constant";
    case kLoopWithoutDo:
      return u"'loop' without 'do'";
    case kInvalidExit:
      return u"Invalid 'exit' statement";
    case kInvalidForVariable:
      return u"Invalid 'for' loop control variable";
    case kNameRedefined:
      return u"Name redefined";
    case kCannotUseParentheses:
      return u"Cannot use parentheses when calling a Sub";
    case kExpectedLiteralConstant:
      return u"Expected literal constant";
    case kExpectedIn:
      return u"Expected 'In'";
    case kUnexpectedNext:
      return u"Unexpected 'Next'";
    default:
      return u"Syntax error";
  }
}

SyntaxError::SyntaxError(int32_t number, uint32_t line, uint32_t column)
    : AutomationError(number, String(kCompilationErrorSource), String(syntaxErrorMessage(number))),
      line_(line),
      column_(column) {}

}  // namespace ravelin::script
