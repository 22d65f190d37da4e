// The page-level reader of SQLite files: the first byte chooses whether the
// rest is a database alone, or a database and its -wal or its journal, split
// where the next four bytes say.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "recovery/FileImage.h"
#include "recovery/RecoverRows.h"
#include "recovery/RowsPlist.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 5) return 0;
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 5, size - 5);
  const size_t split = bytes.empty() ? 0 : (data[1] | data[2] << 8 | data[3] << 16 | static_cast<size_t>(data[4]) << 24) % bytes.size();
  const std::string_view database = data[0] % 3 == 0 ? bytes : bytes.substr(0, split);
  const std::string_view log = data[0] % 3 == 0 ? std::string_view() : bytes.substr(split);
  const FileImage image(database, data[0] % 3 == 1 ? log : std::string_view(),
                        data[0] % 3 == 2 ? log : std::string_view());
  plist_free(RowsPlist(RecoverRows(image, true)));
  return 0;
}
