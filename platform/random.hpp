// Platform area "random": cryptographically strong random bytes from the operating system, for
// identifiers that must not repeat across machines and runs.
#pragma once

#include <cstdint>
#include <memory>
#include <span>

namespace ravelin::platform {

// The system's random source, as the library reads it.
class RandomSource {
 public:
  virtual ~RandomSource() = default;

  // Fills `bytes` with random bytes; false when the system could not supply them.
  virtual bool fill(std::span<uint8_t> bytes) const = 0;
};

// The implementation of the system the library runs on.
std::unique_ptr<RandomSource> makeNativeRandomSource();

// The implementation the library reads: the native one unless another was installed.
std::shared_ptr<const RandomSource> randomSource();

// Puts an implementation in place for the whole process (a fake, in tests) and returns the one it
// replaces; null puts the native one back.
std::shared_ptr<const RandomSource> installRandomSource(std::shared_ptr<const RandomSource> source);

}  // namespace ravelin::platform
