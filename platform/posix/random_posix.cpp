// Random bytes on POSIX systems: getrandom() where the C library has it, else /dev/urandom.
#include <cerrno>
#include <cstdio>
#include <ravelin/platform/random.hpp>

#if defined(__linux__)
#include <sys/random.h>
#endif

namespace ravelin::platform {
namespace {

bool fillFromDevice(std::span<uint8_t> bytes) {
  std::FILE* device = std::fopen("/dev/urandom", "rb");
  if (device == nullptr) return false;
  const std::size_t read = std::fread(bytes.data(), 1, bytes.size(), device);
  std::fclose(device);
  return read == bytes.size();
}

class PosixRandomSource : public RandomSource {
 public:
  bool fill(std::span<uint8_t> bytes) const override {
#if defined(__linux__)
    std::size_t done = 0;
    while (done < bytes.size()) {
      const ssize_t got = getrandom(bytes.data() + done, bytes.size() - done, 0);
      if (got < 0) {
        if (errno == EINTR) continue;
        return fillFromDevice(bytes);  // an old kernel without the call
      }
      done += static_cast<std::size_t>(got);
    }
    return true;
#else
    return fillFromDevice(bytes);
#endif
  }
};

}  // namespace

std::unique_ptr<RandomSource> RandomSource::makeNative() {
  return std::make_unique<PosixRandomSource>();
}

}  // namespace ravelin::platform
