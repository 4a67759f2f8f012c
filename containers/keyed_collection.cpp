#include <algorithm>
#include <ravelin/containers/detail/keyed_collection.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {

KeyedCollection::KeyedCollection() = default;
KeyedCollection::~KeyedCollection() = default;
KeyedCollection::KeyedCollection(KeyedCollection&&) noexcept = default;
KeyedCollection& KeyedCollection::operator=(KeyedCollection&&) noexcept = default;

std::size_t KeyedCollection::FoldedHash::operator()(StringView key) const noexcept {
  // FNV-1a over the folded units.
  std::size_t hash = 14695981039346656037ull;
  for (char16_t unit : key) {
    hash ^= toUpper(unit);
    hash *= 1099511628211ull;
  }
  return hash;
}

bool KeyedCollection::FoldedEqual::operator()(StringView a, StringView b) const noexcept {
  return equalsIgnoreCase(a, b);
}

void KeyedCollection::add(Variant item, std::optional<StringView> key) {
  auto entry = std::make_unique<Entry>(
      Entry{std::move(item), String(key.value_or(StringView())), key.has_value()});
  // The slot first, so that nothing can fail once the key is in the table.
  entries_.push_back(nullptr);
  if (key) {
    bool inserted = false;
    try {
      // One lookup both finds a duplicate and files the new key.
      inserted = byKey_.emplace(StringView(entry->key), entry.get()).second;
    } catch (...) {
      entries_.pop_back();
      throw;
    }
    if (!inserted) {
      entries_.pop_back();
      raiseRuntimeError(vb_error::kDuplicateKey);
    }
  }
  entries_.back() = std::move(entry);
}

std::size_t KeyedCollection::checkedIndex(int32_t position) const {
  if (position < 1 || position > count()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  return static_cast<std::size_t>(position - 1);
}

const Variant& KeyedCollection::item(int32_t position) const {
  return entries_[checkedIndex(position)]->item;
}

const Variant& KeyedCollection::item(StringView key) const {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  return found->second->item;
}

const Variant& KeyedCollection::itemAt(const Variant& positionOrKey) const {
  if (positionOrKey.isString()) return item(StringView(positionOrKey.asString()));
  return item(CLng(positionOrKey));
}

StringView KeyedCollection::keyAt(int32_t position) const {
  return entries_[checkedIndex(position)]->key;
}

bool KeyedCollection::hasKey(int32_t position) const {
  return entries_[checkedIndex(position)]->hasKey;
}

const Variant* KeyedCollection::find(StringView key) const {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : &found->second->item;
}

int32_t KeyedCollection::positionOf(StringView key) const {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return 0;
  return static_cast<int32_t>(indexOf(found->second)) + 1;
}

std::size_t KeyedCollection::indexOf(const Entry* entry) const {
  const auto at = std::find_if(entries_.begin(), entries_.end(),
                               [entry](const auto& candidate) { return candidate.get() == entry; });
  return static_cast<std::size_t>(at - entries_.begin());
}

void KeyedCollection::eraseAt(std::size_t index) {
  if (entries_[index]->hasKey) byKey_.erase(StringView(entries_[index]->key));
  entries_.erase(entries_.begin() + static_cast<std::ptrdiff_t>(index));
}

void KeyedCollection::remove(int32_t position) {
  eraseAt(checkedIndex(position));
}

void KeyedCollection::remove(StringView key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  eraseAt(indexOf(found->second));
}

void KeyedCollection::removeAt(const Variant& positionOrKey) {
  if (positionOrKey.isString()) return remove(StringView(positionOrKey.asString()));
  remove(CLng(positionOrKey));
}

void KeyedCollection::clear() {
  byKey_.clear();
  entries_.clear();
}

}  // namespace ravelin
