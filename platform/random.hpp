// Platform area "random": cryptographically strong random bytes from the operating system, for
// identifiers that must not repeat across machines and runs.
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/platform/slot.hpp>
#include <span>

namespace ravelin::platform {

// The system's random source, as the library reads it.
class RandomSource {
 public:
  virtual ~RandomSource() = default;

  // Fills `bytes` with random bytes; false when the system could not supply them.
  virtual bool fill(std::span<uint8_t> bytes) const = 0;

  // The implementation of the system the library runs on.
  static std::unique_ptr<RandomSource> makeNative();
};

// The implementation the library reads: the native one unless another was installed.
inline constexpr Slot<RandomSource> randomSource{};

}  // namespace ravelin::platform
