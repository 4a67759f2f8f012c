// The ODBC area on the system's driver manager. The ODBC interface is the same on every system;
// only its headers differ (Windows needs its own header first).
#ifdef _WIN32
#include <windows.h>
#endif
#include <sql.h>
#include <sqlext.h>

#include <algorithm>
#include <cstring>
#include <ravelin/platform/odbc.hpp>
#include <utility>

namespace ravelin::platform {

OdbcError::OdbcError(std::vector<OdbcDiagnostic> diagnostics, bool connecting)
    : std::runtime_error("ODBC call failed"),
      diagnostics_(std::move(diagnostics)),
      connecting_(connecting) {}

std::u16string OdbcError::message() const {
  std::u16string text;
  for (const OdbcDiagnostic& record : diagnostics_) {
    if (record.message.empty()) continue;
    if (!text.empty()) text += u"; ";
    text += record.message;
  }
  if (text.empty()) text = u"The ODBC driver reported a failure without a message.";
  return text;
}

void OdbcStatement::setText(std::size_t parameter, std::u16string_view text) {
  char16_t* buffer = textBuffer(parameter, text.size());
  std::copy(text.begin(), text.end(), buffer);
}

namespace {

SQLWCHAR* wide(const char16_t* text) {
  return reinterpret_cast<SQLWCHAR*>(const_cast<char16_t*>(text));
}

std::u16string narrowTo16(const SQLWCHAR* text, std::size_t units) {
  std::u16string result(units, u'\0');
  std::memcpy(result.data(), text, units * sizeof(char16_t));
  return result;
}

std::vector<OdbcDiagnostic> diagnosticsOf(SQLSMALLINT type, SQLHANDLE handle) {
  std::vector<OdbcDiagnostic> records;
  if (!handle) return records;
  for (SQLSMALLINT number = 1;; ++number) {
    SQLWCHAR state[6] = {};
    SQLINTEGER native = 0;
    std::vector<SQLWCHAR> message(1024);
    SQLSMALLINT length = 0;
    SQLRETURN ret = SQLGetDiagRecW(type, handle, number, state, &native, message.data(),
                                   static_cast<SQLSMALLINT>(message.size()), &length);
    if (!SQL_SUCCEEDED(ret)) break;
    if (static_cast<std::size_t>(length) >= message.size()) {
      message.resize(static_cast<std::size_t>(length) + 1);
      ret = SQLGetDiagRecW(type, handle, number, state, &native, message.data(),
                           static_cast<SQLSMALLINT>(message.size()), &length);
      if (!SQL_SUCCEEDED(ret)) break;
    }
    OdbcDiagnostic record;
    record.state = narrowTo16(state, 5);
    record.nativeError = native;
    record.message = narrowTo16(message.data(), std::min<std::size_t>(length, message.size() - 1));
    records.push_back(std::move(record));
  }
  return records;
}

void check(SQLRETURN ret, SQLSMALLINT type, SQLHANDLE handle, bool connecting = false) {
  if (SQL_SUCCEEDED(ret) || ret == SQL_NO_DATA) return;
  auto records = diagnosticsOf(type, handle);
  if (records.empty() && ret == SQL_INVALID_HANDLE)
    records.push_back({u"HY000", 0, u"Invalid ODBC handle."});
  throw OdbcError(std::move(records), connecting);
}

// An ODBC handle, freed with its owner.
class Handle {
 public:
  Handle(SQLSMALLINT type, SQLHANDLE parent, bool connecting = false) : type_(type) {
    const SQLRETURN ret = SQLAllocHandle(type, parent, &handle_);
    if (!SQL_SUCCEEDED(ret)) {
      const SQLSMALLINT parentType = type == SQL_HANDLE_STMT ? SQL_HANDLE_DBC : SQL_HANDLE_ENV;
      auto records = diagnosticsOf(parentType, parent);
      if (records.empty()) records.push_back({u"HY001", 0, u"Cannot allocate an ODBC handle."});
      throw OdbcError(std::move(records), connecting);
    }
  }
  ~Handle() {
    if (handle_) SQLFreeHandle(type_, handle_);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;
  SQLHANDLE get() const { return handle_; }

 private:
  SQLSMALLINT type_;
  SQLHANDLE handle_ = SQL_NULL_HANDLE;
};

class Environment {
 public:
  Environment() : handle_(SQL_HANDLE_ENV, SQL_NULL_HANDLE, true) {
    check(SQLSetEnvAttr(handle_.get(), SQL_ATTR_ODBC_VERSION,
                        reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(SQL_OV_ODBC3)), 0),
          SQL_HANDLE_ENV, handle_.get(), true);
  }
  SQLHENV get() const { return handle_.get(); }

