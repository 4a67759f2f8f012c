#include <filesystem>
#include <fstream>
#include <optional>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/internal/recordset_xml.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/platform/paths.hpp>
#include <system_error>

namespace ravelin {

Recordset::Recordset()
    : store_(std::make_shared<RecordStore>()), fields_(makeObject<ravelin::Fields>(store_)) {}

void Recordset::Open(const Variant& Source, const Variant& ActiveConnection, int32_t CursorType,
                     int32_t LockType, int32_t Options) {
  const auto given = [](const Variant& value) {
    return !value.isMissing() && !value.isEmpty() && !(value.isObject() && !value.asObject());
  };
  if (store_->isOpen()) raiseAdoError(ado_error::kObjectOpen, kRecordsetSource);
  if (given(ActiveConnection)) setActiveConnection(ActiveConnection);
  // A saved file: adCmdFile, or a text with neither connection nor options.
  const bool fromFile = (Options != adCmdUnspecified && (Options & adCmdFile) != 0) ||
                        (Source.isString() && !connection_ && Options == adCmdUnspecified);
  if (fromFile) {
    if (!Source.isString()) raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
    openFromFile(Source.asString(), LockType);
    return;
  }
  // A query on a connection (recordset_query.cpp).
  if (connection_ && given(Source)) {
    openFromQuery(CStr(Source), CursorType, LockType);
    return;
  }
  if (given(Source) || given(ActiveConnection))
    raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
  store_->open(CursorType, LockType);
}

// ---- Saved files ----------------------------------------------------------------------------

namespace {

std::string readWholeFile(StringView path) {
  const auto native = platform::nativePath(path);
  std::error_code error;
  if (path.empty() || !native || !std::filesystem::exists(*native, error))
    raiseAdoError(ado_error::kOpeningFile, kRecordsetSource, u"Not found: " + String(path));
  if (!std::filesystem::is_regular_file(*native, error))
    raiseAdoError(ado_error::kOpeningFile, kRecordsetSource, u"Not a file: " + String(path));
  const uintmax_t size = std::filesystem::file_size(*native, error);
  if (error) raiseAdoError(ado_error::kOpeningFile, kRecordsetSource, String(path));
  if (size > recordset_xml::kMaxDocumentBytes) {
    raiseAdoError(ado_error::kReadFile, kRecordsetSource,
                  u"The file is larger than 1 GiB: " + String(path));
  }
  std::ifstream stream(*native, std::ios::binary);
  if (!stream) raiseAdoError(ado_error::kOpeningFile, kRecordsetSource, String(path));
  std::string bytes(static_cast<std::size_t>(size), '\0');
  stream.read(bytes.data(), static_cast<std::streamsize>(size));
  if (static_cast<uintmax_t>(stream.gcount()) != size)
    raiseAdoError(ado_error::kReadFile, kRecordsetSource, String(path));
  return bytes;
}

}  // namespace

void Recordset::openFromFile(StringView path, int32_t lockType) {
  const std::string document = readWholeFile(path);
  if (lockType == adLockUnspecified)
    lockType = store_->lockTypeGiven() ? store_->lockType() : adLockBatchOptimistic;
  // Read into a store of its own, so a bad file leaves this set as it was.
  RecordStore loaded;
  recordset_xml::read(document, loaded, lockType);
  *store_ = std::move(loaded);
  fields_->refresh();
  if (!(store_->bof() && store_->eof())) store_->moveFirst();
}

void Recordset::Save(const Variant& Destination, int32_t PersistFormat) {
  if (!store_->isOpen()) raiseAdoError(ado_error::kObjectClosed, kRecordsetSource);
  if (PersistFormat != adPersistXML) {
    raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource,
                  u"Only adPersistXML (1) is supported.");
  }
  if (!Destination.isString() || Destination.asString().empty())
    raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
  const String& path = Destination.asString();
  // Completes an edit in progress and leaves the first row current.
  if (!(store_->bof() && store_->eof())) store_->moveFirst();
  const std::string document = recordset_xml::write(*store_);
  const auto native = platform::nativePath(path);
  if (!native) raiseAdoError(ado_error::kWriteFile, kRecordsetSource, String(path));
  std::error_code error;
  if (std::filesystem::exists(*native, error))
    raiseAdoError(ado_error::kFileAlreadyExists, kRecordsetSource);
  std::ofstream stream(*native, std::ios::binary);
  if (stream) stream.write(document.data(), static_cast<std::streamsize>(document.size()));
  if (stream) stream.close();
  if (!stream) {
    std::filesystem::remove(*native, error);
    raiseAdoError(ado_error::kWriteFile, kRecordsetSource, String(path));
  }
}

void Recordset::assignList(const Variant& fieldList, const Variant& values) {
  if (fieldList.isMissing()) return;
  if (fieldList.isArray() != values.isArray())
    raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
  if (!fieldList.isArray()) {
    fields_->Item(fieldList)->setValue(values);
    return;
  }
  const auto& names = fieldList.asArray().elements;
  const auto& given = values.asArray().elements;
  if (names.size() != given.size()) raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
  for (std::size_t i = 0; i < names.size(); ++i)
    fields_->Item(names[i])->setValue(given[i]);
}

