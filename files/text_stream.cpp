// Text streams on files: incremental decoding when reading, write-through when writing.
#include <algorithm>
#include <cerrno>
#include <ravelin/files/internal/file_errors.hpp>
#include <ravelin/files/text_stream.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/code_page.hpp>
#include <utility>

namespace ravelin {
namespace {

constexpr std::size_t kBlockBytes = 64 * 1024;
constexpr StringView kLineEnd = u"\r\n";

// The length of the leading part of UTF-8 bytes that ends on a whole character; the rest
// (at most three bytes) may be the start of one that the next block completes.
std::size_t wholeUtf8Prefix(std::string_view bytes) {
  const std::size_t size = bytes.size();
  for (std::size_t back = 1; back <= 3 && back <= size; ++back) {
    const auto byte = static_cast<unsigned char>(bytes[size - back]);
    if ((byte & 0xC0) == 0x80) continue;  // a continuation byte: look further back
    std::size_t length = 1;
    if ((byte & 0xE0) == 0xC0) length = 2;
    if ((byte & 0xF0) == 0xE0) length = 3;
    if ((byte & 0xF8) == 0xF0) length = 4;
    return length > back ? size - back : size;
  }
  return size;
}

}  // namespace

ClassInfo TextStream::describe() {
  return ClassBuilder<TextStream>(kClassName, false)
      .get(u"Line", &TextStream::Line)
      .get(u"Column", &TextStream::Column)
      .get(u"AtEndOfStream", &TextStream::AtEndOfStream)
      .get(u"AtEndOfLine", &TextStream::AtEndOfLine)
      .method(u"Read", &TextStream::Read, {u"Characters"})
      .method(u"ReadLine", &TextStream::ReadLine)
      .method(u"ReadAll", &TextStream::ReadAll)
      .method(u"Skip", &TextStream::Skip, {u"Characters"})
      .method(u"SkipLine", &TextStream::SkipLine)
      .method(u"Write", &TextStream::Write, {u"Text"})
      .method(u"WriteLine", &TextStream::WriteLine, {optional(u"Text", Variant(String()))})
      .method(u"WriteBlankLines", &TextStream::WriteBlankLines, {u"Lines"})
      .method(u"Close", &TextStream::Close)
      .build();
}

TextStream::TextStream(std::fstream file, Mode mode, Encoding encoding, int codePage)
    : file_(std::move(file)),
      mode_(mode),
      encoding_(encoding),
      codePage_(isSupportedCodePage(codePage) ? codePage : 1252) {}

TextStream::~TextStream() {
  // Every write has reached the file already; closing cannot lose text.
  if (!closed_) file_.close();
}

void TextStream::requireReading() const {
  if (closed_ || mode_ != Mode::reading) file_errors::raise(vb_error::kBadFileMode);
}

void TextStream::requireWriting() const {
  if (closed_ || mode_ == Mode::reading) file_errors::raise(vb_error::kBadFileMode);
}

bool TextStream::fill() {
  if (endOfFile_) return false;
  std::string bytes(kBlockBytes, '\0');
  errno = 0;
  file_.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  const auto got = static_cast<std::size_t>(file_.gcount());
  if (file_.bad()) file_errors::raiseFor(file_errors::lastStreamError(), vb_error::kFileNotFound);
  bytes.resize(got);
  endOfFile_ = got < kBlockBytes;
  // Drop what was taken already before the text grows.
  if (next_ > 0 && next_ >= text_.size() / 2) {
    text_.erase(0, next_);
    next_ = 0;
  }
  bytes.insert(0, carry_);
  carry_.clear();
  if (encoding_ == Encoding::unicode) {
    // Whole units only; an odd last byte of the file is dropped.
    const std::size_t whole = bytes.size() & ~static_cast<std::size_t>(1);
    if (!endOfFile_) carry_ = bytes.substr(whole);
    for (std::size_t i = 0; i < whole; i += 2) {
      text_.push_back(static_cast<char16_t>(static_cast<unsigned char>(bytes[i]) |
                                            (static_cast<unsigned char>(bytes[i + 1]) << 8)));
    }
  } else if (codePage_ == 65001) {
    const std::size_t whole = endOfFile_ ? bytes.size() : wholeUtf8Prefix(bytes);
    carry_ = bytes.substr(whole);
    text_ += decode(std::string_view(bytes).substr(0, whole), codePage_);
  } else {
    text_ += decode(bytes, codePage_);
  }
  return got > 0;
}

void TextStream::ensure(std::size_t count) {
  while (text_.size() - next_ < count && fill()) {
  }
}

void TextStream::count(StringView text) {
  for (char16_t unit : text) {
    if (unit == u'\n') {
      ++line_;
      column_ = 1;
    } else {
      ++column_;
    }
  }
}

String TextStream::take(std::size_t count) {
  String taken = text_.substr(next_, count);
  next_ += taken.size();
  this->count(taken);
  return taken;
}

bool TextStream::AtEndOfStream() {
  if (closed_ || mode_ != Mode::reading) file_errors::raise(vb_error::kBadFileMode);
  ensure(1);
  return next_ == text_.size();
}

bool TextStream::AtEndOfLine() {
  if (closed_ || mode_ != Mode::reading) file_errors::raise(vb_error::kBadFileMode);
  ensure(2);
  if (next_ == text_.size()) return true;
  if (text_[next_] == u'\n') return true;
  return text_[next_] == u'\r' && next_ + 1 < text_.size() && text_[next_ + 1] == u'\n';
}

String TextStream::Read(int32_t Characters) {
  requireReading();
  if (Characters < 0) file_errors::raise(vb_error::kInvalidProcedureCall);
  if (Characters == 0) return String();
  ensure(static_cast<std::size_t>(Characters));
  if (next_ == text_.size()) file_errors::raise(vb_error::kInputPastEndOfFile);
  return take(static_cast<std::size_t>(Characters));
}

std::pair<std::size_t, std::size_t> TextStream::nextLine() {
  ensure(1);
  if (next_ == text_.size()) file_errors::raise(vb_error::kInputPastEndOfFile);
  std::size_t searched = next_;
  while (true) {
    const std::size_t newline = text_.find(u'\n', searched);
    if (newline != String::npos) {
      const bool crlf = newline > next_ && text_[newline - 1] == u'\r';
      return {newline - next_ - (crlf ? 1 : 0), crlf ? 2 : 1};
    }
    searched = text_.size();
    const std::size_t offset = searched - next_;
    if (!fill()) return {text_.size() - next_, 0};
    // The text may have moved to the front of the buffer.
    searched = next_ + offset;
  }
}

String TextStream::ReadLine() {
  requireReading();
  const auto [length, end] = nextLine();
  String line = take(length);
  take(end);
  return line;
}

String TextStream::ReadAll() {
  requireReading();
  while (fill()) {
  }
  if (next_ == text_.size()) file_errors::raise(vb_error::kInputPastEndOfFile);
  return take(text_.size() - next_);
}

void TextStream::Skip(int32_t Characters) {
  requireReading();
  if (Characters < 0) file_errors::raise(vb_error::kInvalidProcedureCall);
  if (Characters == 0) return;
  ensure(static_cast<std::size_t>(Characters));
  if (next_ == text_.size()) file_errors::raise(vb_error::kInputPastEndOfFile);
  take(static_cast<std::size_t>(Characters));
}

void TextStream::SkipLine() {
  requireReading();
  const auto [length, end] = nextLine();
  take(length + end);
}

void TextStream::writeBytes(const std::string& bytes) {
  errno = 0;
  file_.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  if (file_) file_.flush();
  if (!file_) {
    const std::error_code error = file_errors::lastStreamError();
    // The stream keeps refusing after a failure; a later write may succeed once there is room.
    file_.clear();
    file_errors::raiseFor(error, vb_error::kFileNotFound);
  }
}

void TextStream::Write(StringView Text) {
  requireWriting();
  if (Text.empty()) return;
  if (encoding_ == Encoding::unicode) {
    std::string bytes;
    bytes.reserve(Text.size() * 2);
    for (char16_t unit : Text) {
      bytes.push_back(static_cast<char>(unit & 0xFF));
      bytes.push_back(static_cast<char>(unit >> 8));
    }
    writeBytes(bytes);
  } else {
    writeBytes(encode(Text, codePage_));
  }
  count(Text);
}

void TextStream::WriteLine(StringView Text) {
  requireWriting();
  String line(Text);
  line += kLineEnd;
  Write(line);
}

void TextStream::WriteBlankLines(int32_t Lines) {
  requireWriting();
  if (Lines < 0) file_errors::raise(vb_error::kInvalidProcedureCall);
  String lines;
  for (int32_t i = 0; i < Lines; ++i)
    lines += kLineEnd;
  Write(lines);
}

void TextStream::Close() {
  if (closed_) return;
  closed_ = true;
  errno = 0;
  file_.close();
  if (file_.fail() && mode_ != Mode::reading)
    file_errors::raiseFor(file_errors::lastStreamError(), vb_error::kFileNotFound);
}

}  // namespace ravelin
