#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <ravelin/catalogue/library_classes.hpp>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/locale.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <ravelin/text/text_helpers.hpp>
#include <sstream>
#include <string>

namespace ravelin {
namespace {

// A set of fields ID (adInteger) and Name (adVarWChar 10, nullable), opened with the lock
// type, holding rows with the given IDs, each committed and named "n<ID>".
std::shared_ptr<Recordset> idSet(int32_t lockType, std::initializer_list<int32_t> ids) {
  auto rs = makeObject<Recordset>();
  rs->Fields()->Append(u"ID", adInteger);
  rs->Fields()->Append(u"Name", adVarWChar, 10, adFldIsNullable | adFldMayBeNull);
  rs->Open(Variant::missing(), Variant::missing(), adOpenUnspecified, lockType);
  for (int32_t id : ids) {
    rs->AddNew();
    rs->Fields()->Item(u"ID")->setValue(Variant(id));
    rs->Fields()->Item(u"Name")->setValue(Variant(u"n" + fromAscii(std::to_string(id))));
    rs->Update();
  }
  if (lockType == adLockBatchOptimistic) rs->UpdateBatch();
  return rs;
}

// One observation, or "E<number>" for the error it raises.
template <typename Read>
std::string observe(Read&& read) {
  try {
    return read();
  } catch (const AutomationError& error) {
    return "E" + std::to_string(error.number());
  }
}

std::string textOf(const Variant& value) {
  return value.isNull() ? "Null" : toUtf8(CStr(value));
}

// The state a script sees: BOF, EOF, position, count, edit mode, status and the current ID.
std::string snapshot(Recordset& rs) {
  std::ostringstream out;
  out << "bof=" << observe([&] { return std::to_string(rs.BOF()); })
      << " eof=" << observe([&] { return std::to_string(rs.EndOfFile()); })
      << " pos=" << observe([&] { return std::to_string(rs.AbsolutePosition()); })
      << " count=" << observe([&] { return std::to_string(rs.RecordCount()); })
      << " edit=" << observe([&] { return std::to_string(rs.EditMode()); })
      << " status=" << observe([&] { return std::to_string(rs.Status()); })
      << " id=" << observe([&] { return textOf(rs.Fields()->Item(u"ID")->Value()); });
  return out.str();
}

// The IDs of the rows shown, walked from the first; the position is restored afterwards only
// by the steps that follow.
std::string walk(Recordset& rs) {
  std::string ids;
  if (rs.BOF() && rs.EndOfFile()) return ids;
  rs.MoveFirst();
  while (!rs.EndOfFile()) {
    ids += textOf(rs.Fields()->Item(0)->Value()) + ",";
    rs.MoveNext();
  }
  return ids;
}

struct StateRow {
  const char* what;
  int32_t lockType;
  std::initializer_list<int32_t> ids;
  std::function<void(Recordset&)> steps;
  std::string expected;
};

TEST(Recordset, CursorAndEditStates) {
  const auto setId = [](Recordset& rs, int32_t id) {
    rs.Fields()->Item(u"ID")->setValue(Variant(id));
  };
  const StateRow rows[] = {
      {"empty set",
       adLockOptimistic,
       {},
       [](Recordset&) {},
       "bof=1 eof=1 pos=-1 count=0 edit=E3021 status=E3021 id=E3021"},
      {"opened on the first row",
       adLockOptimistic,
       {1, 2, 3},
       [](Recordset& rs) { rs.MoveFirst(); },
       "bof=0 eof=0 pos=1 count=3 edit=0 status=8 id=1"},
      {"past the last row",
       adLockOptimistic,
       {1, 2},
       [](Recordset& rs) {
         rs.MoveLast();
         rs.MoveNext();
       },
       "bof=0 eof=1 pos=-3 count=2 edit=E3021 status=E3021 id=E3021"},
      {"before the first row",
       adLockOptimistic,
       {1, 2},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.MovePrevious();
       },
       "bof=1 eof=0 pos=-2 count=2 edit=E3021 status=E3021 id=E3021"},
      {"Move back from EOF",
       adLockOptimistic,
       {1, 2, 3, 4},
       [](Recordset& rs) {
         rs.MoveLast();
         rs.MoveNext();
         rs.Move(-2);
       },
       "bof=0 eof=0 pos=3 count=4 edit=0 status=8 id=3"},
      {"Move past the end",
       adLockOptimistic,
       {1, 2, 3},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.Move(5);
       },
       "bof=0 eof=1 pos=-3 count=3 edit=E3021 status=E3021 id=E3021"},
      {"AbsolutePosition moves",
       adLockOptimistic,
       {5, 6, 7},
       [](Recordset& rs) { rs.setAbsolutePosition(2); },
       "bof=0 eof=0 pos=2 count=3 edit=0 status=8 id=6"},
      {"under AddNew",
       adLockOptimistic,
       {1},
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 9);
       },
       "bof=0 eof=0 pos=2 count=2 edit=2 status=1 id=9"},
      {"AddNew then a move commits the row",
       adLockOptimistic,
       {1},
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 9);
         rs.MoveFirst();
         rs.MoveLast();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=8 id=9"},
      {"AddNew twice commits the first",
       adLockOptimistic,
       {},
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 1);
         rs.AddNew();
         setId(rs, 2);
         rs.MovePrevious();
       },
       "bof=0 eof=0 pos=1 count=2 edit=0 status=8 id=1"},
      {"CancelUpdate after AddNew returns to the row before",
       adLockOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.MoveFirst();
         rs.AddNew();
         setId(rs, 9);
         rs.CancelUpdate();
       },
       "bof=0 eof=0 pos=1 count=2 edit=0 status=8 id=1"},
      {"CancelUpdate discards an edit",
       adLockOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.MoveLast();
         setId(rs, 7);
         rs.CancelUpdate();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=8 id=2"},
      {"an edit in progress reads its new value",
       adLockOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.MoveFirst();
         setId(rs, 7);
       },
       "bof=0 eof=0 pos=1 count=2 edit=1 status=8 id=7"},
      {"Cancel is not CancelUpdate",
       adLockOptimistic,
       {1},
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 4);
         rs.Cancel();
       },
       "bof=0 eof=0 pos=2 count=2 edit=2 status=1 id=4"},
      {"Delete keeps the deleted row current",
       adLockOptimistic,
       {1, 2, 3},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.MoveNext();
         rs.Delete();
       },
       "bof=0 eof=0 pos=-1 count=2 edit=4 status=4 id=E3021"},
      {"MoveNext leaves a deleted row",
       adLockOptimistic,
       {1, 2, 3},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.MoveNext();
         rs.Delete();
         rs.MoveNext();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=8 id=3"},
      {"deleting the only row",
       adLockOptimistic,
       {1},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.Delete();
       },
       "bof=1 eof=1 pos=-1 count=0 edit=4 status=4 id=E3021"},
      {"batch: a new row stays pending",
       adLockBatchOptimistic,
       {1},
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 2);
         rs.Update();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=1 id=2"},
      {"batch: an edited row is modified",
       adLockBatchOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.MoveLast();
         setId(rs, 5);
         rs.Update();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=2 id=5"},
      {"batch: UpdateBatch commits",
       adLockBatchOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.MoveLast();
         setId(rs, 5);
         rs.UpdateBatch();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=8 id=5"},
      {"batch: CancelBatch restores",
       adLockBatchOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.MoveLast();
         setId(rs, 5);
         rs.Update();
         rs.CancelBatch();
       },
       "bof=0 eof=0 pos=2 count=2 edit=0 status=8 id=2"},
      {"batch: a deleted row is hidden after a move",
       adLockBatchOptimistic,
       {1, 2, 3},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.Delete();
         rs.MoveNext();
       },
       "bof=0 eof=0 pos=1 count=2 edit=0 status=8 id=2"},
      {"pending filter shows the changes",
       adLockBatchOptimistic,
       {1, 2, 3},
       [&](Recordset& rs) {
         rs.MoveFirst();
         rs.Delete();
         rs.MoveNext();
         setId(rs, 20);
         rs.AddNew();
         setId(rs, 4);
         rs.setFilter(Variant(int32_t{adFilterPendingRecords}));
         rs.MoveLast();
       },
       "bof=0 eof=0 pos=3 count=3 edit=0 status=1 id=4"},
      {"pending filter on a deleted row",
       adLockBatchOptimistic,
       {1, 2},
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.Delete();
         rs.setFilter(Variant(int32_t{adFilterPendingRecords}));
       },
       "bof=0 eof=0 pos=1 count=1 edit=4 status=4 id=E3021"},
      {"pending filter after UpdateBatch is empty",
       adLockBatchOptimistic,
       {1, 2},
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 3);
         rs.UpdateBatch();
         rs.setFilter(Variant(int32_t{adFilterPendingRecords}));
       },
       "bof=1 eof=1 pos=-1 count=0 edit=E3021 status=E3021 id=E3021"},
  };
  for (const StateRow& row : rows) {
    auto rs = idSet(row.lockType, row.ids);
    row.steps(*rs);
    EXPECT_EQ(snapshot(*rs), row.expected) << row.what;
  }
}