void Recordset::AddNew(const Variant& FieldList, const Variant& Values) {
  store_->addNew();
  if (FieldList.isMissing()) return;
  assignList(FieldList, Values);
  store_->update();
}

void Recordset::Update(const Variant& FieldList, const Variant& Values) {
  assignList(FieldList, Values);
  store_->update();
}

void Recordset::Move(int32_t NumRecords, const Variant& Start) {
  if (!Start.isMissing()) raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
  store_->move(NumRecords);
}

// ---- Bulk loading ---------------------------------------------------------------------------

void Recordset::reserveRows(std::size_t rows) {
  store_->reserveRows(rows);
}

std::size_t Recordset::appendRow() {
  return store_->appendRow();
}

void Recordset::setCellDouble(std::size_t row, std::size_t field, double value) {
  store_->cellColumn(row, field, CellKind::Double).setDouble(row, value);
}

void Recordset::setCellBoolean(std::size_t row, std::size_t field, bool value) {
  store_->cellColumn(row, field, CellKind::Boolean).setBoolean(row, value);
}

void Recordset::setCellDate(std::size_t row, std::size_t field, double serial) {
  store_->cellColumn(row, field, CellKind::Date).setDouble(row, serial);
}

void Recordset::setCellText(std::size_t row, std::size_t field, StringView value) {
  store_->cellColumn(row, field, CellKind::Text).setText(row, value);
}

void Recordset::setCellLatin1(std::size_t row, std::size_t field, std::string_view bytes) {
  store_->cellColumn(row, field, CellKind::Text).setLatin1(row, bytes);
}

// ---- Member table ---------------------------------------------------------------------------

ClassInfo Recordset::describe() {
  const auto missing = [](StringView name) { return optional(name, Variant::missing()); };
  return ClassBuilder<Recordset>(kClassName)
      .get(u"Fields", &Recordset::Fields)
      // The default member: rs("Name") is rs.Fields("Name"), and rs alone its Fields.
      .get(u"",
           [](Recordset& self, const Variant& index) -> Variant {
             if (index.isMissing()) return Variant(ObjectRef(self.Fields()));
             return Variant(ObjectRef(self.Fields()->Item(index)));
           },
           {missing(u"Index")})
      .let(u"",
           [](Recordset& self, const Variant& index, const Variant& value) {
             self.Fields()->Item(index)->setValue(value);
           },
           {u"Index"})
      .method(u"Open", &Recordset::Open,
              {missing(u"Source"), missing(u"ActiveConnection"),
               optional(u"CursorType", Variant(int32_t{adOpenUnspecified})),
               optional(u"LockType", Variant(int32_t{adLockUnspecified})),
               optional(u"Options", Variant(int32_t{-1}))})
      .method(u"Close", &Recordset::Close)
      .method(u"Save", &Recordset::Save,
              {missing(u"Destination"), optional(u"PersistFormat", Variant(int32_t{adPersistXML}))})
      .get(u"State", &Recordset::State)
      .method(u"AddNew", &Recordset::AddNew, {missing(u"FieldList"), missing(u"Values")})
      .method(u"Update", &Recordset::Update, {missing(u"Fields"), missing(u"Values")})
      .method(u"CancelUpdate", &Recordset::CancelUpdate)
      .method(u"Cancel", &Recordset::Cancel)
      .method(u"Delete", &Recordset::Delete,
              {optional(u"AffectRecords", Variant(int32_t{adAffectCurrent}))})
      .method(u"UpdateBatch", &Recordset::UpdateBatch,
              {optional(u"AffectRecords", Variant(int32_t{adAffectAll}))})
      .method(u"CancelBatch", &Recordset::CancelBatch,
              {optional(u"AffectRecords", Variant(int32_t{adAffectAll}))})
      .method(u"MoveFirst", &Recordset::MoveFirst)
      .method(u"MoveLast", &Recordset::MoveLast)
      .method(u"MoveNext", &Recordset::MoveNext)
      .method(u"MovePrevious", &Recordset::MovePrevious)
      .method(u"Move", &Recordset::Move, {u"NumRecords", missing(u"Start")})
      .get(u"BOF", &Recordset::BOF)
      .get(u"EOF", &Recordset::EndOfFile)
      .get(u"RecordCount", &Recordset::RecordCount)
      .get(u"AbsolutePosition", &Recordset::AbsolutePosition)
      .let(u"AbsolutePosition", &Recordset::setAbsolutePosition)
      .get(u"EditMode", &Recordset::EditMode)
      .get(u"Status", &Recordset::Status)
      .get(u"LockType", &Recordset::LockType)
      .let(u"LockType", &Recordset::setLockType)
      .get(u"CursorType", &Recordset::CursorType)
      .let(u"CursorType", &Recordset::setCursorType)
      .get(u"CursorLocation", &Recordset::CursorLocation)
      .let(u"CursorLocation", &Recordset::setCursorLocation)
      .get(u"ActiveConnection",
           [](Recordset& self) -> Variant {
             if (!self.ActiveConnection()) return Variant::nothing();
             return Variant(ObjectRef(self.ActiveConnection()));
           })
      .let(u"ActiveConnection", &Recordset::setActiveConnection)
      .set(u"ActiveConnection", &Recordset::setActiveConnection)
      .get(u"Filter", &Recordset::Filter)
      .let(u"Filter", &Recordset::setFilter)
      .build();
}

}  // namespace ravelin
