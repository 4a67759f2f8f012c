// The layout of a dBASE III table file, its checks, and the streaming pass through its records.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <optional>
#include <ravelin/data/internal/dbf_table.hpp>
#include <ravelin/frame/error.hpp>
#include <ravelin/platform/paths.hpp>
#include <system_error>
#include <utility>

namespace ravelin::dbf {
namespace {

constexpr std::size_t kHeaderBytes = 32;
constexpr std::size_t kDescriptorBytes = 32;
constexpr char kDescriptorTerminator = 0x0D;

uint16_t readU16(const char* bytes) {
  return static_cast<uint16_t>(static_cast<uint8_t>(bytes[0]) |
                               (static_cast<uint8_t>(bytes[1]) << 8));
}

uint32_t readU32(const char* bytes) {
  uint32_t value = 0;
  for (int i = 3; i >= 0; --i)
    value = (value << 8) | static_cast<uint8_t>(bytes[i]);
  return value;
}

class FileSource : public ByteSource {
 public:
  FileSource(std::ifstream stream, uint64_t size) : stream_(std::move(stream)), size_(size) {}
  uint64_t size() const override { return size_; }
  std::size_t read(char* into, std::size_t count) override {
    stream_.read(into, static_cast<std::streamsize>(count));
    return static_cast<std::size_t>(stream_.gcount());
  }

 private:
  std::ifstream stream_;
  uint64_t size_;
};

class MemorySource : public ByteSource {
 public:
  explicit MemorySource(std::string_view bytes) : bytes_(bytes) {}
  uint64_t size() const override { return bytes_.size(); }
  std::size_t read(char* into, std::size_t count) override {
    const std::size_t n = std::min(count, bytes_.size() - position_);
    std::copy_n(bytes_.data() + position_, n, into);
    position_ += n;
    return n;
  }

