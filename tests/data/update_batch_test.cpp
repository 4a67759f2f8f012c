#include <gtest/gtest.h>

#include <functional>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <ravelin/tests/support/test_databases.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

class UpdateBatchTest : public DatabaseTest {
 public:
  // A table of id, name and qty holding (1,'a',10), (2,'b',NULL), (3,'c',30), with or without a
  // primary key, opened as a batch set.
  std::shared_ptr<Recordset> openSample(bool withKey) {
    execute("CREATE TABLE " + table_ + " (id INTEGER" + (withKey ? " PRIMARY KEY" : "") +
            ", name VARCHAR(20) UNIQUE, qty INTEGER)");
    execute("INSERT INTO " + table_ + " VALUES (1, 'a', 10)");
    execute("INSERT INTO " + table_ + " VALUES (2, 'b', NULL)");
    execute("INSERT INTO " + table_ + " VALUES (3, 'c', 30)");
    auto rs = makeObject<Recordset>();
    rs->Open(Variant(fromUtf8("SELECT * FROM " + table_ + " ORDER BY id")),
             Variant(ObjectRef(connection_)), adOpenStatic, adLockBatchOptimistic);
    return rs;
  }

  void moveTo(Recordset& rs, int32_t id) {
    for (rs.MoveFirst(); !rs.EndOfFile(); rs.MoveNext()) {
      if (CLng(field(rs, "id")) == id) return;
    }
    FAIL() << "no row " << id;
  }

  static Variant field(Recordset& rs, const char* name) {
    return rs.Fields()->Item(Variant(fromUtf8(name)))->Value();
  }
  static void set(Recordset& rs, const char* name, Variant value) {
    rs.Fields()->Item(Variant(fromUtf8(name)))->setValue(value);
  }

  std::vector<std::string> table() { return rows("SELECT * FROM " + table_ + " ORDER BY id"); }
};

// Updates and deletions, located by the key or (without one) by every original value, Null
// originals included.
TEST_P(UpdateBatchTest, ChangesAreLocatedByKeyOrByEveryValue) {
  struct Row {
    const char* what;
    std::function<void(UpdateBatchTest&, Recordset&)> change;
    std::vector<std::string> expected;
  };
  const Row rows_[] = {
      {"update a value",
       [](UpdateBatchTest& t, Recordset& rs) {
         t.moveTo(rs, 3);
         set(rs, "qty", Variant(int32_t{33}));
         rs.Update();
       },
       {"1|a|10", "2|b|Null", "3|c|33"}},
      {"update the row holding Null",
       [](UpdateBatchTest& t, Recordset& rs) {
         t.moveTo(rs, 2);
         set(rs, "name", Variant(u"b'2"));
         rs.Update();
       },
       {"1|a|10", "2|b'2|Null", "3|c|30"}},
      {"set a value to Null",
       [](UpdateBatchTest& t, Recordset& rs) {
         t.moveTo(rs, 1);
         set(rs, "qty", Variant::null());
         rs.Update();
       },
       {"1|a|Null", "2|b|Null", "3|c|30"}},
      {"delete, insert and update at once",
       [](UpdateBatchTest& t, Recordset& rs) {
         t.moveTo(rs, 2);
         rs.Delete();
         rs.AddNew();
         set(rs, "id", Variant(int32_t{4}));
         set(rs, "name", Variant(u"d"));
         rs.Update();
         t.moveTo(rs, 1);
         set(rs, "name", Variant(u"a1"));
       },
       {"1|a1|10", "3|c|30", "4|d|Null"}},
      {"a change back to the original sends nothing",
       [](UpdateBatchTest& t, Recordset& rs) {
         t.moveTo(rs, 1);
         set(rs, "qty", Variant(int32_t{11}));
         rs.Update();
         set(rs, "qty", Variant(int32_t{10}));
         rs.Update();
       },
       {"1|a|10", "2|b|Null", "3|c|30"}},
  };
  for (bool withKey : {true, false}) {
    for (const Row& row : rows_) {
      execute("DROP TABLE IF EXISTS " + table_);
      auto rs = openSample(withKey);
      row.change(*this, *rs);
      rs->UpdateBatch();
      EXPECT_EQ(table(), row.expected) << row.what << (withKey ? " (key)" : " (no key)");
      rs->setFilter(Variant(int32_t{adFilterPendingRecords}));
      EXPECT_EQ(rs->RecordCount(), 0) << row.what;
    }
  }
}

