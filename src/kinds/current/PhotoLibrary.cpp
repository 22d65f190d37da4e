#include "kinds/current/PhotoLibrary.h"

#include <algorithm>
#include <cctype>

#include "common/ColumnHelpers.h"
#include "common/LocalDate.h"
#include "common/SchemaInfo.h"

namespace current {
namespace {

const char kAttributes[] = "ZADDITIONALASSETATTRIBUTES";

std::string Upper(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

// Libraries that record no kind: a video is known by its file's extension.
bool HasVideoExtension(const std::string& fileName) {
  const size_t dot = fileName.rfind('.');
  if (dot == std::string::npos) return false;
  const std::string extension = Upper(fileName.substr(dot + 1));
  return extension == "MOV" || extension == "MP4" || extension == "M4V";
}

// Real libraries link each attributes row to its asset through ZASSET.
std::string AttributesJoin(const SchemaInfo& schema) {
  if (!schema.HasColumn(kAttributes, "ZORIGINALFILENAME") || !schema.HasColumn(kAttributes, "ZASSET")) return "";
  return std::string(" left join ") + kAttributes + " b on b.ZASSET = a.rowid";
}

std::string AssetQuery(const SchemaInfo& schema, const std::string& assets) {
  const std::string join = AttributesJoin(schema);
  const std::string originalName = join.empty() ? "NULL" : "b.ZORIGINALFILENAME";
  return "select " + schema.ColumnOrNull(assets, "ZDIRECTORY", "a") + ", " +
         schema.ColumnOrNull(assets, "ZFILENAME", "a") + ", " + schema.ColumnOrNull(assets, "ZDATECREATED", "a") +
         ", " + schema.ColumnOrNull(assets, "ZKIND", "a") + ", " + schema.ColumnOrNull(assets, "ZTRASHEDSTATE", "a") +
         ", " + originalName + " from " + assets + " a" + join + " order by a.rowid";
}

std::string OldPhotoQuery(const SchemaInfo& schema) {
  return "select " + schema.ColumnOrNull("Photo", "directory") + ", " + schema.ColumnOrNull("Photo", "filename") +
         ", NULL, NULL, NULL, NULL from Photo order by rowid";
}

}  // namespace

std::vector<LibraryAsset> ReadPhotoLibrary(Database& database) {
  const SchemaInfo schema(database);
  std::string query;
  if (schema.HasTable("ZASSET")) {
    query = AssetQuery(schema, "ZASSET");
  } else if (schema.HasTable("ZGENERICASSET")) {
    query = AssetQuery(schema, "ZGENERICASSET");
  } else if (schema.HasTable("Photo")) {
    query = OldPhotoQuery(schema);
  }
  std::vector<LibraryAsset> assets;
  if (query.empty()) return assets;
  Database::Statement rows(database, query.c_str());
  while (rows.Step()) {
    LibraryAsset asset;
    asset.directory = GetEmptyStringIsNull(rows.Text(0));
    asset.fileName = GetEmptyStringIsNull(rows.Text(1));
    if (asset.directory.empty() || asset.fileName.empty()) continue;
    asset.date = LocalDateText(rows.Text(2), TimeBase::Since2001);
    asset.video = rows.IsNull(3) ? HasVideoExtension(asset.fileName) : rows.Int64(3) == 1;
    asset.trashed = !rows.IsNull(4) && rows.Int64(4) == 1;
    asset.originalName = GetEmptyStringIsNull(rows.Text(5));
    assets.push_back(std::move(asset));
  }
  return assets;
}

}  // namespace current
