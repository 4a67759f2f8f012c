// Feeds arbitrary bytes to the reader of saved record sets: a library error is fine, anything
// else (a crash, a leak, another exception) is a finding. A set that loads is saved again, which
// must succeed or raise a library error too.
#include <cstddef>
#include <cstdint>
#include <ravelin/data/internal/recordset_xml.hpp>
#include <ravelin/frame/error.hpp>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  using namespace ravelin;
  const std::string_view document(reinterpret_cast<const char*>(data), size);
  try {
    RecordStore store;
    recordset_xml::read(document, store, adLockBatchOptimistic);
    const std::string again = recordset_xml::write(store);
    RecordStore reloaded;
    recordset_xml::read(again, reloaded, adLockBatchOptimistic);
    if (reloaded.storedRows() != store.storedRows()) __builtin_trap();
  } catch (const AutomationError&) {
  }
  return 0;
}
