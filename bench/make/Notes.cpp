#include "Generation.h"
#include "Sql.h"
#include "support/NoteDocumentWriter.h"
#include "support/NoteStoreBody.h"

namespace bench {
namespace {

std::string NoteText(Random& random) { return random.Words(5 + random.Below(250)); }

}  // namespace

void AddNotes(Generation& generation) {
  Random& random = generation.random;
  if (generation.Newer()) {
    SqlScript sql("NoteStore.sqlite-ios17");
    // Accounts and folders share the table with the notes and have no data.
    for (size_t folder = 1; folder <= 5; ++folder) {
      sql.Insert("ZICCLOUDSYNCINGOBJECT", "Z_PK, Z_ENT, Z_OPT", std::to_string(folder) + ", 14, 1");
    }
    for (size_t note = 1; note <= generation.counts.notes; ++note) {
      const std::string pk = std::to_string(note + 5);
      const int64_t created = DeviceTime(random);
      sql.Insert("ZICCLOUDSYNCINGOBJECT", "Z_PK, Z_ENT, Z_OPT, ZCREATIONDATE, ZMODIFICATIONDATE1, ZTITLE1, ZNOTEDATA",
                 pk + ", 12, 1, " + std::to_string(created) + ".5, " + std::to_string(created + random.Below(100000)) +
                     ".5, " + Quote(random.Words(3)) + ", " + std::to_string(note));
      sql.Insert("ZICNOTEDATA", "Z_PK, Z_ENT, Z_OPT, ZNOTE, ZDATA",
                 std::to_string(note) + ", 11, 1, " + pk + ", " + yhtest::SqlBlob(yhtest::NoteDocumentBlob(NoteText(random))));
    }
    generation.rows.Database("AppDomainGroup-group.com.apple.notes", "NoteStore.sqlite", sql.Text());
    return;
  }
  SqlScript sql("notes.sqlite-ios7");
  for (size_t note = 1; note <= generation.counts.notes; ++note) {
    const std::string id = std::to_string(note);
    const int64_t created = DeviceTime(random);
    sql.Insert("ZNOTE", "Z_PK, Z_ENT, Z_OPT, ZBODY, ZCREATIONDATE, ZMODIFICATIONDATE, ZTITLE",
               id + ", 4, 1, " + id + ", " + std::to_string(created) + ", " +
                   std::to_string(created + random.Below(100000)) + ", " + Quote(random.Words(3)));
    sql.Insert("ZNOTEBODY", "Z_PK, Z_ENT, Z_OPT, ZOWNER, ZCONTENT",
               id + ", 3, 1, " + id + ", " + Quote("<div>" + NoteText(random) + "</div>"));
  }
  generation.rows.Database("HomeDomain", "Library/Notes/notes.sqlite", sql.Text());
}

}  // namespace bench
