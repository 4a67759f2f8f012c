#include <gtest/gtest.h>

#include <ravelin/frame/member_table.hpp>

namespace ravelin {
namespace {

MemberInfo member(StringView name, MemberKind kind, VarType result = VarType::Empty) {
  MemberInfo info;
  info.name = String(name);
  info.kind = kind;
  info.resultType = result;
  return info;
}

ClassInfo sampleTable() {
  ClassInfo info(u"clsSample", ClassInfo::Factory());
  info.addMember(member(u"Item", MemberKind::PropertyGet));
  info.addMember(member(u"item", MemberKind::PropertyLet));
  info.addMember(member(u"Preço", MemberKind::Method));
  info.addMember(member(u"Łódź", MemberKind::Method));
  info.addMember(member(u"straße", MemberKind::Method));
  info.addMember(member(u"ÿ", MemberKind::Method));
  return info;
}

// Names match in any case by the library's own folding (Latin-1 and Latin Extended-A included),
// and only for the kind asked for.
TEST(MemberTableTest, FindsMembersByNameInAnyCaseAndByKind) {
  const ClassInfo info = sampleTable();
  struct Row {
    StringView name;
    MemberKind kind;
    StringView found;  // empty: no member of that kind
    bool named;        // a member of any kind has the name
  };
  const Row rows[] = {
      {u"Item", MemberKind::PropertyGet, u"Item", true},
      {u"ITEM", MemberKind::PropertyGet, u"Item", true},
      {u"iTeM", MemberKind::PropertyLet, u"item", true},
      {u"item", MemberKind::Method, u"", true},
      {u"Items", MemberKind::PropertyGet, u"", false},
      {u"Ite", MemberKind::PropertyGet, u"", false},
      {u"PREÇO", MemberKind::Method, u"Preço", true},
      {u"preço", MemberKind::Method, u"Preço", true},
      {u"PRECO", MemberKind::Method, u"", false},
      {u"ŁÓDŹ", MemberKind::Method, u"Łódź", true},
      {u"łódź", MemberKind::Method, u"Łódź", true},
      {u"STRASSE", MemberKind::Method, u"", false},
      {u"STRAßE", MemberKind::Method, u"straße", true},
      {u"Ÿ", MemberKind::Method, u"ÿ", true},
      {u"", MemberKind::PropertyGet, u"", false},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(toUtf8(row.name));
    const MemberInfo* found = info.find(row.name, row.kind);
    if (row.found.empty()) {
      EXPECT_EQ(found, nullptr);
    } else {
      ASSERT_NE(found, nullptr);
      EXPECT_EQ(found->name, row.found);
      EXPECT_EQ(found->kind, row.kind);
    }
    EXPECT_EQ(info.hasMember(row.name), row.named);
  }
}

// A member added again under the same name in another case and of the same kind replaces the
// first in its place; one of another kind is a member of its own.
TEST(MemberTableTest, ASecondMemberOfTheSameNameAndKindReplacesTheFirst) {
  ClassInfo info(u"clsSample", ClassInfo::Factory());
  info.addMember(member(u"getCount", MemberKind::Method, VarType::Variant));
  info.addMember(member(u"clear", MemberKind::Method));
  info.addMember(member(u"GETCOUNT", MemberKind::Method, VarType::Integer));
  info.addMember(member(u"getcount", MemberKind::PropertyGet, VarType::Long));
  ASSERT_EQ(info.members().size(), 3u);
  EXPECT_EQ(info.members()[0].name, u"GETCOUNT");
  EXPECT_EQ(info.members()[0].resultType, VarType::Integer);
  EXPECT_EQ(info.members()[1].name, u"clear");
  EXPECT_EQ(info.find(u"GetCount", MemberKind::Method)->resultType, VarType::Integer);
  EXPECT_EQ(info.find(u"GetCount", MemberKind::PropertyGet)->resultType, VarType::Long);
}

}  // namespace
}  // namespace ravelin
