// The suite's import of a dBASE table into its database, end to end through the real drivers:
// the table read into a record set, its rows marked as insertions (UpdateRsToInsert) and sent in
// one batch through a connection, or merged into a set opened on the database table.
#include <gtest/gtest.h>

#include <fstream>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/tests/data/dbf_writer.hpp>
#include <ravelin/tests/support/test_databases.hpp>
#include <string>
#include <utility>
#include <vector>

namespace ravelin {
namespace {

class DbaseImportTest : public DatabaseTest {
 public:
  // A table file named after the test's table, and the database table it goes to.
  String writeTable() {
    test_dbf::Table table;
    table.fields = {{"ID", 'N', 6, 0},
                    {"NAME", 'C', 30},
                    {"PRICE", 'N', 9, 2},
                    {"SOLD", 'D', 8},
                    {"PAID", 'L', 1}};
    std::string bytes = test_dbf::headerBytes(table, 4);
    bytes += test_dbf::recordBytes(table, {"1", "O'Brien & \"Sons\"", "12.50", "20240115", "T"});
    bytes += test_dbf::recordBytes(table, {"2", "x'); DROP TABLE t; --", "-0.25", "", "F"});
    bytes += test_dbf::recordBytes(table, {"3", "", "0", "19991231", "?"});
    bytes += test_dbf::recordBytes(table, {"4", "gone", "1", "20000101", "T"}, true);
    bytes += '\x1A';
    const std::filesystem::path folder =
        folder_.empty() ? std::filesystem::temp_directory_path() : folder_;
    dbfPath_ = folder / (table_ + ".dbf");
    std::ofstream(dbfPath_, std::ios::binary) << bytes;
    createTable("");
    return fromUtf8(dbfPath_.string());
  }

  // The columns under the field names as the file spells them (quoted: PostgreSQL would fold
  // bare names to lower case, and the batch quotes the names it writes).
  void createTable(const std::string& idConstraint) {
    execute("CREATE TABLE " + table_ + " (\"ID\" DOUBLE PRECISION" + idConstraint +
            ", \"NAME\" VARCHAR(30), \"PRICE\" DOUBLE PRECISION, \"SOLD\" TIMESTAMP, "
            "\"PAID\" BOOLEAN)");
  }

  void TearDown() override {
    if (!dbfPath_.empty()) std::filesystem::remove(dbfPath_);
    DatabaseTest::TearDown();
  }

  std::vector<std::string> imported() {
    return rows("SELECT \"ID\", \"NAME\", \"PRICE\", \"SOLD\", \"PAID\" FROM " + table_ +
                " ORDER BY COALESCE(\"ID\", -1)");
  }

  // The rows as they arrive: texts with the blanks of their dBASE width, the deleted record as
  // a row with every column Null (the reader keeps it so), sorted first.
  std::vector<std::string> expected() const {
    const auto name = [](std::string text) { return text.append(30 - text.size(), ' '); };
    return {"Null|Null|Null|Null|Null", "1|" + name("O'Brien & \"Sons\"") + "|12.5|1/15/2024|True",
            "2|" + name("x'); DROP TABLE t; --") + "|-0.25|Null|False",
            "3|" + name("") + "|0|12/31/1999|False"};
  }

  std::filesystem::path dbfPath_;
};

TEST_P(DbaseImportTest, RowsMarkedAsInsertionsArriveInOneBatch) {
  const String path = writeTable();
  auto rs = DBFFileReader().readDBF(path);
  DataUtilities().UpdateRsToInsert(rs);
  EXPECT_EQ(rs->RecordCount(), 4);
  rs->setActiveConnection(Variant(ObjectRef(connection_)));
  std::vector<std::pair<std::size_t, std::size_t>> progress;
  rs->setBatchProgress(
      [&](std::size_t sent, std::size_t total) { progress.emplace_back(sent, total); });
  rs->UpdateBatch();
  EXPECT_EQ(imported(), expected());
  EXPECT_EQ(progress, (std::vector<std::pair<std::size_t, std::size_t>>{{4, 4}}));
  rs->MoveFirst();
  EXPECT_EQ(rs->Status(), adRecUnmodified);
}

TEST_P(DbaseImportTest, RowsMergedIntoASetOpenedOnTheTableArriveInOneBatch) {
  const String path = writeTable();
  auto source = DBFFileReader().readDBF(path);
  auto target = makeObject<Recordset>();
  target->Open(Variant(fromUtf8("SELECT * FROM " + table_ + " WHERE 1 = 0")),
               Variant(ObjectRef(connection_)), adOpenStatic, adLockBatchOptimistic);
  DataUtilities().MergeRecordset(target, source, true);
  EXPECT_EQ(imported(), expected());
}

TEST_P(DbaseImportTest, AFailedBatchLeavesEveryRowPending) {
  const String path = writeTable();
  auto rs = DBFFileReader().readDBF(path);
  DataUtilities().UpdateRsToInsert(rs);
  execute("DROP TABLE " + table_);
  createTable(" NOT NULL");
  rs->setActiveConnection(Variant(ObjectRef(connection_)));
  // The deleted record's row has no ID: the database refuses it and nothing is kept.
  try {
    rs->UpdateBatch();
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_NE(toUpper(error.description()).find(u"NULL"), String::npos) << error.what();
  }
  EXPECT_TRUE(imported().empty());
  rs->setFilter(Variant(int32_t{adFilterPendingRecords}));
  EXPECT_EQ(rs->RecordCount(), 4);
}

INSTANTIATE_TEST_SUITE_P(Databases, DbaseImportTest,
                         ::testing::Values(DatabaseKind::SQLite, DatabaseKind::PostgreSQL),
                         databaseName);

}  // namespace
}  // namespace ravelin
