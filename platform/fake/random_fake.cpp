// The test random source.
#include <ravelin/platform/fake/random_fake.hpp>

namespace ravelin::platform {

bool FakeRandomSource::fill(std::span<uint8_t> bytes) const {
  if (bytes_.empty()) return false;
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = bytes_[i % bytes_.size()];
  return true;
}

}  // namespace ravelin::platform
