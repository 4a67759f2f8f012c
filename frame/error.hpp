// Automation errors: the exception every raising member throws, the runtime's standard error
// numbers with their English descriptions, and the library's own error codes.
#pragma once

#include <cstdint>
#include <exception>
#include <ravelin/base/text.hpp>
#include <ravelin/frame/enum_info.hpp>
#include <string>

namespace ravelin {

// Numbers of the automation runtime's standard errors.
namespace vb_error {
inline constexpr int32_t kInvalidProcedureCall = 5;
inline constexpr int32_t kOverflow = 6;
inline constexpr int32_t kOutOfMemory = 7;
inline constexpr int32_t kSubscriptOutOfRange = 9;
inline constexpr int32_t kDivisionByZero = 11;
inline constexpr int32_t kTypeMismatch = 13;
inline constexpr int32_t kOutOfStringSpace = 14;
inline constexpr int32_t kInternalError = 51;
// The file errors, as the runtime and the scripting file-system object raise them.
inline constexpr int32_t kBadFileNameOrNumber = 52;
inline constexpr int32_t kFileNotFound = 53;
inline constexpr int32_t kBadFileMode = 54;
inline constexpr int32_t kDeviceIOError = 57;
inline constexpr int32_t kFileAlreadyExists = 58;
inline constexpr int32_t kDiskFull = 61;
inline constexpr int32_t kInputPastEndOfFile = 62;
inline constexpr int32_t kDeviceUnavailable = 68;
inline constexpr int32_t kPermissionDenied = 70;
inline constexpr int32_t kDiskNotReady = 71;
inline constexpr int32_t kPathNotFound = 76;
inline constexpr int32_t kObjectNotSet = 91;
inline constexpr int32_t kInvalidUseOfNull = 94;
inline constexpr int32_t kInvalidPropertyValue = 380;
inline constexpr int32_t kObjectRequired = 424;
inline constexpr int32_t kCannotCreateObject = 429;
inline constexpr int32_t kMemberNotSupported = 438;
inline constexpr int32_t kArgumentNotOptional = 449;
inline constexpr int32_t kWrongArgumentCount = 450;
inline constexpr int32_t kDuplicateKey = 457;
}  // namespace vb_error

// The library's shared error numbers: the automation object-error base plus a small offset.
// Offset 1 (0x80040001) is reserved for the dBASE reader's bad-format error and has no name.
enum enumCommonCode_ErrorCodes : int32_t {
  CCEC_InvalidIndex = static_cast<int32_t>(0x80040000u),
  CCEC_UnableToGetUniqueIdentifier = static_cast<int32_t>(0x80040002u),
  CCEC_UnableToUpdateUniqueIdentifier = static_cast<int32_t>(0x80040003u),
  CCEC_ItemNotFound = static_cast<int32_t>(0x80040004u),
  CCEC_InvalidId = static_cast<int32_t>(0x80040005u),
  CCEC_FeatureNotImplemented = static_cast<int32_t>(0x80040006u),
  CCEC_InvalidParameter = static_cast<int32_t>(0x80040007u),
  CCEC_FailedParametersParsing = static_cast<int32_t>(0x80040008u),
};
template <>
const EnumInfo& enumInfo<enumCommonCode_ErrorCodes>();

// The reserved number of the dBASE reader's "invalid file format" error.
inline constexpr int32_t kReservedInvalidFileFormat = static_cast<int32_t>(0x80040001u);

// Source text of the errors raised by the containers and the SQL utilities.
inline constexpr StringView kCommonErrorSource = u"Tarn.Quillmark.Common";

// Source text of the runtime errors (conversions, overflow, type mismatch) raised inside the
// library: the project name, as a compiled component reports its own runtime errors.
inline constexpr StringView kRuntimeErrorSource = u"Ravelin";

// An automation error: number, source and description reach the caller unchanged.
class AutomationError : public std::exception {
 public:
  AutomationError(int32_t number, String source, String description);

  int32_t number() const noexcept { return number_; }
  const String& source() const noexcept { return source_; }
  const String& description() const noexcept { return description_; }

  // "DESCRIPTION (NUMBER) [SOURCE]" in UTF-8, for logs and test failures.
  const char* what() const noexcept override { return what_.c_str(); }

 private:
  int32_t number_;
  String source_;
  String description_;
  std::string what_;
};

// The runtime's English description of a standard error number; for any other number the
// runtime's "Application-defined or object-defined error".
StringView standardErrorDescription(int32_t number);

// Raises a runtime error with its standard description and the library's runtime source.
[[noreturn]] void raiseRuntimeError(int32_t number);

[[noreturn]] void raiseError(int32_t number, String source, String description);

// The three text styles of the library's own errors.
//
// Style A: source "Tarn.Quillmark.Common"; description the class name and the operation text,
// e.g. raiseStyleA(CCEC_InvalidIndex, u"clsArrayDouble", u".getItem()").
[[noreturn]] void raiseStyleA(int32_t number, StringView className, StringView operation);

// Style B: source "Tarn.Quillmark.Common" followed by the operation text; description
// "Index=<index> getCount()=<count>".
[[noreturn]] void raiseStyleB(int32_t number, StringView operation, int64_t index, int64_t count);

// Style C: source the class identifier text; description the bare operation text.
[[noreturn]] void raiseStyleC(int32_t number, StringView classId, StringView operation);

}  // namespace ravelin
