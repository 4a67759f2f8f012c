// The rows of a record set and everything that acts on them: the fields and their columns, each
// row's status, the current record, the edit buffer, the pending changes of batch mode and the
// filter. The Recordset, its Fields and each Field share one store, so a Field object kept by a
// caller keeps reading the current record of its record set.
//
// Rows are kept in storage order. A row is unmodified (committed), new or modified (pending, in
// batch mode), deleted (pending, in batch mode) or gone (removed; its storage stays until the set
// is closed). Without a filter a record set shows its unmodified, new and modified rows; with
// adFilterPendingRecords its new, modified and deleted ones.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <ravelin/data/ado_enums.hpp>
#include <ravelin/data/field_types.hpp>
#include <ravelin/data/record_column.hpp>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace ravelin {

enum class RowState : uint8_t { Unmodified, New, Modified, Deleted, Gone };

class RecordStore {
 public:
  // ---- Fields -------------------------------------------------------------------------------
  // Appends a field; 3219 while the set is open, 3367 for a name already there (any case),
  // 3001 for a refused type or size.
  void appendField(StringView name, int32_t type, int32_t definedSize, int32_t attributes);
  std::size_t fieldCount() const { return fields_.size(); }
  const FieldDefinition& field(std::size_t index) const { return fields_[index]; }
  // The position of the field of that name, without regard to case.
  std::optional<std::size_t> findField(StringView name) const;
  // Replaces every field with the given ones (a set filled from a query); 3705 when open.
  void defineFields(std::vector<FieldDefinition> fields);
  // Records where a field's values come from: the table and column a batch update through a
  // connection writes to.
  void setFieldOrigin(std::size_t field, StringView table, StringView column);

  // ---- Opening ------------------------------------------------------------------------------
  bool isOpen() const { return open_; }
  // Opens the fabricated set: 3705 when open. The cursor becomes static on the client; a lock
  // type never set (or unspecified) becomes adLockOptimistic, since a fabricated set is
  // updatable.
  void open(int32_t cursorType, int32_t lockType);
  // Drops the rows and keeps the fields: 3704 when closed, 3219 during an edit outside batch
  // mode (in batch mode the pending changes are lost).
  void close();

  int32_t lockType() const { return lockType_; }
  int32_t cursorType() const { return cursorType_; }
  int32_t cursorLocation() const { return cursorLocation_; }
  // Each raises 3705 while the set is open.
  void setLockType(int32_t value);
  void setCursorType(int32_t value);
  void setCursorLocation(int32_t value);
  bool batchMode() const { return lockType_ == adLockBatchOptimistic; }

  // ---- Position -----------------------------------------------------------------------------
  // Each raises 3704 when closed.
  bool bof() const;
  bool eof() const;
  int32_t recordCount() const;
  // The 1-based position among the rows shown; adPosBOF, adPosEOF, or adPosUnknown when the
  // current row is not shown (deleted) or the set shows no rows.
  int32_t absolutePosition() const;
  // Moves to a 1-based position (3001 outside 1..RecordCount).
  void setAbsolutePosition(int32_t position);
  // Moves complete an edit first (an implicit Update). With no row shown every move raises
  // 3021, as do MoveNext at EOF, MovePrevious at BOF and Move forward from EOF or back from BOF.
  void moveFirst();
  void moveLast();
  void moveNext();
  void movePrevious();
  void move(int32_t records);

  // ---- Editing ------------------------------------------------------------------------------
  void addNew();
  void update();
  void cancelUpdate();
  void deleteRecords(int32_t affect);
  void updateBatch(int32_t affect);
  void cancelBatch(int32_t affect);
  int32_t editMode() const;
  int32_t status() const;

  // The current record's value of a field (its edit in progress if any); 3021 without one.
  Variant value(std::size_t field) const;
  // Assigns the converted value; starts an edit on a committed row.
  void setValue(std::size_t field, const Variant& value);
  // The value the row had when it was last committed (its current value for a row never
  // changed; Null for a new row).
  Variant originalValue(std::size_t field) const;

