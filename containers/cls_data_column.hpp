// clsDataColumn: the description of one column of tabular data (identifier, caption, SQL data
// type, a compatible type code, default value and display format), duplicated whole through the
// copy interface. The accessors store and return each field unchanged.
#pragma once

#include <cstdint>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/object_copy.hpp>
#include <ravelin/frame/public_class.hpp>
#include <ravelin/frame/sql_data_types.hpp>

namespace ravelin {

class clsDataColumn : public PublicClass<clsDataColumn, IObject> {
 public:
  static constexpr StringView kClassName = u"clsDataColumn";

  // A column of data type DTS_Text with compatible type 0 and empty texts.
  clsDataColumn() = default;

  // The member table late-bound callers see.
  static ClassInfo describe();

  enumDataTypesSql getDataType() const { return dataType_; }
  void setDataType(enumDataTypesSql veValue) { dataType_ = veValue; }
  int32_t getDataTypeCompatible() const { return dataTypeCompatible_; }
  void setDataTypeCompatible(int32_t vlValue) { dataTypeCompatible_ = vlValue; }
  const String& getColumnId() const { return columnId_; }
  void setColumnId(String vsValue) { columnId_ = std::move(vsValue); }
  const String& getDisplayName() const { return displayName_; }
  void setDisplayName(String vsValue) { displayName_ = std::move(vsValue); }
  const String& getDefaultValue() const { return defaultValue_; }
  void setDefaultValue(String vsValue) { defaultValue_ = std::move(vsValue); }
  const String& getFormat() const { return format_; }
  void setFormat(String vsValue) { format_ = std::move(vsValue); }

  // The copy interface: copyObject copies every field from another clsDataColumn (another
  // class is a type mismatch, 13, and this column is left unchanged); copyToObject asks the
  // target to copy this column; generateCopy returns a new column copied from this one;
  // getParameterValue refuses (CCEC_FeatureNotImplemented, source "clsDataColumn",
  // description "IObject_getParameterValue").
  String getClassIdAsString() const override { return String(kClassName); }
  void copyObject(const IObjectRef& voObjectToCopy, int32_t vlCopyWhat = -1) override;
  void copyToObject(const IObjectRef& voCopyTo, int32_t vlCopyWhat = -1) override;
  IObjectRef generateCopy(int32_t vlCopyWhat = -1) override;
  [[noreturn]] Variant getParameterValue(StringView vsParameterName) override;

 private:
  enumDataTypesSql dataType_ = DTS_Text;
  int32_t dataTypeCompatible_ = 0;
  String columnId_;
  String displayName_;
  String defaultValue_;
  String format_;
};

}  // namespace ravelin
