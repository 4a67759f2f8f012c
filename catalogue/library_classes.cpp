#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/containers/cls_array_any_object.hpp>
#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/cls_array_object.hpp>
#include <ravelin/containers/cls_array_object2.hpp>
#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/cls_array_string2.hpp>
#include <ravelin/containers/cls_array_string_long.hpp>
#include <ravelin/containers/cls_array_string_object.hpp>
#include <ravelin/containers/cls_array_vari_object.hpp>
#include <ravelin/containers/cls_collection.hpp>
#include <ravelin/containers/cls_collection_access_key.hpp>
#include <ravelin/containers/cls_collection_objects.hpp>
#include <ravelin/containers/cls_data_column.hpp>
#include <ravelin/containers/cls_larray_double.hpp>
#include <ravelin/containers/cls_larray_double2.hpp>
#include <ravelin/containers/cls_larray_long_object.hpp>
#include <ravelin/containers/cls_larray_object.hpp>
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/data/sql_utilities.hpp>
#include <ravelin/files/file_system.hpp>
#include <ravelin/files/file_system_object.hpp>
#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/sql_data_types.hpp>
#include <ravelin/numeric/date_functions.hpp>
#include <ravelin/numeric/math_functions.hpp>
#include <ravelin/system/timer_mm.hpp>
#include <ravelin/text/string_functions.hpp>

namespace ravelin {

const ClassRegistry& libraryRegistry() {
  static const ClassRegistry registry = [] {
    ClassRegistry built;
    registerLibraryClasses(built);
    return built;
  }();
  return registry;
}

void registerLibraryClasses(ClassRegistry& registry) {
  // frame
  registry.add<clsError>();
  registry.add<IObject>();
  registry.add<enumCommonCode_ErrorCodes>();
  registry.add<enumDataTypesSql>();
  // containers
  registry.add<clsArrayBoolean>();
  registry.add<clsArrayDouble>();
  registry.add<clsArrayInteger>();
  registry.add<clsArrayLong>();
  registry.add<clsArraySingle>();
  registry.add<clsArrayString>();
  registry.add<clsArrayString2>();
  registry.add<clsArrayStringLong>();
  registry.add<clsArrayStringObject>();
  registry.add<clsArrayVariObject>();
  registry.add<clsLArrayObject>();
  registry.add<clsLArrayDouble>();
  registry.add<clsLArrayDouble2>();
  registry.add<clsLArrayLongObject>();
  registry.add<clsArrayObject>();
  registry.add<clsArrayAnyObject>();
  registry.add<clsArrayObject2>();
  registry.add<clsCollection>();
  registry.add<clsCollectionAccessKey>();
  registry.add<clsCollectionObjects>();
  registry.add<clsDataColumn>();
  // text and numeric
  registry.add<StringFunctions>();
  registry.add<DateFunctions>();
  registry.add<MathFunctions>();
  registry.add<RoundingTypes>();
  registry.add<VarDataType>();
  // data
  registry.add<DBFFileReader>();
  registry.add<Recordset>();
  registry.add<Connection>();
  registry.add<Fields>();
  registry.add<Field>();
  registry.add<DataTypeEnum>();
  registry.add<FieldAttributeEnum>();
  registry.add<LockTypeEnum>();
  registry.add<CursorTypeEnum>();
  registry.add<CursorLocationEnum>();
  registry.add<ObjectStateEnum>();
  registry.add<EditModeEnum>();
  registry.add<RecordStatusEnum>();
  registry.add<AffectEnum>();
  registry.add<PersistFormatEnum>();
  registry.add<CommandTypeEnum>();
  registry.add<FilterGroupEnum>();
  registry.add<PositionEnum>();
  registry.add<SQLUtilities>();
  registry.add<DataBTypeEnum>();
  registry.add<DataUtilities>();
  // files
  registry.add<FileSystemObject>();
  registry.add<FileSystem>();
  registry.add<TextStream>();
  registry.add<Drive>();
  registry.add<Folder>();
  registry.add<IOMode>();
  registry.add<Tristate>();
  registry.add<DriveTypeConst>();
  // system
  registry.add<TimerMM>();
  registry.add<EEventTypes>();
}

}  // namespace ravelin
