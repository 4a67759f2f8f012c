// TextStream: a text file opened by the file-system object (CreateTextFile, OpenTextFile) for
// reading, writing or appending, in the ANSI code page of the current locale or in UTF-16LE.
//
// - Reading: ReadLine ends a line at LF or CR LF and drops that end; a CR alone is text. Read,
//   ReadLine, ReadAll, Skip and SkipLine at the end of the stream raise 62, so does ReadAll of an
//   empty file; Read and Skip of a negative count raise 5, of 0 do nothing. A UTF-16 stream skips
//   the file's byte order mark and drops an odd last byte; an ANSI stream reads every byte as a
//   character of the code page, a byte order mark included.
// - Writing: WriteLine ends lines with CR LF on every system, so files are the same everywhere.
//   Every Write reaches the file before it returns; a write the system refuses raises 61 (disk
//   full) or 57 (device I/O error) at once, so no text is lost without an error. A character the
//   ANSI code page lacks is written as "?". WriteBlankLines of a negative count raises 5.
// - Reading members on a stream for writing or appending, and writing members on one for reading,
//   raise 54 "Bad file mode", as do AtEndOfStream and AtEndOfLine on a stream for writing.
// - Line (from 1) counts the line ends read or written; Column (from 1) the characters since the
//   last one.
// - Close closes the file; closing again does nothing; after Close every member but Line, Column
//   and Close raises 54. A stream let go without Close is closed then.
#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>
#include <string>

namespace ravelin {

class TextStream : public PublicClass<TextStream> {
 public:
  static constexpr StringView kClassName = u"TextStream";
  static ClassInfo describe();

  enum class Mode { reading, writing, appending };
  enum class Encoding { ansi, unicode };

  // A stream on a file opened by the caller (binary, positioned where reading or writing starts);
  // `codePage` is the ANSI code page for Encoding::ansi.
  TextStream(std::fstream file, Mode mode, Encoding encoding, int codePage);
  ~TextStream() override;
  TextStream(const TextStream&) = delete;
  TextStream& operator=(const TextStream&) = delete;

  int32_t Line() const { return line_; }
  int32_t Column() const { return column_; }
  bool AtEndOfStream();
  bool AtEndOfLine();

  String Read(int32_t Characters);
  String ReadLine();
  String ReadAll();
  void Skip(int32_t Characters);
  void SkipLine();

  void Write(StringView Text);
  void WriteLine(StringView Text);
  void WriteBlankLines(int32_t Lines);

  void Close();

 private:
  void requireReading() const;
  void requireWriting() const;
  // Reads the next block of the file into the text; false at the end of the file.
  bool fill();
  // Makes `count` characters available when the file has them.
  void ensure(std::size_t count);
  // Takes `count` available characters, counting lines and columns.
  String take(std::size_t count);
  // The length of the next line and of its end (0, 1 or 2); raises 62 at the end of the stream.
  std::pair<std::size_t, std::size_t> nextLine();
  void count(StringView text);
  void writeBytes(const std::string& bytes);

  std::fstream file_;
  Mode mode_;
  Encoding encoding_;
  int codePage_;
  bool closed_ = false;
  int32_t line_ = 1;
  int32_t column_ = 1;
  // Read text not taken yet, from position `next_`, and bytes of a character split between blocks.
  String text_;
  std::size_t next_ = 0;
  std::string carry_;
  bool endOfFile_ = false;
};

}  // namespace ravelin
