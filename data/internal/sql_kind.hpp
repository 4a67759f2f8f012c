// The choice between the two dialects that most SQLUtilities members make.
#pragma once

#include <ravelin/base/text.hpp>
#include <ravelin/data/sql_utilities.hpp>

namespace ravelin::sql {

inline bool isKnownKind(DataBTypeEnum kind) {
  return kind == dbtMDB || kind == dbtMSSQL;
}

// The desktop text for dbtMDB, the server text for dbtMSSQL, "" for any other kind.
inline String forKind(DataBTypeEnum kind, StringView desktop, StringView server) {
  switch (kind) {
    case dbtMDB:
      return String(desktop);
    case dbtMSSQL:
      return String(server);
  }
  return String();
}

}  // namespace ravelin::sql
