// Recordset: a disconnected record set, fabricated in memory (Open without a source), with the
// data-access objects' cursor, editing and batch behaviour. Created by name as ADODB.Recordset or
// Ravelin.Recordset; its Fields and each Field are reachable from it.
//
// Behaviour where the data-access objects leave a choice:
// - Storage is columnar (record_column.hpp); rows keep their order of appending.
// - Open without a source forces a static client cursor (CursorType adOpenStatic, CursorLocation
//   adUseClient). A lock type never set (or adLockUnspecified) becomes adLockOptimistic, so a
//   plain Open gives an updatable set in immediate mode; an explicit adLockReadOnly refuses
//   AddNew, Delete and assignments with 3251. Opening with another source raises 3001 here.
// - Save writes the XML persistence format (adPersistXML) only: adPersistADTG and other formats
//   raise 3001. Save to a file that exists raises 58 "File already exists", as the data-access
//   objects do (callers delete the file first); a file that cannot be written raises 3004 and is
//   not left half written. After Save the first row is current.
// - Open of a saved file (Options adCmdFile, or a text Source with no ActiveConnection and no
//   Options) replaces the fields with the file's and restores each row in its saved state, with
//   the original values of changed rows. The set is a static client cursor, batch optimistic
//   unless a lock type was given. A missing file raises 3002, a file that is no saved set 3003,
//   each with what went wrong; the set stays closed with its fields as they were.
// - Immediate mode (any lock type but adLockBatchOptimistic): Update commits at once and the row's
//   Status is adRecUnmodified; Delete removes the row at once. Batch mode: Update leaves the row
//   pending (adRecNew, or adRecModified with its original values kept), Delete marks it
//   adRecDeleted and hides it; UpdateBatch commits locally (no connection) and CancelBatch
//   reverts.
// - An unset field reads as Null. Null (or Empty) may be assigned only to a field whose
//   attributes include adFldIsNullable or adFldMayBeNull; otherwise, and for a value that cannot
//   be converted to the field's type or a text longer than a limited text field's DefinedSize,
//   the assignment raises 0x80040E21 (field_types.hpp) and the field keeps its value.
// - Cancel stops no operation here (none runs in the background) and changes nothing.
// - Filter takes adFilterNone (or ""), adFilterPendingRecords (the new, modified and deleted rows
//   of batch mode; a deleted row is current but its fields raise 3021) and
//   adFilterFetchedRecords (every row); criteria texts and the other groups raise 3001.
// - Status, EditMode and field values with no current record raise 3021; EditMode of a deleted
//   current row is adEditDelete and its Status adRecDeleted. AbsolutePosition with no row shown
//   (or on a deleted row) is adPosUnknown.
// - Empty assigned to a field counts as Null. The numeric types without an automation type of
//   their own (adBigInt, adUnsignedInt, adUnsignedBigInt, adDecimal, adNumeric, adVarNumeric)
//   are held and read as Double; adTinyInt reads as Integer, adUnsignedSmallInt as Long.
// - The bulk setters store a text as given: no DefinedSize check and no padding.
// - Close during an edit in immediate mode raises 3219; in batch mode pending changes are lost.
//   Close keeps the fields, so the set can be opened again.
//
// With a connection (recordset_query.cpp, recordset_batch.cpp):
// - Open with a query and a connection (the ActiveConnection argument, or the property set
//   before) fills the set from the result: a static client cursor, the lock type asked for
//   (read-only when none was set; adLockBatchOptimistic gives batch mode). The fields take the
//   types the ODBC provider gives the columns' SQL types (odbc_types.hpp), the column size as
//   DefinedSize, nullable attributes, the base table and column the driver names (or, when it
//   names none, the single table after FROM in a simple query) and adFldKeyColumn for the
//   columns of that table's primary key. Dates read with whole seconds.
// - Open with a connection and no query raises 3001, as does a query without a connection.
// - UpdateBatch with a connection sends the pending rows in one transaction with prepared,
//   parameterised statements: INSERT of the fields set, UPDATE of the changed fields located by
//   the key columns and the changed fields' original values, DELETE located by the key columns
//   (with no key column both are located by every original value; Null as IS NULL).
//   An UPDATE or DELETE that changes no row raises 0x80040E38 (the row changed underneath); a
//   set whose fields name no single base table raises 0x80004005 "Insufficient base table
//   information for updating or refreshing."; a driver's refusal raises its message
//   (connection.hpp). On any failure the transaction is rolled back and every row keeps its
//   pending state and values. Inside a transaction of the caller's (BeginTrans) the statements
//   join it, and committing or rolling back is the caller's.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/data/fields.hpp>
#include <ravelin/data/record_store.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <string_view>

namespace ravelin {

namespace platform {
class OdbcStatement;
}  // namespace platform

class Connection;

class Recordset : public PublicClass<Recordset> {
 public:
  static constexpr StringView kClassName = u"Recordset";
  // The programmatic identifier of the data-access objects, which scripts create it by.
  static constexpr StringView kProgId = u"ADODB.Recordset";

  Recordset();
  static ClassInfo describe();

  std::shared_ptr<ravelin::Fields> Fields() const { return fields_; }

