#ifndef YH_TOOL_MEDIACOPIER_H
#define YH_TOOL_MEDIACOPIER_H

#include <plist/plist.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "BackupFiles.h"
#include "KindFolders.h"
#include "Kinds.h"
#include "OutputFolder.h"
#include "Progress.h"

namespace yh {

// What one kind gave and what of it was written.
struct KindExport {
  const Kind* kind;
  size_t records = 0;
  size_t files = 0;  // media files in the output folder
  uint64_t bytes = 0;
  size_t skipped = 0;  // media files named but not copied
  size_t missing = 0;  // records whose file the backup does not hold
  size_t kept = 0;     // of `files`, copies an interrupted run had made
  std::optional<size_t> deleted{};  // records the owner deleted, when they were asked for
};

// The key each copied record gains: its copy's path relative to the output
// folder, "" when it has none.
extern const char kExportedPathKey[];

// Copies the media files that answers name into media/<kind>/ of an output
// folder, under the record's non-empty "original_name" or else its file name,
// made safe, reading the backup only, and writes each copy's path into its
// record. A file is copied once however many records name it. Files that
// cannot be copied are named on standard error and skipped; records whose
// file the backup does not hold are counted, not named.
class MediaCopier {
 public:
  // Called with each record and its copy's path once copied.
  using OnCopy = std::function<void(const Kind& kind, plist_t record, const std::string& copy)>;

  // Copies files of the backup folder or of `copies` ("" for none). With
  // `resumed`, a copy already there under the name it would get is kept.
  MediaCopier(const std::string& backupPath, const std::string& copies, OutputFolder& out, Progress& progress,
              bool resumed);

  // The files one record of a kind's answer names, as the record comes: a
  // media kind's record (for WhatsApp, the attachments of its chat's
  // messages); a message's attachments, into media/attachments/; the picture
  // a record names under the kind's picturePathKey (a contact's, which the
  // library wrote into its private folder), into media/<kind>/ under the
  // name the library gave it, a record without one gaining an empty path and
  // counting as no file. `done`: the records so far, for the progress line.
  void CopyOf(const Kind& kind, plist_t record, size_t done, KindExport& result);
  // Ends the progress line of an answer's records.
  void FinishProgress() { progress_.Finish(); }

  void SetOnCopy(OnCopy onCopy) { onCopy_ = std::move(onCopy); }

 private:
  struct Copied {
    std::string relative;  // "" when not copied
    uint64_t size = 0;
  };

  // Every media record below a record, found through `lists`.
  void CopyAll(const Kind& kind, const std::vector<std::string>& lists, plist_t record, KindExport& result);
  // A file a record names: where it is, the name and date its copy gets.
  struct Medium {
    std::string path;
    std::string name;
    std::string date;
  };

  void CopyRecord(const Kind& kind, plist_t record, KindExport& result);
  void CopyPicture(const Kind& kind, plist_t record, KindExport& result);
  // Copies a medium once, gives the record its copy's path.
  void CopyMedium(const Kind& kind, plist_t record, const Medium& medium, KindExport& result);
  Copied CopyFileOf(const Kind& kind, const Medium& medium, KindExport& result);

  BackupFiles files_;
  KindFolders media_;
  Progress& progress_;
  bool resumed_;
  OnCopy onCopy_;
  std::map<std::string, Copied> copied_;  // by the path the answer names
  uint64_t bytes_ = 0;                    // copied, for the progress line
};

}  // namespace yh

#endif
