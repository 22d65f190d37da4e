#ifndef YH_BENCH_MAKE_COUNTS_H
#define YH_BENCH_MAKE_COUNTS_H

#include <cstddef>

namespace bench {

// How much a backup of a given scale holds. Scale 1 is a phone in long use:
// a quarter of a million index rows, a hundred thousand messages.
struct Counts {
  explicit Counts(double scale);

  size_t indexRows;
  size_t apps;
  size_t messages;
  size_t conversations;
  size_t contacts;
  size_t properties;
  size_t calls;
  size_t notes;
  size_t photos;
  size_t cameraPhotos;
  size_t recordings;
  size_t calendarItems;
  size_t visits;
  size_t pages;
  size_t bookmarks;
  size_t attachments;
  size_t whatsAppMessages;
  size_t whatsAppChats;
  size_t whatsAppMedia;
  size_t whatsAppCalls;
};

}  // namespace bench

#endif
