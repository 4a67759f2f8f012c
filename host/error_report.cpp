#include <ravelin/host/error_report.hpp>

namespace ravelin::host {

std::string runtimeErrorText(std::string_view file, const script::ScriptError& error) {
  std::string text(file);
  text += '(' + std::to_string(error.line()) + "): error " + std::to_string(error.number()) + ": " +
          toUtf8(error.description());
  if (!error.source().empty()) text += " [" + toUtf8(error.source()) + ']';
  text += '\n';
  return text;
}

std::string syntaxErrorText(std::string_view file, const script::SyntaxError& error) {
  std::string text(file);
  text += '(' + std::to_string(error.line()) + ", " + std::to_string(error.column()) +
          "): syntax error " + std::to_string(error.number()) + ": " + toUtf8(error.message()) +
          '\n';
  return text;
}

}  // namespace ravelin::host