struct WalkRow {
  const char* what;
  int32_t lockType;
  std::function<void(Recordset&)> steps;
  std::string expected;
};

TEST(Recordset, RowsShownAfterChanges) {
  const auto setId = [](Recordset& rs, int32_t id) { rs.Fields()->Item(0)->setValue(Variant(id)); };
  const WalkRow rows[] = {
      {"immediate delete", adLockOptimistic,
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.Delete();
       },
       "2,3,"},
      {"delete the filtered group", adLockBatchOptimistic,
       [&](Recordset& rs) {
         rs.MoveLast();
         setId(rs, 30);
         rs.Update();
         rs.setFilter(Variant(int32_t{adFilterPendingRecords}));
         rs.Delete(adAffectGroup);
         rs.setFilter(Variant(int32_t{adFilterNone}));
       },
       "1,2,"},
      {"CancelBatch brings a deleted row back", adLockBatchOptimistic,
       [](Recordset& rs) {
         rs.MoveFirst();
         rs.Delete();
         rs.CancelBatch();
       },
       "1,2,3,"},
      {"CancelBatch drops a new row", adLockBatchOptimistic,
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 4);
         rs.CancelBatch();
       },
       "1,2,3,"},
      {"UpdateBatch of the current row only", adLockBatchOptimistic,
       [&](Recordset& rs) {
         rs.AddNew();
         setId(rs, 4);
         rs.AddNew();
         setId(rs, 5);
         rs.UpdateBatch(adAffectCurrent);
         rs.CancelBatch();
       },
       "1,2,3,5,"},
      {"AddNew with lists", adLockOptimistic,
       [](Recordset& rs) {
         SafeArray names = SafeArray::vector(VarType::Variant, 0, 1);
         names.elements = {Variant(u"Name"), Variant(u"ID")};
         SafeArray values = SafeArray::vector(VarType::Variant, 0, 1);
         values.elements = {Variant(u"x"), Variant(int32_t{8})};
         rs.AddNew(Variant(names), Variant(values));
       },
       "1,2,3,8,"},
  };
  for (const WalkRow& row : rows) {
    auto rs = idSet(row.lockType, {1, 2, 3});
    row.steps(*rs);
    EXPECT_EQ(walk(*rs), row.expected) << row.what;
  }
}

