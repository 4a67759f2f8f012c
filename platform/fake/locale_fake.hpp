// An in-memory locale system for tests: environment variables and locale data set by hand.
#pragma once

#include <map>
#include <memory>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/locale.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {

// Reads the locale name from its own variables by the POSIX rule and finds locales among the
// ones added to it, by exact name (after the library's name rules) or identifier.
class FakeLocaleSystem : public LocaleSystem {
 public:
  // Sets or removes one environment variable ("LANG", "LC_ALL", ...).
  void setVariable(std::string name, std::string value);
  void unsetVariable(const std::string& name);

  // Adds locale data, found afterwards by its name (any case, "_" or "-", with or without an
  // encoding suffix) and, when it has one, by its identifier.
  void addLocale(Locale locale);

  String environmentLocaleName() const override;
  std::optional<Locale> findLocale(StringView name) const override;
  std::optional<Locale> findLocale(uint32_t lcid) const override;

 private:
  std::map<std::string, std::string> variables_;
  std::vector<Locale> locales_;
};

}  // namespace ravelin::platform
