#include <algorithm>
#include <ravelin/frame/class_registry.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

StringView withoutLibraryPrefix(StringView name) {
  if (name.size() > kLibraryPrefix.size() &&
      equalsIgnoreCase(name.substr(0, kLibraryPrefix.size()), kLibraryPrefix)) {
    return name.substr(kLibraryPrefix.size());
  }
  return name;
}

template <typename T>
std::vector<const T*> sortedByName(std::vector<const T*> sorted, auto nameOf) {
  std::sort(sorted.begin(), sorted.end(),
            [&](const T* a, const T* b) { return toUpper(nameOf(*a)) < toUpper(nameOf(*b)); });
  return sorted;
}

}  // namespace

void ClassRegistry::addClass(const ClassInfo& info) {
  auto [found, added] = classIndex_.try_emplace(toUpper(info.name()), classes_.size());
  if (added) {
    classes_.push_back(&info);
  } else {
    classes_[found->second] = &info;
  }
}

void ClassRegistry::addEnum(const EnumInfo& info) {
  for (const auto& [name, value] : info.values)
    enumValues_[toUpper(name)] = value;
  auto [found, added] = enumIndex_.try_emplace(toUpper(info.name), enums_.size());
  if (added) {
    enums_.push_back(&info);
  } else {
    enums_[found->second] = &info;
  }
}

void ClassRegistry::addProgId(StringView progId, const ClassInfo& info) {
  progIds_[toUpper(progId)] = &info;
}

const ClassInfo* ClassRegistry::findClass(StringView name) const {
  if (!progIds_.empty()) {
    auto byProgId = progIds_.find(toUpper(name));
    if (byProgId != progIds_.end()) return byProgId->second;
  }
  auto found = classIndex_.find(toUpper(withoutLibraryPrefix(name)));
  return found == classIndex_.end() ? nullptr : classes_[found->second];
}

ObjectRef ClassRegistry::create(StringView name) const {
  const ClassInfo* info = findClass(name);
  if (info == nullptr || !info->creatable()) raiseRuntimeError(vb_error::kCannotCreateObject);
  return info->create();
}

const EnumInfo* ClassRegistry::findEnum(StringView name) const {
  auto found = enumIndex_.find(toUpper(name));
  return found == enumIndex_.end() ? nullptr : enums_[found->second];
}

std::optional<int32_t> ClassRegistry::findEnumValue(StringView memberName) const {
  auto found = enumValues_.find(toUpper(memberName));
  if (found == enumValues_.end()) return std::nullopt;
  return found->second;
}

std::vector<const ClassInfo*> ClassRegistry::classes() const {
  return sortedByName(classes_, [](const ClassInfo& c) -> const String& { return c.name(); });
}

std::vector<const EnumInfo*> ClassRegistry::enums() const {
  return sortedByName(enums_, [](const EnumInfo& e) -> const String& { return e.name; });
}

}  // namespace ravelin
