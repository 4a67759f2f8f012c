// enumDataTypesSql: the library's SQL data types. The values are bits, but each is used as a
// plain code and never combined with another.
#pragma once

#include <cstdint>
#include <ravelin/frame/enum_info.hpp>

namespace ravelin {

enum enumDataTypesSql : int32_t {
  DTS_Text = 0,
  DTS_Date = 1,
  DTS_Numeric = 2,
  DTS_Boolean = 4,
  DTS_TextUnicode = 8,
  DTS_Time = 16,
  DTS_TimeStamp = 32,
  DTS_Unknown = 64,
  DTS_FunctionGroup = 128,
  DTS_TimeStampTime = 256,
  DTS_TimeStampDate = 512,
};
template <>
const EnumInfo& enumInfo<enumDataTypesSql>();

}  // namespace ravelin