// A failure in the middle of a batch rolls everything back and leaves the set's pending rows
// exactly as they were, and the error carries the driver's message.
TEST_P(UpdateBatchTest, AFailureRollsBackAndKeepsThePendingRows) {
  struct Row {
    const char* what;
    std::function<void(UpdateBatchTest&)> underneath;  // done to the table behind the set's back
    int32_t number;
    std::vector<std::string> inMessage;  // any of these
  };
  const Row rows_[] = {
      {"a duplicate name",
       [](UpdateBatchTest&) {},
       ado_error::kErrorsInCommand,
       {"UNIQUE", "unique", "duplicate"}},
      {"row 3 changed underneath",
       [](UpdateBatchTest& t) { t.execute("UPDATE " + t.table_ + " SET qty = 31 WHERE id = 3"); },
       ado_error::kRowNotLocated,
       {"Row cannot be located for updating"}},
      {"row 3 deleted underneath",
       [](UpdateBatchTest& t) { t.execute("DELETE FROM " + t.table_ + " WHERE id = 3"); },
       ado_error::kRowNotLocated,
       {"Row cannot be located for updating"}},
  };
  for (const Row& row : rows_) {
    execute("DROP TABLE IF EXISTS " + table_);
    auto rs = openSample(true);
    // Pending: a good new row, an update of row 1, then (in storage order) the failing change.
    moveTo(*rs, 1);
    set(*rs, "qty", Variant(int32_t{11}));
    rs->Update();
    moveTo(*rs, 3);
    set(*rs, "qty", Variant(int32_t{32}));
    rs->Update();
    rs->AddNew();
    set(*rs, "id", Variant(int32_t{5}));
    set(*rs, "name", Variant(u"e"));
    rs->Update();
    if (std::string(row.what) == "a duplicate name") {
      rs->AddNew();
      set(*rs, "id", Variant(int32_t{6}));
      set(*rs, "name", Variant(u"a"));  // already there
      rs->Update();
    }
    row.underneath(*this);
    const std::vector<std::string> before = table();

    try {
      rs->UpdateBatch();
      ADD_FAILURE() << row.what << ": no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number) << row.what;
      const std::string message = toUtf8(error.description());
      bool found = false;
      for (const std::string& part : row.inMessage)
        found = found || message.find(part) != std::string::npos;
      EXPECT_TRUE(found) << row.what << ": " << message;
    }
    EXPECT_EQ(table(), before) << row.what;
    // The pending rows, their states, values and original values, are as they were.
    moveTo(*rs, 1);
    EXPECT_EQ(rs->Status(), adRecModified) << row.what;
    EXPECT_EQ(CLng(field(*rs, "qty")), 11) << row.what;
    EXPECT_EQ(CLng(rs->Fields()->Item(Variant(u"qty"))->OriginalValue()), 10) << row.what;
    moveTo(*rs, 3);
    EXPECT_EQ(rs->Status(), adRecModified) << row.what;
    EXPECT_EQ(CLng(field(*rs, "qty")), 32) << row.what;
    moveTo(*rs, 5);
    EXPECT_EQ(rs->Status(), adRecNew) << row.what;
    EXPECT_EQ(toUtf8(CStr(field(*rs, "name"))), "e") << row.what;
    rs->setFilter(Variant(int32_t{adFilterPendingRecords}));
    EXPECT_EQ(rs->RecordCount(), std::string(row.what) == "a duplicate name" ? 4 : 3) << row.what;
    // The connection is usable and back in autocommit.
    execute("INSERT INTO " + table_ + " VALUES (9, 'z', 9)");
    auto other = makeObject<Connection>();
    other->Open(connectionString_);
    EXPECT_EQ(CLng(other->Execute(fromUtf8("SELECT COUNT(*) FROM " + table_ + " WHERE id = 9"))
                       ->Fields()
                       ->Item(Variant(0))
                       ->Value()),
              1)
        << row.what;
  }
}

