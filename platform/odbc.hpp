// Platform area "odbc": connections to databases through the system's ODBC driver manager
// (unixODBC on Linux, odbc32 on Windows), always through the wide functions, whose 16-bit text
// is the library's UTF-16.
//
// The data layer's Connection and Recordset speak to a database only through these classes;
// values cross in a few plain forms (64-bit integers, doubles, UTF-16 text, timestamps, bytes)
// and the SQL type codes are ODBC's own numbers (odbc_sql_type below).
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ravelin/platform/slot.hpp>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ravelin::platform {

// ODBC's SQL data type codes, as SQLColAttribute and SQLBindParameter use them.
namespace odbc_sql_type {
inline constexpr int16_t kChar = 1;
inline constexpr int16_t kNumeric = 2;
inline constexpr int16_t kDecimal = 3;
inline constexpr int16_t kInteger = 4;
inline constexpr int16_t kSmallInt = 5;
inline constexpr int16_t kFloat = 6;
inline constexpr int16_t kReal = 7;
inline constexpr int16_t kDouble = 8;
inline constexpr int16_t kDateTime = 9;  // ODBC 2 date (and the verbose type of all dates)
inline constexpr int16_t kTime2 = 10;
inline constexpr int16_t kTimestamp2 = 11;
inline constexpr int16_t kVarChar = 12;
inline constexpr int16_t kTypeDate = 91;
inline constexpr int16_t kTypeTime = 92;
inline constexpr int16_t kTypeTimestamp = 93;
inline constexpr int16_t kLongVarChar = -1;
inline constexpr int16_t kBinary = -2;
inline constexpr int16_t kVarBinary = -3;
inline constexpr int16_t kLongVarBinary = -4;
inline constexpr int16_t kBigInt = -5;
inline constexpr int16_t kTinyInt = -6;
inline constexpr int16_t kBit = -7;
inline constexpr int16_t kWChar = -8;
inline constexpr int16_t kWVarChar = -9;
inline constexpr int16_t kWLongVarChar = -10;
inline constexpr int16_t kGuid = -11;
}  // namespace odbc_sql_type

// One diagnostic record of a failed call (SQLGetDiagRec).
struct OdbcDiagnostic {
  std::u16string state;  // the five-character SQLSTATE
  int32_t nativeError = 0;
  std::u16string message;
};

// A call that failed, with every diagnostic record the driver manager and the driver left.
// `connecting` tells a failure to connect from one of a statement or transaction.
class OdbcError : public std::runtime_error {
 public:
  OdbcError(std::vector<OdbcDiagnostic> diagnostics, bool connecting);
  const std::vector<OdbcDiagnostic>& diagnostics() const { return diagnostics_; }
  bool connecting() const { return connecting_; }
  // The messages joined by "; " (a failure without records says which call failed).
  std::u16string message() const;

 private:
  std::vector<OdbcDiagnostic> diagnostics_;
  bool connecting_;
};

// A column of a result set as the driver describes it.
struct OdbcColumn {
  std::u16string name;
  int16_t sqlType = 0;
  uint64_t size = 0;  // characters of a text, bytes of a binary, digits of a number
  int16_t decimalDigits = 0;
  bool nullable = true;  // nullable or unknown
  bool isUnsigned = false;
  bool autoIncrement = false;
  std::u16string baseTable;   // empty when the driver gives none
  std::u16string baseColumn;  // empty when the driver gives none
};

// A date and time as ODBC's timestamp structure holds it (fraction in nanoseconds).
struct OdbcTimestamp {
  int16_t year = 0;
  uint16_t month = 0;
  uint16_t day = 0;
  uint16_t hour = 0;
  uint16_t minute = 0;
  uint16_t second = 0;
  uint32_t fraction = 0;
};

// The form a parameter's value takes in its buffer.
enum class OdbcValueKind : uint8_t { Integer, Double, Bit, Text, Date, Timestamp, Binary };

// A parameter of a prepared statement: the form of its values and the SQL type they are sent as
// (size and decimal digits as SQLBindParameter takes them; a text's size grows as needed).
struct OdbcParameter {
  OdbcValueKind kind = OdbcValueKind::Text;
  int16_t sqlType = odbc_sql_type::kWVarChar;
  uint64_t size = 0;
  int16_t decimalDigits = 0;
};

// One statement handle. Every failing call throws OdbcError.
class OdbcStatement {
 public:
  virtual ~OdbcStatement() = default;

  // Runs a text at once; true when it produced a result set to fetch.
  virtual bool executeDirect(std::u16string_view sql) = 0;
  // Rows changed by the last INSERT, UPDATE or DELETE (-1 when the driver cannot tell).
  virtual int64_t rowCount() = 0;
  // The columns of the result set.
  virtual std::vector<OdbcColumn> columns() = 0;
  // Moves to the next row of the result set; false after the last.
  virtual bool fetch() = 0;
  // Readers of a column (from 0) of the current row, each column read once; false for Null.
  virtual bool readInteger(std::size_t column, int64_t& value) = 0;
  virtual bool readDouble(std::size_t column, double& value) = 0;
  virtual bool readText(std::size_t column, std::u16string& value) = 0;
  virtual bool readTimestamp(std::size_t column, OdbcTimestamp& value) = 0;
  virtual bool readBinary(std::size_t column, std::vector<uint8_t>& value) = 0;
  // Ends the result set, so that the statement can run again.
  virtual void closeCursor() = 0;

  // Prepares a text with `?` markers and binds a buffer per parameter, held by the statement
  // for every run: a run sets each parameter, then executes. Text and binary buffers grow (and
  // are bound again) when a longer value arrives.
  virtual void prepare(std::u16string_view sql, std::span<const OdbcParameter> parameters) = 0;
  virtual void setNull(std::size_t parameter) = 0;
  virtual void setInteger(std::size_t parameter, int64_t value) = 0;
  virtual void setDouble(std::size_t parameter, double value) = 0;
  virtual void setBit(std::size_t parameter, bool value) = 0;
  // Room for a text of `units` UTF-16 units, which the caller fills; the parameter then holds
  // that text (no copy through a temporary string).
  virtual char16_t* textBuffer(std::size_t parameter, std::size_t units) = 0;
  void setText(std::size_t parameter, std::u16string_view text);
  virtual void setTimestamp(std::size_t parameter, const OdbcTimestamp& value) = 0;
  virtual void setBinary(std::size_t parameter, std::span<const uint8_t> bytes) = 0;
  // Runs the prepared statement with the values set; returns the rows changed (rowCount).
  virtual int64_t executePrepared() = 0;
};

// One connection. Every failing call throws OdbcError.
class OdbcConnection {
 public:
  virtual ~OdbcConnection() = default;

  virtual std::unique_ptr<OdbcStatement> statement() = 0;
  // Auto-commit off starts a transaction that commit or rollback ends (auto-commit stays off).
  virtual void setAutoCommit(bool on) = 0;
  virtual void commit() = 0;
  virtual void rollback() = 0;
  // The character that quotes identifiers (SQL_IDENTIFIER_QUOTE_CHAR), "" when there is none.
  virtual std::u16string identifierQuote() = 0;
  // The name of the database product (SQL_DBMS_NAME), e.g. "SQLite" or "PostgreSQL".
  virtual std::u16string dbmsName() = 0;
  // The columns of a table's primary key in key order (SQLPrimaryKeys); empty when the table
  // has none or the driver cannot tell.
  virtual std::vector<std::u16string> primaryKeys(std::u16string_view table) = 0;
};

// The driver manager.
class Odbc {
 public:
  virtual ~Odbc() = default;

  // Connects with an ODBC connection string (SQLDriverConnect, never prompting); a failure
  // throws OdbcError with `connecting` set.
  virtual std::unique_ptr<OdbcConnection> connect(std::u16string_view connectionString) = 0;
  // Whether a driver of that name is installed (SQLDrivers).
  virtual bool hasDriver(std::u16string_view name) = 0;

  static std::unique_ptr<Odbc> makeNative();
};

inline constexpr Slot<Odbc> odbc{};

}  // namespace ravelin::platform
