// Recordset::UpdateBatch with a connection: the pending rows sent as prepared statements in one
// transaction (recordset.hpp for the rules).
#include <ravelin/base/text.hpp>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/internal/odbc_types.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/convert.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/odbc.hpp>
#include <string>
#include <unordered_map>

namespace ravelin {
namespace {

// Where a parameter's value comes from: a field of the row as it is, or as it was.
struct Source {
  std::size_t field;
  bool original;
};

struct Prepared {
  std::unique_ptr<platform::OdbcStatement> statement;
  std::vector<Source> sources;
  bool counted;  // an UPDATE or DELETE, whose rows changed must not be 0
  std::vector<platform::OdbcValueKind> kinds;  // per parameter
};

bool sameValue(const Variant& a, const Variant& b) {
  if (a.isNull() || b.isNull()) return a.isNull() && b.isNull();
  if (a.type() != b.type()) return false;
  if (a.isString()) return a.asString() == b.asString();
  if (a.isArray()) {
    const auto& x = a.asArray().elements;
    const auto& y = b.asArray().elements;
    if (x.size() != y.size()) return false;
    for (std::size_t i = 0; i < x.size(); ++i) {
      if (!sameValue(x[i], y[i])) return false;
    }
    return true;
  }
  if (a.type() == VarType::Currency) return a.asCurrency() == b.asCurrency();
  return CDbl(a) == CDbl(b);
}

class BatchWriter {
 public:
  BatchWriter(Connection& connection, const RecordStore& store)
      : connection_(connection),
        store_(store),
        quote_(connection.identifierQuote()),
        targetIndex_(store.fieldCount()) {
    for (std::size_t f = 0; f < store.fieldCount(); ++f) {
      const FieldDefinition& field = store.field(f);
      if (field.baseTable.empty() || field.baseColumn.empty()) continue;
      if (table_.empty()) table_ = field.baseTable;
      if (!equalsIgnoreCase(table_, field.baseTable)) {
        table_.clear();
        break;
      }
      targetIndex_[f] = targets_.size();
      targets_.push_back(f);
      if (field.attributes & adFldKeyColumn) keys_.push_back(f);
      parameters_.push_back(odbc_types::parameterFor(field));
    }
    if (table_.empty()) targets_.clear();
  }

  bool hasTable() const { return !table_.empty(); }

  void write(std::size_t row) {
    switch (store_.rowState(row)) {
      case RowState::New:
        insert(row);
        break;
      case RowState::Modified:
        update(row);
        break;
      case RowState::Deleted:
        remove(row);
        break;
      default:
        break;
    }
  }

 private:
  String quoted(StringView name) const {
    if (quote_.empty()) return String(name);
    String text = quote_;
    for (char16_t unit : name) {
      text += unit;
      if (quote_.size() == 1 && unit == quote_[0]) text += unit;
    }
    return text + quote_;
  }

  // The table, each part of "schema.table" quoted.
  String quotedTable() const {
    String text;
    std::size_t start = 0;
    for (;;) {
      const std::size_t dot = table_.find(u'.', start);
      text += quoted(StringView(table_).substr(start, dot - start));
      if (dot == String::npos) break;
      text += u'.';
      start = dot + 1;
    }
    return text;
  }

  Variant originalOf(std::size_t row, std::size_t field) const {
    const std::vector<Variant>* originals = store_.originalsOf(row);
    return originals ? (*originals)[field] : store_.column(field).value(row);
  }

  std::size_t targetIndex(std::size_t field) const { return targetIndex_[field]; }

  void insert(std::size_t row) {
    key_.assign(1, 'I');
    for (std::size_t field : targets_)
      key_ += store_.column(field).isSet(row) ? '1' : '0';
    Prepared& prepared = statementFor(
        [&](std::vector<Source>& sources) {
          String names;
          String markers;
          for (std::size_t field : targets_) {
            if (!store_.column(field).isSet(row)) continue;
            if (!names.empty()) {
              names += u", ";
              markers += u", ";
            }
            names += quoted(store_.field(field).baseColumn);
            markers += u'?';
            sources.push_back({field, false});
          }
          if (names.empty()) return u"INSERT INTO " + quotedTable() + u" DEFAULT VALUES";
          return u"INSERT INTO " + quotedTable() + u" (" + names + u") VALUES (" + markers + u")";
        },
        false);
    run(prepared, row);
  }

