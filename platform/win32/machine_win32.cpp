// The machine on Windows: GetComputerNameA, PathIsNetworkPathA, and the drive functions
// GetDriveTypeW, GetVolumeInformationW and GetDiskFreeSpaceExW.
#include <windows.h>
// shlwapi.h needs the declarations of windows.h first.
#include <shlwapi.h>

#include <algorithm>
#include <ravelin/platform/machine.hpp>
#include <ravelin/platform/win32/text_win32.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {
namespace {

using win32::fromWide;
using win32::toAnsi;
using win32::toWide;

int32_t driveTypeOf(UINT systemType) {
  switch (systemType) {
    case DRIVE_REMOVABLE:
      return 1;
    case DRIVE_FIXED:
      return 2;
    case DRIVE_REMOTE:
      return 3;
    case DRIVE_CDROM:
      return 4;
    case DRIVE_RAMDISK:
      return 5;
    default:
      return 0;
  }
}

class Win32MachineSystem final : public MachineSystem {
 public:
  std::optional<std::string> computerName(uint32_t bufferSize) const override {
    std::vector<char> buffer(std::max<uint32_t>(bufferSize, 1), ' ');
    DWORD size = bufferSize;
    if (!GetComputerNameA(buffer.data(), &size)) return std::nullopt;
    return std::string(buffer.data(), size);
  }

  int32_t isNetworkPath(StringView path) const override {
    const std::string ansi = toAnsi(path);
    return static_cast<int32_t>(PathIsNetworkPathA(ansi.c_str()));
  }

  std::optional<DriveFacts> drive(StringView name) const override {
    std::wstring root = toWide(name);
    if (root.empty() || root.find(L'\0') != std::wstring::npos) return std::nullopt;
    if (root.back() != L'\\' && root.back() != L'/') root += L'\\';
    const UINT systemType = GetDriveTypeW(root.c_str());
    if (systemType == DRIVE_NO_ROOT_DIR) return std::nullopt;
    DriveFacts facts;
    facts.path = String(name);
    facts.driveType = driveTypeOf(systemType);
    wchar_t volume[MAX_PATH + 1] = {};
    wchar_t fileSystem[MAX_PATH + 1] = {};
    DWORD serial = 0;
    if (!GetVolumeInformationW(root.c_str(), volume, MAX_PATH + 1, &serial, nullptr, nullptr,
                               fileSystem, MAX_PATH + 1)) {
      return facts;
    }
    facts.isReady = true;
    facts.volumeName = fromWide(volume);
    facts.fileSystem = fromWide(fileSystem);
    facts.serialNumber = serial;
    ULARGE_INTEGER available{}, total{}, free{};
    if (GetDiskFreeSpaceExW(root.c_str(), &available, &total, &free)) {
      facts.availableSpace = static_cast<int64_t>(available.QuadPart);
      facts.totalSize = static_cast<int64_t>(total.QuadPart);
      facts.freeSpace = static_cast<int64_t>(free.QuadPart);
    }
    return facts;
  }
};

}  // namespace

std::unique_ptr<MachineSystem> MachineSystem::makeNative() {
  return std::make_unique<Win32MachineSystem>();
}

}  // namespace ravelin::platform
