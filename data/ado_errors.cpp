#include <ravelin/data/ado_errors.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

StringView adoErrorDescription(int32_t number) {
  switch (number) {
    case ado_error::kArgumentsWrongType:
      return u"Arguments are of the wrong type, are out of acceptable range, or are in conflict "
             u"with one another.";
    case ado_error::kNoCurrentRecord:
      return u"Either BOF or EOF is True, or the current record has been deleted. Requested "
             u"operation requires a current record.";
    case ado_error::kOpeningFile:
      return u"File could not be opened.";
    case ado_error::kReadFile:
      return u"File could not be read.";
    case ado_error::kWriteFile:
      return u"Write to file failed.";
    case ado_error::kObjectNoLongerValid:
      return u"Object is no longer valid.";
    case ado_error::kFileAlreadyExists:
      return u"File already exists";
    case ado_error::kNotAllowedInContext:
      return u"Operation is not allowed in this context.";
    case ado_error::kUpdateNotSupported:
      return u"Current Recordset does not support updating. This may be a limitation of the "
             u"provider or of the selected locktype.";
    case ado_error::kItemNotFound:
      return u"Item cannot be found in the collection corresponding to the requested name or "
             u"ordinal.";
    case ado_error::kAlreadyInCollection:
      return u"Object is already in collection. Cannot append.";
    case ado_error::kObjectClosed:
      return u"Operation is not allowed when the object is closed.";
    case ado_error::kObjectOpen:
      return u"Operation is not allowed when the object is open.";
    case ado_error::kInTransaction:
      return u"Connection object cannot be explicitly closed while in a transaction.";
    case ado_error::kProviderNotFound:
      return u"Provider cannot be found. It may not be properly installed.";
    case ado_error::kInvalidConnection:
      return u"The connection cannot be used to perform this operation. It is either closed or "
             u"invalid in this context.";
    case ado_error::kRowNotLocated:
      return u"Row cannot be located for updating. Some values may have been changed since it "
             u"was last read.";
    case ado_error::kNoTransaction:
      return u"No transaction is active.";
    case ado_error::kTransactionExists:
      return u"Only one transaction can be active on this session.";
    case ado_error::kMultipleStepErrors:
      return u"Multiple-step operation generated errors. Check each status value.";
    default:
      return u"";
  }
}

void raiseAdoError(int32_t number, StringView source) {
  raiseError(number, String(source), String(adoErrorDescription(number)));
}

void raiseAdoError(int32_t number, StringView source, StringView detail) {
  raiseError(number, String(source), String(adoErrorDescription(number)) + u" " + String(detail));
}

}  // namespace ravelin
