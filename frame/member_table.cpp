#include <ravelin/frame/member_table.hpp>

namespace ravelin {

namespace {

// toUpper of one unit, with the ASCII letters that names are made of folded in line.
char16_t folded(char16_t unit) {
  if (unit < 0x80) return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - 32) : unit;
  return toUpper(unit);
}

// FNV-1a over the folded units.
uint32_t foldedHash(StringView name) {
  uint32_t hash = 2166136261u;
  for (char16_t unit : name) {
    hash ^= folded(unit);
    hash *= 16777619u;
  }
  return hash;
}

// Whether `name` folds to `key`, an upper-cased name.
bool foldsTo(StringView name, StringView key) {
  if (key.size() != name.size()) return false;
  for (std::size_t i = 0; i < name.size(); ++i) {
    if (folded(name[i]) != key[i]) return false;
  }
  return true;
}

}  // namespace

StringView Object::className() const {
  return classInfo().name();
}

ClassInfo::ClassInfo(String name, Factory factory)
    : name_(std::move(name)), factory_(std::move(factory)) {}

int ClassInfo::findName(StringView name) const {
  if (slots_.empty()) return -1;
  const uint32_t hash = foldedHash(name);
  const std::size_t mask = slots_.size() - 1;
  for (std::size_t slot = hash & mask; slots_[slot] >= 0; slot = (slot + 1) & mask) {
    const Name& entry = names_[static_cast<std::size_t>(slots_[slot])];
    if (entry.hash == hash && foldsTo(name, entry.folded)) return slots_[slot];
  }
  return -1;
}

void ClassInfo::indexName(int name) {
  if (names_.size() * 2 > slots_.size()) {
    // Grow and file every name again.
    std::size_t size = 8;
    while (size < names_.size() * 2)
      size *= 2;
    slots_.assign(size, -1);
    for (int i = 0; i < static_cast<int>(names_.size()); ++i)
      indexName(i);
    return;
  }
  const std::size_t mask = slots_.size() - 1;
  std::size_t slot = names_[static_cast<std::size_t>(name)].hash & mask;
  while (slots_[slot] >= 0)
    slot = (slot + 1) & mask;
  slots_[slot] = name;
}

void ClassInfo::addMember(MemberInfo member) {
  int name = findName(member.name);
  if (name < 0) {
    name = static_cast<int>(names_.size());
    names_.push_back({toUpper(member.name), foldedHash(member.name), {-1, -1, -1, -1}});
    indexName(name);
  }
  int& slot = names_[static_cast<std::size_t>(name)].members[static_cast<std::size_t>(member.kind)];
  if (slot >= 0) {
    members_[static_cast<std::size_t>(slot)] = std::move(member);
  } else {
    slot = static_cast<int>(members_.size());
    members_.push_back(std::move(member));
  }
}

const MemberInfo* ClassInfo::find(StringView name, MemberKind kind) const {
  const int entry = findName(name);
  if (entry < 0) return nullptr;
  const int slot = names_[static_cast<std::size_t>(entry)].members[static_cast<std::size_t>(kind)];
  return slot < 0 ? nullptr : &members_[static_cast<std::size_t>(slot)];
}

bool ClassInfo::hasMember(StringView name) const {
  return findName(name) >= 0;
}

}  // namespace ravelin
