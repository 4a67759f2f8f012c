// The values of a dBASE record's fields: the conversions of the "N", "L" and "D" types.
#pragma once

#include <cstdint>
#include <string_view>

namespace ravelin::dbf {

// The divisor of an "N" field: 10 raised to the numeric value of the decimal-count byte taken as
// a one-character text, as the automation Val reads it, or 1 when the byte is a blank (0x20). A
// binary count such as 2 reads as 0 (division by 1); the ASCII digit "2" divides by 100.
double decimalDivisor(uint8_t decimalByte);

// The numeric value of the field text as the automation Val reads it (leading numeric prefix,
// "." as the decimal point). Plain fixed-point texts of up to 15 digits are read directly, with
// the same correctly rounded result; anything else goes through Val.
double numericText(std::string_view text);

// "L": true only for the text "T" or "Y" exactly.
inline bool logicalText(std::string_view text) {
  return text == "T" || text == "Y";
}

// "D": the text "yyyymmdd". Blank (only spaces, or empty) leaves the field unset; characters 1-4,
// 5-6 and 7-8 must be decimal digits, packed as DateSerial packs them (a month or day out of its
// range carries; years 0-99 read as DateSerial reads them); anything else, or a date outside the
// automation range, is unreadable.
enum class DateText { Blank, Date, Unreadable };
DateText readDateText(std::string_view text, double& serial);

}  // namespace ravelin::dbf
