// The layout of a dBASE III table file and the streaming pass through its records, apart from any
// record set: the header, the field descriptors, the checks that the layout fits the file, and a
// buffer that hands out one record at a time.
//
// A broken file raises the reader's error (0x80040001, source "clsDBFFileReader.ReadDBF") with a
// description that says what is wrong and where:
// - a file shorter than its 32-byte header;
// - a header length that leaves no descriptor terminator (0x0D) at byte 32 x (descriptors + 1)
//   inside the header, or that reaches past the end of the file;
// - a record length shorter than the deletion flag and the fields' lengths (a longer record is
//   read, its extra bytes ignored);
// - a header count larger than the records present ("Truncated file: record K of N is
//   incomplete" when the file ends inside a record);
// - a source that delivers fewer bytes than its size promised.
// A header count smaller than the records present reads the counted records only.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <ravelin/base/text.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace ravelin::dbf {

// The reader's error: number 0x80040001, source "clsDBFFileReader.ReadDBF".
[[noreturn]] void raiseReaderError(String description);

// A count or position as decimal text, for the reader's error descriptions.
String decimalText(uint64_t value);

// Where the bytes come from: a file, or memory for tests and fuzzing. Reads go forward only.
class ByteSource {
 public:
  virtual ~ByteSource() = default;
  // The size of the whole source in bytes.
  virtual uint64_t size() const = 0;
  // Reads up to `count` bytes at the current position; fewer only at the end or on a failure.
  virtual std::size_t read(char* into, std::size_t count) = 0;
};

// A file opened for binary reading; raises the reader's error when it cannot be opened or its
// size cannot be learnt.
std::unique_ptr<ByteSource> openFileSource(StringView path);
// Bytes held by the caller, who keeps them alive while the source is used.
std::unique_ptr<ByteSource> memorySource(std::string_view bytes);

// The 32 bytes at the start of the file.
struct Header {
  uint8_t version = 0;
  int year = 0;  // the date of the last update, decoded and not used further
  int month = 0;
  int day = 0;
  uint32_t recordCount = 0;
  uint16_t headerLength = 0;
  uint16_t recordLength = 0;
  uint8_t languageDriver = 0;  // byte 29: the code page mark
};

// One field descriptor, with the field's place in a record.
struct FieldDescriptor {
  std::string rawName;  // the 11 name bytes as stored
  char type = 0;
  uint8_t length = 0;
  uint8_t decimalByte = 0;  // the decimal-count byte as stored
  std::size_t offset = 0;   // from the start of the record (after the deletion flag)
};

// Reads the header; raises the reader's error when the source is shorter than 32 bytes.
Header readHeader(ByteSource& source);

// Reads the descriptors that follow the header ((header length / 32) - 1 of them) and checks that
// the header and record lengths fit the descriptors and the file, and that the file holds the
// counted records. The source must stand right after the header.
std::vector<FieldDescriptor> readDescriptors(ByteSource& source, const Header& header);

// The counted records, one at a time, read through a buffer of whole records. The source must
// stand at the first record (right after readDescriptors).
class RecordStream {
 public:
  static constexpr std::size_t kDefaultBufferBytes = 256 * 1024;

  RecordStream(ByteSource& source, const Header& header,
               std::size_t bufferBytes = kDefaultBufferBytes);

  // The next record's bytes (record length of them), or false after the last counted record.
  // The view stays valid until the next call.
  bool next(std::string_view& record);
  // The 1-based number of the record last handed out.
  uint32_t recordNumber() const { return handedOut_; }

 private:
  ByteSource& source_;
  std::size_t recordLength_;
  uint32_t count_;
  uint32_t handedOut_ = 0;
  uint32_t buffered_ = 0;  // records in the buffer
  uint32_t position_ = 0;  // next record of the buffer to hand out
  std::vector<char> buffer_;
};

}  // namespace ravelin::dbf
