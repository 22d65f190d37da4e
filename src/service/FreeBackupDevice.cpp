#include <cstdlib>

#include "service/Extractors.h"
#include "service/ServiceOperations.h"

// Releases the whole list with its readers and extractors. The product name,
// type and version and the unique identifier are deliberately left
// unreleased: they stay valid after the list is gone. The contacts object is
// deleted once, through its own field; call history and messages only borrow it.
void FreeBackupDevice(BackupDevice* head) {
  while (head) {
    free(head->lastBackupDate);
    delete head->indexReader;
    for (ExtractorField field : kExtractorFields) delete field(head);
    free(head->backupPath);
    free(head->deviceName);
    free(head->serialNumber);
    BackupDevice* next = head->next;
    free(head);
    head = next;
  }
}
