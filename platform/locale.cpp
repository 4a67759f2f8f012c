// The installed locale system and the rules shared by the implementations.
#include <array>
#include <mutex>
#include <ravelin/platform/locale.hpp>
#include <utility>

namespace ravelin::platform {
namespace {

std::mutex& installMutex() {
  static std::mutex mutex;
  return mutex;
}

// The installed implementation; null until first read, or after the native one is put back.
std::shared_ptr<const LocaleSystem>& installed() {
  static std::shared_ptr<const LocaleSystem> system;
  return system;
}

}  // namespace

std::shared_ptr<const LocaleSystem> localeSystem() {
  std::lock_guard lock(installMutex());
  auto& system = installed();
  if (!system) system = makeNativeLocaleSystem();
  return system;
}

std::shared_ptr<const LocaleSystem> installLocaleSystem(
    std::shared_ptr<const LocaleSystem> system) {
  std::lock_guard lock(installMutex());
  return std::exchange(installed(), std::move(system));
}

std::string localeNameFromVariables(
    const std::function<std::optional<std::string>(std::string_view)>& variable) {
  static constexpr std::array<std::string_view, 3> kOrder = {"LC_ALL", "LC_NUMERIC", "LANG"};
  for (std::string_view name : kOrder) {
    std::optional<std::string> value = variable(name);
    if (value && !value->empty()) return *value;
  }
  return {};
}

}  // namespace ravelin::platform
