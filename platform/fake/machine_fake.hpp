// A machine for tests: a host name, drives and answers about network paths set by hand.
#pragma once

#include <map>
#include <ravelin/platform/fake/scoped_fake.hpp>
#include <ravelin/platform/machine.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {

// Gives the computer name of its host name by the rule of systems without NetBIOS names (the
// label before the first ".", nullopt when it does not fit the buffer); has only the drives
// added to it, found by their names in any case; answers for network paths what was set for the
// path, else by networkPathAnswer over the path system in place (a FakePathSystem, in tests).
class FakeMachineSystem : public MachineSystem {
 public:
  // The host name; nullopt makes every name request fail.
  void setHostName(std::optional<std::string> hostName) { hostName_ = std::move(hostName); }
  void addDrive(DriveFacts drive);
  void removeDrive(StringView name);
  // The value isNetworkPath returns for exactly this text (any number, as the system call may).
  void setNetworkPathAnswer(StringView path, int32_t answer);

  std::optional<std::string> computerName(uint32_t bufferSize) const override;
  int32_t isNetworkPath(StringView path) const override;
  std::optional<DriveFacts> drive(StringView name) const override;

 private:
  std::optional<std::string> hostName_ = "till-01.shop.example";
  std::vector<DriveFacts> drives_;
  std::map<String, int32_t> networkAnswers_;
};

}  // namespace ravelin::platform
