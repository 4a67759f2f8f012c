// The current locale of each thread, and finding a locale by name among the known ones and the
// system's locale data.
#pragma once

#include <cstdint>
#include <optional>
#include <ravelin/base/locale.hpp>

namespace ravelin {

// A known locale, or one built from the system's locale data for other names; nullopt when the
// name means nothing to either. "C" and "POSIX" name en-US.
std::optional<Locale> findLocale(StringView name);
std::optional<Locale> findLocale(uint32_t lcid);

// The current locale of the calling thread. Until set, it is the locale named by the process
// environment (falling back to en-US when that names nothing usable, or "C").
const Locale& currentLocale();
void setCurrentLocale(const Locale& locale);
// Forgets the thread's setting, so the next read takes the environment's locale again.
void resetCurrentLocale();

// Sets the current locale of the thread for a scope and restores the previous one after.
class ScopedLocale {
 public:
  explicit ScopedLocale(const Locale& locale);
  // Raises 5 (invalid procedure call) when the name is not a known locale.
  explicit ScopedLocale(StringView knownName);
  ~ScopedLocale();
  ScopedLocale(const ScopedLocale&) = delete;
  ScopedLocale& operator=(const ScopedLocale&) = delete;

 private:
  std::optional<Locale> previous_;  // empty when the thread had not set one
};

}  // namespace ravelin