 private:
  std::string_view bytes_;
  std::size_t position_ = 0;
};

// Reads exactly `count` bytes or raises the reader's error naming `what`.
void readExactly(ByteSource& source, char* into, std::size_t count, StringView what) {
  if (source.read(into, count) != count)
    raiseReaderError(u"Read error: " + String(what) + u" could not be read");
}

}  // namespace

String decimalText(uint64_t value) {
  return fromAscii(std::to_string(value));
}

[[noreturn]] void raiseReaderError(String description) {
  raiseError(kReservedInvalidFileFormat, String(u"clsDBFFileReader.ReadDBF"),
             std::move(description));
}

// The name as the system's path (platform/paths.hpp: the Windows form is translated); a name that
// names no file of the system is not found.
std::filesystem::path nativePath(StringView path) {
  std::optional<std::filesystem::path> native = platform::nativePath(path);
  if (!native) raiseReaderError(u"File not found: " + String(path));
  return std::move(*native);
}

std::unique_ptr<ByteSource> openFileSource(StringView path) {
  const std::filesystem::path native = nativePath(path);
  std::error_code error;
  const bool regular = std::filesystem::is_regular_file(native, error);
  if (!regular) {
    raiseReaderError(error || !std::filesystem::exists(native, error)
                         ? u"File not found: " + String(path)
                         : u"Not a file: " + String(path));
  }
  std::ifstream stream(native, std::ios::binary);
  const uint64_t size = std::filesystem::file_size(native, error);
  if (!stream || error) raiseReaderError(u"Cannot open the file: " + String(path));
  return std::make_unique<FileSource>(std::move(stream), size);
}

std::unique_ptr<ByteSource> memorySource(std::string_view bytes) {
  return std::make_unique<MemorySource>(bytes);
}

Header readHeader(ByteSource& source) {
  if (source.size() < kHeaderBytes) {
    raiseReaderError(u"Truncated file: the header needs 32 bytes and the file has " +
                     decimalText(source.size()));
  }
  char bytes[kHeaderBytes];
  readExactly(source, bytes, kHeaderBytes, u"the header");
  Header header;
  header.version = static_cast<uint8_t>(bytes[0]);
  header.year = 1900 + static_cast<uint8_t>(bytes[1]);
  header.month = static_cast<uint8_t>(bytes[2]);
  header.day = static_cast<uint8_t>(bytes[3]);
  header.recordCount = readU32(bytes + 4);
  header.headerLength = readU16(bytes + 8);
  header.recordLength = readU16(bytes + 10);
  header.languageDriver = static_cast<uint8_t>(bytes[29]);
  return header;
}

std::vector<FieldDescriptor> readDescriptors(ByteSource& source, const Header& header) {
  const std::size_t headerLength = header.headerLength;
  const uint64_t fileSize = source.size();
  if (headerLength > fileSize) {
    raiseReaderError(u"Header length " + decimalText(headerLength) + u" does not fit the file of " +
                     decimalText(fileSize) + u" bytes");
  }
  // Descriptors fill the header after its first 32 bytes; the terminator follows the last one.
  const std::size_t terminatorAt = headerLength / kDescriptorBytes * kDescriptorBytes;
  if (headerLength < kHeaderBytes + 1 || terminatorAt >= headerLength) {
    raiseReaderError(u"Header length " + decimalText(headerLength) +
                     u" leaves no room for the descriptor terminator (0x0D)");
  }
  std::vector<char> area(headerLength - kHeaderBytes);
  readExactly(source, area.data(), area.size(), u"the field descriptors");
  if (area[terminatorAt - kHeaderBytes] != kDescriptorTerminator) {
    raiseReaderError(u"Field descriptors without their terminator (0x0D) at byte " +
                     decimalText(terminatorAt));
  }

  const std::size_t count = terminatorAt / kDescriptorBytes - 1;
  std::vector<FieldDescriptor> descriptors;
  descriptors.reserve(count);
  std::size_t offset = 1;  // after the deletion flag
  for (std::size_t i = 0; i < count; ++i) {
    const char* bytes = area.data() + i * kDescriptorBytes;
    FieldDescriptor field;
    field.rawName.assign(bytes, 11);
    field.type = bytes[11];
    field.length = static_cast<uint8_t>(bytes[16]);
    field.decimalByte = static_cast<uint8_t>(bytes[17]);
    field.offset = offset;
    offset += field.length;
    descriptors.push_back(std::move(field));
  }
  if (header.recordLength < offset) {
    raiseReaderError(u"Record length " + decimalText(header.recordLength) +
                     u" does not fit the field descriptors, which need " + decimalText(offset) +
                     u" bytes");
  }

  const uint64_t available = fileSize - headerLength;
  const uint64_t present = available / header.recordLength;
  if (header.recordCount > present) {
    // One byte past the last whole record is the end-of-file mark, not a part of a record.
    const uint64_t partial = available % header.recordLength;
    if (partial > 1) {
      raiseReaderError(u"Truncated file: record " + decimalText(present + 1) + u" of " +
                       decimalText(header.recordCount) + u" is incomplete");
    }
    raiseReaderError(u"Truncated file: the header counts " + decimalText(header.recordCount) +
                     u" records and the file holds " + decimalText(present));
  }
  return descriptors;
}

RecordStream::RecordStream(ByteSource& source, const Header& header, std::size_t bufferBytes)
    : source_(source), recordLength_(header.recordLength), count_(header.recordCount) {
  // Whole records only, at least one, and never more than the table holds.
  const std::size_t records =
      std::max<std::size_t>(1, bufferBytes / std::max<std::size_t>(1, recordLength_));
  buffer_.resize(std::min<uint64_t>(records, count_) * recordLength_);
}

bool RecordStream::next(std::string_view& record) {
  if (handedOut_ == count_) return false;
  if (position_ == buffered_) {
    const std::size_t records =
        std::min<std::size_t>(buffer_.size() / recordLength_, count_ - handedOut_);
    const std::size_t bytes = records * recordLength_;
    if (source_.read(buffer_.data(), bytes) != bytes) {
      raiseReaderError(u"Read error: records " + decimalText(handedOut_ + 1) + u" to " +
                       decimalText(handedOut_ + records) + u" could not be read");
    }
    buffered_ = static_cast<uint32_t>(records);
    position_ = 0;
  }
  record = std::string_view(buffer_.data() + position_ * recordLength_, recordLength_);
  ++position_;
  ++handedOut_;
  return true;
}

}  // namespace ravelin::dbf
