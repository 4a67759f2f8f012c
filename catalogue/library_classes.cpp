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
#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/sql_data_types.hpp>
#include <ravelin/numeric/date_functions.hpp>
#include <ravelin/numeric/math_functions.hpp>
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

  static const EnumInfo errorCodes{
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
  static const EnumInfo sqlDataTypes{u"enumDataTypesSql",
                                     {
                                         {u"DTS_Text", DTS_Text},
                                         {u"DTS_Date", DTS_Date},
                                         {u"DTS_Numeric", DTS_Numeric},
                                         {u"DTS_Boolean", DTS_Boolean},
                                         {u"DTS_TextUnicode", DTS_TextUnicode},
                                         {u"DTS_Time", DTS_Time},
                                         {u"DTS_TimeStamp", DTS_TimeStamp},
                                         {u"DTS_Unknown", DTS_Unknown},
                                         {u"DTS_FunctionGroup", DTS_FunctionGroup},
                                         {u"DTS_TimeStampTime", DTS_TimeStampTime},
                                         {u"DTS_TimeStampDate", DTS_TimeStampDate},
                                     }};
  static const EnumInfo roundingTypes{u"RoundingTypes",
                                      {
                                          {u"ArithmeticalAssimetric", ArithmeticalAssimetric},
                                          {u"ArithmeticalSimetric", ArithmeticalSimetric},
                                      }};
  static const EnumInfo varDataType{u"VarDataType",
                                    {
                                        {u"vtTenDigit", vtTenDigit},
                                        {u"vtThirteenDigit", vtThirteenDigit},
                                        {u"vtTDBNumber", vtTDBNumber},
                                        {u"vtInteger", vtInteger},
                                        {u"vtLong", vtLong},
                                        {u"vtDouble", vtDouble},
                                        {u"vtOperation", vtOperation},
                                    }};
  registry.addEnum(errorCodes);
  registry.addEnum(roundingTypes);
  registry.addEnum(varDataType);
  registry.addEnum(sqlDataTypes);
}

}  // namespace ravelin
