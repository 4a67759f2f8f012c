// Platform area "locale": which locale the environment selects, and the system's own locale data
// for the locales the library does not carry itself.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ravelin/base/locale.hpp>
#include <ravelin/base/text.hpp>
#include <ravelin/platform/slot.hpp>
#include <string>
#include <string_view>

namespace ravelin::platform {

// The system's regional settings, as the library reads them. Nothing else in the library asks the
// operating system about locales.
class LocaleSystem {
 public:
  virtual ~LocaleSystem() = default;

  // The name of the locale the process environment selects for regional settings, as the system
  // writes it ("pt_BR.UTF-8" from the variables on Linux, "pt-BR" for the user default locale on
  // Windows); empty when the environment names none.
  virtual String environmentLocaleName() const = 0;

  // The settings the system's locale data gives for a name ("nl_NL", "nl-NL.UTF-8"), or nullopt
  // when the system does not know the name.
  virtual std::optional<Locale> findLocale(StringView name) const = 0;

  // The same for a Windows locale identifier; nullopt where the system has no such identifiers.
  virtual std::optional<Locale> findLocale(uint32_t lcid) const = 0;

  // The implementation of the system the library runs on.
  static std::unique_ptr<LocaleSystem> makeNative();
};

// The implementation the library reads: the native one unless another was installed.
inline constexpr Slot<LocaleSystem> localeSystem{};

// The locale name a POSIX environment selects for the settings the library uses, given a way to
// read a variable: LC_ALL, then LC_NUMERIC, then LANG; an empty variable counts as unset, as
// POSIX says. LC_NUMERIC rather than LC_TIME because the decimal separator is the setting the
// suite's texts (prices, SQL) depend on most, and one locale serves all settings, as on Windows.
std::string localeNameFromVariables(
    const std::function<std::optional<std::string>(std::string_view)>& variable);

}  // namespace ravelin::platform