TEST(Recordset, OriginalValuesOfChangedRows) {
  auto rs = idSet(adLockBatchOptimistic, {1, 2});
  rs->MoveFirst();
  auto id = rs->Fields()->Item(u"id");
  id->setValue(Variant(int32_t{10}));
  rs->MoveNext();  // completes the edit: row 1 is modified, its original kept
  rs->MovePrevious();
  EXPECT_EQ(id->Value(), Variant(int32_t{10}));
  EXPECT_EQ(id->OriginalValue(), Variant(int32_t{1}));
  id->setValue(Variant(int32_t{11}));  // a second change keeps the first original
  rs->Update();
  EXPECT_EQ(id->OriginalValue(), Variant(int32_t{1}));
  rs->UpdateBatch();
  EXPECT_EQ(id->OriginalValue(), Variant(int32_t{11}));
  rs->AddNew();
  EXPECT_TRUE(id->OriginalValue().isNull());
}

struct ErrorRow {
  const char* what;
  std::function<void(Recordset&)> action;
  int32_t number;
  StringView source;
};

TEST(Recordset, ErrorsWithTheirNumbersTextsAndSources) {
  const ErrorRow rows[] = {
      {"MoveFirst on an empty set", [](Recordset& rs) { rs.MoveFirst(); },
       ado_error::kNoCurrentRecord, kRecordsetSource},
      {"MoveNext at EOF",
       [](Recordset& rs) {
         rs.AddNew();
         rs.MoveLast();
         rs.MoveNext();
         rs.MoveNext();
       },
       ado_error::kNoCurrentRecord, kRecordsetSource},
      {"MovePrevious at BOF",
       [](Recordset& rs) {
         rs.AddNew();
         rs.MovePrevious();
         rs.MovePrevious();
       },
       ado_error::kNoCurrentRecord, kRecordsetSource},
      {"a field of no record", [](Recordset& rs) { rs.Fields()->Item(0)->Value(); },
       ado_error::kNoCurrentRecord, kFieldSource},
      {"Append to an open set", [](Recordset& rs) { rs.Fields()->Append(u"X", adDouble); },
       ado_error::kNotAllowedInContext, kFieldsSource},
      {"an unknown field", [](Recordset& rs) { rs.Fields()->Item(u"nope"); },
       ado_error::kItemNotFound, kRecordsetSource},
      {"a field position past the end", [](Recordset& rs) { rs.Fields()->Item(int32_t{2}); },
       ado_error::kItemNotFound, kRecordsetSource},
      {"a negative field position", [](Recordset& rs) { rs.Fields()->Item(int32_t{-1}); },
       ado_error::kItemNotFound, kRecordsetSource},
      {"Open twice", [](Recordset& rs) { rs.Open(); }, ado_error::kObjectOpen, kRecordsetSource},
      {"RecordCount when closed",
       [](Recordset& rs) {
         rs.Close();
         rs.RecordCount();
       },
       ado_error::kObjectClosed, kRecordsetSource},
      {"Close twice",
       [](Recordset& rs) {
         rs.Close();
         rs.Close();
       },
       ado_error::kObjectClosed, kRecordsetSource},
      {"Close during AddNew",
       [](Recordset& rs) {
         rs.AddNew();
         rs.Close();
       },
       ado_error::kNotAllowedInContext, kRecordsetSource},
      {"LockType when open", [](Recordset& rs) { rs.setLockType(adLockBatchOptimistic); },
       ado_error::kObjectOpen, kRecordsetSource},
      {"a criteria filter", [](Recordset& rs) { rs.setFilter(Variant(u"ID = 1")); },
       ado_error::kArgumentsWrongType, kRecordsetSource},
      {"AbsolutePosition past the end", [](Recordset& rs) { rs.setAbsolutePosition(1); },
       ado_error::kArgumentsWrongType, kRecordsetSource},
      {"Delete of all",
       [](Recordset& rs) {
         rs.AddNew();
         rs.Delete(adAffectAll);
       },
       ado_error::kArgumentsWrongType, kRecordsetSource},
      {"Open with a source",
       [](Recordset& rs) {
         rs.Close();
         rs.Open(Variant(u"SELECT 1"), Variant::missing(), adOpenUnspecified, adLockUnspecified,
                 adCmdText);
       },
       ado_error::kArgumentsWrongType, kRecordsetSource},
  };
  for (const ErrorRow& row : rows) {
    auto rs = idSet(adLockOptimistic, {});
    try {
      row.action(*rs);
      ADD_FAILURE() << row.what << ": no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number) << row.what;
      EXPECT_EQ(error.source(), row.source) << row.what;
      EXPECT_EQ(error.description(), adoErrorDescription(row.number)) << row.what;
    }
  }
  EXPECT_EQ(adoErrorDescription(ado_error::kNoCurrentRecord),
            u"Either BOF or EOF is True, or the current record has been deleted. Requested "
            u"operation requires a current record.");
}

