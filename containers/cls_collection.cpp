#include <ravelin/containers/cls_collection.hpp>
#include <ravelin/containers/internal/collection_members.hpp>
#include <ravelin/frame/error.hpp>
#include <utility>

namespace ravelin {
namespace {

// A snapshot of a collection's items that For Each walks.
class ItemEnumerator : public PublicClass<ItemEnumerator> {
 public:
  // It has no members of its own and no name of its own.
  static constexpr StringView kClassName = u"Object";

  explicit ItemEnumerator(std::vector<Variant> items) : items_(std::move(items)) {}
  bool enumerate(std::vector<Variant>& items) const override {
    items = items_;
    return true;
  }

 private:
  std::vector<Variant> items_;
};

}  // namespace

Variant clsCollection::item(const Variant& vvntIndexKey, bool vbRaiseError) const {
  return itemOrEmpty(vvntIndexKey, vbRaiseError, kClassName, u".item()");
}

ObjectRef clsCollection::ItemObject(const Variant& vvntIndexKey, bool vbRaiseError) const {
  Variant found = itemOrEmpty(vvntIndexKey, vbRaiseError, kClassName, u".ItemObject()");
  if (found.isObject()) return found.asObject();
  if (vbRaiseError) raiseRuntimeError(vb_error::kTypeMismatch);
  return nullptr;
}

bool clsCollection::enumerate(std::vector<Variant>& items) const {
  items.clear();
  items.reserve(static_cast<std::size_t>(getCount()));
  this->items().forEach([&items](const Variant& item, StringView, bool) { items.push_back(item); });
  return true;
}

ObjectRef clsCollection::NewEnum() const {
  std::vector<Variant> items;
  enumerate(items);
  return makeObject<ItemEnumerator>(std::move(items));
}

ClassInfo clsCollection::describe() {
  ClassBuilder<clsCollection> builder(kClassName);
  publishCopyInterface(builder);
  publishCollectionMembers(builder);
  return builder
      .method(u"item",
              [](clsCollection& self, const Variant& indexKey, bool& raise) {
                return self.item(indexKey, raise);
              },
              {u"vvntIndexKey", optional(u"vbRaiseError", false)})
      .method(u"ItemObject",
              [](clsCollection& self, const Variant& indexKey, bool& raise) {
                return self.ItemObject(indexKey, raise);
              },
              {u"vvntIndexKey", optional(u"vbRaiseError", false)})
      .get(u"NewEnum", &clsCollection::NewEnum)
      .build();
}

}  // namespace ravelin
