#ifndef YH_BENCH_MAKE_GENERATION_H
#define YH_BENCH_MAKE_GENERATION_H

#include <string>
#include <vector>

#include "Counts.h"
#include "IndexRows.h"
#include "Random.h"
#include "support/BackupBuilder.h"

namespace bench {

// What every part of the backup is made from.
struct Generation {
  Generation(double scale, yhtest::IndexKind indexKind, yhtest::BackupBuilder& builder)
      : counts(scale), kind(indexKind), rows(builder) {}

  // Manifest.db backups come from newer devices, with newer database schemas.
  bool Newer() const { return kind == yhtest::IndexKind::ManifestDb; }

  const Counts counts;
  const yhtest::IndexKind kind;
  Random random;
  IndexRows rows;
};

// One address-book entry; messages and calls reach most of these people.
struct Contact {
  std::string first;
  std::string middle;
  std::string last;
  std::string organization;
  std::vector<std::string> phones;  // "+1" and ten digits, as messages name them
};

std::vector<Contact> MakeContacts(Generation& generation);
// A number that a call or a chat uses: mostly a contact's, else a stranger's.
std::string SomeNumber(Generation& generation, const std::vector<Contact>& contacts);

// Each adds its databases (and media files) to the backup's index.
void AddAddressBook(Generation& generation, const std::vector<Contact>& contacts);
void AddMessages(Generation& generation, const std::vector<Contact>& contacts);
void AddCalls(Generation& generation, const std::vector<Contact>& contacts);
void AddNotes(Generation& generation);
void AddPhotos(Generation& generation);
void AddRecordings(Generation& generation);
void AddCalendar(Generation& generation);
void AddSafari(Generation& generation);
// WhatsApp's chats, media and calls: newer devices only.
void AddWhatsApp(Generation& generation, const std::vector<Contact>& contacts);

}  // namespace bench

#endif