TEST(Recordset, ReadOnlyAndAppendRefusals) {
  auto rs = makeObject<Recordset>();
  rs->Fields()->Append(u"A", adDouble);
  EXPECT_EQ(errorNumberOf([&] { rs->Fields()->Append(u"a", adInteger); }),
            ado_error::kAlreadyInCollection);
  for (int32_t refused :
       std::initializer_list<int32_t>{adEmpty, adIDispatch, adIUnknown, adVariant, adChapter,
                                      adUserDefined, adPropVariant, adArray | adInteger, 99}) {
    EXPECT_EQ(errorNumberOf([&] { rs->Fields()->Append(u"B", refused); }),
              ado_error::kArgumentsWrongType)
        << refused;
  }
  EXPECT_EQ(rs->Fields()->Count(), 1);
  EXPECT_EQ(rs->LockType(), adLockReadOnly);
  rs->setLockType(adLockReadOnly);
  rs->Open();
  EXPECT_EQ(rs->LockType(), adLockReadOnly);
  EXPECT_EQ(errorNumberOf([&] { rs->AddNew(); }), ado_error::kUpdateNotSupported);
  rs->Close();
  rs->setLockType(adLockUnspecified);
  rs->Open();  // a lock type never given makes the fabricated set updatable
  EXPECT_EQ(rs->LockType(), adLockOptimistic);
  EXPECT_EQ(rs->CursorType(), adOpenStatic);
  EXPECT_EQ(rs->CursorLocation(), adUseClient);
  rs->AddNew();
  rs->Update();
  EXPECT_EQ(rs->RecordCount(), 1);
  rs->Close();  // drops the rows, keeps the fields
  rs->Open();
  EXPECT_EQ(rs->RecordCount(), 0);
  EXPECT_EQ(rs->Fields()->Count(), 1);
}

