#include "kinds/current/WhatsAppFiles.h"

namespace current {
namespace {

const char* const kWhatsAppDomains[] = {"AppDomainGroup-group.net.whatsapp.WhatsApp.shared",
                                        "AppDomainGroup-group.net.whatsapp.WhatsAppSMB.shared"};

}  // namespace

std::vector<StoredFile> WhatsAppFilesAt(const BackupDevice* device, const std::string& relativePath) {
  std::vector<StoredFile> files;
  for (const char* domain : kWhatsAppDomains) {
    if (std::optional<StoredFile> file = StoredFileIn(device, domain, relativePath)) files.push_back(std::move(*file));
  }
  return files;
}

}  // namespace current
