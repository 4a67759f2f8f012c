// The databases the connection tests run against, through the real ODBC drivers: SQLite on a
// file in a temporary folder (driver "SQLite3", always), and PostgreSQL when the environment
// variable RAVELIN_TEST_POSTGRES holds an ODBC connection string (tools/dev test starts a server
// and sets it). A case is skipped, with a message, when its driver is not installed or
// PostgreSQL is not configured. Under Wine the drivers are the Linux ones, reached through Wine's
// odbc32, so the SQLite file is named to them by its Linux path.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/platform/odbc.hpp>
#include <ravelin/tests/support/wine.hpp>
#include <ravelin/text/text_helpers.hpp>
#include <string>
#include <vector>

namespace ravelin {

enum class DatabaseKind { SQLite, PostgreSQL };

inline std::string databaseName(const ::testing::TestParamInfo<DatabaseKind>& info) {
  return info.param == DatabaseKind::SQLite ? "SQLite" : "PostgreSQL";
}

// A fixture holding an open connection to the database of the parameter and a table name of
// the test's own (PostgreSQL's database is shared by every test of the run, run in parallel).
class DatabaseTest : public ::testing::TestWithParam<DatabaseKind> {
 public:
  void SetUp() override {
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    std::string name = std::string("t_") + info->test_suite_name() + "_" + info->name();
    table_.clear();
    for (char c : name)
      table_ += std::isalnum(static_cast<unsigned char>(c))
                    ? static_cast<char>(std::tolower(static_cast<unsigned char>(c)))
                    : '_';
    if (table_.size() > 60) table_ = table_.substr(table_.size() - 60);
    table_ = "t" + table_;

    if (GetParam() == DatabaseKind::SQLite) {
      if (!platform::odbc()->hasDriver(u"SQLite3"))
        GTEST_SKIP() << "the ODBC driver SQLite3 is not installed (libsqliteodbc)";
      static std::atomic<int> counter{0};
      folder_ = std::filesystem::temp_directory_path() /
                ("ravelin-odbc-" +
                 std::to_string(std::chrono::steady_clock::now().time_since_epoch().count()) + "-" +
                 std::to_string(counter++));
      std::filesystem::create_directories(folder_);
      connectionString_ = u"Data Source=" + fromUtf8(hostPathOf(folder_ / "test.db"));
    } else {
      const char* given = std::getenv("RAVELIN_TEST_POSTGRES");
      if (!given || !*given)
        GTEST_SKIP() << "RAVELIN_TEST_POSTGRES holds no connection string (tools/dev test sets it)";
      if (!platform::odbc()->hasDriver(u"PostgreSQL Unicode"))
        GTEST_SKIP() << "the ODBC driver \"PostgreSQL Unicode\" is not installed";
      connectionString_ = fromUtf8(given);
    }
    connection_ = makeObject<Connection>();
    connection_->Open(connectionString_);
    execute("DROP TABLE IF EXISTS " + table_);
    // The driver writes the database in the test's folder (removed afterwards), not elsewhere.
    if (!folder_.empty()) {
      ASSERT_TRUE(std::filesystem::exists(folder_ / "test.db")) << toUtf8(connectionString_);
    }
  }

  void TearDown() override {
    connection_.reset();
    if (!folder_.empty()) {
      std::error_code ignored;
      std::filesystem::remove_all(folder_, ignored);
    }
  }

  bool postgres() const { return GetParam() == DatabaseKind::PostgreSQL; }

  std::shared_ptr<Recordset> execute(const std::string& sql) {
    return connection_->Execute(fromUtf8(sql));
  }

  // The rows of a query, each as its values' texts joined by "|" (Null as "Null").
  std::vector<std::string> rows(const std::string& sql) {
    auto rs = execute(sql);
    std::vector<std::string> result;
    while (!rs->EndOfFile()) {
      std::string line;
      for (int32_t f = 0; f < rs->Fields()->Count(); ++f) {
        const Variant value = rs->Fields()->Item(Variant(f))->Value();
        if (f > 0) line += "|";
        line += value.isNull() ? "Null" : toUtf8(CStr(value));
      }
      result.push_back(line);
      rs->MoveNext();
    }
    return result;
  }

  std::string table_;
  std::filesystem::path folder_;
  String connectionString_;
  std::shared_ptr<Connection> connection_;
};

}  // namespace ravelin
