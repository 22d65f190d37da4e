#ifndef YH_KINDS_CURRENT_LOSTROWS_H
#define YH_KINDS_CURRENT_LOSTROWS_H

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "common/Database.h"
#include "kinds/StoredFiles.h"
#include "kinds/current/Deletion.h"
#include "libYH.h"
#include "recovery/RecoveredRow.h"

namespace current {

// Which rows of a stored database make a kind's deleted records.
struct LostRowsOf {
  // The tables whose rows that are no longer live are the records: their
  // deleted rows and their earlier versions.
  std::vector<std::string> subjects;
  // Tables whose deleted rows must not join the records (another reading
  // lists them): only their live rows are there.
  std::vector<std::string> liveOnly;
  // Whether the subjects' live rows stay beside the lost ones, for a record
  // that refers to another row of its own table (a note to its folder); the
  // reader then gives the live records too, to be told apart by the caller.
  bool keepLiveSubjects = false;
  // A column of the subjects that names a record across its versions (a
  // message's guid): a lost row without its rowid that shares it with a
  // live row is a stale copy of that row, left behind when its cell moved,
  // not a deleted record. Empty when the table has none.
  std::string identity;
  // Tables that only tie other rows to a subject row, each with the column
  // that names the subject's rowid (a message's chat and attachments): only
  // their rows that name a lost subject row can change a record, so the
  // others are left out of the layers, which keeps them small.
  std::vector<std::pair<std::string, std::string>> links = {};
  // Tables the kind's reader never reads: left empty in the layers, where
  // copying their rows would only cost time (sms.db keeps a row there per
  // deleted message).
  std::vector<std::string> unread = {};
};

// Calls `read` once per layer of the subjects' lost rows with a database
// laid out for the kind's reader: every table's live rows and the other
// tables' deleted rows (each rowid once, the live row first), and in the
// subject tables that layer's rows only (besides their live ones when kept;
// an earlier version takes its live row's place). A layer holds the rows of
// one source and status, each rowid at most once; a rowid met again goes to
// the next layer. A content found in several places counts once, with its
// rowid when one place kept it. `read` is not called when nothing was lost.
void ForEachLostLayer(const RecoveredRows& rows, const LostRowsOf& lost,
                      const std::function<void(Database& database, const Deletion& deletion)>& read);

// The same for the rows of a stored database (see RecoverStoredDatabase),
// whose subjects' live rows are kept only as far as the layers need them:
// their identity, unless they stay beside the lost ones.
void ForEachLostLayer(const BackupDevice* device, const StoredFile& file, const LostRowsOf& lost,
                      const std::function<void(Database& database, const Deletion& deletion)>& read);

}  // namespace current

#endif
