#include <ravelin/containers/cls_collection_access_key.hpp>
#include <ravelin/containers/internal/collection_members.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

Variant clsCollectionAccessKey::item(const Variant& vvntIndexKey, bool vbRaiseError) const {
  return itemOrEmpty(vvntIndexKey, vbRaiseError, kClassId, u".item()");
}

Variant clsCollectionAccessKey::ItemAndKey(int32_t vlIndex, String& vsKey,
                                           bool vbRaiseError) const {
  if (vlIndex < 1 || vlIndex > getCount()) {
    if (vbRaiseError) raiseStyleA(CCEC_InvalidIndex, kClassId, u".ItemAndKey()");
    vsKey.clear();
    return Variant();
  }
  vsKey = items().keyAt(vlIndex);
  return items().item(vlIndex);
}

std::shared_ptr<clsArrayString> clsCollectionAccessKey::listKeys() const {
  auto keys = makeObject<clsArrayString>();
  bool complete = true;
  items().forEach([&](const Variant&, StringView key, bool) {
    if (complete) complete = keys->add(String(key));
  });
  if (!complete) raiseStyleA(CCEC_InvalidIndex, kClassId, u".listKeys()");
  return keys;
}

ClassInfo clsCollectionAccessKey::describe() {
  ClassBuilder<clsCollectionAccessKey> builder(kClassName);
  publishCopyInterface(builder);
  publishCollectionMembers(builder);
  return builder
      .method(u"item",
              [](clsCollectionAccessKey& self, const Variant& indexKey, bool& raise) {
                return self.item(indexKey, raise);
              },
              {u"vvntIndexKey", optional(u"vbRaiseError", false)})
      .method(u"ItemAndKey",
              [](clsCollectionAccessKey& self, int32_t index, String& key, bool& raise) {
                return self.ItemAndKey(index, key, raise);
              },
              {u"vlIndex", u"vsKey", optional(u"vbRaiseError", false)})
      .method(u"listKeys", &clsCollectionAccessKey::listKeys)
      .build();
}

}  // namespace ravelin