 private:
  Handle handle_;
};

class NativeStatement final : public OdbcStatement {
 public:
  explicit NativeStatement(SQLHDBC dbc) : handle_(SQL_HANDLE_STMT, dbc) {}

  bool executeDirect(std::u16string_view sql) override {
    std::u16string text(sql);
    run(SQLExecDirectW(stmt(), wide(text.c_str()), static_cast<SQLINTEGER>(text.size())));
    SQLSMALLINT count = 0;
    run(SQLNumResultCols(stmt(), &count));
    return count > 0;
  }

  int64_t rowCount() override {
    SQLLEN count = -1;
    run(SQLRowCount(stmt(), &count));
    return count;
  }

  std::vector<OdbcColumn> columns() override {
    SQLSMALLINT count = 0;
    run(SQLNumResultCols(stmt(), &count));
    std::vector<OdbcColumn> result;
    for (SQLUSMALLINT number = 1; number <= static_cast<SQLUSMALLINT>(count); ++number) {
      OdbcColumn column;
      SQLWCHAR name[512] = {};
      SQLSMALLINT nameLength = 0;
      SQLSMALLINT type = 0;
      SQLULEN size = 0;
      SQLSMALLINT digits = 0;
      SQLSMALLINT nullable = SQL_NULLABLE_UNKNOWN;
      run(SQLDescribeColW(stmt(), number, name, 512, &nameLength, &type, &size, &digits,
                          &nullable));
      column.name = narrowTo16(name, std::min<std::size_t>(nameLength, 511));
      column.sqlType = type;
      column.size = size;
      column.decimalDigits = digits;
      column.nullable = nullable != SQL_NO_NULLS;
      column.isUnsigned = numericAttribute(number, SQL_DESC_UNSIGNED) == SQL_TRUE;
      column.autoIncrement = numericAttribute(number, SQL_DESC_AUTO_UNIQUE_VALUE) == SQL_TRUE;
      column.baseTable = textAttribute(number, SQL_DESC_BASE_TABLE_NAME);
      column.baseColumn = textAttribute(number, SQL_DESC_BASE_COLUMN_NAME);
      result.push_back(std::move(column));
    }
    return result;
  }

  bool fetch() override {
    const SQLRETURN ret = SQLFetch(stmt());
    if (ret == SQL_NO_DATA) return false;
    run(ret);
    return true;
  }

  bool readInteger(std::size_t column, int64_t& value) override {
    SQLBIGINT number = 0;
    SQLLEN indicator = 0;
    run(SQLGetData(stmt(), columnNumber(column), SQL_C_SBIGINT, &number, 0, &indicator));
    if (indicator == SQL_NULL_DATA) return false;
    value = number;
    return true;
  }

  bool readDouble(std::size_t column, double& value) override {
    SQLDOUBLE number = 0;
    SQLLEN indicator = 0;
    run(SQLGetData(stmt(), columnNumber(column), SQL_C_DOUBLE, &number, 0, &indicator));
    if (indicator == SQL_NULL_DATA) return false;
    value = number;
    return true;
  }

  bool readText(std::size_t column, std::u16string& value) override {
    value.clear();
    if (scratch_.size() < 2048) scratch_.resize(2048);
    const std::size_t room = scratch_.size() / 2 - 1;  // units, leaving the terminator
    for (;;) {
      SQLLEN indicator = 0;
      const SQLRETURN ret = SQLGetData(stmt(), columnNumber(column), SQL_C_WCHAR, scratch_.data(),
                                       static_cast<SQLLEN>(scratch_.size()), &indicator);
      if (ret == SQL_NO_DATA) break;
      run(ret);
      if (indicator == SQL_NULL_DATA) return false;
      const auto* units = reinterpret_cast<const char16_t*>(scratch_.data());
      if (ret == SQL_SUCCESS_WITH_INFO &&
          (indicator == SQL_NO_TOTAL || static_cast<std::size_t>(indicator) / 2 > room)) {
        value.append(units, room);  // truncated: the rest comes with the next call
        continue;
      }
      value.append(units, static_cast<std::size_t>(indicator) / 2);
      break;
    }
    return true;
  }

