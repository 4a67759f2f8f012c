#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/host/script/echo_text.hpp>

namespace ravelin::script {

String echoText(const Variant& value) {
  if (value.isEmpty()) return String();
  if (value.isNull()) return u"null";
  if (value.isObject()) return value.typeName();
  if (value.type() == VarType::Boolean) return value.asBoolean() ? u"-1" : u"0";
  if (value.isArray()) raiseRuntimeError(vb_error::kTypeMismatch);
  return CStr(value);
}

std::string echoLine(std::span<const Variant> arguments) {
  std::string line;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i > 0) line += ' ';
    line += toUtf8(echoText(arguments[i]));
  }
  line += '\n';
  return line;
}

}  // namespace ravelin::script
