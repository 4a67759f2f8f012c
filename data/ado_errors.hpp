// The data-access objects' errors: their numbers, texts and sources, as a script sees them in Err
// (the number is the low word of the object's error code 0x800A0000 + number).
#pragma once

#include <cstdint>
#include <ravelin/base/text.hpp>

namespace ravelin {

namespace ado_error {
inline constexpr int32_t kArgumentsWrongType = 3001;
inline constexpr int32_t kOpeningFile = 3002;
inline constexpr int32_t kReadFile = 3003;
inline constexpr int32_t kWriteFile = 3004;
inline constexpr int32_t kNoCurrentRecord = 3021;
inline constexpr int32_t kNotAllowedInContext = 3219;
inline constexpr int32_t kUpdateNotSupported = 3251;
inline constexpr int32_t kItemNotFound = 3265;
inline constexpr int32_t kAlreadyInCollection = 3367;
// A Field kept from before its record set was opened again with fewer fields.
inline constexpr int32_t kObjectNoLongerValid = 3420;
inline constexpr int32_t kObjectClosed = 3704;
inline constexpr int32_t kObjectOpen = 3705;
// Save to a file that exists: the runtime's own error.
inline constexpr int32_t kFileAlreadyExists = 58;
inline constexpr int32_t kInTransaction = 3246;
inline constexpr int32_t kProviderNotFound = 3706;
inline constexpr int32_t kInvalidConnection = 3709;
// A value that cannot be converted to the field's type, does not fit its size, or is Null for a
// field that takes no Null: the cursor engine's DB_E_ERRORSOCCURRED.
inline constexpr int32_t kMultipleStepErrors = static_cast<int32_t>(0x80040E21u);
// An UPDATE or DELETE of a batch that changed no row: the row was changed or removed since it
// was read (as the cursor engine reports it).
inline constexpr int32_t kRowNotLocated = static_cast<int32_t>(0x80040E38u);
// CommitTrans or RollbackTrans with no transaction (XACT_E_NOTRANSACTION), BeginTrans within one
// (XACT_E_XTIONEXISTS: the ODBC provider has no nested transactions).
inline constexpr int32_t kNoTransaction = static_cast<int32_t>(0x8004D00Eu);
inline constexpr int32_t kTransactionExists = static_cast<int32_t>(0x8004D013u);
// E_FAIL: a connection the driver refused (with the driver's message), and a batch whose fields
// name no single base table (with kInsufficientBaseTableText).
inline constexpr int32_t kUnspecifiedError = static_cast<int32_t>(0x80004005u);
// DB_E_ERRORSINCOMMAND: a statement the driver refused, with the driver's message.
inline constexpr int32_t kErrorsInCommand = static_cast<int32_t>(0x80040E14u);
}  // namespace ado_error

inline constexpr StringView kInsufficientBaseTableText =
    u"Insufficient base table information for updating or refreshing.";

// The objects that raise them, as the error's source.
inline constexpr StringView kRecordsetSource = u"ADODB.Recordset";
inline constexpr StringView kFieldsSource = u"ADODB.Fields";
inline constexpr StringView kFieldSource = u"ADODB.Field";
inline constexpr StringView kCursorEngineSource = u"Microsoft Cursor Engine";
inline constexpr StringView kConnectionSource = u"ADODB.Connection";
// The source of a driver's own failure, as the ODBC provider names itself.
inline constexpr StringView kOdbcProviderSource = u"Microsoft OLE DB Provider for ODBC Drivers";

// The description of a data-access error number ("" for a number not listed above).
StringView adoErrorDescription(int32_t number);

// Raises the error with its description and the given source.
[[noreturn]] void raiseAdoError(int32_t number, StringView source);
// The same with a detail after the description ("File could not be opened. Not found: x.xml"),
// for the file errors, whose standard text alone does not say what went wrong.
[[noreturn]] void raiseAdoError(int32_t number, StringView source, StringView detail);

}  // namespace ravelin
