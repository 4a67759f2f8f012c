// The XML reader on POSIX systems: libxml2's pull reader over the document in memory. Options:
// no network access; no entity substitution, DTD loading or default attributes from a DTD; the
// parser's own limits on sizes and nesting stay on. A document type declaration is refused
// before libxml2 sees the document, so no entity is ever declared.
#include <libxml/parser.h>
#include <libxml/xmlreader.h>

#include <limits>
#include <mutex>
#include <ravelin/platform/xml_reader.hpp>
#include <string>

namespace ravelin::platform {
namespace {

String textOf(const xmlChar* text) {
  if (text == nullptr) return String();
  return fromUtf8(reinterpret_cast<const char*>(text));
}

bool startsWith(std::string_view text, std::string_view prefix) {
  return text.substr(0, prefix.size()) == prefix;
}

// Whether the prolog (before the first element) holds a document type declaration.
bool prologHasDoctype(std::string_view document) {
  std::size_t at = startsWith(document, "\xEF\xBB\xBF") ? 3 : 0;
  for (;;) {
    while (at < document.size() && (document[at] == ' ' || document[at] == '\t' ||
                                    document[at] == '\r' || document[at] == '\n')) {
      ++at;
    }
    const std::string_view rest = document.substr(at);
    std::string_view close;
    if (startsWith(rest, "<?")) {
      close = "?>";
    } else if (startsWith(rest, "<!--")) {
      close = "-->";
    } else {
      return startsWith(rest, "<!");
    }
    const std::size_t end = document.find(close, at + 2);
    if (end == std::string_view::npos) return false;  // the parser reports the broken prolog
    at = end + close.size();
  }
}

class LibXmlReader : public XmlReader {
 public:
  explicit LibXmlReader(std::string_view document) {
    if (prologHasDoctype(document)) {
      fail(u"a document type declaration is not allowed");
      return;
    }
    if (document.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) {
      fail(u"the document is too large");
      return;
    }
    reader_ =
        xmlReaderForMemory(document.data(), static_cast<int>(document.size()), nullptr, nullptr,
                           XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING);
    if (reader_ == nullptr) {
      fail(u"the XML parser could not be started");
      return;
    }
    xmlTextReaderSetStructuredErrorHandler(reader_, &LibXmlReader::onError, this);
  }

  ~LibXmlReader() override {
    if (reader_ != nullptr) xmlFreeTextReader(reader_);
  }

  LibXmlReader(const LibXmlReader&) = delete;
  LibXmlReader& operator=(const LibXmlReader&) = delete;

  const XmlEvent& next() override {
    if (finished_) return event_;
    if (pendingEnd_) {
      pendingEnd_ = false;
      event_.kind = XmlEvent::Kind::EndElement;
      clearAttributes();
      return event_;
    }
    for (;;) {
      const int result = xmlTextReaderRead(reader_);
      if (result < 0 || !error_.empty()) {
        fail(error_.empty() ? String(u"the document is not well-formed") : error_);
        return event_;
      }
      if (result == 0) {
        finished_ = true;
        event_ = XmlEvent{};
        event_.kind = XmlEvent::Kind::EndOfDocument;
        return event_;
      }
      switch (xmlTextReaderNodeType(reader_)) {
        case XML_READER_TYPE_ELEMENT:
          readStart();
          return event_;
        case XML_READER_TYPE_END_ELEMENT:
          event_.kind = XmlEvent::Kind::EndElement;
          assign(event_.namespaceUri, xmlTextReaderConstNamespaceUri(reader_));
          assign(event_.localName, xmlTextReaderConstLocalName(reader_));
          clearAttributes();
          return event_;
        case XML_READER_TYPE_DOCUMENT_TYPE:
        case XML_READER_TYPE_ENTITY_REFERENCE:
          fail(u"a document type declaration is not allowed");
          return event_;
        default:
          break;  // text, comments, processing instructions
      }
    }
  }

 private:
  static void onError(void* self, xmlErrorPtr error) {
    auto* reader = static_cast<LibXmlReader*>(self);
    if (error == nullptr || error->level < XML_ERR_ERROR || !reader->error_.empty()) return;
    std::string text = error->message != nullptr ? error->message : "XML error";
    while (!text.empty() && (text.back() == '\n' || text.back() == ' '))
      text.pop_back();
    reader->error_ = fromUtf8(text) + u" (line " + fromAscii(std::to_string(error->line)) + u")";
  }

  // Reads a text into `target`, reusing its room: a document's elements repeat the same
  // attributes, so after the first rows no text needs memory of its own.
  static void assign(String& target, const xmlChar* text) {
    target.clear();
    if (text == nullptr) return;
    const auto* bytes = reinterpret_cast<const char*>(text);
    std::size_t length = 0;
    while (bytes[length] != 0 && static_cast<unsigned char>(bytes[length]) < 0x80)
      ++length;
    if (bytes[length] != 0) {
      target = textOf(text);
      return;
    }
    target.assign(bytes, bytes + length);
  }

  // Empties the attribute list and keeps its texts aside for the next start element.
  void clearAttributes() {
    if (!event_.attributes.empty()) spare_.swap(event_.attributes);
    event_.attributes.clear();
  }

  void readStart() {
    event_.kind = XmlEvent::Kind::StartElement;
    assign(event_.namespaceUri, xmlTextReaderConstNamespaceUri(reader_));
    assign(event_.localName, xmlTextReaderConstLocalName(reader_));
    if (event_.attributes.empty()) event_.attributes.swap(spare_);
    std::size_t count = 0;
    pendingEnd_ = xmlTextReaderIsEmptyElement(reader_) == 1;
    while (xmlTextReaderMoveToNextAttribute(reader_) == 1) {
      if (xmlTextReaderIsNamespaceDecl(reader_) == 1) continue;
      if (count == event_.attributes.size()) event_.attributes.emplace_back();
      XmlAttribute& attribute = event_.attributes[count++];
      assign(attribute.namespaceUri, xmlTextReaderConstNamespaceUri(reader_));
      assign(attribute.localName, xmlTextReaderConstLocalName(reader_));
      assign(attribute.value, xmlTextReaderConstValue(reader_));
    }
    event_.attributes.resize(count);
    xmlTextReaderMoveToElement(reader_);
  }

  void fail(String message) {
    finished_ = true;
    event_ = XmlEvent{};
    event_.kind = XmlEvent::Kind::Error;
    event_.message = std::move(message);
  }

  xmlTextReaderPtr reader_ = nullptr;
  XmlEvent event_;
  std::vector<XmlAttribute> spare_;  // the attribute texts of the last start element, for reuse
  String error_;
  bool pendingEnd_ = false;
  bool finished_ = false;
};

}  // namespace

std::unique_ptr<XmlReader> XmlReader::makeNative(std::string_view document) {
  static std::once_flag initialised;
  std::call_once(initialised, [] { xmlInitParser(); });
  return std::make_unique<LibXmlReader>(document);
}

}  // namespace ravelin::platform
