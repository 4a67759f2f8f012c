// Registration of the container families with the library's class registry, one function per
// family, each defined beside its classes.
#pragma once

#include <ravelin/frame/class_registry.hpp>

namespace ravelin {

// clsArrayString2, clsArrayStringLong, clsArrayStringObject, clsArrayVariObject.
void registerPairArrays(ClassRegistry& registry);
// clsLArrayObject, clsLArrayDouble, clsLArrayDouble2, clsLArrayLongObject, clsArrayObject,
// clsArrayAnyObject, clsArrayObject2.
void registerObjectArrays(ClassRegistry& registry);
// clsCollection, clsCollectionAccessKey, clsCollectionObjects, clsDataColumn and the
// enumeration enumDataTypesSql.
void registerCollections(ClassRegistry& registry);

}  // namespace ravelin
