#include <ravelin/frame/convert.hpp>
#include <ravelin/host/class_listing.hpp>

namespace ravelin::host {
namespace {

std::string typeText(VarType type, const String& declaredName) {
  return toUtf8(declaredName.empty() ? varTypeName(type) : StringView(declaredName));
}

// A default value as it would be written in source: strings quoted, Booleans as True/False.
std::string literalText(const Variant& value) {
  if (value.isString()) return '"' + toUtf8(value.asString()) + '"';
  if (value.isObject()) return "Nothing";
  return toUtf8(CStr(value));
}

std::string parameterText(const ParameterInfo& parameter) {
  std::string text;
  if (parameter.optional) text += "Optional ";
  text += parameter.byRef ? "ByRef " : "ByVal ";
  text += toUtf8(parameter.name);
  text += " As " + typeText(parameter.type, parameter.typeName);
  if (parameter.optional && !parameter.defaultValue.isMissing() &&
      !parameter.defaultValue.isEmpty()) {
    text += " = " + literalText(parameter.defaultValue);
  }
  return text;
}

}  // namespace

std::string memberDeclaration(const MemberInfo& member) {
  std::string text;
  bool hasResult = member.resultType != VarType::Empty;
  switch (member.kind) {
    case MemberKind::Method:
      text = hasResult ? "Function " : "Sub ";
      break;
    case MemberKind::PropertyGet:
      text = "Property Get ";
      break;
    case MemberKind::PropertyLet:
      text = "Property Let ";
      break;
    case MemberKind::PropertySet:
      text = "Property Set ";
      break;
  }
  text += member.name.empty() ? std::string("[default]") : toUtf8(member.name);
  text += '(';
  for (std::size_t i = 0; i < member.parameters.size(); ++i) {
    if (i > 0) text += ", ";
    text += parameterText(member.parameters[i]);
  }
  text += ')';
  if (hasResult && (member.kind == MemberKind::Method || member.kind == MemberKind::PropertyGet))
    text += " As " + typeText(member.resultType, member.resultTypeName);
  return text;
}

std::string listLibrary(const ClassRegistry& registry) {
  std::string text = "Classes:\n";
  for (const ClassInfo* info : registry.classes()) {
    text += "  " + toUtf8(info->name());
    if (!info->creatable()) text += " (not creatable)";
    text += '\n';
  }
  text += "Enumerations:\n";
  for (const EnumInfo* info : registry.enums())
    text += "  " + toUtf8(info->name) + '\n';
  return text;
}

std::string listClass(const ClassRegistry& registry, StringView name) {
  std::string text;
  if (const ClassInfo* info = registry.findClass(name)) {
    text = "Class " + toUtf8(info->name()) + '\n';
    for (const MemberInfo& member : info->members())
      text += "  " + memberDeclaration(member) + '\n';
    for (const EventInfo& event : info->events()) {
      text += "  Event " + toUtf8(event.name) + '(';
      for (std::size_t i = 0; i < event.parameters.size(); ++i) {
        if (i > 0) text += ", ";
        text += parameterText(event.parameters[i]);
      }
      text += ")\n";
    }
    text += "End Class\n";
  } else if (const EnumInfo* info = registry.findEnum(name)) {
    text = "Enum " + toUtf8(info->name) + '\n';
    for (const auto& [memberName, value] : info->values)
      text += "  " + toUtf8(memberName) + " = " + std::to_string(value) + '\n';
    text += "End Enum\n";
  }
  return text;
}

}  // namespace ravelin::host
