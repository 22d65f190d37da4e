#include <cstdio>

#include "Generation.h"
#include "Sql.h"

namespace bench {
namespace {

const char kCameraRoll[] = "CameraRollDomain";
const char kMedia[] = "MediaDomain";

struct Picture {
  std::string directory;  // as the library names it, below "Media/"
  std::string fileName;
};

std::string Numbered(const char* pattern, size_t number) {
  char text[64];
  std::snprintf(text, sizeof text, pattern, static_cast<int>(number));
  return text;
}

// The camera numbers its pictures IMG_0001 to IMG_9999 (then starts again),
// a thousand to a folder.
Picture CameraPicture(size_t index, Random& random) {
  const size_t kind = random.Below(100);
  const char* extension = kind < 85 ? "JPG" : kind < 93 ? "PNG" : "MOV";
  return {Numbered("DCIM/%dAPPLE", 100 + index / 1000), Numbered("IMG_%04d.", index % 9999 + 1) + extension};
}

// Pictures synced from a computer, or downloaded from the cloud library.
Picture OtherPicture(size_t index, Random& random) {
  if (index % 2 == 0) {
    return {Numbered("PhotoData/Sync/%dSYNCD", 100 + index / 2000), Numbered("IMG_%04d.JPG", index / 2 % 9999 + 1)};
  }
  return {Numbered("PhotoData/CPLAssets/group%d", index / 200), random.Uuid() + ".JPG"};
}

uint64_t PictureSize(Random& random) { return 500000 + random.Below(4000000); }

}  // namespace

void AddPhotos(Generation& generation) {
  Random& random = generation.random;
  IndexRows& rows = generation.rows;
  const size_t cameraCount = generation.counts.cameraPhotos;
  const size_t otherCount = generation.counts.photos - cameraCount;
  std::vector<Picture> camera;
  std::vector<Picture> other;
  for (size_t i = 0; i < cameraCount; ++i) camera.push_back(CameraPicture(i, random));
  for (size_t i = 0; i < otherCount; ++i) other.push_back(OtherPicture(i, random));

  SqlScript sql("Photos.sqlite-ios7");
  size_t pk = 0;
  for (const std::vector<Picture>* pictures : {&camera, &other}) {
    for (const Picture& picture : *pictures) {
      sql.Insert(
          "ZGENERICASSET", "Z_PK, Z_ENT, Z_OPT, ZKIND, ZWIDTH, ZHEIGHT, ZDIRECTORY, ZFILENAME",
          std::to_string(++pk) + ", 3, 1, 0, 3264, 2448, " + Quote(picture.directory) + ", " + Quote(picture.fileName));
    }
  }
  // Thumbnail folders are named after the picture, so their paths hold the
  // picture's own; they come first in the index.
  for (size_t i = 0; i < camera.size(); i += 3) {
    rows.File(kCameraRoll,
              "Media/PhotoData/Thumbnails/V2/" + camera[i].directory + "/" + camera[i].fileName + "/5005.JPG",
              5000 + random.Below(20000));
  }
  rows.Database(kCameraRoll, "Media/PhotoData/Photos.sqlite", sql.Text());
  for (const Picture& picture : camera) {
    if (random.Chance(0.01)) continue;  // not in the backup
    rows.File(kCameraRoll, "Media/" + picture.directory + "/" + picture.fileName,
              random.Chance(0.005) ? 0 : PictureSize(random));
  }
  // Some synced pictures left an empty copy under another domain, ahead of the real one.
  for (size_t i = 0; i < other.size(); i += 33) {
    rows.File(kMedia, "Media/" + other[i].directory + "/" + other[i].fileName, 0);
  }
  for (const Picture& picture : other) {
    if (random.Chance(0.01)) continue;
    rows.File(kCameraRoll, "Media/" + picture.directory + "/" + picture.fileName, PictureSize(random));
  }
}

}  // namespace bench
