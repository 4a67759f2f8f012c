// The machine on POSIX systems: gethostname, the mount table (paths.hpp) for network paths and
// drives, and statvfs, run on a worker thread with a bounded wait, for their readiness.
#include <sys/statvfs.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <mutex>
#include <ravelin/platform/machine.hpp>
#include <set>
#include <string>
#include <system_error>
#include <thread>

namespace ravelin::platform {
namespace {

constexpr std::chrono::seconds kReadinessWait{3};

// The paths whose statvfs has not returned yet. Never destroyed: a worker hung in the kernel may
// outlive every static object of the program.
struct PendingProbes {
  std::mutex mutex;
  std::set<std::string> paths;
};

PendingProbes& pendingProbes() {
  static auto* pending = new PendingProbes;
  return *pending;
}

// statvfs of a folder, or nullopt when it fails or does not answer within `wait`. A folder whose
// earlier call still hangs gets no second thread and counts as not answering.
std::optional<struct statvfs> statvfsWithin(const std::string& folder,
                                            std::chrono::milliseconds wait) {
  struct Probe {
    std::mutex mutex;
    std::condition_variable done;
    bool finished = false;
    bool succeeded = false;
    struct statvfs result {};
  };
  PendingProbes& pending = pendingProbes();
  {
    std::lock_guard lock(pending.mutex);
    if (!pending.paths.insert(folder).second) return std::nullopt;
  }
  auto probe = std::make_shared<Probe>();
  try {
    std::thread([probe, folder] {
      struct statvfs result {};
      const bool succeeded = ::statvfs(folder.c_str(), &result) == 0;
      {
        // Off the list before the answer is seen, so that the next question starts a new call.
        PendingProbes& pending = pendingProbes();
        std::lock_guard lock(pending.mutex);
        pending.paths.erase(folder);
      }
      {
        std::lock_guard lock(probe->mutex);
        probe->succeeded = succeeded;
        probe->result = result;
        probe->finished = true;
      }
      probe->done.notify_all();
    }).detach();
  } catch (const std::system_error&) {
    std::lock_guard lock(pending.mutex);
    pending.paths.erase(folder);
    return std::nullopt;
  }
  std::unique_lock lock(probe->mutex);
  if (!probe->done.wait_for(lock, wait, [&probe] { return probe->finished; })) return std::nullopt;
  if (!probe->succeeded) return std::nullopt;
  return probe->result;
}

std::string firstLineOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  std::string line;
  std::getline(stream, line);
  return line;
}

// Whether a device ("/dev/sdb1") is a removable one, by its entry or its disk's in sysfs.
bool isRemovableDevice(const std::string& source) {
  if (source.rfind("/dev/", 0) != 0) return false;
  std::error_code error;
  const std::filesystem::path device = std::filesystem::canonical(source, error);
  if (error) return false;
  const std::filesystem::path entry = std::filesystem::path("/sys/class/block") / device.filename();
  if (std::filesystem::exists(entry / "removable", error))
    return firstLineOf(entry / "removable") == "1";
  const std::filesystem::path disk = std::filesystem::canonical(entry, error).parent_path();
  if (error) return false;
  return firstLineOf(disk / "removable") == "1";
}

// The name of the link in a /dev/disk folder that leads to the device; empty when none does.
std::string linkNameFor(const std::string& source, const char* folder) {
  if (source.rfind("/dev/", 0) != 0) return {};
  std::error_code error;
  const std::filesystem::path device = std::filesystem::canonical(source, error);
  if (error) return {};
  std::filesystem::directory_iterator links(folder, error);
  if (error) return {};
  for (const auto& link : links) {
    std::error_code linkError;
    if (std::filesystem::canonical(link.path(), linkError) == device && !linkError)
      return link.path().filename().string();
  }
  return {};
}

class PosixMachineSystem final : public MachineSystem {
 public:
  std::optional<std::string> computerName(uint32_t bufferSize) const override {
    char host[256] = {};
    if (::gethostname(host, sizeof(host) - 1) != 0) return std::nullopt;
    return computerNameFromHost(host, bufferSize);
  }

  int32_t isNetworkPath(StringView path) const override {
    const std::string gvfs = "/run/user/" + std::to_string(::getuid()) + "/gvfs";
    return networkPathAnswer(path, *pathSystem(), gvfs);
  }

  std::optional<DriveFacts> drive(StringView name) const override {
    const std::optional<DriveLocation> location = locateDrive(name, *pathSystem());
    if (!location) return std::nullopt;
    const std::string type = location->mount ? location->mount->type : std::string();
    const std::string source = location->mount ? location->mount->source : std::string();
    DriveFacts facts;
    facts.path = String(name);
    facts.driveType = location->mount ? driveTypeFor(type, isRemovableDevice(source)) : 0;
    const std::optional<struct statvfs> stats = statvfsWithin(location->folder, kReadinessWait);
    if (!stats) return facts;
    facts.isReady = true;
    facts.fileSystem = fromUtf8(type);
    const auto unit = static_cast<int64_t>(stats->f_frsize);
    facts.totalSize = static_cast<int64_t>(stats->f_blocks) * unit;
    facts.freeSpace = static_cast<int64_t>(stats->f_bfree) * unit;
    facts.availableSpace = static_cast<int64_t>(stats->f_bavail) * unit;
    facts.volumeName = fromUtf8(deviceLabelFromLink(linkNameFor(source, "/dev/disk/by-label")));
    facts.serialNumber = serialNumberFromUuid(linkNameFor(source, "/dev/disk/by-uuid"));
    return facts;
  }
};

}  // namespace

std::unique_ptr<MachineSystem> MachineSystem::makeNative() {
  return std::make_unique<PosixMachineSystem>();
}

}  // namespace ravelin::platform
