// DataUtilities: four stateless operations on record sets: a field-name test, a safe close, a
// merge that copies every row of one record set into another, and the conversion of every row
// of a set into a pending insertion, so that a batch update through a connection writes them all
// as new rows.
//
// Behaviour where the operations leave a choice:
// - MergeRecordset raises a failure again with the same number and description and the source
//   "DataUtilities.MergeRecordset"; a merge that stopped quietly would lose rows without a word.
//   What can be known beforehand fails before the target changes: a closed source (3704), a
//   target field the source lacks (3265, looked up only when the source has rows), a read-only
//   target (3251). A value the target refuses, or a batch update through a connection that
//   fails, stops the copy there: the rows copied before it stay in the target, pending.
// - UpdateRsToInsert writes its work file under a fresh private folder of the temporary folder
//   (made with owner-only access, so no other user can place a file or a link there) with a name
//   of its own for each call, and removes file and folder when it ends, also after a failure.
//   Two calls at once never share a file. Rows the set shows become pending insertions with
//   their current values; rows deleted in batch mode are left out.
// - The other members let the record set's errors through unchanged; an absent record set
//   (Nothing) given to FieldExists or UpdateRsToInsert raises 91, as any use of Nothing does.
#pragma once

#include <memory>
#include <ravelin/data/recordset.hpp>
#include <ravelin/frame/member_table.hpp>
#include <ravelin/frame/public_class.hpp>

namespace ravelin {

class DataUtilities : public PublicClass<DataUtilities> {
 public:
  static constexpr StringView kClassName = u"DataUtilities";
  // The source of the errors MergeRecordset raises again.
  static constexpr StringView kMergeSource = u"DataUtilities.MergeRecordset";

  static ClassInfo describe();

  // Whether a field of that name exists, without regard to case.
  bool FieldExists(std::shared_ptr<Recordset>& rs, StringView FieldName) const;
  // Marks every row of the set as a pending insertion (see above).
  void UpdateRsToInsert(const std::shared_ptr<Recordset>& rs) const;
  // Copies every row of SourceRs into NewRs, creating NewRs (a client batch set with the
  // source's columns, nullable, variable texts 255 wide) when it is absent and opening it when
  // closed; each target field takes the value of the source field of its name. With Update the
  // target's batch update runs for all rows.
  void MergeRecordset(std::shared_ptr<Recordset>& NewRs, const std::shared_ptr<Recordset>& SourceRs,
                      bool Update = true) const;
  // Closes the set when it is there and open; the reference is kept.
  void CloseRecordset(std::shared_ptr<Recordset>& objRecordset) const;
};

}  // namespace ravelin
