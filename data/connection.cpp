#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/connection.hpp>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/odbc.hpp>
#include <ravelin/text/text_helpers.hpp>
#include <utility>
#include <vector>

namespace ravelin {
namespace {

struct Attribute {
  String key;
  String value;
};

bool isBlank(char16_t unit) {
  return unit == u' ' || unit == u'\t';
}

StringView trimmed(StringView text) {
  while (!text.empty() && isBlank(text.front()))
    text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back()))
    text.remove_suffix(1);
  return text;
}

// The key=value pairs of a connection string. A value may be in braces (ODBC, "}}" for "}") or
// in quotes (ADO, doubled to escape), either holding ";".
std::vector<Attribute> parseAttributes(StringView text) {
  std::vector<Attribute> attributes;
  std::size_t at = 0;
  while (at < text.size()) {
    const std::size_t equals = text.find(u'=', at);
    const std::size_t semicolon = text.find(u';', at);
    if (equals == StringView::npos || (semicolon != StringView::npos && semicolon < equals)) {
      // A part without "=": kept as a key without a value, so the driver can refuse it.
      const std::size_t end = semicolon == StringView::npos ? text.size() : semicolon;
      if (!trimmed(text.substr(at, end - at)).empty())
        attributes.push_back({String(trimmed(text.substr(at, end - at))), String()});
      at = end + 1;
      continue;
    }
    Attribute attribute{String(trimmed(text.substr(at, equals - at))), String()};
    std::size_t position = equals + 1;
    while (position < text.size() && isBlank(text[position]))
      ++position;
    const char16_t open = position < text.size() ? text[position] : u'\0';
    if (open == u'{' || open == u'"' || open == u'\'') {
      const char16_t close = open == u'{' ? u'}' : open;
      ++position;
      while (position < text.size()) {
        if (text[position] == close) {
          if (position + 1 < text.size() && text[position + 1] == close) {
            attribute.value += close;
            position += 2;
            continue;
          }
          ++position;
          break;
        }
        attribute.value += text[position++];
      }
      const std::size_t end = text.find(u';', position);
      at = end == StringView::npos ? text.size() : end + 1;
    } else {
      const std::size_t end = text.find(u';', position);
      const std::size_t stop = end == StringView::npos ? text.size() : end;
      attribute.value = String(trimmed(text.substr(position, stop - position)));
      at = stop + 1;
    }
    if (!attribute.key.empty()) attributes.push_back(std::move(attribute));
  }
  return attributes;
}

Attribute* find(std::vector<Attribute>& attributes, StringView key) {
  for (Attribute& attribute : attributes) {
    if (equalsIgnoreCase(attribute.key, key)) return &attribute;
  }
  return nullptr;
}

void put(std::vector<Attribute>& attributes, StringView key, StringView value) {
  if (Attribute* found = find(attributes, key)) {
    found->value = String(value);
    return;
  }
  attributes.push_back({String(key), String(value)});
}

String valueText(const String& value) {
  const bool needsBraces = value.find_first_of(u";{}") != String::npos ||
                           (!value.empty() && (isBlank(value.front()) || isBlank(value.back())));
  if (!needsBraces) return value;
  String braced = u"{";
  for (char16_t unit : value) {
    braced += unit;
    if (unit == u'}') braced += u'}';
  }
  return braced + u"}";
}

}  // namespace

String odbcConnectionString(StringView connectionString, StringView user, StringView password) {
  std::vector<Attribute> attributes = parseAttributes(connectionString);
  if (Attribute* provider = find(attributes, u"Provider")) {
    const String name = provider->value;
    if (!equalsIgnoreCase(name, u"MSDASQL") && !equalsIgnoreCase(name, u"MSDASQL.1"))
      raiseAdoError(ado_error::kProviderNotFound, kConnectionSource);
    std::erase_if(attributes, [](const Attribute& attribute) {
      return equalsIgnoreCase(attribute.key, u"Provider");
    });
  }
  const bool named =
      find(attributes, u"Driver") || find(attributes, u"DSN") || find(attributes, u"FileDSN");
  if (!named) {
    if (Attribute* source = find(attributes, u"Data Source")) {
      source->key = u"Database";
      attributes.insert(attributes.begin(), {u"Driver", u"SQLite3"});
    }
  }
  for (Attribute& attribute : attributes) {
    if (equalsIgnoreCase(attribute.key, u"User ID")) attribute.key = u"UID";
    if (equalsIgnoreCase(attribute.key, u"Password")) attribute.key = u"PWD";
  }
  if (!user.empty()) put(attributes, u"UID", user);
  if (!password.empty()) put(attributes, u"PWD", password);

  String text;
  for (const Attribute& attribute : attributes) {
    text += attribute.key;
    text += u'=';
    // A driver's name goes in braces, as the driver managers expect it.
    if (equalsIgnoreCase(attribute.key, u"Driver") && !attribute.value.empty())
      text += u"{" + attribute.value + u"}";
    else
      text += valueText(attribute.value);
    text += u';';
  }
  return text;
}

