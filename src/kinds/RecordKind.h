#ifndef YH_KINDS_RECORDKIND_H
#define YH_KINDS_RECORDKIND_H

#include <vector>

#include "kinds/Kind.h"
#include "libYH.h"

// The common order of work of a kind that keeps its records: read the backup
// on the first request that finds anything, answer every later request (with
// any flag) by converting the kept records. A first request that found
// nothing leaves the list empty, so the next one searches again.
template <class Record>
class RecordKind : public Kind {
 public:
  ~RecordKind() override {
    for (Record*& record : records_) {
      delete record;
      record = nullptr;
    }
  }

  bool HandContent(void* device, int flag, RecordSink& sink) override {
    if (records_.empty()) ReadBackup(static_cast<BackupDevice*>(device));
    return ConvertToPlist(flag, sink);
  }

 protected:
  // Fills records_ from the backup's source files (and locates media).
  virtual void ReadBackup(BackupDevice* device) = 0;
  // Whether a record belongs to the group that `flag` asks for.
  virtual bool Selects(const Record&, int /*flag*/) const { return true; }
  // Inserts the kind's keys for one record.
  virtual void FillDict(const Record& record, plist_t dict) const = 0;

  // False (a NULL answer) for no records; otherwise each record of the
  // group, none when every record belongs to the other group.
  bool ConvertToPlist(int flag, RecordSink& sink) const {
    if (records_.empty()) return false;
    for (const Record* record : records_) {
      VqCheckAlive(record);
      if (!Selects(*record, flag)) continue;
      plist_t dict = plist_new_dict();
      FillDict(*record, dict);
      if (!sink.Put(dict)) break;
    }
    return true;
  }

  // Walks the records in order and keeps those for which `keep` is true; the
  // others leave the list, which closes up behind them. Design decision: a
  // record that leaves is also destroyed. Nothing refers to it any more, and
  // keeping it would only leak memory on large backups.
  template <class Predicate>
  void KeepRecordsIf(Predicate keep) {
    auto out = records_.begin();
    for (Record* record : records_) {
      if (keep(*record)) {
        *out++ = record;
      } else {
        delete record;
      }
    }
    records_.erase(out, records_.end());
  }

  std::vector<Record*> records_;
};

#endif
