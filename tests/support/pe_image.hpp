// Small Windows executables (PE32 and PE32+) built in memory for the tests of the version reader:
// headers, a code section, and a resource section holding a resource tree of the test's choice.
// The layout is reported, so that a test can damage one field and see what the reader makes of it.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <ravelin/platform/version_resource.hpp>
#include <string>
#include <variant>
#include <vector>

namespace ravelin::pe_image {

// One entry of a resource directory: a subdirectory (children) or data (a leaf).
struct ResourceNode {
  std::variant<uint32_t, std::u16string> key;  // an ID or a name
  std::vector<ResourceNode> children;
  std::vector<uint8_t> data;
  bool leaf = false;
};

inline ResourceNode resourceDirectory(std::variant<uint32_t, std::u16string> key,
                                      std::vector<ResourceNode> children) {
  return {std::move(key), std::move(children), {}, false};
}
inline ResourceNode resourceData(std::variant<uint32_t, std::u16string> key,
                                 std::vector<uint8_t> data) {
  return {std::move(key), {}, std::move(data), true};
}

// The usual path to a version block: type 16, ID 1, one leaf per language.
inline ResourceNode versionResource(std::vector<ResourceNode> languages) {
  return resourceDirectory(16u, {resourceDirectory(1u, std::move(languages))});
}

// The fixed information of a file of version a.b.c.d (the product version the same).
inline platform::FixedFileInfo fixedInfoOf(uint16_t a, uint16_t b, uint16_t c, uint16_t d) {
  const uint32_t ms = uint32_t{a} << 16 | b;
  const uint32_t ls = uint32_t{c} << 16 | d;
  return {platform::kFixedFileInfoSignature,
          0x00010000,
          ms,
          ls,
          ms,
          ls,
          0x3F,
          0,
          0x00040004,
          2,
          0,
          0,
          0};
}

// A VS_VERSIONINFO block holding `fixedInfo`, followed by `children` bytes standing for the
// string and variable information; wLength covers it all.
inline std::vector<uint8_t> versionBlock(const platform::FixedFileInfo& fixedInfo,
                                         std::size_t children = 0) {
  std::vector<uint8_t> block(92 + children, 0);
  const auto put16 = [&block](std::size_t at, uint16_t value) {
    block[at] = static_cast<uint8_t>(value);
    block[at + 1] = static_cast<uint8_t>(value >> 8);
  };
  put16(0, static_cast<uint16_t>(block.size()));
  put16(2, 52);
  const std::u16string key = u"VS_VERSION_INFO";
  for (std::size_t i = 0; i < key.size(); ++i)
    put16(6 + 2 * i, key[i]);
  for (std::size_t i = 0; i < fixedInfo.size(); ++i) {
    put16(40 + 4 * i, static_cast<uint16_t>(fixedInfo[i]));
    put16(42 + 4 * i, static_cast<uint16_t>(fixedInfo[i] >> 16));
  }
  for (std::size_t i = 92; i < block.size(); ++i)
    block[i] = static_cast<uint8_t>(i);
  return block;
}

struct PeImageOptions {
  bool pe32Plus = true;
  // Where the resource section lies in memory and in the file: deliberately apart.
  uint32_t resourceVirtualAddress = 0x3000;
  uint32_t resourceRawOffset = 0x600;
  std::vector<ResourceNode> resources;  // the root directory's entries
};

struct PeImage {
  std::vector<uint8_t> bytes;
  // File offsets of the parts a test may damage.
  std::size_t peHeader = 0;  // "PE\0\0"
  std::size_t optionalHeader = 0;
  std::size_t sectionTable = 0;
  std::size_t resourceRoot = 0;          // the root resource directory
  std::vector<std::size_t> dataEntries;  // each leaf's data entry, in the order written
  std::vector<std::size_t> data;         // each leaf's data

  void put16(std::size_t at, uint16_t value) {
    bytes.at(at) = static_cast<uint8_t>(value);
    bytes.at(at + 1) = static_cast<uint8_t>(value >> 8);
  }
  void put32(std::size_t at, uint32_t value) {
    put16(at, static_cast<uint16_t>(value));
    put16(at + 2, static_cast<uint16_t>(value >> 16));
  }
  std::vector<uint8_t> firstBytes(std::size_t count) const {
    return std::vector<uint8_t>(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(count));
  }
};

namespace detail {

// Writes a resource tree as the format lays it out: each directory's header and entries (named
// ones first), then what they lead to; data entries hold RVAs in the resource section.
class ResourceWriter {
 public:
  explicit ResourceWriter(uint32_t sectionRva) : sectionRva_(sectionRva) {}

  uint32_t directory(const std::vector<ResourceNode>& nodes) {
    std::vector<const ResourceNode*> ordered;
    for (const ResourceNode& node : nodes)
      if (node.key.index() == 1) ordered.push_back(&node);
    const auto named = static_cast<uint16_t>(ordered.size());
    for (const ResourceNode& node : nodes)
      if (node.key.index() == 0) ordered.push_back(&node);
    align(4);
    const auto offset = static_cast<uint32_t>(out.size());
    out.resize(out.size() + 16 + 8 * ordered.size(), 0);
    put32(offset + 12, named | uint32_t(ordered.size() - named) << 16);
    for (std::size_t i = 0; i < ordered.size(); ++i) {
      const ResourceNode& node = *ordered[i];
      const uint32_t name = node.key.index() == 0 ? std::get<0>(node.key)
                                                  : 0x80000000 | string(std::get<1>(node.key));
      const uint32_t value =
          node.leaf ? dataEntry(node.data) : 0x80000000 | directory(node.children);
      put32(offset + 16 + 8 * i, name);
      put32(offset + 20 + 8 * i, value);
    }
    return offset;
  }

