// A real SQLite database in memory that reads SQL text literals back, for the tests and the fuzz
// target of the SQL literal texts. SQLite's string literals follow the same rules as those of the
// suite's two database kinds: enclosed in apostrophes, an apostrophe inside written twice.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <ravelin/base/text.hpp>
#include <string>

namespace ravelin {

// What SQLite made of "SELECT " + literal: the text value when the statement is exactly one
// statement giving one text column in one row, else why it is not.
struct LiteralReading {
  std::optional<String> value;
  std::string fault;
};

class SqliteMemory {
 public:
  SqliteMemory() {
    if (sqlite3_open(":memory:", &db_) != SQLITE_OK) db_ = nullptr;
  }
  ~SqliteMemory() { sqlite3_close(db_); }
  SqliteMemory(const SqliteMemory&) = delete;
  SqliteMemory& operator=(const SqliteMemory&) = delete;

  bool isOpen() const { return db_ != nullptr; }

  // The statement goes in as the library's UTF-8: SQLite's own UTF-16 interface turns the
  // noncharacters U+FFFE and U+FFFF into U+FFFD, which would hide what the literal did.
  LiteralReading selectLiteral(StringView literal) const {
    const std::string sql = "SELECT " + toUtf8(literal);
    sqlite3_stmt* statement = nullptr;
    const char* tail = nullptr;
    if (sqlite3_prepare_v2(db_, sql.data(), static_cast<int>(sql.size()), &statement, &tail) !=
        SQLITE_OK) {
      return fail(nullptr, std::string("prepare: ") + sqlite3_errmsg(db_));
    }
    if (statement == nullptr) return fail(nullptr, "no statement");
    if (tail != sql.data() + sql.size()) {
      return fail(statement,
                  "text after the first statement at byte " + std::to_string(tail - sql.data()));
    }
    if (sqlite3_column_count(statement) != 1) {
      return fail(statement,
                  std::to_string(sqlite3_column_count(statement)) + " columns instead of one");
    }
    if (sqlite3_step(statement) != SQLITE_ROW) return fail(statement, "no row");
    if (sqlite3_column_type(statement, 0) != SQLITE_TEXT) return fail(statement, "not a text");
    const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(statement, 0));
    const std::string bytes(text, static_cast<size_t>(sqlite3_column_bytes(statement, 0)));
    if (sqlite3_step(statement) != SQLITE_DONE) return fail(statement, "more than one row");
    sqlite3_finalize(statement);
    return {fromUtf8(bytes), {}};
  }

 private:
  static LiteralReading fail(sqlite3_stmt* statement, std::string why) {
    sqlite3_finalize(statement);
    return {std::nullopt, std::move(why)};
  }

  sqlite3* db_ = nullptr;
};

}  // namespace ravelin
