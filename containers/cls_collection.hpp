// clsCollection: values of any kind kept in order under unique text keys (compared without
// regard to case), reached by 1-based position or by key, with failures reported as false.
//
// Choices where the behaviour is open: `item` and `ItemObject` asked to raise report a position
// outside 1 to count as CCEC_InvalidIndex and a missing key as CCEC_ItemNotFound, in the
// containers' style A ("clsCollection.item()", "clsCollection.ItemObject()"); `ItemObject` of an
// item that is not an object gives Nothing, or type mismatch (13) when asked to raise. For Each
// walks the items in position order.
#pragma once

#include <cstdint>
#include <ravelin/containers/detail/collection_rules.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>
#include <vector>

namespace ravelin {

class clsCollection : public PublicClass<clsCollection, IgnoringCopyObject>,
                      public detail::CollectionRules {
 public:
  static constexpr StringView kClassName = u"clsCollection";

  clsCollection() : PublicClass(kClassName) {}

  // The member table late-bound callers see.
  static ClassInfo describe();

  // The item at a position or under a key; Empty when there is none, unless vbRaiseError.
  Variant item(const Variant& vvntIndexKey, bool vbRaiseError = false) const;

  // The item as an object reference; Nothing when there is none or it is not an object,
  // unless vbRaiseError.
  ObjectRef ItemObject(const Variant& vvntIndexKey, bool vbRaiseError = false) const;

  bool enumerate(std::vector<Variant>& items) const override;

  // The enumerator behind For Each, published as the hidden NewEnum property: an object that
  // walks the items as they were when it was made.
  ObjectRef NewEnum() const;
};

}  // namespace ravelin