TEST_P(UpdateBatchTest, ASetWithoutBaseTableCannotBeSent) {
  auto rs = makeObject<Recordset>();
  rs->Fields()->Append(u"id", adInteger);
  rs->Open(Variant::missing(), Variant::missing(), adOpenStatic, adLockBatchOptimistic);
  rs->setActiveConnection(Variant(ObjectRef(connection_)));
  rs->AddNew();
  rs->Fields()->Item(Variant(u"id"))->setValue(Variant(int32_t{1}));
  rs->Update();
  try {
    rs->UpdateBatch();
    ADD_FAILURE() << "no error";
  } catch (const AutomationError& error) {
    EXPECT_EQ(error.number(), ado_error::kUnspecifiedError);
    EXPECT_EQ(error.description(), kInsufficientBaseTableText);
  }
  EXPECT_EQ(rs->Status(), adRecNew);
  // Without a connection the same batch commits locally.
  rs->setActiveConnection(Variant::nothing());
  rs->UpdateBatch();
  EXPECT_EQ(rs->Status(), adRecUnmodified);
}

// A set read, disconnected, changed and reconnected sends its batch.
TEST_P(UpdateBatchTest, ADisconnectedSetIsSentAfterReconnecting) {
  auto rs = openSample(true);
  rs->setActiveConnection(Variant::nothing());
  EXPECT_EQ(rs->ActiveConnection(), nullptr);
  moveTo(*rs, 2);
  set(*rs, "qty", Variant(int32_t{20}));
  rs->Update();
  rs->UpdateBatch();  // local only
  EXPECT_EQ(table(), (std::vector<std::string>{"1|a|10", "2|b|Null", "3|c|30"}));
  moveTo(*rs, 1);
  rs->Delete();
  rs->setActiveConnection(Variant(connectionString_));
  rs->UpdateBatch();
  EXPECT_EQ(table(), (std::vector<std::string>{"2|b|Null", "3|c|30"}));
  // A read-only set refuses a new connection while open.
  auto readOnly = execute("SELECT * FROM " + table_);
  EXPECT_EQ(errorNumberOf([&] { readOnly->setActiveConnection(Variant::nothing()); }),
            ado_error::kObjectOpen);
}

// Many rows in one batch: every row arrives, and the set's rows are committed.
TEST_P(UpdateBatchTest, ALargeInsertBatchArrivesWhole) {
  execute("CREATE TABLE " + table_ + " (id INTEGER, name VARCHAR(40), amount DOUBLE PRECISION)");
  auto rs = makeObject<Recordset>();
  rs->Open(Variant(fromUtf8("SELECT * FROM " + table_ + " WHERE 1=0")),
           Variant(ObjectRef(connection_)), adOpenStatic, adLockBatchOptimistic);
  const int32_t count = 5000;
  for (int32_t i = 0; i < count; ++i) {
    rs->AddNew();
    set(*rs, "id", Variant(i));
    // Texts of growing length make the parameter buffer grow during the batch.
    set(*rs, "name", Variant(String(static_cast<std::size_t>(i % 40), u'x')));
    if (i % 7 != 0) set(*rs, "amount", Variant(i * 0.5));
    rs->Update();
  }
  rs->UpdateBatch();
  EXPECT_EQ(rows("SELECT COUNT(*), SUM(id), SUM(LENGTH(name)), COUNT(amount), SUM(amount) FROM " +
                 table_),
            std::vector<std::string>{"5000|12497500|97500|4285|5355357.5"});
  rs->setFilter(Variant(int32_t{adFilterPendingRecords}));
  EXPECT_EQ(rs->RecordCount(), 0);
}

INSTANTIATE_TEST_SUITE_P(Databases, UpdateBatchTest,
                         ::testing::Values(DatabaseKind::SQLite, DatabaseKind::PostgreSQL),
                         databaseName);

}  // namespace
}  // namespace ravelin
