#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/host/script/echo_text.hpp>

namespace ravelin::script {
namespace {

// The object's default property when it has one that takes no argument (Err's Number), else
// the object itself.
Variant defaultValueOf(const Variant& value) {
  const ObjectRef& object = value.asObject();
  if (!object) return value;
  const MemberInfo* member = object->classInfo().find(u"", MemberKind::PropertyGet);
  if (member == nullptr) return value;
  for (const ParameterInfo& parameter : member->parameters) {
    if (!parameter.optional) return value;
  }
  return callMember(*object, *member, {});
}

}  // namespace

String echoText(const Variant& value) {
  if (value.isEmpty()) return String();
  if (value.isNull()) return u"null";
  if (value.isObject()) {
    Variant shown = defaultValueOf(value);
    return shown.isObject() ? shown.typeName() : echoText(shown);
  }
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
