// The data-access objects' enumerations that scripts and callers use with record sets, with
// Microsoft's documented names and values, so that code written for those objects runs as it is.
#pragma once

#include <cstdint>
#include <ravelin/frame/enum_info.hpp>

namespace ravelin {

enum DataTypeEnum : int32_t {
  adEmpty = 0,
  adSmallInt = 2,
  adInteger = 3,
  adSingle = 4,
  adDouble = 5,
  adCurrency = 6,
  adDate = 7,
  adBSTR = 8,
  adIDispatch = 9,
  adError = 10,
  adBoolean = 11,
  adVariant = 12,
  adIUnknown = 13,
  adDecimal = 14,
  adTinyInt = 16,
  adUnsignedTinyInt = 17,
  adUnsignedSmallInt = 18,
  adUnsignedInt = 19,
  adBigInt = 20,
  adUnsignedBigInt = 21,
  adFileTime = 64,
  adGUID = 72,
  adBinary = 128,
  adChar = 129,
  adWChar = 130,
  adNumeric = 131,
  adUserDefined = 132,
  adDBDate = 133,
  adDBTime = 134,
  adDBTimeStamp = 135,
  adChapter = 136,
  adPropVariant = 138,
  adVarNumeric = 139,
  adVarChar = 200,
  adLongVarChar = 201,
  adVarWChar = 202,
  adLongVarWChar = 203,
  adVarBinary = 204,
  adLongVarBinary = 205,
  adArray = 0x2000,
};
template <>
const EnumInfo& enumInfo<DataTypeEnum>();

enum FieldAttributeEnum : int32_t {
  adFldUnspecified = -1,
  adFldMayDefer = 0x2,
  adFldUpdatable = 0x4,
  adFldUnknownUpdatable = 0x8,
  adFldFixed = 0x10,
  adFldIsNullable = 0x20,
  adFldMayBeNull = 0x40,
  adFldLong = 0x80,
  adFldRowID = 0x100,
  adFldRowVersion = 0x200,
  adFldCacheDeferred = 0x1000,
  adFldIsChapter = 0x2000,
  adFldNegativeScale = 0x4000,
  adFldKeyColumn = 0x8000,
  adFldIsRowURL = 0x10000,
  adFldIsDefaultStream = 0x20000,
  adFldIsCollection = 0x40000,
};
template <>
const EnumInfo& enumInfo<FieldAttributeEnum>();

enum LockTypeEnum : int32_t {
  adLockUnspecified = -1,
  adLockReadOnly = 1,
  adLockPessimistic = 2,
  adLockOptimistic = 3,
  adLockBatchOptimistic = 4,
};
template <>
const EnumInfo& enumInfo<LockTypeEnum>();

enum CursorTypeEnum : int32_t {
  adOpenUnspecified = -1,
  adOpenForwardOnly = 0,
  adOpenKeyset = 1,
  adOpenDynamic = 2,
  adOpenStatic = 3,
};
template <>
const EnumInfo& enumInfo<CursorTypeEnum>();

enum CursorLocationEnum : int32_t {
  adUseNone = 1,
  adUseServer = 2,
  adUseClient = 3,
  adUseClientBatch = 3,
};
template <>
const EnumInfo& enumInfo<CursorLocationEnum>();

enum ObjectStateEnum : int32_t {
  adStateClosed = 0,
  adStateOpen = 1,
  adStateConnecting = 2,
  adStateExecuting = 4,
  adStateFetching = 8,
};
template <>
const EnumInfo& enumInfo<ObjectStateEnum>();

enum EditModeEnum : int32_t {
  adEditNone = 0,
  adEditInProgress = 1,
  adEditAdd = 2,
  adEditDelete = 4,
};
template <>
const EnumInfo& enumInfo<EditModeEnum>();

enum RecordStatusEnum : int32_t {
  adRecOK = 0,
  adRecNew = 0x1,
  adRecModified = 0x2,
  adRecDeleted = 0x4,
  adRecUnmodified = 0x8,
  adRecInvalid = 0x10,
  adRecMultipleChanges = 0x40,
  adRecPendingChanges = 0x80,
  adRecCanceled = 0x100,
  adRecCantRelease = 0x400,
  adRecConcurrencyViolation = 0x800,
  adRecIntegrityViolation = 0x1000,
  adRecMaxChangesExceeded = 0x2000,
  adRecObjectOpen = 0x4000,
  adRecOutOfMemory = 0x8000,
  adRecPermissionDenied = 0x10000,
  adRecSchemaViolation = 0x20000,
  adRecDBDeleted = 0x40000,
};
template <>
const EnumInfo& enumInfo<RecordStatusEnum>();

enum AffectEnum : int32_t {
  adAffectCurrent = 1,
  adAffectGroup = 2,
  adAffectAll = 3,
  adAffectAllChapters = 4,
};
template <>
const EnumInfo& enumInfo<AffectEnum>();

enum PersistFormatEnum : int32_t {
  adPersistADTG = 0,
  adPersistXML = 1,
};
template <>
const EnumInfo& enumInfo<PersistFormatEnum>();

// How Open reads its Source; a saved file is adCmdFile.
enum CommandTypeEnum : int32_t {
  adCmdUnspecified = -1,
  adCmdText = 0x1,
  adCmdTable = 0x2,
  adCmdStoredProc = 0x4,
  adCmdUnknown = 0x8,
  adCmdFile = 0x100,
  adCmdTableDirect = 0x200,
};
template <>
const EnumInfo& enumInfo<CommandTypeEnum>();

enum FilterGroupEnum : int32_t {
  adFilterNone = 0,
  adFilterPendingRecords = 1,
  adFilterAffectedRecords = 2,
  adFilterFetchedRecords = 3,
  adFilterConflictingRecords = 5,
};
template <>
const EnumInfo& enumInfo<FilterGroupEnum>();

// What AbsolutePosition reads when there is no current record.
enum PositionEnum : int32_t {
  adPosUnknown = -1,
  adPosBOF = -2,
  adPosEOF = -3,
};
template <>
const EnumInfo& enumInfo<PositionEnum>();

}  // namespace ravelin
