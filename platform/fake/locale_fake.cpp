// The in-memory locale system.
#include <algorithm>
#include <ravelin/platform/fake/locale_fake.hpp>
#include <utility>

namespace ravelin::platform {

void FakeLocaleSystem::setVariable(std::string name, std::string value) {
  variables_[std::move(name)] = std::move(value);
}

void FakeLocaleSystem::unsetVariable(const std::string& name) {
  variables_.erase(name);
}

void FakeLocaleSystem::addLocale(Locale locale) {
  locales_.push_back(std::move(locale));
}

String FakeLocaleSystem::environmentLocaleName() const {
  return fromUtf8(localeNameFromVariables([this](std::string_view name) {
    auto it = variables_.find(std::string(name));
    return it == variables_.end() ? std::nullopt : std::optional<std::string>(it->second);
  }));
}

std::optional<Locale> FakeLocaleSystem::findLocale(StringView name) const {
  const String base = localeBaseName(name);
  auto it = std::find_if(locales_.begin(), locales_.end(), [&base](const Locale& locale) {
    return equalsIgnoreCase(localeBaseName(locale.name), base);
  });
  if (base.empty() || it == locales_.end()) return std::nullopt;
  return *it;
}

std::optional<Locale> FakeLocaleSystem::findLocale(uint32_t lcid) const {
  auto it = std::find_if(locales_.begin(), locales_.end(),
                         [lcid](const Locale& locale) { return locale.lcid == lcid; });
  if (lcid == 0 || it == locales_.end()) return std::nullopt;
  return *it;
}

}  // namespace ravelin::platform
