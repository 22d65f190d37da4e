#ifndef YH_KINDS_CURRENT_STOREDRECORDKIND_H
#define YH_KINDS_CURRENT_STOREDRECORDKIND_H

#include <plist/plist.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "kinds/Kind.h"
#include "kinds/current/Deletion.h"
#include "kinds/current/StoredDatabases.h"
#include "libYH.h"

namespace current {

// What a kind answers when the backup holds none of its databases. One that
// is there answers an array, empty when it holds no record.
enum class WhenNone { Null, EmptyList };

// The order of work every current kind shares: on the first request read
// the kind's records (Read, which opens its stored databases through
// ReadStoredDatabases and puts the records in the kind's order), keep them
// for the life of the backup record, and answer every request with an array
// of those that the request's flag selects, one dictionary each. A kind's
// own file then holds only where its databases lie, its queries, its rules
// and its keys. One backup record is used from one thread at a time; the
// kept records are the record's own, so two records may be read at once.
template <class Record>
class StoredRecordKind : public Kind {
 public:
  bool HandContent(void* device, int flag, RecordSink& sink) final {
    const std::vector<Record>& records = Records(static_cast<const BackupDevice*>(device));
    if (records.empty() && whenNone_ == WhenNone::Null && !heldDatabase_) return false;
    for (const Record& record : records) {
      if (!Selects(record, flag)) continue;
      plist_t dict = plist_new_dict();
      InsertKeys(record, dict);
      if (!sink.Put(dict)) break;
    }
    return true;
  }

  // The same layout for the records the owner deleted, each followed by
  // its deletion's keys; a NULL answer when there are none.
  bool HandDeletedContent(void* device, int flag, RecordSink& sink) final {
    const std::vector<Deleted<Record>>& records = DeletedRecords(static_cast<const BackupDevice*>(device));
    if (records.empty()) return false;
    for (const Deleted<Record>& deleted : records) {
      if (!Selects(deleted.record, flag)) continue;
      plist_t dict = plist_new_dict();
      InsertKeys(deleted.record, dict);
      InsertDeletionKeys(deleted.deletion, dict);
      if (!sink.Put(dict)) break;
    }
    return true;
  }

 protected:
  explicit StoredRecordKind(WhenNone whenNone) : whenNone_(whenNone) {}

  // The kind's records in answer order, read on the first call only.
  const std::vector<Record>& Records(const BackupDevice* device) {
    if (read_) return records_;
    read_ = true;
    records_ = Read(device);
    // Kept for every later request: spare room would be kept too.
    records_.shrink_to_fit();
    return records_;
  }

  // The deleted records in answer order, read on the first call only.
  const std::vector<Deleted<Record>>& DeletedRecords(const BackupDevice* device) {
    if (deletedRead_) return deleted_;
    deletedRead_ = true;
    deleted_ = ReadDeleted(device);
    deleted_.shrink_to_fit();
    return deleted_;
  }

  // ReadStoredDatabases for the kind's own records, noting whether the
  // backup holds any of the files (one the index lists but the backup lacks,
  // or holds as a folder, does not count).
  template <class Files, class Reader>
  auto ReadOwnDatabases(const BackupDevice* device, const Files& files, Reader reader) {
    heldDatabase_ = heldDatabase_ || AnyHeld(files);
    return ReadStoredDatabases(device, files, std::move(reader));
  }

  // `deleted` without the records whose keys are those of one of `shown`:
  // nothing the live answer shows is given again as deleted.
  std::vector<Deleted<Record>> WithoutCopies(std::vector<Deleted<Record>> deleted, const std::vector<Record>& shown) const {
    if (deleted.empty()) return deleted;
    std::unordered_set<std::string> keys;
    for (const Record& record : shown) keys.insert(KeysOf(record));
    std::vector<Deleted<Record>> kept;
    for (Deleted<Record>& record : deleted) {
      if (!keys.count(KeysOf(record.record))) kept.push_back(std::move(record));
    }
    return kept;
  }
  std::vector<Deleted<Record>> WithoutLiveCopies(const BackupDevice* device, std::vector<Deleted<Record>> deleted) {
    return deleted.empty() ? std::move(deleted) : WithoutCopies(std::move(deleted), Records(device));
  }

  // Every record of the backup, in the kind's order.
  virtual std::vector<Record> Read(const BackupDevice* device) = 0;
  // The records the owner deleted, in the kind's order; none unless the
  // kind finds them.
  virtual std::vector<Deleted<Record>> ReadDeleted(const BackupDevice* /*device*/) { return {}; }
  // The keys that mark a deleted record, after its own.
  virtual void InsertDeletionKeys(const Deletion& deletion, plist_t dict) const { InsertDeletion(deletion, dict); }
  // Whether the answer for `flag` holds the record; a kind that answers two
  // content types tells them apart by the flag its route gives.
  virtual bool Selects(const Record& /*record*/, int /*flag*/) const { return true; }
  // Inserts the kind's keys for one record, in the answer's key order.
  virtual void InsertKeys(const Record& record, plist_t dict) const = 0;

 private:
  // The record's keys as bytes, to compare records by what they show.
  std::string KeysOf(const Record& record) const {
    plist_t dict = plist_new_dict();
    InsertKeys(record, dict);
    char* bytes = nullptr;
    uint32_t length = 0;
    plist_to_bin(dict, &bytes, &length);
    std::string keys(bytes ? bytes : "", bytes ? length : 0);
    plist_to_bin_free(bytes);
    plist_free(dict);
    return keys;
  }

  static bool Held(const StoredFile& file) { return !file.path.empty() && file.regular; }
  static bool AnyHeld(const std::optional<StoredFile>& file) { return file && Held(*file); }
  static bool AnyHeld(const std::vector<StoredFile>& files) { return std::any_of(files.begin(), files.end(), Held); }

  const WhenNone whenNone_;
  bool heldDatabase_ = false;
  bool read_ = false;
  std::vector<Record> records_;
  bool deletedRead_ = false;
  std::vector<Deleted<Record>> deleted_;
};

}  // namespace current

#endif
