#include <ravelin/containers/cls_collection.hpp>
#include <ravelin/containers/cls_collection_access_key.hpp>
#include <ravelin/containers/cls_collection_objects.hpp>
#include <ravelin/containers/cls_data_column.hpp>
#include <ravelin/containers/internal/container_catalogue.hpp>
#include <ravelin/frame/sql_data_types.hpp>

namespace ravelin {

void registerCollections(ClassRegistry& registry) {
  registry.addClass(clsCollection::describe());
  registry.addClass(clsCollectionAccessKey::describe());
  registry.addClass(clsCollectionObjects::describe());
  registry.addClass(clsDataColumn::describe());
  registry.addEnum(EnumInfo{u"enumDataTypesSql",
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
                            }});
}

}  // namespace ravelin
