// The catalogue of the library's public classes and enumerations: what can be created and
// called by name.
#include <ravelin/containers/cls_array_boolean.hpp>
#include <ravelin/containers/cls_array_double.hpp>
#include <ravelin/containers/cls_array_integer.hpp>
#include <ravelin/containers/cls_array_long.hpp>
#include <ravelin/containers/cls_array_single.hpp>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/internal/container_catalogue.hpp>
#include <ravelin/frame/class_registry.hpp>
#include <ravelin/frame/cls_error.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/numeric/date_functions.hpp>
#include <ravelin/numeric/math_functions.hpp>
#include <ravelin/text/string_functions.hpp>

namespace ravelin {

const ClassRegistry& ClassRegistry::library() {
  static const ClassRegistry registry = [] {
    ClassRegistry built;
    registerLibraryClasses(built);
    return built;
  }();
  return registry;
}

void registerLibraryClasses(ClassRegistry& registry) {
  registry.addClass(clsError::describe());
  registry.addClass(describeCopyInterface());
  registry.addClass(clsArrayBoolean::describe());
  registry.addClass(clsArrayDouble::describe());
  registry.addClass(clsArrayInteger::describe());
  registry.addClass(clsArrayLong::describe());
  registry.addClass(clsArraySingle::describe());
  registry.addClass(clsArrayString::describe());
  registry.addClass(DateFunctions::describe());
  registry.addClass(MathFunctions::describe());
  registry.addClass(StringFunctions::describe());
  registerPairArrays(registry);
  registerObjectArrays(registry);
  registerCollections(registry);

  registry.addEnum(
      EnumInfo{u"enumCommonCode_ErrorCodes",
               {
                   {u"CCEC_InvalidIndex", CCEC_InvalidIndex},
                   {u"CCEC_UnableToGetUniqueIdentifier", CCEC_UnableToGetUniqueIdentifier},
                   {u"CCEC_UnableToUpdateUniqueIdentifier", CCEC_UnableToUpdateUniqueIdentifier},
                   {u"CCEC_ItemNotFound", CCEC_ItemNotFound},
                   {u"CCEC_InvalidId", CCEC_InvalidId},
                   {u"CCEC_FeatureNotImplemented", CCEC_FeatureNotImplemented},
                   {u"CCEC_InvalidParameter", CCEC_InvalidParameter},
                   {u"CCEC_FailedParametersParsing", CCEC_FailedParametersParsing},
               }});
  registry.addEnum(EnumInfo{u"RoundingTypes",
                            {
                                {u"ArithmeticalAssimetric", ArithmeticalAssimetric},
                                {u"ArithmeticalSimetric", ArithmeticalSimetric},
                            }});
  registry.addEnum(EnumInfo{u"VarDataType",
                            {
                                {u"vtTenDigit", vtTenDigit},
                                {u"vtThirteenDigit", vtThirteenDigit},
                                {u"vtTDBNumber", vtTDBNumber},
                                {u"vtInteger", vtInteger},
                                {u"vtLong", vtLong},
                                {u"vtDouble", vtDouble},
                                {u"vtOperation", vtOperation},
                            }});
}

}  // namespace ravelin
