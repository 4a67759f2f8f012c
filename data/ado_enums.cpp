#include <ravelin/data/ado_enums.hpp>

namespace ravelin {

template <>
const EnumInfo& enumInfo<DataTypeEnum>() {
  static const EnumInfo info{u"DataTypeEnum",
                             {
                                 {u"adEmpty", adEmpty},
                                 {u"adSmallInt", adSmallInt},
                                 {u"adInteger", adInteger},
                                 {u"adSingle", adSingle},
                                 {u"adDouble", adDouble},
                                 {u"adCurrency", adCurrency},
                                 {u"adDate", adDate},
                                 {u"adBSTR", adBSTR},
                                 {u"adIDispatch", adIDispatch},
                                 {u"adError", adError},
                                 {u"adBoolean", adBoolean},
                                 {u"adVariant", adVariant},
                                 {u"adIUnknown", adIUnknown},
                                 {u"adDecimal", adDecimal},
                                 {u"adTinyInt", adTinyInt},
                                 {u"adUnsignedTinyInt", adUnsignedTinyInt},
                                 {u"adUnsignedSmallInt", adUnsignedSmallInt},
                                 {u"adUnsignedInt", adUnsignedInt},
                                 {u"adBigInt", adBigInt},
                                 {u"adUnsignedBigInt", adUnsignedBigInt},
                                 {u"adFileTime", adFileTime},
                                 {u"adGUID", adGUID},
                                 {u"adBinary", adBinary},
                                 {u"adChar", adChar},
                                 {u"adWChar", adWChar},
                                 {u"adNumeric", adNumeric},
                                 {u"adUserDefined", adUserDefined},
                                 {u"adDBDate", adDBDate},
                                 {u"adDBTime", adDBTime},
                                 {u"adDBTimeStamp", adDBTimeStamp},
                                 {u"adChapter", adChapter},
                                 {u"adPropVariant", adPropVariant},
                                 {u"adVarNumeric", adVarNumeric},
                                 {u"adVarChar", adVarChar},
                                 {u"adLongVarChar", adLongVarChar},
                                 {u"adVarWChar", adVarWChar},
                                 {u"adLongVarWChar", adLongVarWChar},
                                 {u"adVarBinary", adVarBinary},
                                 {u"adLongVarBinary", adLongVarBinary},
                                 {u"adArray", adArray},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<FieldAttributeEnum>() {
  static const EnumInfo info{u"FieldAttributeEnum",
                             {
                                 {u"adFldUnspecified", adFldUnspecified},
                                 {u"adFldMayDefer", adFldMayDefer},
                                 {u"adFldUpdatable", adFldUpdatable},
                                 {u"adFldUnknownUpdatable", adFldUnknownUpdatable},
                                 {u"adFldFixed", adFldFixed},
                                 {u"adFldIsNullable", adFldIsNullable},
                                 {u"adFldMayBeNull", adFldMayBeNull},
                                 {u"adFldLong", adFldLong},
                                 {u"adFldRowID", adFldRowID},
                                 {u"adFldRowVersion", adFldRowVersion},
                                 {u"adFldCacheDeferred", adFldCacheDeferred},
                                 {u"adFldIsChapter", adFldIsChapter},
                                 {u"adFldNegativeScale", adFldNegativeScale},
                                 {u"adFldKeyColumn", adFldKeyColumn},
                                 {u"adFldIsRowURL", adFldIsRowURL},
                                 {u"adFldIsDefaultStream", adFldIsDefaultStream},
                                 {u"adFldIsCollection", adFldIsCollection},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<LockTypeEnum>() {
  static const EnumInfo info{u"LockTypeEnum",
                             {
                                 {u"adLockUnspecified", adLockUnspecified},
                                 {u"adLockReadOnly", adLockReadOnly},
                                 {u"adLockPessimistic", adLockPessimistic},
                                 {u"adLockOptimistic", adLockOptimistic},
                                 {u"adLockBatchOptimistic", adLockBatchOptimistic},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<CursorTypeEnum>() {
  static const EnumInfo info{u"CursorTypeEnum",
                             {
                                 {u"adOpenUnspecified", adOpenUnspecified},
                                 {u"adOpenForwardOnly", adOpenForwardOnly},
                                 {u"adOpenKeyset", adOpenKeyset},
                                 {u"adOpenDynamic", adOpenDynamic},
                                 {u"adOpenStatic", adOpenStatic},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<CursorLocationEnum>() {
  static const EnumInfo info{u"CursorLocationEnum",
                             {
                                 {u"adUseNone", adUseNone},
                                 {u"adUseServer", adUseServer},
                                 {u"adUseClient", adUseClient},
                                 {u"adUseClientBatch", adUseClientBatch},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<ObjectStateEnum>() {
  static const EnumInfo info{u"ObjectStateEnum",
                             {
                                 {u"adStateClosed", adStateClosed},
                                 {u"adStateOpen", adStateOpen},
                                 {u"adStateConnecting", adStateConnecting},
                                 {u"adStateExecuting", adStateExecuting},
                                 {u"adStateFetching", adStateFetching},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<EditModeEnum>() {
  static const EnumInfo info{u"EditModeEnum",
                             {
                                 {u"adEditNone", adEditNone},
                                 {u"adEditInProgress", adEditInProgress},
                                 {u"adEditAdd", adEditAdd},
                                 {u"adEditDelete", adEditDelete},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<RecordStatusEnum>() {
  static const EnumInfo info{u"RecordStatusEnum",
                             {
                                 {u"adRecOK", adRecOK},
                                 {u"adRecNew", adRecNew},
                                 {u"adRecModified", adRecModified},
                                 {u"adRecDeleted", adRecDeleted},
                                 {u"adRecUnmodified", adRecUnmodified},
                                 {u"adRecInvalid", adRecInvalid},
                                 {u"adRecMultipleChanges", adRecMultipleChanges},
                                 {u"adRecPendingChanges", adRecPendingChanges},
                                 {u"adRecCanceled", adRecCanceled},
                                 {u"adRecCantRelease", adRecCantRelease},
                                 {u"adRecConcurrencyViolation", adRecConcurrencyViolation},
                                 {u"adRecIntegrityViolation", adRecIntegrityViolation},
                                 {u"adRecMaxChangesExceeded", adRecMaxChangesExceeded},
                                 {u"adRecObjectOpen", adRecObjectOpen},
                                 {u"adRecOutOfMemory", adRecOutOfMemory},
                                 {u"adRecPermissionDenied", adRecPermissionDenied},
                                 {u"adRecSchemaViolation", adRecSchemaViolation},
                                 {u"adRecDBDeleted", adRecDBDeleted},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<AffectEnum>() {
  static const EnumInfo info{u"AffectEnum",
                             {
                                 {u"adAffectCurrent", adAffectCurrent},
                                 {u"adAffectGroup", adAffectGroup},
                                 {u"adAffectAll", adAffectAll},
                                 {u"adAffectAllChapters", adAffectAllChapters},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<PersistFormatEnum>() {
  static const EnumInfo info{u"PersistFormatEnum",
                             {
                                 {u"adPersistADTG", adPersistADTG},
                                 {u"adPersistXML", adPersistXML},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<CommandTypeEnum>() {
  static const EnumInfo info{u"CommandTypeEnum",
                             {
                                 {u"adCmdUnspecified", adCmdUnspecified},
                                 {u"adCmdText", adCmdText},
                                 {u"adCmdTable", adCmdTable},
                                 {u"adCmdStoredProc", adCmdStoredProc},
                                 {u"adCmdUnknown", adCmdUnknown},
                                 {u"adCmdFile", adCmdFile},
                                 {u"adCmdTableDirect", adCmdTableDirect},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<FilterGroupEnum>() {
  static const EnumInfo info{u"FilterGroupEnum",
                             {
                                 {u"adFilterNone", adFilterNone},
                                 {u"adFilterPendingRecords", adFilterPendingRecords},
                                 {u"adFilterAffectedRecords", adFilterAffectedRecords},
                                 {u"adFilterFetchedRecords", adFilterFetchedRecords},
                                 {u"adFilterConflictingRecords", adFilterConflictingRecords},
                             }};
  return info;
}

template <>
const EnumInfo& enumInfo<PositionEnum>() {
  static const EnumInfo info{u"PositionEnum",
                             {
                                 {u"adPosUnknown", adPosUnknown},
                                 {u"adPosBOF", adPosBOF},
                                 {u"adPosEOF", adPosEOF},
                             }};
  return info;
}

}  // namespace ravelin
