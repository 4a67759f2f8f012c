// The locale rules shared by the implementations.
#include <array>
#include <ravelin/platform/locale.hpp>

namespace ravelin::platform {

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
