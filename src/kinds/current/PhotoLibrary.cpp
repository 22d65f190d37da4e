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
  return "select " +
         schema.SelectList(assets,
                           {"ZDIRECTORY", "ZFILENAME", "ZDATECREATED", "ZKIND", "ZTRASHEDSTATE", "ZLATITUDE", "ZLONGITUDE"},
                           "a") +
         ", " +
         originalName + " AS ZORIGINALFILENAME from " + assets + " a" + join + " order by a.rowid";
}

std::string OldPhotoQuery(const SchemaInfo& schema) {
  return "select " + schema.ColumnOrNull("Photo", "directory") + " AS ZDIRECTORY, " +
         schema.ColumnOrNull("Photo", "filename") +
         " AS ZFILENAME, NULL AS ZDATECREATED, NULL AS ZKIND, NULL AS ZTRASHEDSTATE, NULL AS ZORIGINALFILENAME, "
         "NULL AS ZLATITUDE, NULL AS ZLONGITUDE "
         "from Photo order by rowid";
}

// The library writes -180 in both columns for a picture without a place.
std::optional<std::pair<double, double>> PlaceOf(const Database::Statement& row, int latitude, int longitude) {
  if (row.IsNull(latitude) || row.IsNull(longitude)) return std::nullopt;
  const double north = row.Double(latitude);
  const double east = row.Double(longitude);
  if (north == -180.0 || east == -180.0 || north < -90.0 || north > 90.0 || east < -180.0 || east > 180.0) {
    return std::nullopt;
  }
  return std::make_pair(north, east);
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
  const int directory = rows.Column("ZDIRECTORY");
  const int fileName = rows.Column("ZFILENAME");
  const int created = rows.Column("ZDATECREATED");
  const int kind = rows.Column("ZKIND");
  const int trashed = rows.Column("ZTRASHEDSTATE");
  const int originalName = rows.Column("ZORIGINALFILENAME");
  const int latitude = rows.Column("ZLATITUDE");
  const int longitude = rows.Column("ZLONGITUDE");
  while (rows.Step()) {
    LibraryAsset asset;
    asset.directory = GetEmptyStringIsNull(rows.Text(directory));
    asset.fileName = GetEmptyStringIsNull(rows.Text(fileName));
    if (asset.directory.empty() || asset.fileName.empty()) continue;
    asset.date = LocalDateText(rows.Text(created), TimeBase::Since2001);
    asset.video = rows.IsNull(kind) ? HasVideoExtension(asset.fileName) : rows.Int64(kind) == 1;
    asset.trashed = !rows.IsNull(trashed) && rows.Int64(trashed) == 1;
    asset.originalName = GetEmptyStringIsNull(rows.Text(originalName));
    asset.place = PlaceOf(rows, latitude, longitude);
    assets.push_back(std::move(asset));
  }
  return assets;
}

}  // namespace current
