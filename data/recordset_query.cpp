// Recordset with a connection: ActiveConnection, and Open of a query filling the set.
#include <ravelin/base/text.hpp>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/internal/odbc_types.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/platform/odbc.hpp>

namespace ravelin {
namespace {

bool isNameUnit(char16_t unit) {
  return (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z') ||
         (unit >= u'0' && unit <= u'9') || unit == u'_' || unit == u'.' || unit >= 0x80;
}

bool isSpace(char16_t unit) {
  return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n';
}

// The word at `at` (a name, or a quoted name with its quotes removed), moving past it.
String readName(StringView text, std::size_t& at) {
  String name;
  while (at < text.size()) {
    const char16_t unit = text[at];
    if (unit == u'"' || unit == u'`' || unit == u'[') {
      const char16_t close = unit == u'[' ? u']' : unit;
      const std::size_t end = text.find(close, at + 1);
      if (end == StringView::npos) return {};
      name += text.substr(at + 1, end - at - 1);
      at = end + 1;
    } else if (isNameUnit(unit)) {
      name += unit;
      ++at;
    } else {
      break;
    }
  }
  return name;
}

}  // namespace

String odbc_types::singleTableOf(StringView query) {
  const String upper = toUpper(query);
  std::size_t from = StringView::npos;
  for (std::size_t at = upper.find(u"FROM"); at != String::npos; at = upper.find(u"FROM", at + 4)) {
    const bool before = at == 0 || isSpace(upper[at - 1]) || upper[at - 1] == u')';
    const bool after = at + 4 < upper.size() && isSpace(upper[at + 4]);
    if (before && after) {
      if (from != StringView::npos) return {};  // a second FROM: a subquery
      from = at;
    }
  }
  if (from == StringView::npos) return {};
  std::size_t at = from + 4;
  while (at < query.size() && isSpace(query[at]))
    ++at;
  String table = readName(query, at);
  if (table.empty()) return {};
  // What may follow a single table: an alias, the end, or a clause.
  const String rest = upper.substr(at);
  if (rest.find(u',') != String::npos || rest.find(u"JOIN") != String::npos) return {};
  return table;
}

void Recordset::setActiveConnection(const Variant& value) {
  if (store_->isOpen() && !store_->batchMode())
    raiseAdoError(ado_error::kObjectOpen, kRecordsetSource);
  if (value.isMissing() || value.isEmpty() || value.isNull() ||
      (value.isObject() && !value.asObject())) {
    connection_.reset();
    return;
  }
  if (value.isObject()) {
    auto connection = std::dynamic_pointer_cast<Connection>(value.asObject());
    if (!connection) raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
    if (connection->State() != adStateOpen)
      raiseAdoError(ado_error::kInvalidConnection, kRecordsetSource);
    connection_ = std::move(connection);
    return;
  }
  if (!value.isString()) raiseAdoError(ado_error::kArgumentsWrongType, kRecordsetSource);
  auto connection = makeObject<Connection>();
  connection->Open(value.asString());
  connection_ = std::move(connection);
}

void Recordset::openFromQuery(StringView query, int32_t cursorType, int32_t lockType) {
  try {
    auto statement = connection_->odbc().statement();
    // A statement without rows leaves the set closed, as the data-access objects do.
    if (!statement->executeDirect(query)) return;
    loadResult(*statement, connection_, cursorType, lockType, query);
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
}

void Recordset::loadResult(platform::OdbcStatement& statement,
                           std::shared_ptr<Connection> connection, int32_t cursorType,
                           int32_t lockType, StringView query) {
  if (store_->isOpen()) raiseAdoError(ado_error::kObjectOpen, kRecordsetSource);
  std::vector<FieldDefinition> fields;
  try {
    for (const platform::OdbcColumn& column : statement.columns())
      fields.push_back(odbc_types::fieldFor(column));

    // Without the driver's word, the single table of a simple query is every column's.
    bool anyBase = false;
    for (const FieldDefinition& field : fields)
      anyBase = anyBase || !field.baseTable.empty();
    if (!anyBase && !query.empty()) {
      const String table = odbc_types::singleTableOf(query);
      for (FieldDefinition& field : fields) {
        if (table.empty()) break;
        field.baseTable = table;
        field.baseColumn = field.name;
      }
    }
    // The key of the base table, when there is one table.
    String table;
    bool single = true;
    for (const FieldDefinition& field : fields) {
      if (field.baseTable.empty()) continue;
      if (table.empty()) table = field.baseTable;
      single = single && equalsIgnoreCase(table, field.baseTable);
    }
    if (!table.empty() && single && connection) {
      const std::vector<std::u16string> keys = connection->odbc().primaryKeys(table);
      for (FieldDefinition& field : fields) {
        for (const std::u16string& key : keys) {
          if (!field.baseColumn.empty() && equalsIgnoreCase(field.baseColumn, key))
            field.attributes |= adFldKeyColumn;
        }
      }
    }
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }

  store_->defineFields(std::move(fields));
  fields_->refresh();
  connection_ = std::move(connection);
  store_->open(cursorType, lockType == adLockUnspecified ? store_->lockType() : lockType);

  // The rows, cell by cell into the columns (the bulk-loading path).
  const std::size_t count = store_->fieldCount();
  String text;
  std::vector<uint8_t> bytes;
  try {
    while (statement.fetch()) {
      const std::size_t row = store_->appendRow();
      for (std::size_t f = 0; f < count; ++f) {
        const FieldDefinition& field = store_->field(f);
        RecordColumn& column = store_->cellColumn(row, f, field.kind);
        const auto refuse = [] {
          raiseAdoError(ado_error::kMultipleStepErrors, kCursorEngineSource);
        };
        int64_t whole = 0;
        double real = 0;
        platform::OdbcTimestamp stamp;
        switch (field.kind) {
          case CellKind::Long:
            if (!statement.readInteger(f, whole)) break;
            if (whole < INT32_MIN || whole > INT32_MAX) refuse();
            column.setLong(row, static_cast<int32_t>(whole));
            break;
          case CellKind::Integer:
            if (!statement.readInteger(f, whole)) break;
            if (whole < INT16_MIN || whole > INT16_MAX) refuse();
            column.setInteger(row, static_cast<int16_t>(whole));
            break;
          case CellKind::Byte:
            if (!statement.readInteger(f, whole)) break;
            if (whole < 0 || whole > 255) refuse();
            column.setByte(row, static_cast<uint8_t>(whole));
            break;
          case CellKind::Boolean:
            if (statement.readInteger(f, whole)) column.setBoolean(row, whole != 0);
            break;
          case CellKind::Double:
            if (field.type == adBigInt || field.type == adUnsignedInt) {
              if (statement.readInteger(f, whole))
                column.setDouble(row, static_cast<double>(whole));
            } else if (statement.readDouble(f, real)) {
              column.setDouble(row, real);
            }
            break;
          case CellKind::Single:
            if (statement.readDouble(f, real)) column.setSingle(row, static_cast<float>(real));
            break;
          case CellKind::Currency:
            if (statement.readDouble(f, real)) column.setCurrency(row, CCur(Variant(real)));
            break;
          case CellKind::Date:
            if (statement.readTimestamp(f, stamp))
              column.setDouble(row, odbc_types::dateOf(stamp).serial);
            break;
          case CellKind::Text:
            if (statement.readText(f, text)) column.setText(row, text);
            break;
          case CellKind::Variant:
            if (statement.readBinary(f, bytes)) {
              SafeArray array =
                  SafeArray::vector(VarType::Byte, 0, static_cast<int32_t>(bytes.size()) - 1);
              for (std::size_t i = 0; i < bytes.size(); ++i)
                array.elements[i] = Variant(bytes[i]);
              column.setVariant(row, Variant(std::move(array)));
            }
            break;
        }
      }
    }
    statement.closeCursor();
  } catch (const platform::OdbcError& error) {
    store_->close();
    raiseOdbcError(error);
  } catch (...) {
    store_->close();
    throw;
  }
  if (store_->recordCount() > 0) store_->moveFirst();
}

}  // namespace ravelin
