#ifndef YH_KINDS_CURRENT_WHATSAPPFILES_H
#define YH_KINDS_CURRENT_WHATSAPPFILES_H

#include <string>
#include <vector>

#include "kinds/StoredFiles.h"
#include "libYH.h"

namespace current {

// The stored files at `relativePath` of WhatsApp's shared app-group domains,
// WhatsApp's first, then WhatsApp Business's: the two apps keep the same
// databases under the same names.
std::vector<StoredFile> WhatsAppFilesAt(const BackupDevice* device, const std::string& relativePath);

}  // namespace current

#endif
