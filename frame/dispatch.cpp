#include <array>
#include <cstddef>
#include <memory_resource>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {
namespace {

constexpr int32_t kNamedArgumentNotFound = 448;
constexpr std::size_t kBindingBufferBytes = 512;

}  // namespace

Variant callMember(const ObjectRef& object, StringView name, MemberKind kind,
                   std::span<CallArgument> arguments) {
  if (!object) raiseRuntimeError(vb_error::kObjectNotSet);
  const MemberInfo* member = object->classInfo().find(name, kind);
  if (member == nullptr) raiseRuntimeError(vb_error::kMemberNotSupported);
  return callMember(*object, *member, arguments);
}

const MemberInfo* findDefaultMember(const Object& object) {
  const ClassInfo& info = object.classInfo();
  const MemberInfo* member = info.find(u"", MemberKind::PropertyGet);
  return member != nullptr ? member : info.find(u"", MemberKind::Method);
}

Variant valueBehindObject(const Variant& value) {
  if (!value.isObject()) return value;
  const ObjectRef& object = value.asObject();
  if (!object) raiseRuntimeError(vb_error::kObjectNotSet);
  const MemberInfo* member = findDefaultMember(*object);
  if (member == nullptr) raiseRuntimeError(vb_error::kMemberNotSupported);
  std::vector<CallArgument> none;
  return callMember(*object, *member, none);
}

Variant callMember(Object& object, const MemberInfo& member, std::span<CallArgument> arguments) {
  const auto& parameters = member.parameters;
  // The bound values and where each came from, in a buffer on the stack that holds what the
  // few parameters of most members need (more spills to the heap).
  std::array<std::byte, kBindingBufferBytes> buffer;
  std::pmr::monotonic_buffer_resource arena(buffer.data(), buffer.size());
  std::pmr::vector<Variant> values(parameters.size(), Variant(), &arena);
  std::pmr::vector<CallArgument*> boundFrom(parameters.size(), nullptr, &arena);

  std::size_t position = 0;
  for (auto& argument : arguments) {
    std::size_t slot;
    if (argument.name.empty()) {
      slot = position++;
      if (slot >= parameters.size()) raiseRuntimeError(vb_error::kWrongArgumentCount);
    } else {
      slot = parameters.size();
      for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (equalsIgnoreCase(parameters[i].name, argument.name)) slot = i;
      }
      if (slot == parameters.size()) {
        raiseError(kNamedArgumentNotFound, String(kRuntimeErrorSource),
                   u"Named argument not found");
      }
      if (boundFrom[slot] != nullptr) raiseRuntimeError(vb_error::kWrongArgumentCount);
    }
    if (argument.omitted) continue;
    boundFrom[slot] = &argument;
    values[slot] = argument.value;
  }

  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (boundFrom[i] != nullptr) continue;
    if (!parameters[i].optional) raiseRuntimeError(vb_error::kArgumentNotOptional);
    values[i] = parameters[i].defaultValue;
  }

  Variant result = member.invoke(object, values);

  for (std::size_t i = 0; i < parameters.size(); ++i) {
    if (parameters[i].byRef && boundFrom[i] != nullptr && boundFrom[i]->variable != nullptr) {
      *boundFrom[i]->variable = std::move(values[i]);
    }
  }
  return result;
}

}  // namespace ravelin
