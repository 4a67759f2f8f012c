#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/record_store.hpp>
#include <ravelin/frame/convert.hpp>
#include <stdexcept>

namespace ravelin {
namespace {

[[noreturn]] void raiseRecordset(int32_t number) {
  raiseAdoError(number, kRecordsetSource);
}

}  // namespace

// ---- Fields ---------------------------------------------------------------------------------

void RecordStore::appendField(StringView name, int32_t type, int32_t definedSize,
                              int32_t attributes) {
  if (open_) raiseAdoError(ado_error::kNotAllowedInContext, kFieldsSource);
  if (findField(name)) raiseAdoError(ado_error::kAlreadyInCollection, kFieldsSource);
  appendField(defineField(name, type, definedSize, attributes));
}

void RecordStore::appendField(FieldDefinition definition) {
  if (open_) raiseAdoError(ado_error::kNotAllowedInContext, kFieldsSource);
  if (findField(definition.name)) raiseAdoError(ado_error::kAlreadyInCollection, kFieldsSource);
  columns_.emplace_back(definition.kind);
  fields_.push_back(std::move(definition));
}

void RecordStore::defineFields(std::vector<FieldDefinition> fields) {
  if (open_) raiseRecordset(ado_error::kObjectOpen);
  columns_.clear();
  for (const FieldDefinition& field : fields)
    columns_.emplace_back(field.kind);
  fields_ = std::move(fields);
}

void RecordStore::setFieldOrigin(std::size_t field, StringView table, StringView column) {
  fields_.at(field).baseTable = String(table);
  fields_.at(field).baseColumn = String(column);
}

std::optional<std::size_t> RecordStore::findField(StringView name) const {
  for (std::size_t i = 0; i < fields_.size(); ++i) {
    if (equalsIgnoreCase(fields_[i].name, name)) return i;
  }
  return std::nullopt;
}

// ---- Opening --------------------------------------------------------------------------------

void RecordStore::open(int32_t cursorType, int32_t lockType) {
  if (open_) raiseRecordset(ado_error::kObjectOpen);
  if (lockType != adLockUnspecified) setLockType(lockType);
  if (cursorType != adOpenUnspecified) setCursorType(cursorType);
  if (!lockTypeSet_) lockType_ = adLockOptimistic;
  // A set held on the client has a static cursor.
  cursorType_ = adOpenStatic;
  cursorLocation_ = adUseClient;
  open_ = true;
  current_ = kEOF;
  filter_ = Variant(int32_t{adFilterNone});
  filterGroup_ = adFilterNone;
}

void RecordStore::close() {
  requireOpen();
  if ((adding_ || editing_) && !batchMode()) raiseRecordset(ado_error::kNotAllowedInContext);
  adding_ = editing_ = false;
  edits_.clear();
  for (RecordColumn& column : columns_)
    column.clearRows();
  rows_.clear();
  std::fill(std::begin(stateCounts_), std::end(stateCounts_), 0);
  originals_.clear();
  current_ = kEOF;
  open_ = false;
}

void RecordStore::setLockType(int32_t value) {
  if (open_) raiseRecordset(ado_error::kObjectOpen);
  if (value < adLockUnspecified || value > adLockBatchOptimistic || value == 0)
    raiseRecordset(ado_error::kArgumentsWrongType);
  lockType_ = value;
  lockTypeSet_ = value != adLockUnspecified;
}

void RecordStore::setCursorType(int32_t value) {
  if (open_) raiseRecordset(ado_error::kObjectOpen);
  if (value < adOpenUnspecified || value > adOpenStatic)
    raiseRecordset(ado_error::kArgumentsWrongType);
  cursorType_ = value;
}

void RecordStore::setCursorLocation(int32_t value) {
  if (open_) raiseRecordset(ado_error::kObjectOpen);
  if (value < adUseNone || value > adUseClient) raiseRecordset(ado_error::kArgumentsWrongType);
  cursorLocation_ = value;
}

void RecordStore::requireOpen() const {
  if (!open_) raiseRecordset(ado_error::kObjectClosed);
}

void RecordStore::requireUpdatable() const {
  requireOpen();
  if (lockType_ == adLockReadOnly) raiseRecordset(ado_error::kUpdateNotSupported);
}

// ---- Rows shown -----------------------------------------------------------------------------

bool RecordStore::shown(std::size_t row) const {
  switch (rows_[row]) {
    case RowState::Unmodified:
      return !filterPending();
    case RowState::New:
    case RowState::Modified:
      return true;
    case RowState::Deleted:
      return filterPending();
    case RowState::Gone:
      return false;
  }
  return false;
}

void RecordStore::setState(std::size_t row, RowState state) {
  --stateCounts_[static_cast<int>(rows_[row])];
  ++stateCounts_[static_cast<int>(state)];
  rows_[row] = state;
}

std::size_t RecordStore::shownCount() const {
  const auto count = [this](RowState state) { return stateCounts_[static_cast<int>(state)]; };
  const std::size_t changed = count(RowState::New) + count(RowState::Modified);
  return filterPending() ? changed + count(RowState::Deleted)
                         : changed + count(RowState::Unmodified);
}

bool RecordStore::allShown() const {
  return shownCount() == rows_.size();
}

std::size_t RecordStore::nextShown(std::size_t from) const {
  if (allShown()) return from < rows_.size() ? from : kEOF;
  for (std::size_t row = from; row < rows_.size(); ++row) {
    if (shown(row)) return row;
  }
  return kEOF;
}

std::size_t RecordStore::previousShown(std::size_t from) const {
  if (from >= rows_.size()) return kBOF;
  if (allShown()) return from;
  for (std::size_t row = from + 1; row-- > 0;) {
    if (shown(row)) return row;
  }
  return kBOF;
}

// ---- Position -------------------------------------------------------------------------------

bool RecordStore::bof() const {
  requireOpen();
  return current_ == kBOF || shownCount() == 0;
}

bool RecordStore::eof() const {
  requireOpen();
  return current_ == kEOF || shownCount() == 0;
}

int32_t RecordStore::recordCount() const {
  requireOpen();
  return static_cast<int32_t>(shownCount());
}

int32_t RecordStore::absolutePosition() const {
  requireOpen();
  if (shownCount() == 0) return adPosUnknown;
  if (current_ == kBOF) return adPosBOF;
  if (current_ == kEOF) return adPosEOF;
  if (!shown(current_)) return adPosUnknown;
  if (allShown()) return static_cast<int32_t>(current_ + 1);
  std::size_t position = 0;
  for (std::size_t row = 0; row <= current_; ++row) {
    if (shown(row)) ++position;
  }
  return static_cast<int32_t>(position);
}

void RecordStore::setAbsolutePosition(int32_t position) {
  requireOpen();
  if (position < 1 || static_cast<std::size_t>(position) > shownCount())
    raiseRecordset(ado_error::kArgumentsWrongType);
  finishEdit();
  if (allShown()) {
    current_ = static_cast<std::size_t>(position) - 1;
    return;
  }
  std::size_t row = nextShown(0);
  for (int32_t i = 1; i < position; ++i)
    row = nextShown(row + 1);
  current_ = row;
}

void RecordStore::moveFirst() {
  requireOpen();
  finishEdit();
  if (shownCount() == 0) raiseRecordset(ado_error::kNoCurrentRecord);
  current_ = nextShown(0);
}

void RecordStore::moveLast() {
  requireOpen();
  finishEdit();
  if (shownCount() == 0) raiseRecordset(ado_error::kNoCurrentRecord);
  current_ = previousShown(rows_.size() - 1);
}

void RecordStore::moveNext() {
  move(1);
}

void RecordStore::movePrevious() {
  move(-1);
}

void RecordStore::move(int32_t records) {
  requireOpen();
  finishEdit();
  if (shownCount() == 0) raiseRecordset(ado_error::kNoCurrentRecord);
  if (records == 0) {
    if (current_ == kBOF || current_ == kEOF) raiseRecordset(ado_error::kNoCurrentRecord);
    return;
  }
  if (records > 0) {
    if (current_ == kEOF) raiseRecordset(ado_error::kNoCurrentRecord);
    std::size_t row = current_ == kBOF ? 0 : current_ + 1;
    if (allShown()) {
      const std::size_t target = row + static_cast<std::size_t>(records) - 1;
      current_ = target < rows_.size() ? target : kEOF;
      return;
    }
    row = current_;
    for (int32_t step = 0; step < records && row != kEOF; ++step)
      row = nextShown(row == kBOF ? 0 : row + 1);
    current_ = row;
    return;
  }
  if (current_ == kBOF) raiseRecordset(ado_error::kNoCurrentRecord);
  const std::size_t back = static_cast<std::size_t>(-static_cast<int64_t>(records));
  std::size_t row = current_ == kEOF ? rows_.size() : current_;
  if (allShown()) {
    current_ = row >= back ? row - back : kBOF;
    return;
  }
  for (std::size_t step = 0; step < back; ++step) {
    if (row == 0) {
      row = kBOF;
      break;
    }
    row = previousShown(row - 1);
    if (row == kBOF) break;
  }
  current_ = row;
}

// ---- Editing --------------------------------------------------------------------------------

std::size_t RecordStore::currentRecord(StringView source) const {
  if (!open_) raiseAdoError(ado_error::kObjectClosed, source);
  if (current_ == kBOF || current_ == kEOF || shownCount() == 0)
    raiseAdoError(ado_error::kNoCurrentRecord, source);
  const RowState state = rows_[current_];
  if (state == RowState::Deleted || state == RowState::Gone)
    raiseAdoError(ado_error::kNoCurrentRecord, source);
  return current_;
}

void RecordStore::addNew() {
  requireUpdatable();
  finishEdit();
  const std::size_t row = appendRow();
  setState(row, RowState::New);
  beforeAdd_ = current_;
  current_ = row;
  adding_ = true;
}

void RecordStore::update() {
  requireUpdatable();
  if (adding_) {
    adding_ = false;
    if (!batchMode()) setState(current_, RowState::Unmodified);
  }
  if (editing_) applyEdit();
}

void RecordStore::applyEdit() {
  editing_ = false;
  const std::size_t row = current_;
  if (batchMode() && rows_[row] == RowState::Unmodified) {
    keepOriginals(row);
    setState(row, RowState::Modified);
  }
  for (std::size_t field = 0; field < edits_.size(); ++field) {
    if (edits_[field]) columns_[field].set(row, *edits_[field]);
  }
  edits_.clear();
}

void RecordStore::finishEdit() {
  if (adding_ || editing_) update();
}

void RecordStore::cancelUpdate() {
  requireOpen();
  if (adding_) {
    adding_ = false;
    if (current_ + 1 == rows_.size()) {
      --stateCounts_[static_cast<int>(rows_.back())];
      rows_.pop_back();
      for (RecordColumn& column : columns_)
        column.removeLastRow();
    } else {
      // Rows were appended in bulk after it: the new row is withdrawn in place.
      setState(current_, RowState::Gone);
    }
    current_ = beforeAdd_;
  }
  editing_ = false;
  edits_.clear();
}

void RecordStore::keepOriginals(std::size_t row) {
  std::vector<Variant> values;
  values.reserve(columns_.size());
  for (const RecordColumn& column : columns_)
    values.push_back(column.value(row));
  originals_[row] = std::move(values);
}

void RecordStore::restoreOriginals(std::size_t row) {
  auto found = originals_.find(row);
  if (found == originals_.end()) return;
  for (std::size_t field = 0; field < columns_.size(); ++field)
    columns_[field].set(row, found->second[field]);
  originals_.erase(found);
}

std::vector<std::size_t> RecordStore::affectedRows(int32_t affect) const {
  std::vector<std::size_t> rows;
  switch (affect) {
    case adAffectCurrent:
      if (current_ != kBOF && current_ != kEOF && current_ < rows_.size()) rows.push_back(current_);
      break;
    case adAffectGroup:
      for (std::size_t row = 0; row < rows_.size(); ++row) {
        if (shown(row)) rows.push_back(row);
      }
      break;
    case adAffectAll:
    case adAffectAllChapters:
      for (std::size_t row = 0; row < rows_.size(); ++row)
        rows.push_back(row);
      break;
    default:
      raiseRecordset(ado_error::kArgumentsWrongType);
  }
  return rows;
}

void RecordStore::deleteRecords(int32_t affect) {
  requireUpdatable();
  if (affect != adAffectCurrent && affect != adAffectGroup)
    raiseRecordset(ado_error::kArgumentsWrongType);
  if (affect == adAffectCurrent) currentRecord(kRecordsetSource);
  // An edit of the row is dropped with it; a row under AddNew was never saved.
  editing_ = false;
  edits_.clear();
  adding_ = false;
  for (std::size_t row : affectedRows(affect)) {
    const RowState state = rows_[row];
    if (state == RowState::Deleted || state == RowState::Gone) continue;
    if (batchMode() && state != RowState::New) {
      if (state == RowState::Unmodified) keepOriginals(row);
      setState(row, RowState::Deleted);
    } else {
      originals_.erase(row);
      setState(row, RowState::Gone);
    }
  }
}

void RecordStore::updateBatch(int32_t affect) {
  requireUpdatable();
  finishEdit();
  for (std::size_t row : affectedRows(affect)) {
    switch (rows_[row]) {
      case RowState::New:
      case RowState::Modified:
        originals_.erase(row);
        setState(row, RowState::Unmodified);
        break;
      case RowState::Deleted:
        originals_.erase(row);
        setState(row, RowState::Gone);
        break;
      default:
        break;
    }
  }
}

void RecordStore::cancelBatch(int32_t affect) {
  requireUpdatable();
  if (adding_ || editing_) cancelUpdate();
  for (std::size_t row : affectedRows(affect)) {
    switch (rows_[row]) {
      case RowState::New:
        setState(row, RowState::Gone);
        break;
      case RowState::Modified:
      case RowState::Deleted:
        restoreOriginals(row);
        setState(row, RowState::Unmodified);
        break;
      default:
        break;
    }
  }
}

int32_t RecordStore::editMode() const {
  requireOpen();
  if (adding_) return adEditAdd;
  if (editing_) return adEditInProgress;
  if (current_ < rows_.size() &&
      (rows_[current_] == RowState::Deleted || rows_[current_] == RowState::Gone)) {
    return adEditDelete;
  }
  currentRecord(kRecordsetSource);
  return adEditNone;
}

int32_t RecordStore::status() const {
  requireOpen();
  // A deleted row stays current until a move, even when no other row is left.
  const bool onDeleted = current_ < rows_.size() && (rows_[current_] == RowState::Deleted ||
                                                     rows_[current_] == RowState::Gone);
  if (!onDeleted && (current_ == kBOF || current_ == kEOF || shownCount() == 0))
    raiseRecordset(ado_error::kNoCurrentRecord);
  switch (rows_[current_]) {
    case RowState::Unmodified:
      return adRecUnmodified;
    case RowState::New:
      return adRecNew;
    case RowState::Modified:
      return adRecModified;
    case RowState::Deleted:
    case RowState::Gone:
      return adRecDeleted;
  }
  return adRecOK;
}

Variant RecordStore::value(std::size_t field) const {
  const std::size_t row = currentRecord(kFieldSource);
  if (editing_ && edits_[field]) return *edits_[field];
  return columns_[field].value(row);
}

void RecordStore::setValue(std::size_t field, const Variant& value) {
  const std::size_t row = currentRecord(kFieldSource);
  if (lockType_ == adLockReadOnly) raiseAdoError(ado_error::kUpdateNotSupported, kFieldSource);
  Variant converted = convertForField(fields_[field], value);
  if (adding_) {
    columns_[field].set(row, converted);
    return;
  }
  if (!editing_) {
    edits_.assign(fields_.size(), std::nullopt);
    editing_ = true;
  }
  edits_[field] = std::move(converted);
}

Variant RecordStore::originalValue(std::size_t field) const {
  requireOpen();
  if (current_ == kBOF || current_ == kEOF || shownCount() == 0)
    raiseAdoError(ado_error::kNoCurrentRecord, kFieldSource);
  if (const std::vector<Variant>* originals = originalsOf(current_)) return (*originals)[field];
  if (rows_[current_] == RowState::New) return Variant::null();
  return columns_[field].value(current_);
}

const std::vector<Variant>* RecordStore::originalsOf(std::size_t row) const {
  auto found = originals_.find(row);
  return found == originals_.end() ? nullptr : &found->second;
}

// ---- Filter ---------------------------------------------------------------------------------

void RecordStore::setFilter(const Variant& filter) {
  requireOpen();
  int32_t group = adFilterNone;
  if (filter.isString()) {
    if (!filter.asString().empty()) raiseRecordset(ado_error::kArgumentsWrongType);
  } else if (filter.isNumber() && !filter.isNull()) {
    group = CLng(filter);
  } else {
    raiseRecordset(ado_error::kArgumentsWrongType);
  }
  if (group != adFilterNone && group != adFilterPendingRecords && group != adFilterFetchedRecords)
    raiseRecordset(ado_error::kArgumentsWrongType);
  finishEdit();
  filter_ = filter.isString() ? filter : Variant(group);
  filterGroup_ = group == adFilterPendingRecords ? adFilterPendingRecords : adFilterNone;
  current_ = shownCount() == 0 ? kEOF : nextShown(0);
}

// ---- Bulk loading ---------------------------------------------------------------------------

void RecordStore::reserveRows(std::size_t rows) {
  rows_.reserve(rows);
  for (std::size_t field = 0; field < fields_.size(); ++field) {
    columns_[field].reserve(rows);
    const int32_t size = fields_[field].definedSize;
    if (fields_[field].kind == CellKind::Text && size > 0 && size <= 255)
      columns_[field].reserveTextUnits(rows * static_cast<std::size_t>(size));
  }
}

std::size_t RecordStore::appendRow() {
  if (!open_) throw std::invalid_argument("rows are appended to an open record set");
  for (RecordColumn& column : columns_)
    column.appendRow();
  rows_.push_back(RowState::Unmodified);
  ++stateCounts_[static_cast<int>(RowState::Unmodified)];
  return rows_.size() - 1;
}

std::size_t RecordStore::appendLoadedRow(RowState state) {
  if (state == RowState::Gone) throw std::invalid_argument("a loaded row is never gone");
  const std::size_t row = appendRow();
  setState(row, state);
  return row;
}

void RecordStore::setOriginals(std::size_t row, std::vector<Variant> values) {
  if (row >= rows_.size() || values.size() != fields_.size() ||
      (rows_[row] != RowState::Modified && rows_[row] != RowState::Deleted)) {
    throw std::invalid_argument("originals belong to a modified or deleted row, one per field");
  }
  originals_[row] = std::move(values);
}

RecordColumn& RecordStore::cellColumn(std::size_t row, std::size_t field, CellKind kind) {
  if (row >= rows_.size()) throw std::invalid_argument("row out of range");
  if (field >= fields_.size()) throw std::invalid_argument("field out of range");
  if (fields_[field].kind != kind)
    throw std::invalid_argument("the value does not match the field's type");
  return columns_[field];
}

}  // namespace ravelin
