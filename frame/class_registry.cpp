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
std::vector<const T*> sortedByName(const std::vector<std::unique_ptr<T>>& items, auto nameOf) {
  std::vector<const T*> sorted;
  for (const auto& item : items)
    sorted.push_back(item.get());
  std::sort(sorted.begin(), sorted.end(),
            [&](const T* a, const T* b) { return toUpper(nameOf(*a)) < toUpper(nameOf(*b)); });
  return sorted;
}

}  // namespace

void ClassRegistry::addClass(ClassInfo info) {
  String key = toUpper(info.name());
  auto found = classIndex_.find(key);
  if (found != classIndex_.end()) {
    *classes_[found->second] = std::move(info);
    return;
  }
  classIndex_.emplace(std::move(key), classes_.size());
  classes_.push_back(std::make_unique<ClassInfo>(std::move(info)));
}

void ClassRegistry::addEnum(EnumInfo info) {
  for (const auto& [name, value] : info.values)
    enumValues_[toUpper(name)] = value;
  String key = toUpper(info.name);
  auto found = enumIndex_.find(key);
  if (found != enumIndex_.end()) {
    *enums_[found->second] = std::move(info);
    return;
  }
  enumIndex_.emplace(std::move(key), enums_.size());
  enums_.push_back(std::make_unique<EnumInfo>(std::move(info)));
}

const ClassInfo* ClassRegistry::findClass(StringView name) const {
  auto found = classIndex_.find(toUpper(withoutLibraryPrefix(name)));
  return found == classIndex_.end() ? nullptr : classes_[found->second].get();
}

const ClassInfo* ClassRegistry::classOf(const Object& object) const {
  auto found = classIndex_.find(toUpper(object.className()));
  return found == classIndex_.end() ? nullptr : classes_[found->second].get();
}

ObjectRef ClassRegistry::create(StringView name) const {
  const ClassInfo* info = findClass(name);
  if (info == nullptr || !info->creatable()) raiseRuntimeError(vb_error::kCannotCreateObject);
  return info->create();
}

const EnumInfo* ClassRegistry::findEnum(StringView name) const {
  auto found = enumIndex_.find(toUpper(name));
  return found == enumIndex_.end() ? nullptr : enums_[found->second].get();
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
