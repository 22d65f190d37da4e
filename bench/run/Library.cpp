#include "Library.h"

#include <libYH.h>
#include <malloc.h>

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

// The time libplist takes to make a tree like `answer`; the copy is released
// untimed.
double TreeMilliseconds(plist_t answer) {
  if (!answer) return 0;
  plist_t copy = nullptr;
  const double ms = Milliseconds([&] { copy = plist_copy(answer); });
  Release(copy);
  return ms;
}

}  // namespace

bool MeasureLibrary(const std::string& folder, Service which, bool copyAnswers, LibraryTimes* times) {
  iDeviceBackupService* service =
      which == Service::Current ? CreateCurrentDataRecoveryService() : CreateDataRecoveryService();
  BackupDevice* devices = nullptr;
  times->discovery = Milliseconds([&] { devices = GetBackupDeviceListAt(folder.c_str()); });
  int32_t analysed = 0;
  if (devices) times->analysis = Milliseconds([&] { analysed = service->AnalyzeBackup(devices); });
  if (analysed == 1) {
    for (int type = 0; type < kContentTypes; ++type) {
      const auto content = static_cast<iDeviceContentType>(type);
      plist_t answer = nullptr;
      times->first[type] = Milliseconds([&] { answer = service->GetContentList(devices, content); });
      times->items[type] = answer && plist_get_node_type(answer) == PLIST_ARRAY ? plist_array_get_size(answer) : 0;
      if (copyAnswers) times->trees[type] += TreeMilliseconds(answer);
      Release(answer);
      times->second[type] = Milliseconds([&] { answer = service->GetContentList(devices, content); });
      if (copyAnswers) times->trees[type] += TreeMilliseconds(answer);
      times->answerTrees += times->trees[type];
      Release(answer);
    }
  }
  service->FreeBackupDevice(devices);
  FreeiDeviceBackupService(service);
  return analysed == 1;
}

}  // namespace bench
