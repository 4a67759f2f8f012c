#include <ravelin/host/error_report.hpp>
#include <ravelin/host/prompt.hpp>
#include <ravelin/host/script/echo_text.hpp>
#include <ravelin/host/script/parser.hpp>
#include <string>

namespace ravelin::host {
namespace {

constexpr std::string_view kPromptFile = "<prompt>";

bool readLine(std::FILE* input, std::string& line) {
  line.clear();
  int c;
  while ((c = std::fgetc(input)) != EOF) {
    if (c == '\n') return true;
    line.push_back(static_cast<char>(c));
  }
  return !line.empty();
}

}  // namespace

bool isExpressionInput(StringView line) {
  script::NameTable names;
  script::ExprPtr expression;
  try {
    expression = script::parseExpression(line, names);
  } catch (const script::SyntaxError&) {
    return false;
  }
  if (expression->kind != script::ExprKind::Binary || expression->parenthesized) return true;
  const auto& binary = static_cast<const script::BinaryExpr&>(*expression);
  if (binary.op != script::BinaryOp::Equal || binary.left->parenthesized) return true;
  auto target = binary.left->kind;
  return target != script::ExprKind::Name && target != script::ExprKind::Member &&
         target != script::ExprKind::Apply;
}

int runPrompt(script::Interpreter& interpreter, std::FILE* input, std::FILE* output,
              std::FILE* errors, void (*flushOutput)()) {
  auto writeError = [&](const std::string& text) { std::fputs(text.c_str(), errors); };
  std::string line;
  for (;;) {
    flushOutput();
    std::fputs("> ", errors);
    std::fflush(errors);
    if (!readLine(input, line)) break;
    if (!line.empty() && line.back() == '\r') line.pop_back();
    String text = fromUtf8(line);
    try {
      if (isExpressionInput(text)) {
        Variant value = interpreter.evaluate(text);
        std::string shown = toUtf8(script::echoText(value));
        shown += '\n';
        std::fputs(shown.c_str(), output);
      } else {
        interpreter.execute(text);
      }
    } catch (const script::ScriptQuit& quit) {
      flushOutput();
      return quit.exitCode;
    } catch (const script::SyntaxError& error) {
      flushOutput();
      writeError(syntaxErrorText(kPromptFile, error));
    } catch (const script::ScriptError& error) {
      flushOutput();
      writeError(runtimeErrorText(kPromptFile, error));
    } catch (const AutomationError& error) {
      flushOutput();
      writeError(runtimeErrorText(kPromptFile, script::ScriptError(error, 1, 1)));
    }
  }
  std::fputs("\n", errors);
  return 0;
}

}  // namespace ravelin::host
