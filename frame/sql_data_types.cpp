#include <ravelin/frame/sql_data_types.hpp>

namespace ravelin {

template <>
const EnumInfo& enumInfo<enumDataTypesSql>() {
  static const EnumInfo info{u"enumDataTypesSql",
                             {
                                 {u"DTS_Text", DTS_Text},
                                 {u"DTS_Date", DTS_Date},
                                 {u"DTS_Numeric", DTS_Numeric},
                                 {u"DTS_Boolean", DTS_Boolean},
                                 {u"DTS_TextUnicode", DTS_TextUnicode},
                                 {u"DTS_Time", DTS_Time},
                                 {u"DTS_TimeStamp", DTS_TimeStamp},
                                 {u"DTS_Unknown", DTS_Unknown},
                                 {u"DTS_FunctionGroup", DTS_FunctionGroup},
                                 {u"DTS_TimeStampTime", DTS_TimeStampTime},
                                 {u"DTS_TimeStampDate", DTS_TimeStampDate},
                             }};
  return info;
}

}  // namespace ravelin
