#include "kinds/current/ContactPictures.h"

#include <algorithm>
#include <map>

#include "common/PictureFormat.h"
#include "common/SchemaInfo.h"
#include "crypto/AtomicFile.h"
#include "platform/FileSystem.h"

namespace current {
namespace {

// Whole pictures first, then the thumbnails of each person largest first.
const char* const kQueries[][2] = {
    {"ABFullSizeImage", "select record_id, data from ABFullSizeImage order by ROWID"},
    {"ABThumbnailImage",
     "select record_id, data from ABThumbnailImage order by record_id, length(data) desc, ROWID"},
};

std::string WrittenOut(const std::string& path, std::string_view bytes) {
  const bool written =
      WriteAtomically(path, [bytes](int fd) { return platform::WriteAll(fd, bytes.data(), bytes.size()); });
  return written ? path : std::string();
}

}  // namespace

std::vector<ContactPicture> WriteContactPictures(Database& database, const std::string& folder) {
  const SchemaInfo schema(database);
  std::map<int64_t, ContactPicture> pictures;
  for (const auto& [table, query] : kQueries) {
    if (!schema.HasColumn(table, "record_id") || !schema.HasColumn(table, "data")) continue;
    Database::Statement rows(database, query);
    const int person = rows.Column("record_id");
    const int data = rows.Column("data");
    while (rows.Step()) {
      if (rows.IsNull(person) || pictures.count(rows.Int64(person))) continue;
      const std::string_view bytes = rows.WholeView(data);
      const PictureFormat* format = PictureFormatOf(bytes);
      if (!format) continue;
      ContactPicture& picture = pictures[rows.Int64(person)];
      picture.personId = rows.Int64(person);
      picture.mimeType = format->mimeType;
      picture.size = bytes.size();
      if (!folder.empty()) {
        picture.path = WrittenOut(folder + std::to_string(picture.personId) + "." + format->extension, bytes);
      }
    }
  }
  std::vector<ContactPicture> byId;
  byId.reserve(pictures.size());
  for (auto& entry : pictures) byId.push_back(std::move(entry.second));
  return byId;
}

const ContactPicture* FindContactPicture(const std::vector<ContactPicture>& pictures, int64_t id) {
  const auto found =
      std::lower_bound(pictures.begin(), pictures.end(), id,
                       [](const ContactPicture& picture, int64_t wanted) { return picture.personId < wanted; });
  return found != pictures.end() && found->personId == id ? &*found : nullptr;
}

}  // namespace current
