// DataUtilities: the field test, the close, the merge and the member table. UpdateRsToInsert
// lives in update_rs_to_insert.cpp.
#include <ravelin/base/text.hpp>
#include <ravelin/data/ado_errors.hpp>
#include <ravelin/data/data_utilities.hpp>
#include <ravelin/frame/class_builder.hpp>
#include <ravelin/frame/error.hpp>
#include <vector>

namespace ravelin {

namespace {

Recordset& require(const std::shared_ptr<Recordset>& rs) {
  if (!rs) raiseRuntimeError(vb_error::kObjectNotSet);
  return *rs;
}

// The created target of a merge: the source's columns on a client batch set.
std::shared_ptr<Recordset> makeMergeTarget(Recordset& source) {
  auto target = makeObject<Recordset>();
  target->setLockType(adLockBatchOptimistic);
  target->setCursorType(adOpenKeyset);
  target->setCursorLocation(adUseClient);
  const auto& fields = *source.Fields();
  for (int32_t i = 0; i < fields.Count(); ++i) {
    const auto field = fields.Item(Variant(i));
    const int32_t type = field->Type();
    const int32_t size = type == adVarWChar || type == adVarChar ? 255 : field->DefinedSize();
    target->Fields()->Append(field->Name(), type, size, adFldMayBeNull);
  }
  return target;
}

// Each target field with the source field of its name. Fields::Item raises 3265 for a name the
// source lacks.
using FieldPairs = std::vector<std::pair<std::shared_ptr<Field>, std::shared_ptr<Field>>>;
FieldPairs pairFields(Recordset& target, Recordset& source) {
  FieldPairs pairs;
  const auto& targetFields = *target.Fields();
  for (int32_t i = 0; i < targetFields.Count(); ++i) {
    auto to = targetFields.Item(Variant(i));
    pairs.emplace_back(to, source.Fields()->Item(Variant(to->Name())));
  }
  return pairs;
}

void copyRows(Recordset& target, Recordset& source, const FieldPairs& pairs) {
  if (!(source.BOF() && source.EndOfFile())) source.MoveFirst();
  while (!source.EndOfFile()) {
    target.AddNew();
    for (const auto& [to, from] : pairs)
      to->setValue(from->Value());
    source.MoveNext();
  }
}

}  // namespace

bool DataUtilities::FieldExists(std::shared_ptr<Recordset>& rs, StringView FieldName) const {
  const auto& fields = *require(rs).Fields();
  for (int32_t i = 0; i < fields.Count(); ++i)
    if (equalsIgnoreCase(fields.Item(Variant(i))->Name(), FieldName)) return true;
  return false;
}

void DataUtilities::CloseRecordset(std::shared_ptr<Recordset>& objRecordset) const {
  if (objRecordset && objRecordset->State() != adStateClosed) objRecordset->Close();
}

void DataUtilities::MergeRecordset(std::shared_ptr<Recordset>& NewRs,
                                   const std::shared_ptr<Recordset>& SourceRs, bool Update) const {
  try {
    Recordset& source = require(SourceRs);
    // What can be known to fail is checked before the target changes: a closed source, a target
    // field the source lacks (looked up only when there is a row to copy), a read-only target.
    if (source.State() != adStateOpen) raiseAdoError(ado_error::kObjectClosed, kRecordsetSource);
    const bool rowsToCopy = !(source.BOF() && source.EndOfFile());
    const std::shared_ptr<Recordset> target = NewRs ? NewRs : makeMergeTarget(source);
    const FieldPairs pairs = rowsToCopy ? pairFields(*target, source) : FieldPairs{};
    // A closed target that was never given a lock type opens updatable.
    const bool readOnly = target->LockType() == adLockReadOnly &&
                          (target->State() == adStateOpen || target->store().lockTypeGiven());
    if (rowsToCopy && readOnly) raiseAdoError(ado_error::kUpdateNotSupported, kRecordsetSource);
    if (target->State() == adStateClosed) target->Open();
    copyRows(*target, source, pairs);
    if (Update) target->UpdateBatch(adAffectAll);
    NewRs = target;
  } catch (const AutomationError& caught) {
    raiseError(caught.number(), String(kMergeSource), caught.description());
  }
}

ClassInfo DataUtilities::describe() {
  using D = DataUtilities;
  return ClassBuilder<D>(kClassName)
      .method(u"FieldExists", &D::FieldExists, {u"rs", u"FieldName"})
      .method(u"UpdateRsToInsert", &D::UpdateRsToInsert, {u"rs"})
      .method(u"MergeRecordset", &D::MergeRecordset,
              {u"NewRs", u"SourceRs", optional(u"Update", true)})
      .method(u"CloseRecordset", &D::CloseRecordset, {u"objRecordset"})
      .build();
}

}  // namespace ravelin
