// The runtime's file errors for what the system reports.
#include <cerrno>
#include <ravelin/files/internal/file_errors.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/paths.hpp>

namespace ravelin::file_errors {
namespace {

// A NUL, or a surrogate without its partner.
bool hasUnspellableUnit(StringView path) {
  for (std::size_t i = 0; i < path.size(); ++i) {
    const char16_t unit = path[i];
    if (unit == u'\0') return true;
    const bool high = unit >= 0xD800 && unit <= 0xDBFF;
    const bool low = unit >= 0xDC00 && unit <= 0xDFFF;
    if (high && i + 1 < path.size() && path[i + 1] >= 0xDC00 && path[i + 1] <= 0xDFFF) {
      ++i;
    } else if (high || low) {
      return true;
    }
  }
  return false;
}

}  // namespace

int32_t numberFor(const std::error_code& error, int32_t missing) {
  using std::errc;
  if (error == errc::no_such_file_or_directory) return missing;
  if (error == errc::not_a_directory) return vb_error::kPathNotFound;
  if (error == errc::file_exists) return vb_error::kFileAlreadyExists;
  if (error == errc::no_space_on_device) return vb_error::kDiskFull;
  if (error == errc::filename_too_long || error == errc::invalid_argument ||
      error == errc::illegal_byte_sequence) {
    return vb_error::kBadFileNameOrNumber;
  }
  if (error == errc::permission_denied || error == errc::operation_not_permitted ||
      error == errc::read_only_file_system || error == errc::device_or_resource_busy ||
      error == errc::text_file_busy || error == errc::is_a_directory ||
      error == errc::directory_not_empty) {
    return vb_error::kPermissionDenied;
  }
  return vb_error::kDeviceIOError;
}

void raise(int32_t number) {
  raiseRuntimeError(number);
}

void raiseFor(const std::error_code& error, int32_t missing) {
  raise(numberFor(error, missing));
}

std::error_code lastStreamError() {
  const int number = errno;
  return number == 0 ? std::make_error_code(std::errc::io_error)
                     : std::error_code(number, std::generic_category());
}

std::filesystem::path nativeOrRaise(StringView path) {
  std::optional<std::filesystem::path> native = platform::nativePath(path);
  if (!native) {
    raise(hasUnspellableUnit(path) ? vb_error::kBadFileNameOrNumber : vb_error::kPathNotFound);
  }
  return std::move(*native);
}

bool isReadOnly(const std::filesystem::path& file) {
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::symlink_status(file, error);
  if (error || std::filesystem::is_symlink(status)) return false;
  return (status.permissions() & std::filesystem::perms::owner_write) ==
         std::filesystem::perms::none;
}

}  // namespace ravelin::file_errors