  // The fields that locate a row: its key and the fields the row changes (so that a change
  // made underneath to a column being updated is found, as the data-access objects' default
  // update criteria do), or with no key every field.
  void chooseLocators(const std::vector<std::size_t>& changed) {
    if (keys_.empty()) {
      where_ = targets_;
      return;
    }
    where_ = keys_;
    for (std::size_t field : changed) {
      if ((store_.field(field).attributes & adFldKeyColumn) == 0) where_.push_back(field);
    }
  }

  void appendWhere(String& sql, std::vector<Source>& sources, std::size_t row) const {
    bool first = true;
    for (std::size_t field : where_) {
      sql += first ? u" WHERE " : u" AND ";
      first = false;
      sql += quoted(store_.field(field).baseColumn);
      if (originalOf(row, field).isNull()) {
        sql += u" IS NULL";
      } else {
        sql += u" = ?";
        sources.push_back({field, true});
      }
    }
  }

  void appendWhereKey(std::size_t row) {
    key_ += '|';
    for (std::size_t field : where_)
      key_ += originalOf(row, field).isNull() ? 'N' : 'V';
  }

  void update(std::size_t row) {
    key_.assign(1, 'U');
    changed_.clear();
    for (std::size_t field : targets_) {
      const bool differs = !sameValue(store_.column(field).value(row), originalOf(row, field));
      key_ += differs ? '1' : '0';
      if (differs) changed_.push_back(field);
    }
    if (changed_.empty()) return;
    chooseLocators(changed_);
    appendWhereKey(row);
    Prepared& prepared = statementFor(
        [&](std::vector<Source>& sources) {
          String sql = u"UPDATE " + quotedTable() + u" SET ";
          bool first = true;
          for (std::size_t field : changed_) {
            if (!first) sql += u", ";
            first = false;
            sql += quoted(store_.field(field).baseColumn) + u" = ?";
            sources.push_back({field, false});
          }
          appendWhere(sql, sources, row);
          return sql;
        },
        true);
    run(prepared, row);
  }

  void remove(std::size_t row) {
    key_.assign(1, 'D');
    chooseLocators({});
    appendWhereKey(row);
    Prepared& prepared = statementFor(
        [&](std::vector<Source>& sources) {
          String sql = u"DELETE FROM " + quotedTable();
          appendWhere(sql, sources, row);
          return sql;
        },
        true);
    run(prepared, row);
  }

  // The statement of the current key_, prepared on first use.
  template <typename Build>
  Prepared& statementFor(Build&& build, bool counted) {
    auto found = prepared_.find(key_);
    if (found != prepared_.end()) return found->second;
    Prepared prepared{connection_.odbc().statement(), {}, counted, {}};
    const String sql = build(prepared.sources);
    std::vector<platform::OdbcParameter> parameters;
    for (const Source& source : prepared.sources) {
      parameters.push_back(parameters_[targetIndex(source.field)]);
      prepared.kinds.push_back(parameters.back().kind);
    }
    prepared.statement->prepare(sql, parameters);
    return prepared_.emplace(key_, std::move(prepared)).first->second;
  }

  void run(Prepared& prepared, std::size_t row) {
    platform::OdbcStatement& statement = *prepared.statement;
    for (std::size_t p = 0; p < prepared.sources.size(); ++p) {
      const Source& source = prepared.sources[p];
      const RecordColumn& column = store_.column(source.field);
      if (!source.original && column.kind() == CellKind::Text) {
        if (!column.isSet(row)) {
          statement.setNull(p);
        } else {
          const std::size_t units = column.textLength(row);
          column.copyText(row, statement.textBuffer(p, units));
        }
        continue;
      }
      const Variant value = source.original ? originalOf(row, source.field) : column.value(row);
      bind(statement, p, prepared.kinds[p], value);
    }
    const int64_t changed = statement.executePrepared();
    if (prepared.counted && changed == 0)
      raiseAdoError(ado_error::kRowNotLocated, kCursorEngineSource);
  }

