// The machine on Windows: GetComputerNameA, PathIsNetworkPathA, and the drive functions
// GetDriveTypeW, GetVolumeInformationW and GetDiskFreeSpaceExW.
#include <windows.h>
// shlwapi.h needs the declarations of windows.h first.
#include <shlwapi.h>

#include <algorithm>
#include <ravelin/platform/machine.hpp>
#include <string>
#include <vector>

namespace ravelin::platform {
namespace {

// Windows' wide text and the library's String are both UTF-16.
std::wstring toWide(StringView text) {
  return std::wstring(text.begin(), text.end());
}

String fromWide(const wchar_t* text) {
  String result;
  for (; *text != L'\0'; ++text)
    result.push_back(static_cast<char16_t>(*text));
  return result;
}

// The text in the ANSI code page, as the "A" functions take it.
std::string toAnsi(StringView text) {
  const std::wstring wide = toWide(text);
  if (wide.empty()) return {};
  const int size = WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()),
                                       nullptr, 0, nullptr, nullptr);
  if (size <= 0) return {};
  std::string ansi(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_ACP, 0, wide.data(), static_cast<int>(wide.size()), ansi.data(), size,
                      nullptr, nullptr);
  return ansi;
}

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