  bool readTimestamp(std::size_t column, OdbcTimestamp& value) override {
    SQL_TIMESTAMP_STRUCT stamp = {};
    SQLLEN indicator = 0;
    run(SQLGetData(stmt(), columnNumber(column), SQL_C_TYPE_TIMESTAMP, &stamp, sizeof stamp,
                   &indicator));
    if (indicator == SQL_NULL_DATA) return false;
    value = {stamp.year,   stamp.month,  stamp.day,     stamp.hour,
             stamp.minute, stamp.second, stamp.fraction};
    return true;
  }

  bool readBinary(std::size_t column, std::vector<uint8_t>& value) override {
    value.clear();
    if (scratch_.size() < 2048) scratch_.resize(2048);
    for (;;) {
      SQLLEN indicator = 0;
      const SQLRETURN ret = SQLGetData(stmt(), columnNumber(column), SQL_C_BINARY, scratch_.data(),
                                       static_cast<SQLLEN>(scratch_.size()), &indicator);
      if (ret == SQL_NO_DATA) break;
      run(ret);
      if (indicator == SQL_NULL_DATA) return false;
      const auto* bytes = reinterpret_cast<const uint8_t*>(scratch_.data());
      if (ret == SQL_SUCCESS_WITH_INFO &&
          (indicator == SQL_NO_TOTAL || static_cast<std::size_t>(indicator) > scratch_.size())) {
        value.insert(value.end(), bytes, bytes + scratch_.size());
        continue;
      }
      value.insert(value.end(), bytes, bytes + indicator);
      break;
    }
    return true;
  }

  void closeCursor() override { run(SQLFreeStmt(stmt(), SQL_CLOSE)); }

  // The primary key of a table named "table" or "schema.table" (SQLPrimaryKeys).
  void runPrimaryKeys(std::u16string_view table) {
    std::u16string schema;
    std::u16string name(table);
    if (const auto dot = name.rfind(u'.'); dot != std::u16string::npos) {
      schema = name.substr(0, dot);
      name.erase(0, dot + 1);
    }
    run(SQLPrimaryKeysW(stmt(), nullptr, 0, schema.empty() ? nullptr : wide(schema.c_str()),
                        static_cast<SQLSMALLINT>(schema.size()), wide(name.c_str()),
                        static_cast<SQLSMALLINT>(name.size())));
  }

  void prepare(std::u16string_view sql, std::span<const OdbcParameter> parameters) override {
    run(SQLFreeStmt(stmt(), SQL_RESET_PARAMS));
    std::u16string text(sql);
    run(SQLPrepareW(stmt(), wide(text.c_str()), static_cast<SQLINTEGER>(text.size())));
    // The slots never move once bound: the vector is sized once per preparation.
    slots_ = std::vector<Slot>(parameters.size());
    for (std::size_t i = 0; i < parameters.size(); ++i) {
      slots_[i].parameter = parameters[i];
      if (parameters[i].kind == OdbcValueKind::Text) slots_[i].text.resize(64);
      if (parameters[i].kind == OdbcValueKind::Binary) slots_[i].bytes.resize(64);
      bind(i);
    }
  }

  void setNull(std::size_t parameter) override { slots_[parameter].indicator = SQL_NULL_DATA; }
  void setInteger(std::size_t parameter, int64_t value) override {
    slots_[parameter].fixed.integer = value;
    slots_[parameter].indicator = 0;
  }
  void setDouble(std::size_t parameter, double value) override {
    slots_[parameter].fixed.real = value;
    slots_[parameter].indicator = 0;
  }
  void setBit(std::size_t parameter, bool value) override {
    slots_[parameter].fixed.bit = value ? 1 : 0;
    slots_[parameter].indicator = 0;
  }
  char16_t* textBuffer(std::size_t parameter, std::size_t units) override {
    Slot& slot = slots_[parameter];
    if (units + 1 > slot.text.size()) {
      slot.text.resize(std::max(units + 1, slot.text.size() * 2));
      bind(parameter);
    }
    slot.indicator = static_cast<SQLLEN>(units * sizeof(char16_t));
    return slot.text.data();
  }
  void setTimestamp(std::size_t parameter, const OdbcTimestamp& value) override {
    Slot& slot = slots_[parameter];
    if (slot.parameter.kind == OdbcValueKind::Date) {
      slot.fixed.date = {value.year, value.month, value.day};
    } else {
      slot.fixed.stamp = {value.year,   value.month,  value.day,     value.hour,
                          value.minute, value.second, value.fraction};
    }
    slot.indicator = 0;
  }
  void setBinary(std::size_t parameter, std::span<const uint8_t> bytes) override {
    Slot& slot = slots_[parameter];
    if (bytes.size() > slot.bytes.size()) {
      slot.bytes.resize(std::max(bytes.size(), slot.bytes.size() * 2));
      bind(parameter);
    }
    std::copy(bytes.begin(), bytes.end(), slot.bytes.begin());
    slot.indicator = static_cast<SQLLEN>(bytes.size());
  }

