#ifndef YH_SAMPLES_SAMPLEDATA_H
#define YH_SAMPLES_SAMPLEDATA_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace samples {

// Seconds since 1970-01-01 UTC of a UTC date and time.
int64_t UnixTime(int year, int month, int day, int hour, int minute, int second);

// The same moment counted from 2001-01-01 UTC, as most device databases do.
int64_t Since2001(int64_t unixTime);

// SQL number texts of a UTC date and time: seconds since 2001 or since 1970.
std::string Since2001Text(int year, int month, int day, int hour, int minute, int second);
std::string Since1970Text(int year, int month, int day, int hour, int minute, int second);

// A quoted SQL text literal.
std::string Sql(const std::string& text);

// One INSERT statement: rows of SQL literals for the columns ("a, b, c").
std::string Insert(const std::string& table, const std::string& columns,
                   const std::vector<std::vector<std::string>>& rows);

// Stand-in media content: the format's signature, then `size` bytes of
// filler that differ with `seed`.
std::string MediaFile(const std::string& signature, size_t size, unsigned seed);

// A HEIC picture of `width` by `height` (libheif) where the build has
// libheif, else a stand-in with HEIC's signature whose filler follows `seed`.
std::string HeicSample(int width, int height, unsigned seed);
// The same for a JPEG picture (libjpeg).
std::string JpegSample(int width, int height, unsigned seed);

// File signatures for MediaFile.
extern const std::string kJpeg;
extern const std::string kPng;
extern const std::string kM4a;
extern const std::string kCaf;
extern const std::string kAmr;

// A note-store body as the device keeps it: the gzip'd note document (a
// protocol buffer holding the text). An SQL blob literal.
std::string NoteStoreData(const std::string& text);

}  // namespace samples

#endif