  std::vector<uint8_t> out;
  std::vector<uint32_t> dataEntries;
  std::vector<uint32_t> data;

 private:
  void align(std::size_t to) { out.resize((out.size() + to - 1) / to * to, 0); }
  void put32(std::size_t at, uint32_t value) {
    for (int i = 0; i < 4; ++i)
      out[at + i] = static_cast<uint8_t>(value >> (8 * i));
  }
  uint32_t string(const std::u16string& text) {
    align(2);
    const auto offset = static_cast<uint32_t>(out.size());
    out.push_back(static_cast<uint8_t>(text.size()));
    out.push_back(static_cast<uint8_t>(text.size() >> 8));
    for (char16_t c : text) {
      out.push_back(static_cast<uint8_t>(c));
      out.push_back(static_cast<uint8_t>(c >> 8));
    }
    return offset;
  }
  uint32_t dataEntry(const std::vector<uint8_t>& bytes) {
    align(4);
    const auto entry = static_cast<uint32_t>(out.size());
    out.resize(out.size() + 16, 0);
    const auto at = static_cast<uint32_t>(out.size());
    out.insert(out.end(), bytes.begin(), bytes.end());
    put32(entry, sectionRva_ + at);
    put32(entry + 4, static_cast<uint32_t>(bytes.size()));
    dataEntries.push_back(entry);
    data.push_back(at);
    return entry;
  }

  uint32_t sectionRva_;
};

inline uint32_t roundUp(uint32_t value, uint32_t to) {
  return (value + to - 1) / to * to;
}

}  // namespace detail

// An image with a code section at RVA 0x1000 (file offset 0x400) and the resource section.
inline PeImage buildPeImage(const PeImageOptions& options) {
  detail::ResourceWriter writer(options.resourceVirtualAddress);
  writer.directory(options.resources);
  const auto resourceSize = static_cast<uint32_t>(writer.out.size());
  const uint32_t resourceRawSize = detail::roundUp(resourceSize, 0x200);

  PeImage image;
  image.bytes.assign(options.resourceRawOffset + resourceRawSize, 0);
  std::copy(writer.out.begin(), writer.out.end(), image.bytes.begin() + options.resourceRawOffset);
  image.bytes[0] = 'M';
  image.bytes[1] = 'Z';
  image.peHeader = 0x80;
  image.put32(0x3C, static_cast<uint32_t>(image.peHeader));
  image.bytes[image.peHeader] = 'P';
  image.bytes[image.peHeader + 1] = 'E';
  const uint16_t optionalSize = options.pe32Plus ? 240 : 224;
  image.put16(image.peHeader + 4, options.pe32Plus ? 0x8664 : 0x014C);  // machine
  image.put16(image.peHeader + 6, 2);                                   // sections
  image.put16(image.peHeader + 20, optionalSize);
  image.put16(image.peHeader + 22, options.pe32Plus ? 0x2022 : 0x2102);  // a DLL

  const std::size_t o = image.optionalHeader = image.peHeader + 24;
  const uint32_t imageSize =
      options.resourceVirtualAddress + detail::roundUp(std::max(resourceSize, 1u), 0x1000);
  image.put16(o, options.pe32Plus ? 0x20B : 0x10B);
  image.put32(o + 4, 0x200);    // size of code
  image.put32(o + 20, 0x1000);  // base of code
  if (options.pe32Plus) {
    image.put32(o + 28, 0x1);  // image base 0x1'0000'0000
  } else {
    image.put32(o + 28, 0x10000000);
  }
  image.put32(o + 32, 0x1000);  // section alignment
  image.put32(o + 36, 0x200);   // file alignment
  image.put16(o + 40, 6);       // operating system version
  image.put16(o + 48, 6);       // subsystem version
  image.put32(o + 56, imageSize);
  image.put32(o + 60, 0x400);  // size of headers
  image.put16(o + 68, 2);      // subsystem: GUI
  const std::size_t stack = o + 72;
  const std::size_t field = options.pe32Plus ? 8 : 4;
  image.put32(stack, 0x100000);
  image.put32(stack + field, 0x1000);
  image.put32(stack + 2 * field, 0x100000);
  image.put32(stack + 3 * field, 0x1000);
  const std::size_t directories = options.pe32Plus ? o + 112 : o + 96;
  image.put32(directories - 4, 16);  // number of data directories
  image.put32(directories + 16, options.resourceVirtualAddress);
  image.put32(directories + 20, resourceSize);

  image.sectionTable = o + optionalSize;
  const auto section = [&image](std::size_t index, const char* name, uint32_t virtualSize,
                                uint32_t virtualAddress, uint32_t rawSize, uint32_t rawOffset,
                                uint32_t characteristics) {
    const std::size_t at = image.sectionTable + 40 * index;
    for (std::size_t i = 0; name[i] != '\0'; ++i)
      image.bytes[at + i] = static_cast<uint8_t>(name[i]);
    image.put32(at + 8, virtualSize);
    image.put32(at + 12, virtualAddress);
    image.put32(at + 16, rawSize);
    image.put32(at + 20, rawOffset);
    image.put32(at + 36, characteristics);
  };
  section(0, ".text", 0x10, 0x1000, 0x200, 0x400, 0x60000020);
  image.bytes[0x400] = 0xC3;  // ret
  section(1, ".rsrc", resourceSize, options.resourceVirtualAddress, resourceRawSize,
          options.resourceRawOffset, 0x40000040);

  image.resourceRoot = options.resourceRawOffset;
  for (uint32_t entry : writer.dataEntries)
    image.dataEntries.push_back(image.resourceRoot + entry);
  for (uint32_t at : writer.data)
    image.data.push_back(image.resourceRoot + at);
  return image;
}

}  // namespace ravelin::pe_image