  int64_t executePrepared() override {
    const SQLRETURN ret = SQLExecute(stmt());
    if (ret == SQL_NO_DATA) return 0;
    run(ret);
    SQLLEN count = -1;
    run(SQLRowCount(stmt(), &count));
    return count;
  }

 private:
  struct Slot {
    OdbcParameter parameter;
    SQLLEN indicator = SQL_NULL_DATA;
    union {
      SQLBIGINT integer;
      SQLDOUBLE real;
      SQLCHAR bit;
      SQL_DATE_STRUCT date;
      SQL_TIMESTAMP_STRUCT stamp;
    } fixed = {};
    std::vector<char16_t> text;
    std::vector<uint8_t> bytes;
  };

  SQLHSTMT stmt() const { return handle_.get(); }
  void run(SQLRETURN ret) const { check(ret, SQL_HANDLE_STMT, handle_.get()); }
  static SQLUSMALLINT columnNumber(std::size_t column) {
    return static_cast<SQLUSMALLINT>(column + 1);
  }

  SQLLEN numericAttribute(SQLUSMALLINT column, SQLUSMALLINT field) const {
    SQLLEN value = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(stmt(), column, field, nullptr, 0, nullptr, &value)))
      return 0;
    return value;
  }

  std::u16string textAttribute(SQLUSMALLINT column, SQLUSMALLINT field) const {
    SQLWCHAR text[512] = {};
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(SQLColAttributeW(stmt(), column, field, text, sizeof text, &bytes, nullptr)))
      return {};
    const std::size_t units = std::min<std::size_t>(static_cast<std::size_t>(bytes) / 2, 511);
    return narrowTo16(text, units);
  }

  void bind(std::size_t index) {
    Slot& slot = slots_[index];
    SQLSMALLINT cType = SQL_C_WCHAR;
    SQLPOINTER buffer = nullptr;
    SQLLEN bufferLength = 0;
    SQLULEN columnSize = slot.parameter.size;
    SQLSMALLINT digits = slot.parameter.decimalDigits;
    switch (slot.parameter.kind) {
      case OdbcValueKind::Integer:
        cType = SQL_C_SBIGINT;
        buffer = &slot.fixed.integer;
        break;
      case OdbcValueKind::Double:
        cType = SQL_C_DOUBLE;
        buffer = &slot.fixed.real;
        if (columnSize == 0) columnSize = 15;
        break;
      case OdbcValueKind::Bit:
        cType = SQL_C_BIT;
        buffer = &slot.fixed.bit;
        columnSize = 1;
        break;
      case OdbcValueKind::Date:
        cType = SQL_C_TYPE_DATE;
        buffer = &slot.fixed.date;
        columnSize = 10;
        digits = 0;
        break;
      case OdbcValueKind::Timestamp:
        cType = SQL_C_TYPE_TIMESTAMP;
        buffer = &slot.fixed.stamp;
        columnSize = digits > 0 ? 20 + static_cast<SQLULEN>(digits) : 19;
        break;
      case OdbcValueKind::Text:
        cType = SQL_C_WCHAR;
        buffer = slot.text.data();
        bufferLength = static_cast<SQLLEN>(slot.text.size() * sizeof(char16_t));
        columnSize = std::max<SQLULEN>(columnSize, slot.text.size());
        break;
      case OdbcValueKind::Binary:
        cType = SQL_C_BINARY;
        buffer = slot.bytes.data();
        bufferLength = static_cast<SQLLEN>(slot.bytes.size());
        columnSize = std::max<SQLULEN>(columnSize, slot.bytes.size());
        break;
    }
    run(SQLBindParameter(stmt(), static_cast<SQLUSMALLINT>(index + 1), SQL_PARAM_INPUT, cType,
                         slot.parameter.sqlType, columnSize, digits, buffer, bufferLength,
                         &slot.indicator));
  }

  Handle handle_;
  std::vector<Slot> slots_;
  std::vector<char> scratch_;
};

class NativeConnection final : public OdbcConnection {
 public:
  NativeConnection(std::shared_ptr<Environment> environment, std::u16string_view connectionString)
      : environment_(std::move(environment)), handle_(SQL_HANDLE_DBC, environment_->get(), true) {
    std::u16string text(connectionString);
    SQLWCHAR completed[1024];
    SQLSMALLINT completedLength = 0;
    check(
        SQLDriverConnectW(dbc(), nullptr, wide(text.c_str()), static_cast<SQLSMALLINT>(text.size()),
                          completed, 1024, &completedLength, SQL_DRIVER_NOPROMPT),
        SQL_HANDLE_DBC, dbc(), true);
    connected_ = true;
  }

