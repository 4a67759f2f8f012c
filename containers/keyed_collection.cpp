#include <bit>
#include <ravelin/containers/detail/keyed_collection.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>

namespace ravelin {
namespace {

// The lowest set bit of a Fenwick node number: the length of the range the node counts.
std::size_t lowbit(std::size_t i) {
  return i & (~i + 1);
}

}  // namespace

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
      Entry{std::move(item), String(key.value_or(StringView())), key.has_value(), slots_.size()});
  // The slot and its rank first, so that nothing can fail once the key is in the table.
  slots_.push_back(nullptr);
  const auto undo = [this] {
    if (ranks_.size() > slots_.size()) ranks_.pop_back();
    slots_.pop_back();
  };
  bool inserted = true;
  try {
    if (!ranks_.empty()) appendRank();
    // One lookup both finds a duplicate and files the new key.
    if (key) inserted = byKey_.emplace(StringView(entry->key), entry.get()).second;
  } catch (...) {
    undo();
    throw;
  }
  if (!inserted) {
    undo();
    raiseRuntimeError(vb_error::kDuplicateKey);
  }
  slots_.back() = std::move(entry);
}

std::size_t KeyedCollection::checkedSlot(int32_t position) const {
  if (position < 1 || position > count()) raiseRuntimeError(vb_error::kSubscriptOutOfRange);
  if (holes_ == 0) return static_cast<std::size_t>(position - 1);
  if (ranks_.empty()) buildRanks();
  return slotAtRank(position);
}

const Variant& KeyedCollection::item(int32_t position) const {
  return slots_[checkedSlot(position)]->item;
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
  return slots_[checkedSlot(position)]->key;
}

bool KeyedCollection::hasKey(int32_t position) const {
  return slots_[checkedSlot(position)]->hasKey;
}

const Variant* KeyedCollection::find(StringView key) const {
  const auto found = byKey_.find(key);
  return found == byKey_.end() ? nullptr : &found->second->item;
}

int32_t KeyedCollection::positionOf(StringView key) const {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) return 0;
  const std::size_t slot = found->second->slot;
  if (holes_ == 0) return static_cast<int32_t>(slot) + 1;
  if (ranks_.empty()) buildRanks();
  return rankOf(slot);
}

void KeyedCollection::remove(int32_t position) {
  const std::size_t slot = checkedSlot(position);
  if (slots_[slot]->hasKey) byKey_.erase(StringView(slots_[slot]->key));
  takeOut(slot);
}

void KeyedCollection::remove(StringView key) {
  const auto found = byKey_.find(key);
  if (found == byKey_.end()) raiseRuntimeError(vb_error::kInvalidProcedureCall);
  const std::size_t slot = found->second->slot;
  byKey_.erase(found);
  takeOut(slot);
}

void KeyedCollection::removeAt(const Variant& positionOrKey) {
  if (positionOrKey.isString()) return remove(StringView(positionOrKey.asString()));
  remove(CLng(positionOrKey));
}

void KeyedCollection::clear() {
  // The items are released after the collection is empty.
  auto released = std::move(slots_);
  slots_.clear();
  byKey_.clear();
  holes_ = 0;
  ranks_.clear();
}

std::unique_ptr<KeyedCollection::Entry> KeyedCollection::takeOut(std::size_t slot) {
  std::unique_ptr<Entry> entry = std::move(slots_[slot]);
  if (!ranks_.empty()) dropRank(slot);
  ++holes_;
  // Holes at the end are simply cut off, so removals from the end leave no holes.
  while (!slots_.empty() && !slots_.back()) {
    slots_.pop_back();
    --holes_;
    if (!ranks_.empty()) ranks_.pop_back();
  }
  if (holes_ == 0) {
    ranks_.clear();
  } else if (holes_ > slots_.size() - holes_) {
    compact();
  }
  return entry;
}

void KeyedCollection::compact() {
  std::size_t kept = 0;
  for (std::size_t slot = 0; slot < slots_.size(); ++slot) {
    if (!slots_[slot]) continue;
    slots_[slot]->slot = kept;
    if (slot != kept) slots_[kept] = std::move(slots_[slot]);
    ++kept;
  }
  slots_.resize(kept);
  holes_ = 0;
  ranks_.clear();
}

void KeyedCollection::buildRanks() const {
  const std::size_t size = slots_.size();
  ranks_.assign(size + 1, 0);
  for (std::size_t i = 1; i <= size; ++i) {
    ranks_[i] += slots_[i - 1] ? 1 : 0;
    const std::size_t parent = i + lowbit(i);
    if (parent <= size) ranks_[parent] += ranks_[i];
  }
}

void KeyedCollection::appendRank() {
  // The new slot is live; its node also counts the nodes it covers below it.
  const std::size_t i = slots_.size();
  int32_t live = 1;
  for (std::size_t below = i - 1; below > i - lowbit(i); below -= lowbit(below))
    live += ranks_[below];
  ranks_.push_back(live);
}

void KeyedCollection::dropRank(std::size_t slot) {
  for (std::size_t i = slot + 1; i < ranks_.size(); i += lowbit(i))
    --ranks_[i];
}

std::size_t KeyedCollection::slotAtRank(int32_t position) const {
  // Descends from the highest power of two: `at` ends on the last slot number whose prefix holds
  // fewer than `position` live slots, so slot number at + 1 (index at) is the one sought.
  const std::size_t size = ranks_.size() - 1;
  std::size_t at = 0;
  int32_t remaining = position;
  for (std::size_t step = std::bit_floor(size); step != 0; step >>= 1) {
    if (at + step <= size && ranks_[at + step] < remaining) {
      at += step;
      remaining -= ranks_[at];
    }
  }
  return at;
}

int32_t KeyedCollection::rankOf(std::size_t slot) const {
  int32_t rank = 0;
  for (std::size_t i = slot + 1; i != 0; i -= lowbit(i))
    rank += ranks_[i];
  return rank;
}

}  // namespace ravelin
