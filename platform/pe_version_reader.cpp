// The PE version reader: a walk from the DOS header to VS_FIXEDFILEINFO over bytes read at
// offsets, so that a file is read only where the walk leads.
#include <algorithm>
#include <array>
#include <fstream>
#include <optional>
#include <ravelin/platform/pe_version_reader.hpp>
#include <system_error>
#include <vector>

namespace ravelin::platform {
namespace {

// Where the parts of the image lie. Offsets are those of the PE format's description.
constexpr uint64_t kPeOffsetField = 0x3C;  // e_lfanew in the DOS header
constexpr uint64_t kNtHeaderSize = 24;     // "PE\0\0" and IMAGE_FILE_HEADER
constexpr uint16_t kPe32 = 0x10B;          // optional header magic numbers
constexpr uint16_t kPe32Plus = 0x20B;
constexpr uint32_t kResourceDirectory = 2;   // index in the data directory
constexpr uint64_t kSectionHeaderSize = 40;  // IMAGE_SECTION_HEADER
constexpr uint32_t kVersionType = 16;        // RT_VERSION
constexpr uint32_t kVersionId = 1;           // VS_VERSION_INFO
constexpr uint32_t kNeutralLanguage = 0;
constexpr uint32_t kUsEnglish = 0x0409;
constexpr uint32_t kHighBit = 0x80000000;  // a subdirectory (or a name) rather than data
constexpr uint64_t kDirectoryHeaderSize = 16;
constexpr uint64_t kDirectoryEntrySize = 8;
constexpr uint64_t kDataEntrySize = 16;
// VS_VERSIONINFO: wLength, wValueLength, wType, the key with its padding, then the value.
constexpr uint64_t kKeyOffset = 6;
constexpr std::u16string_view kVersionKey = u"VS_VERSION_INFO";
constexpr uint64_t kFixedInfoOffset = 40;
constexpr uint64_t kFixedInfoSize = 52;
constexpr uint64_t kBlockHead = kFixedInfoOffset + kFixedInfoSize;

// The image's bytes, read at offsets; read() is true only when all of `out` was read.
class Bytes {
 public:
  virtual ~Bytes() = default;
  virtual uint64_t size() const = 0;
  virtual bool read(uint64_t offset, std::span<uint8_t> out) = 0;

 protected:
  bool contains(uint64_t offset, uint64_t length) const {
    return offset <= size() && length <= size() - offset;
  }
};

class MemoryBytes final : public Bytes {
 public:
  explicit MemoryBytes(std::span<const uint8_t> image) : image_(image) {}
  uint64_t size() const override { return image_.size(); }
  bool read(uint64_t offset, std::span<uint8_t> out) override {
    if (!contains(offset, out.size())) return false;
    std::copy_n(image_.begin() + static_cast<std::ptrdiff_t>(offset), out.size(), out.begin());
    return true;
  }

 private:
  std::span<const uint8_t> image_;
};

class FileBytes final : public Bytes {
 public:
  FileBytes(const std::filesystem::path& file, uint64_t size)
      : stream_(file, std::ios::binary), size_(size) {}
  bool isOpen() const { return stream_.is_open(); }
  uint64_t size() const override { return size_; }
  bool read(uint64_t offset, std::span<uint8_t> out) override {
    if (!contains(offset, out.size())) return false;
    stream_.clear();
    stream_.seekg(static_cast<std::streamoff>(offset));
    stream_.read(reinterpret_cast<char*>(out.data()), static_cast<std::streamsize>(out.size()));
    return stream_.gcount() == static_cast<std::streamsize>(out.size());
  }

 private:
  std::ifstream stream_;
  uint64_t size_;
};

uint16_t word(std::span<const uint8_t> bytes, std::size_t at) {
  return static_cast<uint16_t>(bytes[at] | bytes[at + 1] << 8);
}
uint32_t dword(std::span<const uint8_t> bytes, std::size_t at) {
  return uint32_t{word(bytes, at)} | uint32_t{word(bytes, at + 2)} << 16;
}

struct Section {
  uint32_t virtualSize;
  uint32_t virtualAddress;
  uint32_t rawSize;
  uint32_t rawOffset;
};

// A run of the file's bytes: `length` bytes from `offset`.
struct Extent {
  uint64_t offset;
  uint64_t length;
};

struct Entry {
  uint32_t id;
  uint32_t value;
};

const Entry* find(const std::vector<Entry>& entries, uint32_t id) {
  const auto it = std::find_if(entries.begin(), entries.end(),
                               [id](const Entry& entry) { return entry.id == id; });
  return it == entries.end() ? nullptr : &*it;
}

class Walk {
 public:
  explicit Walk(Bytes& bytes) : bytes_(bytes) {}

