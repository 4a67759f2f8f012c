// Platform area "xml_reader": a forward-only reader of an XML document held in memory, giving
// elements with their namespace URIs, local names and attributes. libxml2 reads on POSIX systems,
// XmlLite on Windows; the library's readers of XML files use this one interface.
//
// Both implementations refuse what a file from outside must not make the reader do: a document
// type declaration is an error (so no external entity, no DTD loading and no entity expansion),
// and nothing is fetched from the network.
#pragma once

#include <cstdint>
#include <memory>
#include <ravelin/base/text.hpp>
#include <string_view>
#include <vector>

namespace ravelin::platform {

// An attribute of an element. Namespace declarations (xmlns, xmlns:p) are not reported.
struct XmlAttribute {
  String namespaceUri;  // empty for an attribute without a prefix
  String localName;
  String value;  // with entity and character references replaced
};

struct XmlEvent {
  enum class Kind : uint8_t {
    StartElement,
    EndElement,  // also reported after the start of an empty element (<a/>)
    EndOfDocument,
    Error,  // the document is not well-formed (or not allowed); `message` says why
  };
  Kind kind = Kind::EndOfDocument;
  String namespaceUri;
  String localName;
  std::vector<XmlAttribute> attributes;  // of a StartElement
  String message;                        // of an Error, with its line where known
};

class XmlReader {
 public:
  virtual ~XmlReader() = default;

  // The next element event; after EndOfDocument or Error every call repeats it. Text, comments
  // and processing instructions are skipped.
  virtual const XmlEvent& next() = 0;

  // A reader of `document` (UTF-8, or another encoding its byte-order mark or declaration
  // names), which the caller keeps alive while reading.
  static std::unique_ptr<XmlReader> makeNative(std::string_view document);
};

}  // namespace ravelin::platform