struct ConversionRow {
  int32_t type;
  int32_t definedSize;
  Variant assigned;
  std::string expected;  // "TypeName:text", or "E<number>"
};

TEST(Recordset, FieldConversions) {
  ScopedLocale locale(u"en-US");
  const int32_t multiStep = ado_error::kMultipleStepErrors;
  const std::string refused = "E" + std::to_string(multiStep);
  const ConversionRow rows[] = {
      {adInteger, 0, Variant(2.5), "Long:2"},
      {adInteger, 0, Variant(3.5), "Long:4"},
      {adInteger, 0, Variant(u"12"), "Long:12"},
      {adInteger, 0, Variant(3e9), refused},
      {adInteger, 0, Variant(u"abc"), refused},
      {adSmallInt, 0, Variant(int32_t{40000}), refused},
      {adTinyInt, 0, Variant(int32_t{-128}), "Integer:-128"},
      {adTinyInt, 0, Variant(int32_t{128}), refused},
      {adUnsignedTinyInt, 0, Variant(int32_t{255}), "Byte:255"},
      {adUnsignedTinyInt, 0, Variant(int32_t{-1}), refused},
      {adUnsignedSmallInt, 0, Variant(int32_t{65535}), "Long:65535"},
      {adBigInt, 0, Variant(u"123456789012"), "Double:123456789012"},
      {adDouble, 0, Variant(u"1.5"), "Double:1.5"},
      {adDouble, 0, Variant(true), "Double:-1"},
      {adSingle, 0, Variant(1e39), refused},
      {adCurrency, 0, Variant(1.23456), "Currency:1.2346"},
      {adBoolean, 0, Variant(u"True"), "Boolean:True"},
      {adBoolean, 0, Variant(int32_t{0}), "Boolean:False"},
      {adBoolean, 0, Variant(u"maybe"), refused},
      {adDate, 0, Variant(40336.5), "Date:6/7/2010 12:00:00 PM"},
      {adDate, 0, Variant(u"2010-06-07"), "Date:6/7/2010"},
      {adDate, 0, Variant(u"not a date"), refused},
      {adVarWChar, 5, Variant(1.5), "String:1.5"},
      {adVarWChar, 5, Variant(false), "String:False"},
      {adVarWChar, 5, Variant(u"abcdef"), refused},
      {adVarWChar, 0, Variant(u"no limit at all"), "String:no limit at all"},
      {adLongVarWChar, 5, Variant(u"long text types have none"),
       "String:long text types have none"},
      {adWChar, 5, Variant(u"ab"), "String:ab   "},
      {adChar, 3, Variant(u"\u00e9\u4e2d"), "String:\u00e9\u4e2d "},
      {adInteger, 0, Variant::nothing(), refused},
      {adInteger, 0, Variant::null(), refused},
      {adVarWChar, 5, Variant(), refused},
  };
  for (const ConversionRow& row : rows) {
    auto rs = makeObject<Recordset>();
    rs->Fields()->Append(u"F", row.type, row.definedSize);
    rs->Open();
    rs->AddNew();
    auto field = rs->Fields()->Item(int32_t{0});
    const std::string got = observe([&] {
      field->setValue(row.assigned);
      const Variant value = field->Value();
      return toUtf8(value.typeName()) + ":" + textOf(value);
    });
    EXPECT_EQ(got, row.expected) << "type " << row.type << " given " << textOf(row.assigned);
  }
}