  VersionResource run() {
    const std::optional<uint32_t> resources = resourceDirectory();
    if (!resources || !readSections()) return {};
    const std::optional<Extent> tree = locate(*resources);
    if (!tree) return {};
    const std::optional<Extent> data = versionData(*tree);
    if (!data) return {};
    VersionResource result;
    result.size = versionBufferSize(static_cast<uint32_t>(data->length));
    if (result.size != 0) result.fixedInfo = fixedInfo(*data);
    return result;
  }

 private:
  // Reads `out.size()` bytes at `offset` within `extent`.
  bool readIn(const Extent& extent, uint64_t offset, std::span<uint8_t> out) {
    if (offset > extent.length || out.size() > extent.length - offset) return false;
    return bytes_.read(extent.offset + offset, out);
  }

  // The RVA of the resource directory, from the DOS, PE and optional headers; nullopt when the
  // file is not a PE image or has no resources.
  std::optional<uint32_t> resourceDirectory() {
    std::array<uint8_t, 64> dos{};
    if (!bytes_.read(0, dos) || dos[0] != 'M' || dos[1] != 'Z') return std::nullopt;
    ntOffset_ = dword(dos, kPeOffsetField);
    std::array<uint8_t, kNtHeaderSize> nt{};
    if (!bytes_.read(ntOffset_, nt) || nt[0] != 'P' || nt[1] != 'E' || nt[2] != 0 || nt[3] != 0) {
      return std::nullopt;
    }
    sectionCount_ = word(nt, 6);
    optionalSize_ = word(nt, 20);
    // Enough of the optional header to reach the resource entry of either kind.
    std::array<uint8_t, 136> optional{};
    const std::size_t wanted = std::min<std::size_t>(optionalSize_, optional.size());
    if (wanted < 2 || !bytes_.read(ntOffset_ + kNtHeaderSize, std::span(optional).first(wanted))) {
      return std::nullopt;
    }
    std::size_t countField = 0;
    std::size_t directories = 0;
    switch (word(optional, 0)) {
      case kPe32:
        countField = 92;
        directories = 96;
        break;
      case kPe32Plus:
        countField = 108;
        directories = 112;
        break;
      default:
        return std::nullopt;
    }
    const std::size_t entry = directories + kResourceDirectory * 8;
    if (wanted < entry + 8 || dword(optional, countField) <= kResourceDirectory) {
      return std::nullopt;
    }
    const uint32_t rva = dword(optional, entry);
    if (rva == 0) return std::nullopt;
    return rva;
  }

  bool readSections() {
    const uint64_t table = ntOffset_ + kNtHeaderSize + optionalSize_;
    const uint64_t length = sectionCount_ * kSectionHeaderSize;
    if (table > bytes_.size() || length > bytes_.size() - table) return false;
    std::vector<uint8_t> raw(length);
    if (!bytes_.read(table, raw)) return false;
    sections_.reserve(sectionCount_);
    for (std::size_t at = 0; at < raw.size(); at += kSectionHeaderSize) {
      sections_.push_back(
          {dword(raw, at + 8), dword(raw, at + 12), dword(raw, at + 16), dword(raw, at + 20)});
    }
    return true;
  }

  // The file's bytes from `rva` to the end of its section's raw data (or of the file); nullopt
  // when no section holds the RVA or its bytes are not in the file.
  std::optional<Extent> locate(uint32_t rva) const {
    for (const Section& section : sections_) {
      const uint64_t delta = uint64_t{rva} - section.virtualAddress;
      if (rva < section.virtualAddress || delta >= std::max(section.virtualSize, section.rawSize)) {
        continue;
      }
      if (delta >= section.rawSize) return std::nullopt;
      const uint64_t offset = section.rawOffset + delta;
      if (offset >= bytes_.size()) return std::nullopt;
      return Extent{offset, std::min(section.rawSize - delta, bytes_.size() - offset)};
    }
    return std::nullopt;
  }

