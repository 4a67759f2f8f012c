#include <new>
#include <ravelin/containers/detail/collection_rules.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin::detail {
namespace {

// Runs one operation on the collection; any failure (the collection's own errors, the reading of
// an address, memory) is reported as false and leaves no error behind.
template <typename Operation>
bool succeeded(Operation operation) {
  try {
    operation();
    return true;
  } catch (const AutomationError&) {
    return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
}

}  // namespace

bool CollectionRules::add(Variant vvntItem, StringView vsKey, bool vbOverride,
                          bool vbIgnoreErrorIfAlreadyExists) {
  // A key in use is the collection's duplicate-key failure: refused without a flag, the existing
  // item kept when told to ignore it (tested first), replaced when told to override.
  if (items_.find(vsKey) != nullptr) {
    if (vbIgnoreErrorIfAlreadyExists) return true;
    if (!vbOverride) return false;
    items_.remove(vsKey);
  }
  return succeeded([&] { items_.add(std::move(vvntItem), vsKey); });
}

bool CollectionRules::itemExists(StringView vsKey) const {
  return items_.find(vsKey) != nullptr;
}

bool CollectionRules::setNewValueForItem(const Variant& vvntIndexKey, Variant vvntValue) {
  if (!vvntIndexKey.isString()) return false;
  const StringView key = vvntIndexKey.asString();
  if (items_.find(key) == nullptr) return false;
  items_.remove(key);
  return succeeded([&] { items_.add(std::move(vvntValue), key); });
}

bool CollectionRules::remove(const Variant& vvntIndexKey) {
  return succeeded([&] { items_.removeAt(vvntIndexKey); });
}

void CollectionRules::removeAll() {
  for (int32_t position = items_.count(); position >= 1; --position)
    items_.remove(position);
}

Variant CollectionRules::itemOrEmpty(const Variant& vvntIndexKey, bool raise, StringView classId,
                                     StringView operation) const {
  if (vvntIndexKey.isString()) {
    const StringView key = vvntIndexKey.asString();
    if (const Variant* item = items_.find(key)) return *item;
    if (raise) raiseStyleA(CCEC_ItemNotFound, classId, operation);
    return Variant();
  }
  const int32_t position = CLng(vvntIndexKey);
  if (position >= 1 && position <= items_.count()) return items_.item(position);
  if (raise) raiseStyleA(CCEC_InvalidIndex, classId, operation);
  return Variant();
}

}  // namespace ravelin::detail
