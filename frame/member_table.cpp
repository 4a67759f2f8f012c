#include <ravelin/frame/member_table.hpp>

namespace ravelin {

StringView Object::className() const {
  return classInfo().name();
}

ClassInfo::ClassInfo(String name, Factory factory)
    : name_(std::move(name)), factory_(std::move(factory)) {}

std::size_t ClassInfo::FoldedHash::operator()(StringView name) const noexcept {
  // FNV-1a over the upper-case units.
  uint64_t hash = 14695981039346656037ull;
  for (char16_t unit : name) {
    hash ^= toUpper(unit);
    hash *= 1099511628211ull;
  }
  return static_cast<std::size_t>(hash);
}

void ClassInfo::addMember(MemberInfo member) {
  auto [entry, inserted] = index_.try_emplace(member.name, std::array<int, 4>{-1, -1, -1, -1});
  int& slot = entry->second[static_cast<std::size_t>(member.kind)];
  if (slot >= 0) {
    members_[static_cast<std::size_t>(slot)] = std::move(member);
  } else {
    slot = static_cast<int>(members_.size());
    members_.push_back(std::move(member));
  }
}

const MemberInfo* ClassInfo::find(StringView name, MemberKind kind) const {
  auto entry = index_.find(name);
  if (entry == index_.end()) return nullptr;
  int slot = entry->second[static_cast<std::size_t>(kind)];
  return slot < 0 ? nullptr : &members_[static_cast<std::size_t>(slot)];
}

bool ClassInfo::hasMember(StringView name) const {
  return index_.contains(name);
}

}  // namespace ravelin
