// Format with arbitrary format texts and values: it must return or raise an AutomationError,
// never crash, hang or throw anything else.
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <ravelin/frame/error.hpp>
#include <ravelin/frame/format.hpp>
#include <ravelin/frame/locale.hpp>

namespace {

using ravelin::Variant;

// Takes up to eight bytes as a 64-bit pattern.
uint64_t takeBits(const uint8_t*& data, size_t& size) {
  uint64_t bits = 0;
  size_t count = size < 8 ? size : 8;
  std::memcpy(&bits, data, count);
  data += count;
  size -= count;
  return bits;
}

// Takes bytes up to a zero byte (or the end) as Latin-1 text.
ravelin::String takeText(const uint8_t*& data, size_t& size) {
  ravelin::String text;
  while (size > 0) {
    uint8_t byte = *data++;
    --size;
    if (byte == 0) break;
    text += static_cast<char16_t>(byte);
  }
  return text;
}

Variant takeValue(uint8_t kind, const uint8_t*& data, size_t& size) {
  switch (kind % 6) {
    case 0: {
      double value;
      uint64_t bits = takeBits(data, size);
      std::memcpy(&value, &bits, sizeof value);
      return value;
    }
    case 1: {
      // A serial inside the valid date range most of the time.
      double serial;
      uint64_t bits = takeBits(data, size);
      std::memcpy(&serial, &bits, sizeof serial);
      if (std::isfinite(serial)) serial = std::fmod(serial, 3000000.0);
      return ravelin::Date{serial};
    }
    case 2:
      return takeText(data, size);
    case 3:
      return ravelin::Currency::fromScaled(static_cast<int64_t>(takeBits(data, size)));
    case 4:
      return static_cast<int32_t>(takeBits(data, size));
    default:
      return (size & 1) != 0 ? Variant::null() : Variant();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  static const ravelin::Locale& english = *ravelin::findKnownLocale(u"en-US");
  static const ravelin::Locale& german = *ravelin::findKnownLocale(u"de-DE");
  if (size < 2) return 0;
  const uint8_t kind = data[0];
  const uint8_t options = data[1];
  data += 2;
  size -= 2;
  const Variant value = takeValue(kind, data, size);
  const ravelin::String format(data, data + size);
  const int firstDay = options % 8;
  const int firstWeek = (options / 8) % 4;
  for (const ravelin::Locale* locale : {&english, &german}) {
    try {
      ravelin::Format(value, format, firstDay, firstWeek, *locale);
    } catch (const ravelin::AutomationError&) {
      // Errors of the runtime are a valid answer.
    }
  }
  return 0;
}
