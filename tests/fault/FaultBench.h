#ifndef YH_TESTS_FAULT_FAULTBENCH_H
#define YH_TESTS_FAULT_FAULTBENCH_H

#include <gtest/gtest.h>
#include <plist/plist.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "common/PlistDictEntries.h"
#include "fault/SampleBackup.h"
#include "libYH.h"
#include "support/BackupBuilder.h"
#include "support/DeviceList.h"
#include "support/PlistDump.h"
#include "support/SystemFiles.h"
#include "support/TreeSnapshot.h"

namespace yhtest::fault {

// Every content type, those of the current service only included.
constexpr int kContentTypes = ContentWhatsAppCalls + 1;

// Every answer both services give for one backup folder, asked for every
// content type twice, as dumps: in each round the described service's
// answers by content type, then the current service's, then the current
// service's deleted records.
struct Answers {
  bool found = false;
  std::vector<std::string> rounds[2];
  std::vector<std::string> paths;  // every "path" text of the answers
};

// Every "path" text of the tree, nested ones (a message's attachments)
// included, in the order met.
inline void CollectPaths(plist_t node, std::vector<std::string>* paths) {
  if (plist_get_node_type(node) == PLIST_ARRAY) {
    for (uint32_t i = 0; i < plist_array_get_size(node); ++i) CollectPaths(plist_array_get_item(node, i), paths);
  } else if (plist_get_node_type(node) == PLIST_DICT) {
    plist_t path = plist_dict_get_item(node, "path");
    if (plist_get_node_type(path) == PLIST_STRING) {
      char* text = nullptr;
      plist_get_string_val(path, &text);
      paths->push_back(text ? text : "");
      std::free(text);
    }
    PlistDictEntries entries(node);
    std::string key;
    plist_t value = nullptr;
    while (entries.Next(&key, &value)) {
      if (plist_get_node_type(value) == PLIST_ARRAY) CollectPaths(value, paths);
    }
  }
}

inline Answers AskEverything(const std::string& folder) {
  Answers answers;
  for (iDeviceBackupService* (*create)() : {CreateDataRecoveryService, CreateCurrentDataRecoveryService}) {
    iDeviceBackupService* service = create();
    BackupDevice* list = GetBackupDeviceListAt(folder.c_str());
    answers.found = list != nullptr && list->next == nullptr;
    if (answers.found) {
      service->AnalyzeBackup(list);
      for (auto& round : answers.rounds) {
        for (int type = 0; type < kContentTypes; ++type) {
          plist_t answer = service->GetContentList(list, static_cast<iDeviceContentType>(type));
          CollectPaths(answer, &answers.paths);
          round.push_back(DumpAndFree(answer));
        }
        for (int type = 0; create == CreateCurrentDataRecoveryService && type < kContentTypes; ++type) {
          plist_t answer = GetDeletedContentList(list, static_cast<iDeviceContentType>(type));
          CollectPaths(answer, &answers.paths);
          round.push_back(DumpAndFree(answer));
        }
      }
    }
    FreeDeviceList(list);
    FreeiDeviceBackupService(service);
  }
  return answers;
}

// The dumps of every answer with the backup folder's path replaced, so that
// the answers of two copies of one backup compare.
inline std::vector<std::string> Normalized(const Answers& answers, const std::string& folder) {
  std::vector<std::string> dumps;
  for (const auto& round : answers.rounds) {
    for (std::string dump : round) {
      for (size_t at = dump.find(folder); at != std::string::npos; at = dump.find(folder, at)) {
        dump.replace(at, folder.size(), "BACKUP/");
      }
      dumps.push_back(dump);
    }
  }
  return dumps;
}

// The sample backup of one index kind, kept pristine, and the folder where
// each run gets a fresh copy of it to damage. Runs share that folder, so
// their answers compare byte for byte with the undamaged ones.
class FaultBench {
 public:
  using Damage = std::function<void()>;

  explicit FaultBench(IndexKind kind)
      : kind_(kind),
        pristine_(sample::Builder(kind).Write(root_.Path() + "pristine")),
        work_(root_.Path() + "backup/") {
    Fresh();
    baseline_ = AskEverything(work_);
    EXPECT_TRUE(baseline_.found);
  }

  IndexKind Kind() const { return kind_; }
  const std::string& Backup() const { return work_; }
  const std::string& Outside() const { return root_.Path(); }
  const Answers& Baseline() const { return baseline_; }

  // Where the work copy keeps a device file.
  std::string Stored(const std::string& domain, const std::string& path) const {
    return work_ + BackupBuilder(kind_).StoredPath(domain, path);
  }

  // Copies the sample afresh, applies `damage`, asks every answer twice and
  // checks that the service came back, that the answers of the types not in
  // `changed` are the undamaged ones, that no answer names a file outside
  // the backup folder and that the folder is byte for byte as before.
  Answers Run(const std::string& what, const std::vector<iDeviceContentType>& changed, const Damage& damage) {
    SCOPED_TRACE(what);
    Fresh();
    damage();
    const std::string before = SnapshotTree(work_);
    Answers answers = AskEverything(work_);
    EXPECT_EQ(SnapshotTree(work_), before);
    EXPECT_TRUE(answers.found);
    if (!answers.found) return answers;
    for (size_t i = 0; i < answers.rounds[0].size() && i < baseline_.rounds[0].size(); ++i) {
      const int type = static_cast<int>(i) % kContentTypes;
      if (std::find(changed.begin(), changed.end(), type) != changed.end()) continue;
      const char* const services[] = {"described", "current", "current deleted"};
      const char* service = services[std::min<size_t>(i / kContentTypes, 2)];
      EXPECT_EQ(answers.rounds[0][i], baseline_.rounds[0][i]) << service << " content type " << type;
      EXPECT_EQ(answers.rounds[1][i], baseline_.rounds[1][i]) << service << " content type " << type;
    }
    for (const std::string& path : answers.paths) {
      if (path.empty()) continue;  // a record whose file the backup lacks
      EXPECT_EQ(path.rfind(work_, 0), 0u) << path;
      EXPECT_EQ(path.find("/.."), std::string::npos) << path;
    }
    return answers;
  }

 private:
  void Fresh() {
    namespace fs = std::filesystem;
    std::error_code ignored;
    // A run may have taken permissions away; give them back before removing.
    for (fs::recursive_directory_iterator it(work_, ignored), end; !ignored && it != end; it.increment(ignored)) {
      if (!it->is_symlink()) fs::permissions(it->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
    }
    fs::remove_all(work_, ignored);
    CopyTree(pristine_, work_);
  }

  IndexKind kind_;
  TempDir root_;
  std::string pristine_;
  std::string work_;
  Answers baseline_;
};

// Every content type: for damage that may change any answer.
inline std::vector<iDeviceContentType> AllTypes() {
  std::vector<iDeviceContentType> types;
  for (int type = 0; type < kContentTypes; ++type) types.push_back(static_cast<iDeviceContentType>(type));
  return types;
}

inline std::string IndexName(IndexKind kind) {
  return kind == IndexKind::Mbdb ? "Mbdb" : "ManifestDb";
}

}  // namespace yhtest::fault

#endif
