// DataUtilities::UpdateRsToInsert: the set saved to a work file, its rows wrapped as pending
// insertions in the file, and the set opened again from it.
//
// The work file lives in a folder made for the one call (a fresh random name in the temporary
// folder, owner-only access), so two calls never meet and nobody else can put a file or a link
// where the set is written; file and folder go when the call ends, whatever happened.
#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/data/internal/rs_insert_work_folder.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/random.hpp>
#include <ravelin/platform/xml_reader.hpp>
#include <span>
#include <string>
#include <string_view>
#include <system_error>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ravelin {
namespace {

namespace fs = std::filesystem;
using platform::XmlAttribute;
using platform::XmlEvent;

constexpr StringView kRowsetUri = u"urn:schemas-microsoft-com:rowset";
constexpr StringView kRowUri = u"#RowsetSchema";

// ---- The work folder -------------------------------------------------------------------------

std::string hexText(std::span<const uint8_t> bytes) {
  std::string text;
  for (const uint8_t byte : bytes) {
    text += "0123456789abcdef"[byte >> 4];
    text += "0123456789abcdef"[byte & 15];
  }
  return text;
}

class WorkFolder {
 public:
  WorkFolder() {
    std::error_code error;
    const fs::path temporary = fs::temp_directory_path(error);
    if (error) fail(u"no temporary folder");
    for (int attempt = 0; attempt < 8 && folder_.empty(); ++attempt) {
      std::array<uint8_t, 12> random{};
      if (!platform::randomSource()->fill(random)) fail(u"no random name");
      const std::string name = data_utilities::workFolderPrefix() + hexText(random);
      // create_directory fails on anything already there, a link included, so the folder is
      // always a new one of this call.
      const fs::path candidate = temporary / name;
      if (fs::create_directory(candidate, error)) folder_ = candidate;
    }
    if (folder_.empty()) fail(u"the work folder could not be made");
    fs::permissions(folder_, fs::perms::owner_all, fs::perm_options::replace, error);
  }
  ~WorkFolder() {
    std::error_code error;
    fs::remove_all(folder_, error);
  }
  WorkFolder(const WorkFolder&) = delete;
  WorkFolder& operator=(const WorkFolder&) = delete;

  fs::path file(std::u16string_view name) const { return folder_ / name; }

 private:
  [[noreturn]] static void fail(StringView why) {
    raiseAdoError(ado_error::kWriteFile, kRecordsetSource, String(why));
  }
  fs::path folder_;
};

std::string readFile(const fs::path& path) {
  std::ifstream in(path, std::ios::binary);
  std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  if (!in && !in.eof()) raiseAdoError(ado_error::kReadFile, kRecordsetSource, path.u16string());
  return bytes;
}

void writeFile(const fs::path& path, std::string_view text) {
  std::error_code error;
  fs::remove(path, error);
  std::ofstream out(path, std::ios::binary | std::ios::trunc);
  out.write(text.data(), static_cast<std::streamsize>(text.size()));
  out.close();
  if (!out) raiseAdoError(ado_error::kWriteFile, kRecordsetSource, path.u16string());
}

// ---- The document rewritten -----------------------------------------------------------------

void appendEscaped(std::string& out, StringView text) {
  std::size_t plain = 0;
  const auto flush = [&](std::size_t upTo, const char* reference) {
    out += toUtf8(text.substr(plain, upTo - plain));
    out += reference;
    plain = upTo + 1;
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    switch (text[i]) {
      case u'&':
        flush(i, "&amp;");
        break;
      case u'<':
        flush(i, "&lt;");
        break;
      case u'>':
        flush(i, "&gt;");
        break;
      case u'\'':
        flush(i, "&#x27;");
        break;
      case u'"':
        flush(i, "&quot;");
        break;
      case u'\r':
        flush(i, "&#xD;");
        break;
      case u'\n':
        flush(i, "&#xA;");
        break;
      case u'\t':
        flush(i, "&#x9;");
        break;
      default:
        break;
    }
  }
  out += toUtf8(text.substr(plain));
}

// Writes elements as text, values in apostrophes: the four namespaces of the format under their
// usual prefixes (declared on the root), any other under a prefix declared where it is used.
class XmlText {
 public:
  void start(StringView uri, StringView localName, const std::vector<XmlAttribute>& attributes,
             bool root = false) {
    closeStartTag();
    std::string declarations;
    std::string name = qualified(uri, localName, declarations);
    out_ += '<';
    out_ += name;
    if (root) {
      for (const auto& [prefix, known] : knownNamespaces()) {
        out_ += " xmlns:" + prefix + "='";
        appendEscaped(out_, known);
        out_ += '\'';
      }
    }
    std::string attributeText;
    for (const XmlAttribute& attribute : attributes) {
      attributeText += ' ';
      attributeText += qualified(attribute.namespaceUri, attribute.localName, declarations);
      attributeText += "='";
      appendEscaped(attributeText, attribute.value);
      attributeText += '\'';
    }
    out_ += declarations;
    out_ += attributeText;
    names_.push_back(std::move(name));
    open_ = true;
  }