void raiseOdbcError(const platform::OdbcError& error) {
  raiseError(error.connecting() ? ado_error::kUnspecifiedError : ado_error::kErrorsInCommand,
             String(kOdbcProviderSource), error.message());
}

Connection::Connection() = default;
Connection::~Connection() = default;

void Connection::setConnectionString(StringView value) {
  if (odbc_) raiseAdoError(ado_error::kObjectOpen, kConnectionSource);
  connectionString_ = String(value);
}

void Connection::requireOpen() const {
  if (!odbc_) raiseAdoError(ado_error::kObjectClosed, kConnectionSource);
}

platform::OdbcConnection& Connection::odbc() const {
  if (!odbc_) raiseAdoError(ado_error::kInvalidConnection, kConnectionSource);
  return *odbc_;
}

void Connection::Open(StringView ConnectionString, StringView UserID, StringView Password,
                      int32_t Options) {
  (void)Options;
  if (odbc_) raiseAdoError(ado_error::kObjectOpen, kConnectionSource);
  const String given = ConnectionString.empty() ? connectionString_ : String(ConnectionString);
  const String odbcText = odbcConnectionString(given, UserID, Password);
  try {
    auto connection = platform::odbc()->connect(odbcText);
    identifierQuote_ = connection->identifierQuote();
    odbc_ = std::move(connection);
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
  connectionString_ = given;
  transactionLevel_ = 0;
}

void Connection::Close() {
  requireOpen();
  if (transactionLevel_ > 0) raiseAdoError(ado_error::kInTransaction, kConnectionSource);
  odbc_.reset();
}

std::shared_ptr<Recordset> Connection::Execute(StringView CommandText, Variant& RecordsAffected,
                                               int32_t Options) {
  (void)Options;
  requireOpen();
  auto recordset = makeObject<Recordset>();
  try {
    auto statement = odbc_->statement();
    if (statement->executeDirect(CommandText)) {
      recordset->loadResult(*statement, std::static_pointer_cast<Connection>(shared_from_this()),
                            adOpenStatic, adLockReadOnly);
      RecordsAffected = Variant(int32_t{-1});
    } else {
      RecordsAffected = Variant(static_cast<int32_t>(statement->rowCount()));
    }
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
  return recordset;
}

int32_t Connection::BeginTrans() {
  requireOpen();
  if (transactionLevel_ > 0) raiseAdoError(ado_error::kTransactionExists, kOdbcProviderSource);
  try {
    odbc_->setAutoCommit(false);
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
  transactionLevel_ = 1;
  return transactionLevel_;
}

void Connection::CommitTrans() {
  requireOpen();
  if (transactionLevel_ == 0) raiseAdoError(ado_error::kNoTransaction, kOdbcProviderSource);
  try {
    odbc_->commit();
    odbc_->setAutoCommit(true);
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
  transactionLevel_ = 0;
}

void Connection::RollbackTrans() {
  requireOpen();
  if (transactionLevel_ == 0) raiseAdoError(ado_error::kNoTransaction, kOdbcProviderSource);
  try {
    odbc_->rollback();
    odbc_->setAutoCommit(true);
  } catch (const platform::OdbcError& error) {
    raiseOdbcError(error);
  }
  transactionLevel_ = 0;
}

ClassInfo Connection::describe() {
  return ClassBuilder<Connection>(kClassName)
      .get(u"ConnectionString", &Connection::ConnectionString)
      .let(u"ConnectionString", &Connection::setConnectionString)
      .get(u"", &Connection::ConnectionString)
      .method(
          u"Open", &Connection::Open,
          {optional(u"ConnectionString", Variant(String())), optional(u"UserID", Variant(String())),
           optional(u"Password", Variant(String())), optional(u"Options", Variant(int32_t{-1}))})
      .method(u"Close", &Connection::Close)
      .get(u"State", &Connection::State)
      .method(
          u"Execute",
          static_cast<std::shared_ptr<Recordset> (Connection::*)(StringView, Variant&, int32_t)>(
              &Connection::Execute),
          {u"CommandText", optional(u"RecordsAffected", Variant::missing()),
           optional(u"Options", Variant(int32_t{-1}))})
      .method(u"BeginTrans", &Connection::BeginTrans)
      .method(u"CommitTrans", &Connection::CommitTrans)
      .method(u"RollbackTrans", &Connection::RollbackTrans)
      .build();
}

}  // namespace ravelin