  void bind(platform::OdbcStatement& statement, std::size_t p, platform::OdbcValueKind kind,
            const Variant& value) {
    if (value.isNull() || value.isEmpty()) {
      statement.setNull(p);
      return;
    }
    switch (kind) {
      case platform::OdbcValueKind::Integer:
        statement.setInteger(p, static_cast<int64_t>(CDbl(value)));
        break;
      case platform::OdbcValueKind::Double:
        statement.setDouble(p, CDbl(value));
        break;
      case platform::OdbcValueKind::Bit:
        statement.setBit(p, CBool(value));
        break;
      case platform::OdbcValueKind::Date:
      case platform::OdbcValueKind::Timestamp:
        statement.setTimestamp(p, odbc_types::timestampOf(CDate(value)));
        break;
      case platform::OdbcValueKind::Text:
        statement.setText(p, value.isString() ? value.asString() : CStr(value));
        break;
      case platform::OdbcValueKind::Binary: {
        bytes_.clear();
        if (value.isArray()) {
          for (const Variant& element : value.asArray().elements)
            bytes_.push_back(CByte(element));
        } else {
          for (char16_t unit : CStr(value)) {
            bytes_.push_back(static_cast<uint8_t>(unit & 0xFF));
            bytes_.push_back(static_cast<uint8_t>(unit >> 8));
          }
        }
        statement.setBinary(p, bytes_);
        break;
      }
    }
  }

  Connection& connection_;
  const RecordStore& store_;
  String quote_;
  String table_;
  std::vector<std::size_t> targetIndex_;             // per field: its place among the targets
  std::vector<std::size_t> targets_;                 // the fields written, in field order
  std::vector<std::size_t> keys_;                    // the key fields among them
  std::vector<platform::OdbcParameter> parameters_;  // per target
  std::unordered_map<std::string, Prepared> prepared_;
  std::string key_;
  std::vector<std::size_t> changed_;
  std::vector<std::size_t> where_;
  std::vector<uint8_t> bytes_;
};

}  // namespace

void Recordset::UpdateBatch(int32_t AffectRecords) {
  if (connection_) sendBatch(AffectRecords);
  store_->updateBatch(AffectRecords);
}

void Recordset::sendBatch(int32_t affect) {
  // Completes an edit in progress, so that it goes with the batch (and checks the set is open
  // and updatable).
  store_->update();
  std::vector<std::size_t> rows;
  for (std::size_t row : store_->affectedRows(affect)) {
    const RowState state = store_->rowState(row);
    if (state == RowState::New || state == RowState::Modified || state == RowState::Deleted)
      rows.push_back(row);
  }
  if (rows.empty()) return;
  Connection& connection = *connection_;
  platform::OdbcConnection& odbc = connection.odbc();
  const bool ownTransaction = !connection.inTransaction();
  try {
    BatchWriter writer(connection, *store_);
    if (!writer.hasTable()) {
      raiseError(ado_error::kUnspecifiedError, String(kCursorEngineSource),
                 String(kInsufficientBaseTableText));
    }
    if (ownTransaction) odbc.setAutoCommit(false);
    try {
      constexpr std::size_t kProgressEvery = 4096;
      for (std::size_t i = 0; i < rows.size(); ++i) {
        writer.write(rows[i]);
        if (batchProgress_ && ((i + 1) % kProgressEvery == 0 || i + 1 == rows.size()))
          batchProgress_(i + 1, rows.size());
      }
      if (ownTransaction) {
        odbc.commit();
        odbc.setAutoCommit(true);
      }
    } catch (...) {
      if (ownTransaction) {
        try {
          odbc.rollback();
          odbc.setAutoCommit(true);
        } catch (const platform::OdbcError&) {
          // The first failure is the one reported.
        }
      }
      throw;
    }
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
}

}  // namespace ravelin