  void end() {
    if (open_) {
      out_ += "/>";
      open_ = false;
    } else {
      out_ += "</" + names_.back() + '>';
    }
    names_.pop_back();
  }

  std::string take() { return std::move(out_); }

 private:
  static const std::vector<std::pair<std::string, String>>& knownNamespaces() {
    static const std::vector<std::pair<std::string, String>> known = {
        {"s", u"uuid:BDC6E3F0-6DA3-11d1-A2A3-00AA00C14882"},
        {"dt", u"uuid:C2F41010-65B3-11d1-A29F-00AA00C14882"},
        {"rs", String(kRowsetUri)},
        {"z", String(kRowUri)}};
    return known;
  }

  std::string qualified(StringView uri, StringView localName, std::string& declarations) {
    if (uri.empty()) return toUtf8(localName);
    for (const auto& [prefix, known] : knownNamespaces())
      if (uri == known) return prefix + ':' + toUtf8(localName);
    const std::string prefix = "n" + std::to_string(++declared_);
    declarations += " xmlns:" + prefix + "='";
    appendEscaped(declarations, uri);
    declarations += '\'';
    return prefix + ':' + toUtf8(localName);
  }

  void closeStartTag() {
    if (open_) out_ += '>';
    open_ = false;
  }

  std::string out_;
  std::vector<std::string> names_;
  bool open_ = false;
  int declared_ = 0;
};

bool isRowset(const XmlEvent& element, StringView localName) {
  return element.namespaceUri == kRowsetUri && element.localName == localName;
}

bool isRow(const XmlEvent& element) {
  return element.namespaceUri == kRowUri && element.localName == u"row";
}

// A changed row of a pending update laid over its original: the changed values replace the
// original ones, the columns its rs:forcenull names become Null (no attribute).
std::vector<XmlAttribute> currentValues(std::vector<XmlAttribute> original,
                                        const std::vector<XmlAttribute>& changed) {
  std::vector<String> forcedNull;
  for (const XmlAttribute& attribute : changed) {
    if (attribute.namespaceUri == kRowsetUri && attribute.localName == u"forcenull") {
      std::size_t from = 0;
      const String& names = attribute.value;
      while (from < names.size()) {
        const std::size_t to = std::min(names.find(u' ', from), names.size());
        if (to > from) forcedNull.push_back(names.substr(from, to - from));
        from = to + 1;
      }
    }
  }
  for (const XmlAttribute& attribute : changed) {
    if (!attribute.namespaceUri.empty()) continue;
    bool replaced = false;
    for (XmlAttribute& kept : original) {
      if (kept.namespaceUri.empty() && kept.localName == attribute.localName) {
        kept.value = attribute.value;
        replaced = true;
      }
    }
    if (!replaced) original.push_back(attribute);
  }
  std::erase_if(original, [&](const XmlAttribute& attribute) {
    return attribute.namespaceUri.empty() &&
           std::find(forcedNull.begin(), forcedNull.end(), attribute.localName) != forcedNull.end();
  });
  return original;
}

// The saved document with every row of its data element (the root's second child) wrapped in
// rs:insert: plain rows and the rows of rs:insert blocks as they are, a pending update's row
// with its current values; the rows of rs:delete blocks are dropped. Everything else is copied.
std::string rowsAsInsertions(std::string_view document) {
  const auto reader = platform::XmlReader::makeNative(document);
  XmlText text;
  // What became of each open element: copied, left out with its children kept, left out with
  // its children, or written as a row inside its own rs:insert.
  enum class Written : uint8_t { Copied, Unwrapped, Dropped, WrappedRow };
  std::vector<Written> open;
  int rootChildren = 0;
  bool inData = false;
  bool inUpdate = false;               // within a pending update's block
  std::vector<XmlAttribute> original;  // of the pending update being read
  const std::vector<XmlAttribute> noAttributes;
  const auto writeWrappedRow = [&](const XmlEvent& row, const std::vector<XmlAttribute>& values) {
    text.start(kRowsetUri, u"insert", noAttributes);
    text.start(row.namespaceUri, row.localName, values);
    open.push_back(Written::WrappedRow);
  };
  for (;;) {
    const XmlEvent& event = reader->next();
    if (event.kind == XmlEvent::Kind::Error)
      raiseAdoError(ado_error::kReadFile, kRecordsetSource, event.message);
    if (event.kind == XmlEvent::Kind::EndOfDocument) return text.take();
    if (event.kind == XmlEvent::Kind::EndElement) {
      const Written written = open.back();
      open.pop_back();
      if (written == Written::Copied || written == Written::WrappedRow) text.end();
      if (written == Written::WrappedRow) text.end();
      if (open.size() == 1) inData = false;
      continue;
    }
    const std::size_t depth = open.size();  // of the new element, from 0 for the root
    const Written parent = depth == 0 ? Written::Copied : open.back();
    if (parent == Written::Dropped) {
      if (depth == 4 && isRow(event)) original = event.attributes;  // a pending update's original
      open.push_back(Written::Dropped);
    } else if (depth == 1) {
      inData = ++rootChildren == 2;
      text.start(event.namespaceUri, event.localName, event.attributes);
      open.push_back(Written::Copied);
    } else if (inData && depth == 2 && isRowset(event, u"insert")) {
      inUpdate = false;
      open.push_back(Written::Unwrapped);
    } else if (inData && depth == 2 && isRowset(event, u"update")) {
      inUpdate = true;
      original.clear();
      open.push_back(Written::Unwrapped);
    } else if (inData && depth == 2 && isRowset(event, u"delete")) {
      open.push_back(Written::Dropped);
    } else if (inData && depth == 3 && isRowset(event, u"original")) {
      open.push_back(Written::Dropped);
    } else if (inData && (depth == 2 || depth == 3) && isRow(event)) {
      const bool changedRow = depth == 3 && inUpdate;
      writeWrappedRow(event,
                      changedRow ? currentValues(original, event.attributes) : event.attributes);
    } else {
      text.start(event.namespaceUri, event.localName, event.attributes, depth == 0);
      open.push_back(Written::Copied);
    }
  }
}

Recordset& require(const std::shared_ptr<Recordset>& rs) {
  if (!rs) raiseRuntimeError(vb_error::kObjectNotSet);
  return *rs;
}

}  // namespace

const std::string& data_utilities::workFolderPrefix() {
  static const std::string prefix = [] {
    std::array<uint8_t, 4> tag{};
    platform::randomSource()->fill(tag);  // zeros if the system gives none: still a valid name
    return "ravelin-rs-insert-" + hexText(tag) + "-";
  }();
  return prefix;
}

void DataUtilities::UpdateRsToInsert(const std::shared_ptr<Recordset>& rs) const {
  Recordset& set = require(rs);
  const WorkFolder work;
  const fs::path saved = work.file(u"Temp.xml");
  const fs::path insertions = work.file(u"Insert.xml");
  if (set.State() == adStateClosed) set.Open();
  set.Save(Variant(saved.u16string()), adPersistXML);
  writeFile(insertions, rowsAsInsertions(readFile(saved)));
  set.Close();
  const auto openFrom = [&](const fs::path& file) {
    set.Open(Variant(file.u16string()), Variant::missing(), adOpenUnspecified, adLockUnspecified,
             adCmdFile);
  };
  try {
    openFrom(insertions);
  } catch (const AutomationError&) {
    // The rows are not lost: the set comes back as it was saved, and the failure goes on.
    openFrom(saved);
    throw;
  }
}

}  // namespace ravelin
