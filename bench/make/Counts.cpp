#include "Counts.h"

#include <algorithm>
#include <cmath>

namespace bench {
namespace {

size_t Scaled(double base, double scale) {
  return std::max<size_t>(1, static_cast<size_t>(std::llround(base * scale)));
}

}  // namespace

Counts::Counts(double scale)
    : indexRows(Scaled(250000, scale)),
      apps(Scaled(250, scale)),
      messages(Scaled(100000, scale)),
      conversations(Scaled(2000, scale)),
      contacts(Scaled(10000, scale)),
      properties(Scaled(30000, scale)),
      calls(Scaled(50000, scale)),
      notes(Scaled(3000, scale)),
      photos(Scaled(30000, scale)),
      cameraPhotos(Scaled(20000, scale)),
      recordings(Scaled(1000, scale)),
      calendarItems(Scaled(20000, scale)),
      visits(Scaled(50000, scale)),
      pages(Scaled(10000, scale)),
      bookmarks(Scaled(500, scale)),
      attachments(Scaled(5000, scale)),
      whatsAppMessages(Scaled(100000, scale)),
      whatsAppChats(Scaled(2000, scale)),
      whatsAppMedia(Scaled(20000, scale)),
      whatsAppCalls(Scaled(5000, scale)) {}

}  // namespace bench
