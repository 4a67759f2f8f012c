// The machine set by hand.
#include <algorithm>
#include <ravelin/platform/fake/machine_fake.hpp>
#include <utility>

namespace ravelin::platform {

void FakeMachineSystem::addDrive(DriveFacts drive) {
  removeDrive(drive.path);
  drives_.push_back(std::move(drive));
}

void FakeMachineSystem::removeDrive(StringView name) {
  std::erase_if(drives_,
                [name](const DriveFacts& drive) { return equalsIgnoreCase(drive.path, name); });
}

void FakeMachineSystem::setNetworkPathAnswer(StringView path, int32_t answer) {
  networkAnswers_[String(path)] = answer;
}

std::optional<std::string> FakeMachineSystem::computerName(uint32_t bufferSize) const {
  if (!hostName_) return std::nullopt;
  return computerNameFromHost(*hostName_, bufferSize);
}

int32_t FakeMachineSystem::isNetworkPath(StringView path) const {
  if (auto it = networkAnswers_.find(String(path)); it != networkAnswers_.end()) return it->second;
  return networkPathAnswer(path, *pathSystem(), {});
}

std::optional<DriveFacts> FakeMachineSystem::drive(StringView name) const {
  auto it = std::find_if(drives_.begin(), drives_.end(), [name](const DriveFacts& drive) {
    return equalsIgnoreCase(drive.path, name);
  });
  if (it == drives_.end()) return std::nullopt;
  return *it;
}

}  // namespace ravelin::platform
