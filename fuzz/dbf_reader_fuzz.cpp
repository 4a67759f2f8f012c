// Arbitrary bytes as a dBASE table: the reader either builds a record set or raises its own error
// (0x80040001, source "clsDBFFileReader.ReadDBF"); anything else, a crash, a hang or a read
// outside the bytes is a finding. A record set that comes back is walked to its end.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <ravelin/data/dbf_file_reader.hpp>
#include <ravelin/frame/error.hpp>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace ravelin;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  try {
    const std::shared_ptr<Recordset> rs = DBFFileReader::readBytes(bytes);
    if (!rs || rs->State() != adStateOpen) std::abort();
    if (!(rs->BOF() && rs->EndOfFile())) {
      const auto fields = rs->Fields();
      for (rs->MoveFirst(); !rs->EndOfFile(); rs->MoveNext()) {
        for (int32_t i = 0; i < fields->Count(); ++i)
          (void)fields->Item(Variant(i))->Value();
      }
    }
  } catch (const AutomationError& error) {
    if (error.number() != kReservedInvalidFileFormat ||
        error.source() != u"clsDBFFileReader.ReadDBF") {
      std::abort();
    }
  }
  return 0;
}
