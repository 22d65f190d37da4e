#include "Library.h"

#include <libYH.h>
#include <malloc.h>

#include "Resident.h"
#include "Stopwatch.h"

namespace bench {

double LibraryTimes::Total() const {
  double total = discovery + analysis;
  for (int type = 0; type < kContentTypes; ++type) total += first[type] + second[type];
  return total;
}

namespace {

// Frees an answer as a host does, and lets the allocator finish that work
// (merging the freed blocks) here rather than in the next timed request.
void Release(plist_t answer) {
  plist_free(answer);
  malloc_trim(0);
}

// What libplist takes to make a tree like `answer`: its time, and the
// resident memory the tree adds. The copy is released untimed.
struct TreeCost {
  double ms = 0;
  double mb = 0;
};

TreeCost CopyCost(plist_t answer) {
  if (!answer) return {};
  plist_t copy = nullptr;
  malloc_trim(0);  // so that the copy does not fill pages freed before
  const double before = ResidentMb();
  TreeCost cost;
  cost.ms = Milliseconds([&] { copy = plist_copy(answer); });
  cost.mb = ResidentMb() - before;
  Release(copy);
  return cost;
}

// Adds the cost of copying the answer of `type` to `times`.
void AddCopyCost(plist_t answer, int type, LibraryTimes* times) {
  const TreeCost cost = CopyCost(answer);
  times->trees[type] += cost.ms;
  if (cost.mb > times->largestTreeMb) {
    times->largestTreeMb = cost.mb;
    times->largestTreeType = type;
  }
}

}  // namespace

bool MeasureLibrary(const std::string& folder, Service which, bool copyAnswers, LibraryTimes* times) {
  iDeviceBackupService* service =
      which == Service::Current ? CreateCurrentDataRecoveryService() : CreateDataRecoveryService();
  BackupDevice* devices = nullptr;
  times->discovery = Milliseconds([&] { devices = GetBackupDeviceListAt(folder.c_str()); });
  int32_t analysed = 0;
  if (devices) {
    malloc_trim(0);
    const double before = ResidentMb();
    times->analysis = Milliseconds([&] { analysed = service->AnalyzeBackup(devices); });
    malloc_trim(0);
    times->indexMb = ResidentMb() - before;
  }
  if (analysed == 1) {
    for (int type = 0; type < kContentTypes; ++type) {
      const auto content = static_cast<iDeviceContentType>(type);
      plist_t answer = nullptr;
      times->first[type] = Milliseconds([&] { answer = service->GetContentList(devices, content); });
      times->items[type] = answer && plist_get_node_type(answer) == PLIST_ARRAY ? plist_array_get_size(answer) : 0;
      if (copyAnswers) AddCopyCost(answer, type, times);
      Release(answer);
      times->second[type] = Milliseconds([&] { answer = service->GetContentList(devices, content); });
      if (copyAnswers) AddCopyCost(answer, type, times);
      times->answerTrees += times->trees[type];
      Release(answer);
    }
  }
  service->FreeBackupDevice(devices);
  FreeiDeviceBackupService(service);
  return analysed == 1;
}

}  // namespace bench
