// Random bytes on Windows: rand_s, which draws on the system's cryptographic generator and
// needs no library beyond the C runtime.
#define _CRT_RAND_S
#include <stdlib.h>

#include <algorithm>
#include <cstring>
#include <ravelin/platform/random.hpp>

namespace ravelin::platform {
namespace {

class Win32RandomSource : public RandomSource {
 public:
  bool fill(std::span<uint8_t> bytes) const override {
    std::size_t done = 0;
    while (done < bytes.size()) {
      unsigned int word = 0;
      if (rand_s(&word) != 0) return false;
      const std::size_t take = std::min(sizeof word, bytes.size() - done);
      std::memcpy(bytes.data() + done, &word, take);
      done += take;
    }
    return true;
  }
};

}  // namespace

std::unique_ptr<RandomSource> RandomSource::makeNative() {
  return std::make_unique<Win32RandomSource>();
}

}  // namespace ravelin::platform