TEST(Recordset, NullableFieldsTakeNullAndKeepValuesOnRefusal) {
  auto rs = idSet(adLockOptimistic, {1});
  rs->MoveFirst();
  auto name = rs->Fields()->Item(u"Name");
  name->setValue(Variant::null());
  EXPECT_TRUE(name->Value().isNull());
  rs->Update();
  EXPECT_EQ(errorNumberOf([&] { name->setValue(Variant(u"far too long")); }),
            ado_error::kMultipleStepErrors);
  EXPECT_TRUE(name->Value().isNull());
  auto id = rs->Fields()->Item(u"ID");
  EXPECT_EQ(errorNumberOf([&] { id->setValue(Variant::null()); }), ado_error::kMultipleStepErrors);
  EXPECT_EQ(id->Value(), Variant(int32_t{1}));
}

TEST(Recordset, FieldValueTextOfRealFields) {
  auto rs = idSet(adLockOptimistic, {7});
  auto id = rs->Fields()->Item(u"ID");
  auto name = rs->Fields()->Item(u"Name");
  EXPECT_EQ(FieldValueText(id), u"7");  // the row just added stays current
  rs->MoveNext();
  EXPECT_EQ(FieldValueText(id), u"");  // at EOF
  rs->MoveFirst();
  EXPECT_EQ(FieldValueText(name), u"n7");
  name->setValue(Variant::null());
  EXPECT_EQ(FieldValueText(name), u"");
  rs->Update();
  rs->Close();
  EXPECT_EQ(FieldValueText(id), u"");
}

