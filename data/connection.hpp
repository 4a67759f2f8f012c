// Connection: a connection to a database through ODBC, created by name as ADODB.Connection or
// Ravelin.Connection. Execute runs a statement or a query; BeginTrans, CommitTrans and
// RollbackTrans bracket a transaction; a Recordset opened on it (ActiveConnection) reads from it
// and writes its batch back through it.
//
// Connection strings:
// - An ODBC string ("Driver={SQLite3};Database=C:\data\till.db", "DSN=till;UID=pos") goes to the
//   driver manager as it is.
// - An ADO string may name the ODBC provider: "Provider=MSDASQL;..." drops the provider and
//   keeps the rest. Any other provider raises 3706 (there are no OLE DB providers here).
// - "Data Source=<path>" without Driver, DSN or FileDSN is the embedded default: SQLite through
//   the driver "SQLite3" on that file ("Driver={SQLite3};Database=<path>").
// - "User ID" and "Password" become UID and PWD; the UserID and Password arguments of Open, when
//   given, replace them.
// - Values holding ";" are written back in braces.
//
// Errors: the data-access objects' own numbers for the wrong calls (3704 on a closed connection,
// 3705 for Open twice, 3709 for a recordset that has no usable connection, 3246 for Close inside
// a transaction, 3706 for a provider other than ODBC's; 0x8004D00E "No transaction is active."
// for CommitTrans or RollbackTrans outside one, 0x8004D013 for BeginTrans inside one, as the
// ODBC provider has no nested transactions). A driver's failure raises the driver's diagnostic
// messages (joined by "; ") from the source "Microsoft OLE DB Provider for ODBC Drivers", with
// the number the data-access objects give a provider's failure: E_FAIL 0x80004005 when
// connecting, DB_E_ERRORSINCOMMAND 0x80040E14 for a statement or a transaction call.
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

namespace platform {
class OdbcConnection;
class OdbcError;
}  // namespace platform

class Recordset;

class Connection : public PublicClass<Connection> {
 public:
  static constexpr StringView kClassName = u"Connection";
  static constexpr StringView kProgId = u"ADODB.Connection";

  Connection();
  ~Connection() override;
  static ClassInfo describe();

  const String& ConnectionString() const { return connectionString_; }
  // 3705 while open.
  void setConnectionString(StringView value);

  // Opens the connection (ConnectionString when none is given, which then becomes it).
  void Open(StringView ConnectionString = u"", StringView UserID = u"", StringView Password = u"",
            int32_t Options = -1);
  // 3704 when closed; 3246 inside a transaction.
  void Close();
  int32_t State() const { return odbc_ ? adStateOpen : adStateClosed; }

  // Runs a statement or a query. A query gives an open, read-only, static client record set of
  // its rows; a statement without a result gives a closed one. RecordsAffected receives the rows
  // the statement changed (-1 for a query).
  std::shared_ptr<Recordset> Execute(StringView CommandText, Variant& RecordsAffected,
                                     int32_t Options = -1);
  std::shared_ptr<Recordset> Execute(StringView CommandText) {
    Variant ignored;
    return Execute(CommandText, ignored);
  }

  // Starts a transaction and returns its level (1).
  int32_t BeginTrans();
  void CommitTrans();
  void RollbackTrans();

  // For the record sets of this library: the open ODBC connection (3709 when closed), whether a
  // transaction of the caller's is open, and the driver's identifier quote.
  platform::OdbcConnection& odbc() const;
  bool inTransaction() const { return transactionLevel_ > 0; }
  const String& identifierQuote() const { return identifierQuote_; }

 private:
  void requireOpen() const;

  String connectionString_;
  std::unique_ptr<platform::OdbcConnection> odbc_;
  int32_t transactionLevel_ = 0;
  String identifierQuote_;
};

// The ODBC connection string for an ADO or ODBC one, by the rules above (3706 for a provider
// other than MSDASQL); user and password replace those of the string when not empty.
String odbcConnectionString(StringView connectionString, StringView user = u"",
                            StringView password = u"");

// Raises a driver's failure as an automation error (see above).
[[noreturn]] void raiseOdbcError(const platform::OdbcError& error);

}  // namespace ravelin
