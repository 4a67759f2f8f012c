#include <ravelin/containers/cls_collection_objects.hpp>
#include <ravelin/containers/internal/collection_members.hpp>

namespace ravelin {

IObjectRef clsCollectionObjects::item(const Variant& vvntIndexKey) const {
  const Variant found = itemOrEmpty(vvntIndexKey, false, kClassName, u".item()");
  return found.isObject() ? std::dynamic_pointer_cast<IObject>(found.asObject()) : nullptr;
}

ClassInfo clsCollectionObjects::describe() {
  ClassBuilder<clsCollectionObjects> builder(kClassName);
  publishCopyInterface(builder);
  publishCollectionMembers(builder);
  return builder
      .method(u"add",
              [](clsCollectionObjects& self, IObjectRef& item, const String& key, bool override,
                 bool& ignoreIfExists) { return self.add(item, key, override, ignoreIfExists); },
              {u"voItem", u"vsKey", optional(u"vbOverride", false),
               optional(u"vbIgnoreErrorIfAlreadyExists", false)})
      .method(u"item", &clsCollectionObjects::item, {u"vvntIndexKey"})
      .method(u"setNewValueForItem",
              [](clsCollectionObjects& self, const Variant& indexKey, IObjectRef& value) {
                return self.setNewValueForItem(indexKey, value);
              },
              {u"vvntIndexKey", u"voValue"})
      .method(u"IObject_copyToObject",
              [](clsCollectionObjects& self, IObjectRef& copyTo, int32_t what) {
                self.IObject_copyToObject(copyTo, what);
              },
              {u"voCopyTo", optional(u"vlCopyWhat", int32_t{-1})})
      .build();
}

}  // namespace ravelin