TEST(Recordset, FieldsByNameAndPositionAndForEach) {
  auto rs = makeObject<Recordset>();
  rs->Fields()->Append(u"Código", adInteger);
  rs->Fields()->Append(u"Name", adVarWChar, 40, adFldIsNullable);
  rs->Fields()->Append(u"When", adDate);
  EXPECT_EQ(rs->Fields()->Item(u"CÓDIGO"), rs->Fields()->Item(int32_t{0}));
  EXPECT_EQ(rs->Fields()->Item(u"name"), rs->Fields()->Item(Variant(1.0)));
  EXPECT_EQ(rs->Fields()->Item(u"When")->Type(), adDate);
  EXPECT_EQ(rs->Fields()->Item(u"When")->DefinedSize(), 8);
  EXPECT_EQ(rs->Fields()->Item(u"When")->Attributes(), adFldUpdatable | adFldFixed);
  EXPECT_EQ(rs->Fields()->Item(u"Name")->Attributes(), adFldIsNullable);
  std::vector<Variant> items;
  ASSERT_TRUE(rs->Fields()->enumerate(items));
  ASSERT_EQ(items.size(), 3u);
  std::u16string names;
  for (const Variant& item : items)
    names += std::dynamic_pointer_cast<Field>(item.asObject())->Name() + u";";
  EXPECT_EQ(names, u"Código;Name;When;");
}

TEST(Recordset, BulkLoadingIsCommittedAndChecked) {
  ScopedLocale locale(u"en-US");
  auto rs = makeObject<Recordset>();
  rs->Fields()->Append(u"N", adDouble);
  rs->Fields()->Append(u"C", adVarWChar, 4);
  rs->Fields()->Append(u"D", adDate);
  rs->Fields()->Append(u"L", adBoolean);
  EXPECT_THROW(rs->appendRow(), std::invalid_argument);  // not open yet
  rs->Open();
  rs->reserveRows(3);
  for (int i = 0; i < 3; ++i)
    EXPECT_EQ(rs->appendRow(), static_cast<std::size_t>(i));
  rs->setCellDouble(0, 0, 1.5);
  rs->setCellLatin1(0, 1, "a\xe9 ");
  rs->setCellText(1, 1, u"\u4e2d");  // widens the column; the first row keeps its text
  rs->setCellDate(1, 2, 40336.0);
  rs->setCellBoolean(2, 3, true);
  EXPECT_THROW(rs->setCellDouble(0, 1, 1.0), std::invalid_argument);
  EXPECT_THROW(rs->setCellText(0, 0, u"x"), std::invalid_argument);
  EXPECT_THROW(rs->setCellBoolean(3, 3, true), std::invalid_argument);
  EXPECT_THROW(rs->setCellDate(0, 4, 1.0), std::invalid_argument);
  EXPECT_TRUE(rs->EndOfFile());  // the current record did not move
  std::string seen;
  rs->MoveFirst();
  while (!rs->EndOfFile()) {
    for (int32_t f = 0; f < 4; ++f)
      seen += textOf(rs->Fields()->Item(f)->Value()) + "|";
    seen += std::to_string(rs->Status()) + "\n";
    rs->MoveNext();
  }
  EXPECT_EQ(seen,
            "1.5|a\xc3\xa9 |Null|Null|8\n"
            "Null|\xe4\xb8\xad|6/7/2010|Null|8\n"
            "Null|Null|Null|True|8\n");
}

TEST(Recordset, TheTableReadersPattern) {
  ScopedLocale locale(u"en-US");
  // Each record begun with AddNew and assigned through Fields; a deleted record gets Cancel and
  // stays a row with every field unset; the last record stays under AddNew until a move.
  auto rs = makeObject<Recordset>();
  rs->Fields()->Append(u"NAME", adVarWChar, 10, adFldUnspecified);
  rs->Fields()->Append(u"WHEN", adDate, 0, adFldUnspecified);
  rs->Open();
  const struct {
    const char16_t* name;
    double when;  // 0: left unset
    bool deleted;
  } records[] = {{u"abc       ", 40336, false}, {u"", 0, true}, {u"last", 0, false}};
  for (const auto& record : records) {
    rs->AddNew();
    if (record.deleted) {
      rs->Cancel();
      continue;
    }
    rs->Fields()->Item(u"name")->setValue(Variant(record.name));
    if (record.when != 0) rs->Fields()->Item(u"when")->setValue(Variant(record.when));
  }
  EXPECT_EQ(rs->EditMode(), adEditAdd);
  EXPECT_EQ(rs->RecordCount(), 3);
  std::string seen;
  rs->MoveFirst();  // completes the last row
  while (!rs->EndOfFile()) {
    seen += textOf(rs->Fields()->Item(0)->Value()) + "|" + textOf(rs->Fields()->Item(1)->Value()) +
            "|" + std::to_string(rs->Status()) + "\n";
    rs->MoveNext();
  }
  EXPECT_EQ(seen, "abc       |6/7/2010|8\nNull|Null|8\nlast|Null|8\n");
}

