#ifndef YH_RECOVERY_CLASSIFIER_H
#define YH_RECOVERY_CLASSIFIER_H

#include <cstdint>
#include <optional>
#include <unordered_map>
#include <vector>

#include "recovery/RecoveredRow.h"
#include "recovery/RowIndex.h"

// Sorts the rows that are not live against the current state, which it
// meets one piece at a time: the entries of unique indexes, then the live
// rows. A row is a copy of a live row (left out) when it has the live row's
// rowid and values, or no rowid and the live row's values; it is an earlier
// version when it has a live row's rowid but other values, or a live row's
// unique key (a row deleted and inserted again under another rowid); else
// it is deleted. Holds indexes into the rows it is given, which must outlive
// it.
class Classifier {
 public:
  Classifier(const std::vector<TableShape>& tables, const std::vector<RecoveredRow>& rows);

  // Whether the unique key `key` of the table is worth reading: a row has
  // all its values.
  bool WantsKey(size_t table, size_t key) const;
  // An entry of that key's index: the key's values, then the live rowid.
  void MeetIndexEntry(size_t table, size_t key, const SqlValues& entry);

  // Whether a live row of the table can tell anything about the rows.
  bool Wants(size_t table) const { return table < wanted_.size() && wanted_[table]; }
  // A live row, once every index entry was met.
  void Meet(const RecoveredRow& live);

  // Once every live row was met: false for a row to leave out (a copy of a
  // live row, or a row met before), else its status and the live row it is
  // an earlier version of.
  bool Classify(size_t index, RecoveredRow* row);

 private:
  enum Match : uint8_t { kCopy = 1, kOther = 2 };
  struct KeyedRow {
    size_t row;
    size_t key;
  };

  const std::vector<TableShape>& tables_;
  const std::vector<RecoveredRow>& rows_;
  std::vector<uint8_t> matches_;
  std::vector<std::optional<int64_t>> liveRowids_;  // of the live row a row is an earlier version of
  std::vector<std::optional<int64_t>> linkedTo_;    // of the live row that holds a row's unique key
  std::vector<bool> wanted_;
  std::vector<std::vector<bool>> keysWanted_;  // by table and key
  std::vector<KeyedRow> keyed_;
  RowIndex byRowid_;
  RowIndex byValues_;
  RowIndex byKey_;    // into keyed_
  RowIndex byLinks_;  // rows whose key a live row holds, by its rowid
  bool linksSealed_ = false;
  std::unordered_multimap<uint64_t, size_t> reported_;
};

#endif
