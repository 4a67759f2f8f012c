// The XML reader on Windows: XmlLite's pull reader over a memory stream. mingw-w64 has no import
// library for xmllite.dll, so CreateXmlReader is found at run time. Document type declarations
// are prohibited (XmlLite's default, set explicitly) and nothing is resolved from outside.
#include <windows.h>
// windows.h first: the headers below need its types.
#include <objidl.h>
#include <shlwapi.h>
#include <xmllite.h>

#include <cstdio>
#include <ravelin/platform/xml_reader.hpp>
#include <string>

namespace ravelin::platform {
namespace {

using CreateXmlReaderFunction = HRESULT(WINAPI*)(REFIID, void**, IMalloc*);

// IID_IXmlReader, defined here since mingw-w64 ships no library that holds it.
const GUID kXmlReaderId = {
    0x7279fc81, 0x709d, 0x4095, {0xb6, 0x3d, 0x69, 0xfe, 0x4b, 0x0d, 0x90, 0x30}};

CreateXmlReaderFunction createXmlReader() {
  static const CreateXmlReaderFunction function = []() -> CreateXmlReaderFunction {
    HMODULE module = LoadLibraryW(L"xmllite.dll");
    if (module == nullptr) return nullptr;
    return reinterpret_cast<CreateXmlReaderFunction>(
        reinterpret_cast<void*>(GetProcAddress(module, "CreateXmlReader")));
  }();
  return function;
}

String textOf(const WCHAR* text, UINT length) {
  if (text == nullptr) return String();
  return String(reinterpret_cast<const char16_t*>(text), length);
}

constexpr StringView kXmlnsUri = u"http://www.w3.org/2000/xmlns/";

class XmlLiteReader : public XmlReader {
 public:
  explicit XmlLiteReader(std::string_view document) {
    const CreateXmlReaderFunction create = createXmlReader();
    if (create == nullptr) {
      fail(u"the XML reader (xmllite.dll) is not available");
      return;
    }
    if (document.size() > 0xFFFFFFFFu) {
      fail(u"the document is too large");
      return;
    }
    stream_ = SHCreateMemStream(reinterpret_cast<const BYTE*>(document.data()),
                                static_cast<UINT>(document.size()));
    if (stream_ == nullptr ||
        FAILED(create(kXmlReaderId, reinterpret_cast<void**>(&reader_), nullptr))) {
      fail(u"the XML reader could not be started");
      return;
    }
    reader_->SetProperty(XmlReaderProperty_DtdProcessing, DtdProcessing_Prohibit);
    reader_->SetProperty(XmlReaderProperty_MaxElementDepth, 256);
    if (FAILED(reader_->SetInput(stream_))) fail(u"the XML reader could not be started");
  }

  ~XmlLiteReader() override {
    if (reader_ != nullptr) reader_->Release();
    if (stream_ != nullptr) stream_->Release();
  }

  XmlLiteReader(const XmlLiteReader&) = delete;
  XmlLiteReader& operator=(const XmlLiteReader&) = delete;

  const XmlEvent& next() override {
    if (finished_) return event_;
    if (pendingEnd_) {
      pendingEnd_ = false;
      event_.kind = XmlEvent::Kind::EndElement;
      event_.attributes.clear();
      return event_;
    }
    for (;;) {
      XmlNodeType type = XmlNodeType_None;
      const HRESULT result = reader_->Read(&type);
      if (result == S_FALSE) {
        finished_ = true;
        event_ = XmlEvent{};
        event_.kind = XmlEvent::Kind::EndOfDocument;
        return event_;
      }
      if (FAILED(result)) {
        failWith(result);
        return event_;
      }
      switch (type) {
        case XmlNodeType_Element:
          if (!readStart()) failWith(E_FAIL);
          return event_;
        case XmlNodeType_EndElement:
          event_.kind = XmlEvent::Kind::EndElement;
          readName();
          event_.attributes.clear();
          return event_;
        case XmlNodeType_DocumentType:
          fail(u"a document type declaration is not allowed");
          return event_;
        default:
          break;  // text, comments, processing instructions, the declaration
      }
    }
  }

 private:
  void readName() {
    const WCHAR* text = nullptr;
    UINT length = 0;
    event_.namespaceUri =
        SUCCEEDED(reader_->GetNamespaceUri(&text, &length)) ? textOf(text, length) : String();
    event_.localName =
        SUCCEEDED(reader_->GetLocalName(&text, &length)) ? textOf(text, length) : String();
  }

  bool readStart() {
    event_.kind = XmlEvent::Kind::StartElement;
    readName();
    event_.attributes.clear();
    pendingEnd_ = reader_->IsEmptyElement() != FALSE;
    HRESULT moved = reader_->MoveToFirstAttribute();
    while (moved == S_OK) {
      XmlAttribute attribute;
      const WCHAR* text = nullptr;
      UINT length = 0;
      if (FAILED(reader_->GetNamespaceUri(&text, &length))) return false;
      attribute.namespaceUri = textOf(text, length);
      if (FAILED(reader_->GetLocalName(&text, &length))) return false;
      attribute.localName = textOf(text, length);
      if (FAILED(reader_->GetValue(&text, &length))) return false;
      attribute.value = textOf(text, length);
      const bool declaration = attribute.namespaceUri == kXmlnsUri ||
                               (attribute.namespaceUri.empty() && attribute.localName == u"xmlns");
      if (!declaration) event_.attributes.push_back(std::move(attribute));
      moved = reader_->MoveToNextAttribute();
    }
    if (FAILED(moved)) return false;
    reader_->MoveToElement();
    return true;
  }

  void failWith(HRESULT result) {
    UINT line = 0;
    reader_->GetLineNumber(&line);
    char text[64];
    std::snprintf(text, sizeof text, "XML error 0x%08lX (line %u)",
                  static_cast<unsigned long>(result), line);
    fail(result == static_cast<HRESULT>(WC_E_DTDPROHIBITED)
             ? String(u"a document type declaration is not allowed")
             : fromAscii(text));
  }

  void fail(String message) {
    finished_ = true;
    event_ = XmlEvent{};
    event_.kind = XmlEvent::Kind::Error;
    event_.message = std::move(message);
  }

  IStream* stream_ = nullptr;
  IXmlReader* reader_ = nullptr;
  XmlEvent event_;
  bool pendingEnd_ = false;
  bool finished_ = false;
};

}  // namespace

std::unique_ptr<XmlReader> XmlReader::makeNative(std::string_view document) {
  return std::make_unique<XmlLiteReader>(document);
}

}  // namespace ravelin::platform
