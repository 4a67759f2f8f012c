// clsCollectionObjects: objects of the copy interface kept in order under unique text keys,
// reached by 1-based position or by key, with failures reported as false. `item` of a missing
// position or key gives Nothing.
#pragma once

#include <cstdint>
#include <ravelin/containers/detail/collection_rules.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsCollectionObjects : public PublicClass<clsCollectionObjects, IgnoringCopyObject>,
                             public detail::CollectionRules {
 public:
  static constexpr StringView kClassName = u"clsCollectionObjects";

  clsCollectionObjects() : PublicClass(kClassName) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // add and setNewValueForItem as every collection has them, for IObject items.
  bool add(IObjectRef voItem, StringView vsKey, bool vbOverride = false,
           bool vbIgnoreErrorIfAlreadyExists = false) {
    return CollectionRules::add(Variant(ObjectRef(std::move(voItem))), vsKey, vbOverride,
                                vbIgnoreErrorIfAlreadyExists);
  }
  bool setNewValueForItem(const Variant& vvntIndexKey, IObjectRef voValue) {
    return CollectionRules::setNewValueForItem(vvntIndexKey,
                                               Variant(ObjectRef(std::move(voValue))));
  }

  // The object at a position or under a key; Nothing when there is none.
  IObjectRef item(const Variant& vvntIndexKey) const;

  // Published beside the interface's copyToObject; it accepts the request and ignores it.
  void IObject_copyToObject(const IObjectRef& voCopyTo, int32_t vlCopyWhat = -1) {
    copyToObject(voCopyTo, vlCopyWhat);
  }
};

}  // namespace ravelin
