#include <gtest/gtest.h>

#include <functional>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/internal/odbc_types.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/date_time.hpp>
#include <ravelin/tests/support/error_number.hpp>
#include <ravelin/tests/support/test_databases.hpp>
#include <string>
#include <vector>

namespace ravelin {
namespace {

TEST(ConnectionString, AdoAndOdbcFormsBecomeOdbcStrings) {
  struct Row {
    const char16_t* given;
    const char16_t* user;
    const char16_t* password;
    const char16_t* expected;
  };
  const Row rows[] = {
      {u"Driver={SQLite3};Database=/tmp/a.db", u"", u"", u"Driver={SQLite3};Database=/tmp/a.db;"},
      {u"DSN=till", u"", u"", u"DSN=till;"},
      {u"Provider=MSDASQL;DSN=till;User ID=pos;Password=x", u"", u"", u"DSN=till;UID=pos;PWD=x;"},
      {u"provider=msdasql.1; Driver={PostgreSQL Unicode}; Server=h", u"", u"",
       u"Driver={PostgreSQL Unicode};Server=h;"},
      // The embedded default: a path alone is a SQLite file.
      {u"Data Source=C:\\data\\till.db", u"", u"", u"Driver={SQLite3};Database=C:\\data\\till.db;"},
      {u"Provider=MSDASQL;Data Source=/srv/a b.db;", u"", u"",
       u"Driver={SQLite3};Database=/srv/a b.db;"},
      // With a driver named, Data Source is the driver's business.
      {u"Driver={X};Data Source=y", u"", u"", u"Driver={X};Data Source=y;"},
      // Arguments replace the string's user and password.
      {u"DSN=a;UID=old;PWD=old", u"new", u"p;w", u"DSN=a;UID=new;PWD={p;w};"},
      {u"DSN=a", u"u", u"", u"DSN=a;UID=u;"},
      // Values in braces or quotes keep their semicolons and braces.
      {u"DSN=a;PWD={x;}}y}", u"", u"", u"DSN=a;PWD={x;}}y};"},
      {u"DSN=a;PWD=\"q;\"\"r\"", u"", u"", u"DSN=a;PWD={q;\"r};"},
      {u"", u"", u"", u""},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(toUtf8(odbcConnectionString(row.given, row.user, row.password)), toUtf8(row.expected))
        << toUtf8(row.given);
  }
  EXPECT_EQ(errorNumberOf([] { odbcConnectionString(u"Provider=SQLOLEDB;Data Source=x"); }),
            ado_error::kProviderNotFound);
}

TEST(ConnectionString, SingleTableOfASimpleQuery) {
  const std::pair<const char16_t*, const char16_t*> rows[] = {
      {u"SELECT * FROM items WHERE 1=0", u"items"},
      {u"select a, b from \"Price List\" order by a", u"Price List"},
      {u"SELECT * FROM public.items i", u"public.items"},
      {u"SELECT * FROM [dbo].[items]", u"dbo.items"},
      {u"SELECT * FROM a, b", u""},
      {u"SELECT * FROM a JOIN b ON a.x = b.x", u""},
      {u"SELECT * FROM a WHERE x IN (SELECT x FROM b)", u""},
      {u"SELECT 1", u""},
      {u"SELECT fromage FROM t", u"t"},
  };
  for (const auto& [query, table] : rows)
    EXPECT_EQ(toUtf8(odbc_types::singleTableOf(query)), toUtf8(table)) << toUtf8(query);
}

class ConnectionTest : public DatabaseTest {};

TEST_P(ConnectionTest, WrongCallsRaiseTheDataAccessErrors) {
  struct Row {
    const char* what;
    std::function<void(Connection&)> action;
    int32_t number;
  };
  const Row rows[] = {
      {"Open twice", [&](Connection& cn) { cn.Open(connectionString_); }, ado_error::kObjectOpen},
      {"ConnectionString when open", [](Connection& cn) { cn.setConnectionString(u"DSN=x"); },
       ado_error::kObjectOpen},
      {"CommitTrans without BeginTrans", [](Connection& cn) { cn.CommitTrans(); },
       ado_error::kNoTransaction},
      {"RollbackTrans without BeginTrans", [](Connection& cn) { cn.RollbackTrans(); },
       ado_error::kNoTransaction},
      {"BeginTrans twice",
       [](Connection& cn) {
         cn.BeginTrans();
         cn.BeginTrans();
       },
       ado_error::kTransactionExists},
      {"Close in a transaction",
       [](Connection& cn) {
         cn.BeginTrans();
         cn.Close();
       },
       ado_error::kInTransaction},
      {"Execute when closed",
       [](Connection& cn) {
         cn.Close();
         cn.Execute(u"SELECT 1");
       },
       ado_error::kObjectClosed},
      {"BeginTrans when closed",
       [](Connection& cn) {
         cn.Close();
         cn.BeginTrans();
       },
       ado_error::kObjectClosed},
      {"Close twice",
       [](Connection& cn) {
         cn.Close();
         cn.Close();
       },
       ado_error::kObjectClosed},
      {"a recordset on a closed connection",
       [](Connection& cn) {
         auto shared = std::static_pointer_cast<Connection>(cn.shared_from_this());
         cn.Close();
         makeObject<Recordset>()->setActiveConnection(Variant(ObjectRef(shared)));
       },
       ado_error::kInvalidConnection},
  };
  for (const Row& row : rows) {
    auto cn = makeObject<Connection>();
    cn->Open(connectionString_);
    try {
      row.action(*cn);
      ADD_FAILURE() << row.what << ": no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number) << row.what;
      EXPECT_EQ(error.description(), adoErrorDescription(row.number)) << row.what;
    }
    if (cn->State() == adStateOpen && cn->inTransaction()) cn->RollbackTrans();
  }
}

TEST_P(ConnectionTest, DriverFailuresCarryTheDriversMessage) {
  struct Row {
    const char* what;
    std::function<void()> action;
    int32_t number;
    std::vector<std::string> anyOf;  // the message holds one of these
  };
  const Row rows[] = {
      {"a statement the database refuses",
       [&] { execute("SELEKT 1"); },
       ado_error::kErrorsInCommand,
       {"syntax error"}},
      {"a missing table",
       [&] { execute("SELECT * FROM no_such_table_here"); },
       ado_error::kErrorsInCommand,
       {"no_such_table_here"}},
      {"a driver that is not there",
       [] { makeObject<Connection>()->Open(u"Driver={No Such Driver};Database=x"); },
       ado_error::kUnspecifiedError,
       {"No Such Driver", "not found", "Data source name"}},
      {"Open of a query that fails",
       [&] {
         auto rs = makeObject<Recordset>();
         rs->Open(Variant(u"SELECT nope FROM nowhere_at_all"), Variant(ObjectRef(connection_)));
       },
       ado_error::kErrorsInCommand,
       {"nowhere_at_all"}},
  };
  for (const Row& row : rows) {
    try {
      row.action();
      ADD_FAILURE() << row.what << ": no error";
    } catch (const AutomationError& error) {
      EXPECT_EQ(error.number(), row.number) << row.what;
      EXPECT_EQ(toUtf8(error.source()), toUtf8(kOdbcProviderSource)) << row.what;
      const std::string message = toUtf8(error.description());
      bool found = false;
      for (const std::string& part : row.anyOf)
        found = found || message.find(part) != std::string::npos;
      EXPECT_TRUE(found) << row.what << ": " << message;
    }
  }
}

TEST_P(ConnectionTest, ExecuteRunsStatementsAndQueries) {
  Variant affected;
  auto rs = connection_->Execute(
      fromUtf8("CREATE TABLE " + table_ + " (id INTEGER PRIMARY KEY, name VARCHAR(20))"), affected);
  EXPECT_EQ(rs->State(), adStateClosed);  // a statement without rows
  struct Row {
    std::string sql;
    int32_t affected;
  };
  const Row statements[] = {
      {"INSERT INTO " + table_ + " VALUES (1, 'one')", 1},
      {"INSERT INTO " + table_ + " VALUES (2, 'two')", 1},
      {"INSERT INTO " + table_ + " VALUES (3, NULL)", 1},
      {"UPDATE " + table_ + " SET name = 'many' WHERE id >= 2", 2},
      {"INSERT INTO " + table_ + " VALUES (4, NULL)", 1},
      {"DELETE FROM " + table_ + " WHERE id = 99", 0},
  };
  for (const Row& row : statements) {
    connection_->Execute(fromUtf8(row.sql), affected);
    EXPECT_EQ(CLng(affected), row.affected) << row.sql;
  }
  rs = connection_->Execute(fromUtf8("SELECT id, name FROM " + table_ + " ORDER BY id"), affected);
  EXPECT_EQ(CLng(affected), -1);
  ASSERT_EQ(rs->State(), adStateOpen);
  EXPECT_EQ(rs->RecordCount(), 4);
  EXPECT_EQ(rs->LockType(), adLockReadOnly);
  EXPECT_EQ(rs->CursorLocation(), adUseClient);
  EXPECT_EQ(rs->ActiveConnection(), connection_);
  EXPECT_EQ(errorNumberOf([&] { rs->AddNew(); }), ado_error::kUpdateNotSupported);
  EXPECT_EQ(rows("SELECT id, name FROM " + table_ + " ORDER BY id"),
            (std::vector<std::string>{"1|one", "2|many", "3|many", "4|Null"}));
}

TEST_P(ConnectionTest, TransactionsCommitAndRollBack) {
  execute("CREATE TABLE " + table_ + " (id INTEGER)");
  struct Row {
    bool commit;
    std::vector<std::string> expected;
  };
  const Row rows_[] = {{true, {"1"}}, {false, {"1"}}};
  int id = 1;
  for (const Row& row : rows_) {
    EXPECT_EQ(connection_->BeginTrans(), 1);
    execute("INSERT INTO " + table_ + " VALUES (" + std::to_string(id++) + ")");
    if (row.commit)
      connection_->CommitTrans();
    else
      connection_->RollbackTrans();
    // Seen from a second connection, so that only what was committed shows.
    auto other = makeObject<Connection>();
    other->Open(connectionString_);
    auto rs = other->Execute(fromUtf8("SELECT id FROM " + table_ + " ORDER BY id"));
    std::vector<std::string> seen;
    for (; !rs->EndOfFile(); rs->MoveNext())
      seen.push_back(toUtf8(CStr(rs->Fields()->Item(Variant(0))->Value())));
    EXPECT_EQ(seen, row.expected) << (row.commit ? "commit" : "rollback");
  }
  // Autocommit is back after each transaction.
  execute("INSERT INTO " + table_ + " VALUES (7)");
  auto other = makeObject<Connection>();
  other->Open(connectionString_);
  EXPECT_EQ(CLng(other->Execute(fromUtf8("SELECT COUNT(*) FROM " + table_))
                     ->Fields()
                     ->Item(Variant(0))
                     ->Value()),
            2);
}

// Every mapped type: the DDL of each database, the field type and size a query gives, the values
// written through a batch and read back as the same values (Null, empty text, apostrophes and
// text holding SQL among them).
TEST_P(ConnectionTest, TypesRoundTripThroughABatch) {
  struct Column {
    const char* name;
    const char* sqlite;
    const char* postgres;
    int32_t sqliteType;
    int32_t postgresType;
    std::vector<Variant> values;  // one per row
  };
  const Variant null = Variant::null();
  const std::vector<Column> columns = {
      {"c_int",
       "INTEGER",
       "INTEGER",
       adInteger,
       adInteger,
       {Variant(int32_t{1}), Variant(int32_t{-2147483647}), null, Variant(int32_t{0})}},
      {"c_small",
       "SMALLINT",
       "SMALLINT",
       adSmallInt,
       adSmallInt,
       {Variant(int16_t{-32768}), Variant(int16_t{7}), null, Variant(int16_t{32767})}},
      {"c_big",
       "BIGINT",
       "BIGINT",
       adBigInt,
       adBigInt,
       {Variant(9007199254740992.0), Variant(-5.0), null, Variant(0.0)}},
      {"c_double",
       "DOUBLE",
       "DOUBLE PRECISION",
       adDouble,
       adDouble,
       {Variant(1.5), Variant(-0.1), null, Variant(1e300)}},
      // The SQLite driver reports REAL as a double.
      {"c_real",
       "REAL",
       "REAL",
       adDouble,
       adSingle,
       {Variant(2.5f), Variant(-0.25f), null, Variant(0.0f)}},
      {"c_num",
       "NUMERIC(10,2)",
       "NUMERIC(10,2)",
       adDouble,
       adNumeric,
       {Variant(12.34), Variant(-0.5), null, Variant(99999999.99)}},
      {"c_bit",
       "BIT",
       "BOOLEAN",
       adBoolean,
       adBoolean,
       {Variant(true), Variant(false), null, Variant(true)}},
      {"c_date",
       "DATE",
       "DATE",
       adDBDate,
       adDBDate,
       {Variant(makeDate(2024, 2, 29)), Variant(makeDate(1899, 12, 30)), null,
        Variant(makeDate(9999, 12, 31))}},
      {"c_stamp",
       "TIMESTAMP",
       "TIMESTAMP",
       adDBTimeStamp,
       adDBTimeStamp,
       {Variant(makeDate(2024, 2, 29, 13, 45, 10)), Variant(makeDate(2000, 1, 1)), null,
        Variant(makeDate(1970, 6, 30, 23, 59, 59))}},
      {"c_text",
       "VARCHAR(60)",
       "VARCHAR(60)",
       adVarChar,
       adVarWChar,
       {Variant(u"O'Brien"), Variant(u""), null, Variant(u"x'); DROP TABLE t; --")}},
      {"c_long",
       "TEXT",
       "TEXT",
       adLongVarChar,
       adLongVarWChar,
       {Variant(String(5000, u'z')), Variant(u"caf\u00e9 \u20ac \u4e2d"), null, Variant(u"'")}},
  };
  std::string ddl = "CREATE TABLE " + table_ + " (id INTEGER PRIMARY KEY";
  for (const Column& column : columns)
    ddl += std::string(", ") + column.name + " " + (postgres() ? column.postgres : column.sqlite);
  execute(ddl + ")");

  auto target = makeObject<Recordset>();
  target->Open(Variant(fromUtf8("SELECT * FROM " + table_ + " WHERE 1=0")),
               Variant(ObjectRef(connection_)), adOpenStatic, adLockBatchOptimistic);
  ASSERT_EQ(target->Fields()->Count(), static_cast<int32_t>(columns.size() + 1));
  const std::size_t rowCount = columns.front().values.size();
  for (std::size_t row = 0; row < rowCount; ++row) {
    target->AddNew();
    target->Fields()->Item(Variant(u"id"))->setValue(Variant(static_cast<int32_t>(row + 1)));
    for (const Column& column : columns)
      target->Fields()->Item(Variant(fromUtf8(column.name)))->setValue(column.values[row]);
    target->Update();
  }
  target->UpdateBatch();
  EXPECT_EQ(target->RecordCount(), static_cast<int32_t>(rowCount));

  auto back = execute("SELECT * FROM " + table_ + " ORDER BY id");
  ASSERT_EQ(back->RecordCount(), static_cast<int32_t>(rowCount));
  for (const Column& column : columns) {
    auto field = back->Fields()->Item(Variant(fromUtf8(column.name)));
    EXPECT_EQ(field->Type(), postgres() ? column.postgresType : column.sqliteType) << column.name;
  }
  for (std::size_t row = 0; row < rowCount; ++row, back->MoveNext()) {
    for (const Column& column : columns) {
      const Variant value = back->Fields()->Item(Variant(fromUtf8(column.name)))->Value();
      const Variant& expected = column.values[row];
      if (expected.isNull()) {
        EXPECT_TRUE(value.isNull()) << column.name << " row " << row;
      } else if (expected.isString()) {
        EXPECT_EQ(toUtf8(CStr(value)), toUtf8(expected.asString())) << column.name;
      } else {
        EXPECT_FALSE(value.isNull()) << column.name << " row " << row;
        if (!value.isNull()) {
          EXPECT_EQ(CDbl(value), CDbl(expected)) << column.name << " row " << row;
        }
      }
    }
  }
  // The table survived the text that looks like SQL.
  EXPECT_EQ(rows("SELECT COUNT(*) FROM " + table_), std::vector<std::string>{"4"});
}

TEST_P(ConnectionTest, OpenWithAQueryDescribesTheColumns) {
  execute("CREATE TABLE " + table_ +
          " (code INTEGER NOT NULL PRIMARY KEY, label VARCHAR(25) NOT NULL, note VARCHAR(5))");
  execute("INSERT INTO " + table_ + " VALUES (10, 'ten', NULL)");
  execute("INSERT INTO " + table_ + " VALUES (20, 'twenty', 'x')");
  struct Row {
    const char* field;
    int32_t definedSize;
    bool key;
    bool nullable;
  };
  const Row expected[] = {
      {"code", 4, true, false}, {"label", 25, false, false}, {"note", 5, false, true}};
  // Through a Connection object and through a connection string.
  for (bool byString : {false, true}) {
    auto rs = makeObject<Recordset>();
    const Variant connection =
        byString ? Variant(connectionString_) : Variant(ObjectRef(connection_));
    rs->Open(Variant(fromUtf8("SELECT * FROM " + table_ + " ORDER BY code")), connection,
             adOpenStatic, adLockBatchOptimistic);
    EXPECT_EQ(rs->RecordCount(), 2);
    EXPECT_EQ(rs->LockType(), adLockBatchOptimistic);
    EXPECT_EQ(rs->CursorType(), adOpenStatic);
    EXPECT_EQ(rs->AbsolutePosition(), 1);
    for (const Row& row : expected) {
      auto field = rs->Fields()->Item(Variant(fromUtf8(row.field)));
      EXPECT_EQ(field->DefinedSize(), row.definedSize) << row.field;
      EXPECT_EQ((field->Attributes() & adFldKeyColumn) != 0, row.key) << row.field;
      // SQLite reports every column as nullable; PostgreSQL knows NOT NULL.
      if (postgres() || row.nullable) {
        EXPECT_EQ((field->Attributes() & adFldIsNullable) != 0, row.nullable) << row.field;
      }
      const FieldDefinition& definition = rs->store().field(field->index());
      EXPECT_EQ(toUtf8(definition.baseColumn), row.field);
      EXPECT_EQ(toUtf8(definition.baseTable), table_);
    }
    EXPECT_EQ(toUtf8(CStr(rs->Fields()->Item(Variant(u"label"))->Value())), "ten");
    EXPECT_EQ(byString, rs->ActiveConnection() != connection_);
  }
  // Open with a connection and no query: 3001. A text without a connection names a saved file.
  auto rs = makeObject<Recordset>();
  EXPECT_EQ(errorNumberOf([&] { rs->Open(Variant::missing(), Variant(ObjectRef(connection_))); }),
            ado_error::kArgumentsWrongType);
  rs = makeObject<Recordset>();
  EXPECT_EQ(errorNumberOf([&] { rs->Open(Variant(u"SELECT 1")); }), ado_error::kOpeningFile);
}

INSTANTIATE_TEST_SUITE_P(Databases, ConnectionTest,
                         ::testing::Values(DatabaseKind::SQLite, DatabaseKind::PostgreSQL),
                         databaseName);

}  // namespace
}  // namespace ravelin
