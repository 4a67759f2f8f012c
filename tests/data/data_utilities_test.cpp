#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/internal/rs_insert_work_folder.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/dispatch.hpp>
#include <ravelin/frame/error.hpp>
#include <thread>
#include <vector>

namespace ravelin {
namespace {

const DataUtilities utilities;

struct Column {
  const char16_t* name;
  int32_t type;
  int32_t size;
};

// An open set with those columns (nullable) and rows of values, committed.
std::shared_ptr<Recordset> makeSet(std::vector<Column> columns,
                                   std::vector<std::vector<Variant>> rows = {}) {
  auto rs = makeObject<Recordset>();
  for (const Column& column : columns)
    rs->Fields()->Append(column.name, column.type, column.size, adFldIsNullable | adFldMayBeNull);
  rs->Open();
  for (const auto& row : rows) {
    rs->AddNew();
    for (std::size_t i = 0; i < row.size(); ++i)
      rs->Fields()->Item(Variant(static_cast<int32_t>(i)))->setValue(row[i]);
    rs->Update();
  }
  return rs;
}

std::vector<std::vector<Variant>> readAll(Recordset& rs) {
  std::vector<std::vector<Variant>> rows;
  if (rs.BOF() && rs.EndOfFile()) return rows;
  for (rs.MoveFirst(); !rs.EndOfFile(); rs.MoveNext()) {
    auto& row = rows.emplace_back();
    for (int32_t i = 0; i < rs.Fields()->Count(); ++i)
      row.push_back(rs.Fields()->Item(Variant(i))->Value());
  }
  return rows;
}

TEST(DataUtilities, FieldExistsComparesNamesWithoutCase) {
  auto none = makeSet({});
  auto some = makeSet({{u"Code", adInteger, 0}, {u"Name", adVarWChar, 20}});
  struct Row {
    std::shared_ptr<Recordset>* rs;
    const char16_t* name;
    bool expected;
  } rows[] = {
      {&none, u"Code", false},  {&some, u"Code", true}, {&some, u"NAME", true},
      {&some, u"name ", false}, {&some, u"", false},
  };
  for (const Row& row : rows)
    EXPECT_EQ(utilities.FieldExists(*row.rs, row.name), row.expected);
  std::shared_ptr<Recordset> nothing;
  EXPECT_THROW(utilities.FieldExists(nothing, u"Code"), AutomationError);
}

TEST(DataUtilities, CloseRecordsetClosesOnlyAnOpenSetAndKeepsTheReference) {
  std::shared_ptr<Recordset> nothing;
  utilities.CloseRecordset(nothing);
  EXPECT_EQ(nothing, nullptr);
  auto rs = makeSet({{u"A", adInteger, 0}});
  const auto kept = rs;
  utilities.CloseRecordset(rs);
  EXPECT_EQ(rs, kept);
  EXPECT_EQ(rs->State(), adStateClosed);
  utilities.CloseRecordset(rs);  // closed already: nothing happens
  EXPECT_EQ(rs->State(), adStateClosed);
}

TEST(DataUtilities, MergeIntoAnAbsentTargetCreatesAClientBatchSetWithTheSourceColumns) {
  auto source = makeSet({{u"Id", adInteger, 0},
                         {u"Name", adVarWChar, 40},
                         {u"Note", adVarChar, 10},
                         {u"Fixed", adWChar, 6},
                         {u"Price", adDouble, 0},
                         {u"When", adDate, 0}});
  std::shared_ptr<Recordset> target;
  utilities.MergeRecordset(target, source, true);
  ASSERT_NE(target, nullptr);
  EXPECT_EQ(target->State(), adStateOpen);
  EXPECT_EQ(target->LockType(), adLockBatchOptimistic);
  EXPECT_EQ(target->CursorLocation(), adUseClient);
  EXPECT_TRUE(target->BOF() && target->EndOfFile());
  const int32_t sizes[] = {4, 255, 255, 6, 8, 8};
  ASSERT_EQ(target->Fields()->Count(), 6);
  for (int32_t i = 0; i < 6; ++i) {
    const auto from = source->Fields()->Item(Variant(i));
    const auto to = target->Fields()->Item(Variant(i));
    EXPECT_EQ(to->Name(), from->Name());
    EXPECT_EQ(to->Type(), from->Type());
    EXPECT_EQ(to->DefinedSize(), sizes[i]) << i;
    EXPECT_EQ(to->Attributes(), adFldMayBeNull) << i;
  }
}

TEST(DataUtilities, MergeCopiesEveryRowByNameAndUpdatesOnlyWhenAsked) {
  const std::vector<std::vector<Variant>> values = {
      {Variant(int32_t{1}), Variant(u"one"), Variant(1.5)},
      {Variant(int32_t{2}), Variant::null(), Variant(-2.25)},
      {Variant(int32_t{3}), Variant(u"O'Brien \"3\""), Variant::null()},
  };
  for (const bool update : {false, true}) {
    auto source = makeSet(
        {{u"Id", adInteger, 0}, {u"Name", adVarWChar, 40}, {u"Price", adDouble, 0}}, values);
    source->MoveLast();  // the merge starts from the first row wherever the source stands
    std::shared_ptr<Recordset> target;
    utilities.MergeRecordset(target, source, update);
    EXPECT_EQ(readAll(*target), values) << update;
    target->MoveFirst();
    EXPECT_EQ(target->Status(), update ? adRecUnmodified : adRecNew) << update;
    EXPECT_TRUE(source->EndOfFile());
  }
}

TEST(DataUtilities, MergeIntoAGivenTargetKeepsItsOwnFieldsAndOpensItWhenClosed) {
  auto source = makeSet({{u"Id", adInteger, 0}, {u"Name", adVarWChar, 40}, {u"Extra", adDouble, 0}},
                        {{Variant(int32_t{7}), Variant(u"seven"), Variant(7.0)}});
  auto target = makeObject<Recordset>();
  target->Fields()->Append(u"NAME", adVarWChar, 10, adFldMayBeNull);
  target->Fields()->Append(u"id", adDouble, 0, adFldMayBeNull);
  auto given = target;
  utilities.MergeRecordset(given, source, false);
  EXPECT_EQ(given, target);
  EXPECT_EQ(readAll(*target),
            (std::vector<std::vector<Variant>>{{Variant(u"seven"), Variant(7.0)}}));
}

TEST(DataUtilities, MergeRaisesAFailureWithItsOwnSourceAndKeepsTheRowsCopiedBeforeIt) {
  struct Row {
    const char* what;
    std::vector<Column> targetColumns;
    int32_t number;
  } rows[] = {
      {"a target field the source lacks",
       {{u"Id", adInteger, 0}, {u"Missing", adInteger, 0}},
       ado_error::kItemNotFound},
      // The second row's text does not fit the target's three characters.
      {"a value the target refuses", {{u"Name", adVarWChar, 3}}, ado_error::kMultipleStepErrors},
  };
  for (const Row& row : rows) {
    auto source =
        makeSet({{u"Id", adInteger, 0}, {u"Name", adVarWChar, 40}},
                {{Variant(int32_t{1}), Variant(u"one")}, {Variant(int32_t{2}), Variant(u"three")}});
    auto target = makeObject<Recordset>();
    for (const Column& column : row.targetColumns)
      target->Fields()->Append(column.name, column.type, column.size, adFldMayBeNull);
    target->setLockType(adLockBatchOptimistic);
    try {
      utilities.MergeRecordset(target, source, true);
      ADD_FAILURE() << row.what << ": no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number) << row.what;
      EXPECT_EQ(error.source(), DataUtilities::kMergeSource) << row.what;
      EXPECT_FALSE(error.description().empty()) << row.what;
    }
    if (row.number == ado_error::kMultipleStepErrors) {
      target->MoveFirst();
      EXPECT_EQ(target->Fields()->Item(Variant(0))->Value(), Variant(u"one"));
    } else {
      EXPECT_EQ(target->State(), adStateClosed) << row.what << ": known before the target changed";
    }
  }
  std::shared_ptr<Recordset> target;
  std::shared_ptr<Recordset> nothing;
  EXPECT_THROW(utilities.MergeRecordset(target, nothing, true), AutomationError);

  // A closed source, or rows for a read-only target, fail before the target is touched.
  auto closedSource = makeObject<Recordset>();
  auto closedTarget = makeObject<Recordset>();
  auto given = closedTarget;
  EXPECT_THROW(utilities.MergeRecordset(given, closedSource, false), AutomationError);
  EXPECT_EQ(closedTarget->State(), adStateClosed);
  auto readOnly = makeObject<Recordset>();
  readOnly->Fields()->Append(u"Id", adInteger);
  readOnly->setLockType(adLockReadOnly);
  given = readOnly;
  EXPECT_THROW(utilities.MergeRecordset(given, makeSet({{u"Id", adInteger, 0}}, {{Variant(1)}})),
               AutomationError);
  EXPECT_EQ(readOnly->State(), adStateClosed);
}

// The work folders UpdateRsToInsert left in the temporary folder (this process's only: other
// test programs import at the same time).
std::size_t workFoldersLeft() {
  const std::string& prefix = data_utilities::workFolderPrefix();
  std::size_t count = 0;
  for (const auto& entry :
       std::filesystem::directory_iterator(std::filesystem::temp_directory_path()))
    count += entry.path().filename().string().starts_with(prefix);
  return count;
}

std::vector<int32_t> statuses(Recordset& rs) {
  std::vector<int32_t> found;
  if (rs.BOF() && rs.EndOfFile()) return found;
  for (rs.MoveFirst(); !rs.EndOfFile(); rs.MoveNext())
    found.push_back(rs.Status());
  return found;
}

TEST(DataUtilities, UpdateRsToInsertMakesEveryShownRowAPendingInsertion) {
  const std::size_t foldersBefore = workFoldersLeft();
  const std::vector<Column> columns = {
      {u"Id", adInteger, 0}, {u"Name", adVarWChar, 40}, {u"When", adDate, 0}};
  const Variant midnight(Date{45306.0});
  const std::vector<std::vector<Variant>> committed = {
      {Variant(int32_t{1}), Variant(u"O'Brien \"&\" <Sons>"), midnight},
      {Variant(int32_t{2}), Variant::null(), Variant(Date{45306.75})},
      {Variant(int32_t{3}), Variant(u""), Variant::null()},
  };
  auto plain = makeSet(columns, committed);
  utilities.UpdateRsToInsert(plain);
  EXPECT_EQ(plain->LockType(), adLockBatchOptimistic);
  EXPECT_EQ(readAll(*plain), committed);
  EXPECT_EQ(statuses(*plain), (std::vector<int32_t>{adRecNew, adRecNew, adRecNew}));

  // Pending changes of batch mode: the update brings its current values (a column changed to
  // Null among them), the deleted row goes, the new row stays new.
  auto pending = makeObject<Recordset>();
  for (const Column& column : columns)
    pending->Fields()->Append(column.name, column.type, column.size,
                              adFldIsNullable | adFldMayBeNull);
  pending->setLockType(adLockBatchOptimistic);
  pending->Open();
  for (const auto& row : committed) {
    pending->AddNew();
    for (int32_t i = 0; i < 3; ++i)
      pending->Fields()->Item(Variant(i))->setValue(row[i]);
  }
  pending->UpdateBatch();
  pending->MoveFirst();
  pending->Fields()->Item(Variant(u"Name"))->setValue(Variant(u"changed"));
  pending->Fields()->Item(Variant(u"When"))->setValue(Variant::null());
  pending->MoveNext();
  pending->Delete();
  pending->AddNew();
  pending->Fields()->Item(Variant(u"Id"))->setValue(Variant(int32_t{4}));
  utilities.UpdateRsToInsert(pending);
  EXPECT_EQ(readAll(*pending), (std::vector<std::vector<Variant>>{
                                   {Variant(int32_t{1}), Variant(u"changed"), Variant::null()},
                                   committed[2],
                                   {Variant(int32_t{4}), Variant::null(), Variant::null()}}));
  EXPECT_EQ(statuses(*pending), (std::vector<int32_t>{adRecNew, adRecNew, adRecNew}));

  // A closed set is opened first, one without fields too.
  for (const bool withField : {true, false}) {
    auto closed = makeObject<Recordset>();
    if (withField) closed->Fields()->Append(u"Id", adInteger);
    utilities.UpdateRsToInsert(closed);
    EXPECT_EQ(closed->State(), adStateOpen);
    EXPECT_TRUE(closed->BOF() && closed->EndOfFile());
    EXPECT_EQ(closed->Fields()->Count(), withField ? 1 : 0);
  }

  EXPECT_EQ(workFoldersLeft(), foldersBefore);
}

TEST(DataUtilities, UpdateRsToInsertThatFailsLeavesTheSetAndNoWorkFile) {
  const std::size_t foldersBefore = workFoldersLeft();
  // A text the XML format cannot carry makes the save fail.
  auto rs = makeSet({{u"Name", adVarWChar, 10}}, {{Variant(u"ok")}, {Variant(String(u"a\x1b"))}});
  EXPECT_THROW(utilities.UpdateRsToInsert(rs), AutomationError);
  EXPECT_EQ(rs->State(), adStateOpen);
  EXPECT_EQ(readAll(*rs),
            (std::vector<std::vector<Variant>>{{Variant(u"ok")}, {Variant(String(u"a\x1b"))}}));
  EXPECT_EQ(workFoldersLeft(), foldersBefore);
  std::shared_ptr<Recordset> nothing;
  EXPECT_THROW(utilities.UpdateRsToInsert(nothing), AutomationError);
}

TEST(DataUtilities, UpdateRsToInsertCallsAtOnceKeepApart) {
  std::vector<std::shared_ptr<Recordset>> sets;
  for (int32_t i = 0; i < 4; ++i) {
    std::vector<std::vector<Variant>> rows;
    for (int32_t r = 0; r < 200; ++r)
      rows.push_back({Variant(i * 1000 + r)});
    sets.push_back(makeSet({{u"Id", adInteger, 0}}, rows));
  }
  std::vector<std::thread> threads;
  for (auto& set : sets)
    threads.emplace_back([&set] { utilities.UpdateRsToInsert(set); });
  for (auto& thread : threads)
    thread.join();
  for (int32_t i = 0; i < 4; ++i) {
    const auto rows = readAll(*sets[static_cast<std::size_t>(i)]);
    ASSERT_EQ(rows.size(), 200u);
    EXPECT_EQ(rows.front().front(), Variant(i * 1000));
    EXPECT_EQ(rows.back().front(), Variant(i * 1000 + 199));
  }
}

TEST(DataUtilities, MergeThroughLateBindingHandsTheCreatedTargetBack) {
  auto utilitiesObject = makeObject<DataUtilities>();
  auto source = makeSet({{u"Id", adInteger, 0}}, {{Variant(int32_t{5})}});
  Variant target = Variant(ObjectRef());
  std::vector<CallArgument> arguments{CallArgument(target, &target),
                                      CallArgument(Variant(ObjectRef(source)))};
  callMember(utilitiesObject, u"MergeRecordset", MemberKind::Method, arguments);
  auto created = std::dynamic_pointer_cast<Recordset>(target.asObject());
  ASSERT_NE(created, nullptr);
  EXPECT_EQ(readAll(*created), (std::vector<std::vector<Variant>>{{Variant(int32_t{5})}}));
}

}  // namespace
}  // namespace ravelin
