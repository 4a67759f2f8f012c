#include <ravelin/frame/error.hpp>

#include <string>
#include <utility>

namespace ravelin {
namespace {

String decimalText(int64_t value) { return fromAscii(std::to_string(value)); }

}  // namespace

template <>
const EnumInfo& enumInfo<enumCommonCode_ErrorCodes>() {
  static const EnumInfo info{
      u"enumCommonCode_ErrorCodes",
      {
          {u"CCEC_InvalidIndex", CCEC_InvalidIndex},
          {u"CCEC_UnableToGetUniqueIdentifier", CCEC_UnableToGetUniqueIdentifier},
          {u"CCEC_UnableToUpdateUniqueIdentifier", CCEC_UnableToUpdateUniqueIdentifier},
          {u"CCEC_ItemNotFound", CCEC_ItemNotFound},
          {u"CCEC_InvalidId", CCEC_InvalidId},
          {u"CCEC_FeatureNotImplemented", CCEC_FeatureNotImplemented},
          {u"CCEC_InvalidParameter", CCEC_InvalidParameter},
          {u"CCEC_FailedParametersParsing", CCEC_FailedParametersParsing},
      }};
  return info;
}

AutomationError::AutomationError(int32_t number, String source, String description)
    : number_(number), source_(std::move(source)), description_(std::move(description)) {
  what_ = toUtf8(description_) + " (" + std::to_string(number_) + ") [" + toUtf8(source_) + "]";
}

StringView standardErrorDescription(int32_t number) {
  using namespace vb_error;
  switch (number) {
    case kInvalidProcedureCall: return u"Invalid procedure call or argument";
    case kOverflow: return u"Overflow";
    case kOutOfMemory: return u"Out of memory";
    case kSubscriptOutOfRange: return u"Subscript out of range";
    case kDivisionByZero: return u"Division by zero";
    case kTypeMismatch: return u"Type mismatch";
    case kOutOfStringSpace: return u"Out of string space";
    case kInternalError: return u"Internal error";
    case kBadFileNameOrNumber: return u"Bad file name or number";
    case kFileNotFound: return u"File not found";
    case kBadFileMode: return u"Bad file mode";
    case kDeviceIOError: return u"Device I/O error";
    case kFileAlreadyExists: return u"File already exists";
    case kDiskFull: return u"Disk full";
    case kInputPastEndOfFile: return u"Input past end of file";
    case kDeviceUnavailable: return u"Device unavailable";
    case kPermissionDenied: return u"Permission denied";
    case kDiskNotReady: return u"Disk not ready";
    case kPathNotFound: return u"Path not found";
    case kObjectNotSet: return u"Object variable or With block variable not set";
    case kInvalidUseOfNull: return u"Invalid use of Null";
    case kInvalidPropertyValue: return u"Invalid property value";
    case kObjectRequired: return u"Object required";
    case kCannotCreateObject: return u"ActiveX component can't create object";
    case kMemberNotSupported: return u"Object doesn't support this property or method";
    case kArgumentNotOptional: return u"Argument not optional";
    case kWrongArgumentCount: return u"Wrong number of arguments or invalid property assignment";
    case kDuplicateKey: return u"This key is already associated with an element of this collection";
    default: return u"Application-defined or object-defined error";
  }
}

void raiseRuntimeError(int32_t number) {
  throw AutomationError(number, String(kRuntimeErrorSource), String(standardErrorDescription(number)));
}

void raiseError(int32_t number, String source, String description) {
  throw AutomationError(number, std::move(source), std::move(description));
}

void raiseStyleA(int32_t number, StringView className, StringView operation) {
  String description(className);
  description += operation;
  throw AutomationError(number, String(kCommonErrorSource), std::move(description));
}

void raiseStyleB(int32_t number, StringView operation, int64_t index, int64_t count) {
  String source(kCommonErrorSource);
  source += operation;
  String description = u"Index=" + decimalText(index) + u" getCount()=" + decimalText(count);
  throw AutomationError(number, std::move(source), std::move(description));
}

void raiseStyleC(int32_t number, StringView classId, StringView operation) {
  throw AutomationError(number, String(classId), String(operation));
}

}  // namespace ravelin