  // ---- Filter -------------------------------------------------------------------------------
  const Variant& filter() const { return filter_; }
  // adFilterNone (or ""), adFilterPendingRecords or adFilterFetchedRecords (every row); other
  // values raise 3001. The first row shown becomes current.
  void setFilter(const Variant& filter);

  // ---- Bulk loading -------------------------------------------------------------------------
  // See Recordset: these throw std::invalid_argument for a caller's error.
  void reserveRows(std::size_t rows);
  std::size_t appendRow();
  RecordColumn& cellColumn(std::size_t row, std::size_t field, CellKind kind);

  // ---- Storage access for readers and writers of the whole set ------------------------------
  std::size_t storedRows() const { return rows_.size(); }
  RowState rowState(std::size_t row) const { return rows_[row]; }
  const RecordColumn& column(std::size_t field) const { return columns_[field]; }
  // The committed values of a modified or deleted row, or null when it has none kept.
  const std::vector<Variant>* originalsOf(std::size_t row) const;
  // Whether a lock type was given (LockType or Open) since the last adLockUnspecified.
  bool lockTypeGiven() const { return lockTypeSet_; }

  // ---- Loading a saved set ------------------------------------------------------------------
  // A reader of a saved set appends the fields as they were defined, opens the set, appends
  // each row in its saved state, fills its cells through cellColumn and gives a modified or
  // deleted row its committed values; these throw std::invalid_argument for a caller's error.
  // Appends a field exactly as defined: 3219 while open, 3367 for a name already there.
  void appendField(FieldDefinition definition);
  // Appends a row in the state (Unmodified, New, Modified or Deleted) with every field unset.
  std::size_t appendLoadedRow(RowState state);
  // The committed values of a modified or deleted row, one per field: what OriginalValue reads
  // and CancelBatch puts back.
  void setOriginals(std::size_t row, std::vector<Variant> values);
  // The rows an AffectRecords value selects (adAffectCurrent, adAffectGroup, adAffectAll), in
  // storage order; 3001 for another value.
  std::vector<std::size_t> affectedRows(int32_t affect) const;

 private:
  static constexpr std::size_t kBOF = static_cast<std::size_t>(-2);
  static constexpr std::size_t kEOF = static_cast<std::size_t>(-1);

  void requireOpen() const;
  void requireUpdatable() const;
  // The current row when it holds a live record (not deleted or gone); raises 3021 otherwise.
  std::size_t currentRecord(StringView source) const;
  bool shown(std::size_t row) const;
  bool filterPending() const { return filterGroup_ == adFilterPendingRecords; }
  void setState(std::size_t row, RowState state);
  std::size_t shownCount() const;
  // Whether every stored row is shown, so that positions are storage indexes.
  bool allShown() const;
  std::size_t nextShown(std::size_t from) const;      // first shown row >= from, or kEOF
  std::size_t previousShown(std::size_t from) const;  // last shown row <= from, or kBOF
  void finishEdit();
  void applyEdit();
  void keepOriginals(std::size_t row);
  void restoreOriginals(std::size_t row);

  std::vector<FieldDefinition> fields_;
  std::vector<RecordColumn> columns_;
  std::vector<RowState> rows_;
  std::size_t stateCounts_[5] = {};
  std::unordered_map<std::size_t, std::vector<Variant>> originals_;

  bool open_ = false;
  int32_t lockType_ = adLockReadOnly;
  bool lockTypeSet_ = false;
  int32_t cursorType_ = adOpenForwardOnly;
  int32_t cursorLocation_ = adUseServer;

  std::size_t current_ = kEOF;
  // The edit in progress: a new row under AddNew, or changed values of a committed row.
  bool adding_ = false;
  std::size_t beforeAdd_ = kEOF;  // the current row before AddNew, for CancelUpdate
  std::vector<std::optional<Variant>> edits_;
  bool editing_ = false;

  Variant filter_ = Variant(int32_t{adFilterNone});
  int32_t filterGroup_ = adFilterNone;
};

}  // namespace ravelin
