// clsCollectionAccessKey: clsCollection that can also give back its keys. It answers
// getClassIdAsString with "clsCollection", the same identifier as clsCollection, and its errors
// name that identifier too.
//
// Choices where the behaviour is open: `item` asked to raise reports as clsCollection's does
// ("clsCollection.item()"); `ItemAndKey` with a position outside 1 to count gives Empty and an
// empty key, or raises CCEC_InvalidIndex "clsCollection.ItemAndKey()" when asked to; `listKeys`
// raises CCEC_InvalidIndex "clsCollection.listKeys()" when the keys do not fit a clsArrayString
// (more than 32,767 of them).
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/containers/cls_array_string.hpp>
#include <ravelin/containers/detail/collection_rules.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class clsCollectionAccessKey : public PublicClass<clsCollectionAccessKey, IgnoringCopyObject>,
                               public detail::CollectionRules {
 public:
  static constexpr StringView kClassName = u"clsCollectionAccessKey";
  static constexpr StringView kClassId = u"clsCollection";

  clsCollectionAccessKey() : PublicClass(kClassId) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // The item at a position or under a key; Empty when there is none, unless vbRaiseError.
  Variant item(const Variant& vvntIndexKey, bool vbRaiseError = false) const;

  // The item at a 1-based position, with its key passed back through vsKey.
  Variant ItemAndKey(int32_t vlIndex, String& vsKey, bool vbRaiseError = false) const;

  // Every key in position order.
  std::shared_ptr<clsArrayString> listKeys() const;
};

}  // namespace ravelin
