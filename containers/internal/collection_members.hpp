// The members the three collection classes publish alike (add, getCount, itemExists,
// setNewValueForItem, remove, removeAll), for their describe().
#pragma once

#include <ravelin/containers/detail/collection_rules.hpp>
#include <ravelin/frame/class_builder.hpp>

namespace ravelin {

template <typename C, typename PrivateBase>
ClassBuilder<C, PrivateBase>& publishCollectionMembers(ClassBuilder<C, PrivateBase>& builder) {
  using detail::CollectionRules;
  return builder
      .method(
          u"add",
          [](C& self, const Variant& item, const String& key, bool override, bool& ignoreIfExists) {
            return self.CollectionRules::add(item, key, override, ignoreIfExists);
          },
          {u"vvntItem", u"vsKey", optional(u"vbOverride", false),
           optional(u"vbIgnoreErrorIfAlreadyExists", false)})
      .get(u"getCount", [](C& self) { return self.getCount(); })
      .method(u"itemExists", [](C& self, const String& key) { return self.itemExists(key); },
              {u"vsKey"})
      .method(u"setNewValueForItem",
              [](C& self, const Variant& indexKey, const Variant& value) {
                return self.CollectionRules::setNewValueForItem(indexKey, value);
              },
              {u"vvntIndexKey", u"vvntValue"})
      .method(u"remove", [](C& self, const Variant& indexKey) { return self.remove(indexKey); },
              {u"vvntIndexKey"})
      .method(u"removeAll", [](C& self) { self.removeAll(); });
}

}  // namespace ravelin