  // The ID entries of the directory at `offset` from the tree's root (named entries come first
  // and are skipped).
  std::optional<std::vector<Entry>> idEntries(const Extent& tree, uint32_t offset) {
    std::array<uint8_t, kDirectoryHeaderSize> header{};
    if (!readIn(tree, offset, header)) return std::nullopt;
    const uint64_t named = word(header, 12);
    const uint64_t ids = word(header, 14);
    const uint64_t first = offset + kDirectoryHeaderSize + named * kDirectoryEntrySize;
    if (first > tree.length || ids * kDirectoryEntrySize > tree.length - first) {
      return std::nullopt;
    }
    std::vector<uint8_t> raw(ids * kDirectoryEntrySize);
    if (!readIn(tree, first, raw)) return std::nullopt;
    std::vector<Entry> entries;
    for (std::size_t at = 0; at < raw.size(); at += kDirectoryEntrySize) {
      const uint32_t id = dword(raw, at);
      if ((id & kHighBit) == 0) entries.push_back({id, dword(raw, at + 4)});
    }
    return entries;
  }

  // The subdirectory that entry `id` of the directory at `offset` leads to.
  std::optional<uint32_t> subdirectory(const Extent& tree, uint32_t offset, uint32_t id) {
    const std::optional<std::vector<Entry>> entries = idEntries(tree, offset);
    if (!entries) return std::nullopt;
    const Entry* entry = find(*entries, id);
    if (entry == nullptr || (entry->value & kHighBit) == 0) return std::nullopt;
    return entry->value & ~kHighBit;
  }

  // The version resource's bytes: type 16, ID 1, the language chosen, its data entry.
  std::optional<Extent> versionData(const Extent& tree) {
    const std::optional<uint32_t> names = subdirectory(tree, 0, kVersionType);
    if (!names) return std::nullopt;
    const std::optional<uint32_t> languages = subdirectory(tree, *names, kVersionId);
    if (!languages) return std::nullopt;
    const std::optional<std::vector<Entry>> entries = idEntries(tree, *languages);
    if (!entries || entries->empty()) return std::nullopt;
    const Entry* chosen = find(*entries, kNeutralLanguage);
    if (chosen == nullptr) chosen = find(*entries, kUsEnglish);
    if (chosen == nullptr) chosen = &entries->front();
    if ((chosen->value & kHighBit) != 0) return std::nullopt;
    std::array<uint8_t, kDataEntrySize> dataEntry{};
    if (!readIn(tree, chosen->value, dataEntry)) return std::nullopt;
    const uint32_t size = dword(dataEntry, 4);
    const std::optional<Extent> data = locate(dword(dataEntry, 0));
    if (!data || size == 0 || size > data->length) return std::nullopt;
    return Extent{data->offset, size};
  }

  // The fixed information at the head of the VS_VERSIONINFO block in `data`.
  std::optional<FixedFileInfo> fixedInfo(const Extent& data) {
    std::array<uint8_t, kBlockHead> head{};
    if (!readIn(data, 0, head)) return std::nullopt;
    const uint16_t length = word(head, 0);
    if (length < kBlockHead || length > data.length || word(head, 2) != kFixedInfoSize) {
      return std::nullopt;
    }
    for (std::size_t i = 0; i <= kVersionKey.size(); ++i) {
      const char16_t expected = i < kVersionKey.size() ? kVersionKey[i] : u'\0';
      if (word(head, kKeyOffset + 2 * i) != expected) return std::nullopt;
    }
    FixedFileInfo words{};
    for (std::size_t i = 0; i < words.size(); ++i)
      words[i] = dword(head, kFixedInfoOffset + 4 * i);
    if (words[0] != kFixedFileInfoSignature) return std::nullopt;
    return words;
  }

  Bytes& bytes_;
  uint64_t ntOffset_ = 0;
  uint64_t sectionCount_ = 0;
  uint64_t optionalSize_ = 0;
  std::vector<Section> sections_;
};

}  // namespace

VersionResource readPeVersionResource(std::span<const uint8_t> image) {
  MemoryBytes bytes(image);
  return Walk(bytes).run();
}

VersionResource readPeVersionResource(const std::filesystem::path& file) {
  // Only a regular file is opened: a pipe or device could block or never end.
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) return {};
  const uint64_t size = std::filesystem::file_size(file, error);
  if (error) return {};
  FileBytes bytes(file, size);
  if (!bytes.isOpen()) return {};
  return Walk(bytes).run();
}

}  // namespace ravelin::platform