  // Opens the fabricated set from the appended fields, or with a query and a connection the
  // set of the query's rows (see above). Every argument may be missing; a given CursorType or
  // LockType (other than -1) applies before the client cursor is forced.
  void Open(const Variant& Source = Variant::missing(),
            const Variant& ActiveConnection = Variant::missing(),
            int32_t CursorType = adOpenUnspecified, int32_t LockType = adLockUnspecified,
            int32_t Options = -1);
  void Close() { store_->close(); }
  // Writes the set to a new file (adPersistXML only).
  void Save(const Variant& Destination = Variant::missing(), int32_t PersistFormat = adPersistXML);
  int32_t State() const { return store_->isOpen() ? adStateOpen : adStateClosed; }

  // AddNew with a field list (a name, a position or an array of them) and values assigns them
  // and completes the row at once (pending in batch mode), as does Update with the same pair.
  void AddNew(const Variant& FieldList = Variant::missing(),
              const Variant& Values = Variant::missing());
  void Update(const Variant& FieldList = Variant::missing(),
              const Variant& Values = Variant::missing());
  void CancelUpdate() { store_->cancelUpdate(); }
  void Cancel() {}
  void Delete(int32_t AffectRecords = adAffectCurrent) { store_->deleteRecords(AffectRecords); }
  void UpdateBatch(int32_t AffectRecords = adAffectAll);
  void CancelBatch(int32_t AffectRecords = adAffectAll) { store_->cancelBatch(AffectRecords); }

  void MoveFirst() { store_->moveFirst(); }
  void MoveLast() { store_->moveLast(); }
  void MoveNext() { store_->moveNext(); }
  void MovePrevious() { store_->movePrevious(); }
  // Start (a bookmark) is not supported: a given Start raises 3001.
  void Move(int32_t NumRecords, const Variant& Start = Variant::missing());

  bool BOF() const { return store_->bof(); }
  // EOF is a macro of the C library, so the C++ name differs; scripts call it EOF.
  bool EndOfFile() const { return store_->eof(); }
  int32_t RecordCount() const { return store_->recordCount(); }
  int32_t AbsolutePosition() const { return store_->absolutePosition(); }
  void setAbsolutePosition(int32_t position) { store_->setAbsolutePosition(position); }
  int32_t EditMode() const { return store_->editMode(); }
  int32_t Status() const { return store_->status(); }

  int32_t LockType() const { return store_->lockType(); }
  void setLockType(int32_t value) { store_->setLockType(value); }
  int32_t CursorType() const { return store_->cursorType(); }
  void setCursorType(int32_t value) { store_->setCursorType(value); }
  int32_t CursorLocation() const { return store_->cursorLocation(); }
  void setCursorLocation(int32_t value) { store_->setCursorLocation(value); }
  const Variant& Filter() const { return store_->filter(); }
  void setFilter(const Variant& value) { store_->setFilter(value); }

  // Bulk loading: after the fields are appended and the set is opened. A row appended this way
  // is committed (Status adRecUnmodified) with every field unset (Null) until set; the current
  // record does not move. Each setter requires the field's type: adDouble, adBoolean, adDate
  // (OLE date serial), a text type (adVarWChar and the other text types); a type mismatch or a
  // row or field out of range throws std::invalid_argument (a caller's bug, not user input).
  void reserveRows(std::size_t rows);
  std::size_t appendRow();  // the new row's index in storage order, from 0
  void setCellDouble(std::size_t row, std::size_t field, double value);
  void setCellBoolean(std::size_t row, std::size_t field, bool value);
  void setCellDate(std::size_t row, std::size_t field, double serial);
  void setCellText(std::size_t row, std::size_t field, StringView value);
  // A text given as bytes of ISO-8859-1 (each byte is the unit of the same number), which
  // compact storage keeps without widening; the fast path of single-byte readers.
  void setCellLatin1(std::size_t row, std::size_t field, std::string_view bytes);
  // The table and column of a database that the field's values belong to (see RecordStore).
  void setFieldOrigin(std::size_t field, StringView table, StringView column) {
    store_->setFieldOrigin(field, table, column);
  }

  // The rows, their states and original values, for readers and writers of the whole set.
  const RecordStore& store() const { return *store_; }

  // The connection the set reads from and writes its batch to, or null.
  std::shared_ptr<Connection> ActiveConnection() const { return connection_; }

  // Called while UpdateBatch sends rows through the connection: after every few thousand rows
  // and after the last, with the rows sent and the rows to send. For programs that show the
  // progress of a long import; not reachable from scripts.
  using BatchProgress = std::function<void(std::size_t sent, std::size_t total)>;
  void setBatchProgress(BatchProgress progress) { batchProgress_ = std::move(progress); }
  // Takes an open Connection (3709 for a closed one), a connection string (a new connection is
  // opened with it) or Nothing (disconnects). Allowed on a closed set and on an open set in
  // batch mode (3705 otherwise), so a disconnected set can be reconnected to send its batch.
  void setActiveConnection(const Variant& value);

  // Fills the closed set from the result set of a statement just run on the connection.
  void loadResult(platform::OdbcStatement& statement, std::shared_ptr<Connection> connection,
                  int32_t cursorType, int32_t lockType, StringView query = u"");

 private:
  void assignList(const Variant& fieldList, const Variant& values);
  void openFromFile(StringView path, int32_t lockType);
  void openFromQuery(StringView query, int32_t cursorType, int32_t lockType);
  void sendBatch(int32_t affect);

  std::shared_ptr<RecordStore> store_;
  std::shared_ptr<ravelin::Fields> fields_;
  std::shared_ptr<Connection> connection_;
  BatchProgress batchProgress_;
};

}  // namespace ravelin
