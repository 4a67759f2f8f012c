// The installed random source.
#include <mutex>
#include <ravelin/platform/random.hpp>
#include <utility>

namespace ravelin::platform {
namespace {

std::mutex& installMutex() {
  static std::mutex mutex;
  return mutex;
}

// The installed implementation; null until first read, or after the native one is put back.
std::shared_ptr<const RandomSource>& installed() {
  static std::shared_ptr<const RandomSource> source;
  return source;
}

}  // namespace

std::shared_ptr<const RandomSource> randomSource() {
  std::lock_guard lock(installMutex());
  auto& source = installed();
  if (!source) source = makeNativeRandomSource();
  return source;
}

std::shared_ptr<const RandomSource> installRandomSource(
    std::shared_ptr<const RandomSource> source) {
  std::lock_guard lock(installMutex());
  return std::exchange(installed(), std::move(source));
}

}  // namespace ravelin::platform