  ~NativeConnection() override {
    if (!connected_) return;
    // An open transaction would make the disconnect fail: it is rolled back first.
    if (!autoCommit_) SQLEndTran(SQL_HANDLE_DBC, dbc(), SQL_ROLLBACK);
    SQLDisconnect(dbc());
  }

  std::unique_ptr<OdbcStatement> statement() override {
    return std::make_unique<NativeStatement>(dbc());
  }

  void setAutoCommit(bool on) override {
    const SQLULEN value = on ? SQL_AUTOCOMMIT_ON : SQL_AUTOCOMMIT_OFF;
    run(SQLSetConnectAttrW(dbc(), SQL_ATTR_AUTOCOMMIT,
                           reinterpret_cast<SQLPOINTER>(static_cast<uintptr_t>(value)),
                           SQL_IS_UINTEGER));
    autoCommit_ = on;
  }

  void commit() override { run(SQLEndTran(SQL_HANDLE_DBC, dbc(), SQL_COMMIT)); }
  void rollback() override { run(SQLEndTran(SQL_HANDLE_DBC, dbc(), SQL_ROLLBACK)); }

  std::u16string identifierQuote() override {
    std::u16string quote = info(SQL_IDENTIFIER_QUOTE_CHAR);
    return quote == u" " ? std::u16string() : quote;
  }

  std::u16string dbmsName() override { return info(SQL_DBMS_NAME); }

  std::vector<std::u16string> primaryKeys(std::u16string_view table) override {
    std::vector<std::pair<int64_t, std::u16string>> keys;
    try {
      NativeStatement query(dbc());
      query.runPrimaryKeys(table);
      while (query.fetch()) {
        std::u16string column;
        int64_t sequence = 0;
        if (!query.readText(3, column)) continue;
        query.readInteger(4, sequence);
        keys.emplace_back(sequence, std::move(column));
      }
    } catch (const OdbcError&) {
      return {};  // a driver without the catalog function: no key known
    }
    std::stable_sort(keys.begin(), keys.end(),
                     [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<std::u16string> columns;
    for (auto& key : keys)
      columns.push_back(std::move(key.second));
    return columns;
  }

 private:
  SQLHDBC dbc() const { return handle_.get(); }
  void run(SQLRETURN ret) const { check(ret, SQL_HANDLE_DBC, handle_.get()); }

  std::u16string info(SQLUSMALLINT type) {
    SQLWCHAR text[256] = {};
    SQLSMALLINT bytes = 0;
    if (!SQL_SUCCEEDED(SQLGetInfoW(dbc(), type, text, sizeof text, &bytes))) return {};
    return narrowTo16(text, std::min<std::size_t>(static_cast<std::size_t>(bytes) / 2, 255));
  }

  std::shared_ptr<Environment> environment_;
  Handle handle_;
  bool connected_ = false;
  bool autoCommit_ = true;
};

class NativeOdbc final : public Odbc {
 public:
  std::unique_ptr<OdbcConnection> connect(std::u16string_view connectionString) override {
    return std::make_unique<NativeConnection>(environment(), connectionString);
  }

  bool hasDriver(std::u16string_view name) override {
    SQLHENV env = environment()->get();
    SQLUSMALLINT direction = SQL_FETCH_FIRST;
    for (;;) {
      SQLWCHAR description[256] = {};
      SQLWCHAR attributes[1024] = {};
      SQLSMALLINT descriptionLength = 0;
      SQLSMALLINT attributesLength = 0;
      const SQLRETURN ret = SQLDriversW(env, direction, description, 256, &descriptionLength,
                                        attributes, 1024, &attributesLength);
      if (!SQL_SUCCEEDED(ret)) return false;
      const std::u16string found =
          narrowTo16(description, std::min<std::size_t>(descriptionLength, 255));
      if (found == name) return true;
      direction = SQL_FETCH_NEXT;
    }
  }

 private:
  std::shared_ptr<Environment> environment() {
    if (!environment_) environment_ = std::make_shared<Environment>();
    return environment_;
  }

  std::shared_ptr<Environment> environment_;
};

}  // namespace

std::unique_ptr<Odbc> Odbc::makeNative() {
  return std::make_unique<NativeOdbc>();
}

}  // namespace ravelin::platform