TEST(Recordset, CancelUpdateAfterBulkRowsWithdrawsOnlyTheNewRow) {
  auto rs = idSet(adLockOptimistic, {1});
  rs->AddNew();
  rs->Fields()->Item(0)->setValue(Variant(int32_t{2}));
  rs->appendRow();  // a bulk row behind the one under AddNew
  rs->CancelUpdate();
  EXPECT_EQ(walk(*rs), "1,Null,");
}

TEST(Recordset, ColumnTextRewritesAndWidening) {
  // A rewritten cell gets new room; enough rewrites compact the buffer, moving the cells that
  // were not rewritten without losing their text.
  RecordColumn column(CellKind::Text);
  for (int row = 0; row < 100; ++row) {
    column.appendRow();
    column.setLatin1(row, "row" + std::to_string(row));
  }
  for (int round = 0; round < 1000; ++round)
    column.setText(round % 50, u"rewritten " + fromAscii(std::to_string(round)));
  EXPECT_FALSE(column.wideText());
  EXPECT_LT(column.storageBytes(), 8000u);  // the abandoned room was reclaimed
  EXPECT_EQ(column.value(3), Variant(u"rewritten 953"));
  column.setText(5, u"\u20ac");
  EXPECT_TRUE(column.wideText());
  column.unset(6);
  column.setLatin1(7, "\xff");
  EXPECT_EQ(column.value(4), Variant(u"rewritten 954"));
  EXPECT_EQ(column.value(5), Variant(u"\u20ac"));
  EXPECT_TRUE(column.value(6).isNull());
  EXPECT_EQ(column.value(7), Variant(u"\u00ff"));
  EXPECT_EQ(column.value(99), Variant(u"row99"));  // never rewritten, moved by compaction
  column.removeLastRow();
  EXPECT_EQ(column.size(), 99u);
}

TEST(Recordset, LateBoundByBothNames) {
  for (StringView progId : {u"ADODB.Recordset", u"Ravelin.Recordset", u"adodb.recordset"}) {
    const ObjectRef rs = libraryRegistry().create(progId);
    ASSERT_NE(rs, nullptr);
    EXPECT_EQ(rs->className(), u"Recordset");
  }
  int listed = 0;
  for (const ClassInfo* info : libraryRegistry().classes())
    listed += info->name() == u"Recordset" ? 1 : 0;
  EXPECT_EQ(listed, 1);  // the second name is no second class
  EXPECT_EQ(libraryRegistry().findClass(u"ADODB.Recordset"),
            libraryRegistry().findClass(u"Recordset"));
  EXPECT_EQ(libraryRegistry().findEnumValue(u"adFilterPendingRecords"), 1);
  EXPECT_EQ(libraryRegistry().findEnumValue(u"adVarWChar"), 202);
  EXPECT_EQ(libraryRegistry().findEnumValue(u"adLockBatchOptimistic"), 4);
  EXPECT_EQ(libraryRegistry().findEnumValue(u"adUseClient"), 3);
  EXPECT_EQ(libraryRegistry().findEnumValue(u"adRecUnmodified"), 8);
  EXPECT_EQ(libraryRegistry().findEnumValue(u"adFldIsNullable"), 0x20);
  EXPECT_EQ(errorNumberOf([] { libraryRegistry().create(u"ADODB.Field"); }),
            vb_error::kCannotCreateObject);
}

}  // namespace
}  // namespace ravelin
