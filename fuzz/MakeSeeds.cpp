// Writes the seed corpus of every harness, made with the tests' backup
// builder and sample backup: fuzz_seeds <folder> creates <folder>/<harness>/.
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "RowTargets.h"
#include "RowsInput.h"
#include "fault/SampleBackup.h"
#include "kinds/WhatsAppSql.h"
#include "support/AttributedBodyBlob.h"
#include "support/BackupBuilder.h"
#include "support/NoteDocumentWriter.h"
#include "support/NoteStoreBody.h"
#include "support/StoredDatabase.h"

namespace {

namespace fs = std::filesystem;
using yhtest::IndexKind;

class Corpus {
 public:
  Corpus(const std::string& folder, const std::string& harness) : folder_(folder + "/" + harness + "/") {
    fs::create_directories(folder_);
  }
  void Add(const std::string& bytes) { yhtest::WriteFile(folder_ + "seed-" + std::to_string(++count_), bytes); }

 private:
  std::string folder_;
  int count_ = 0;
};

std::string Length2(size_t length) {
  return std::string{static_cast<char>(length >> 8 & 0xFF), static_cast<char>(length & 0xFF)};
}

void MbdbSeeds(Corpus& corpus, const std::string& sampleFolder) {
  corpus.Add(yhtest::ReadBytes(sampleFolder + "Manifest.mbdb"));
  corpus.Add(yhtest::MbdbSignature());
  yhtest::MbdbRecord record;
  record.domain = "HomeDomain";
  record.path = "Library/SMS/sms.db";
  record.linkTarget = "/private/var/mobile/Library/SMS/sms.db";
  record.dataHash = std::string("\x01\x02\xFF", 3);
  record.size = -1;
  record.properties = {{"com.apple.assetsd.UUID", "ABC"}, {"binary", std::string("\0\x80", 2)}};
  corpus.Add(yhtest::MbdbSignature() + record.Bytes() + record.Bytes().substr(0, 20));
}

void DeviceInfoSeeds(Corpus& corpus, const std::string& sampleFolder) {
  const std::string info = yhtest::ReadBytes(sampleFolder + "Info.plist");
  const std::string manifest = yhtest::ReadBytes(sampleFolder + "Manifest.plist");
  corpus.Add(std::string(1, '\0') + Length2(info.size()) + info + manifest);
  corpus.Add(std::string(1, '\0') + Length2(0) + manifest);
  corpus.Add("\x01 structured");
}

void NoteStoreSeeds(Corpus& corpus) {
  const std::string capacity = "\x08\x00";
  corpus.Add(yhtest::NoteStoreBody("milk, eggs") + capacity);
  corpus.Add(yhtest::NoteStoreBody(std::string(3000, 'n')) + capacity);
  corpus.Add(std::string("\x78\x9c\x4b\x04\x00\x00\x62\x00\x62", 9) + capacity);  // zlib, not gzip
  corpus.Add(yhtest::NoteStoreBody("cut short").substr(0, 20) + capacity);
}

void SafariHistorySeeds(Corpus& corpus) {
  const std::string xml = yhtest::sample::SafariHistoryPlist();
  corpus.Add(std::string(1, '\0') + xml);
  plist_t root = nullptr;
  plist_from_xml(xml.data(), static_cast<uint32_t>(xml.size()), &root);
  char* binary = nullptr;
  uint32_t length = 0;
  plist_to_bin(root, &binary, &length);
  corpus.Add(std::string(1, '\0') + std::string(binary, length));
  plist_to_bin_free(binary);
  plist_free(root);
  corpus.Add("\x01 grown");
}

void AttributedBodySeeds(Corpus& corpus) {
  corpus.Add(yhtest::AttributedBodyBlob("Sorry, I can\u2019t hear you \U0001F60E"));
  corpus.Add(yhtest::AttributedBodyBlob("\uFFFC\nphoto"));
  corpus.Add(yhtest::AttributedBodyBlob(std::string(300, 'x')));
  corpus.Add(yhtest::AttributedBodyBlob(""));
  corpus.Add(yhtest::kAttributedBodyHead + yhtest::TypedStreamInteger(40000) + "cut short");
}

// Documents gzip'd as stored and as inflated: short, long, emoji, the end
// mark of the old layout inside the text, and cut short.
void WhatsAppBlobSeeds(Corpus& corpus) {
  corpus.Add(yhtest::ProtoField(5, "3EB0C431D5A2") + yhtest::ProtoField(6, "447700900123@s.whatsapp.net"));
  corpus.Add(std::string("\x08\x01", 2) + yhtest::ProtoField(5, "A2"));
  corpus.Add(std::string("\x2A\x05", 2));
  corpus.Add("BEGIN:VCARD\r\nVERSION:3.0\r\nFN:Mary Somerville\r\nitem1.TEL;type=CELL;waid=16175550199:+1 617-555-0199"
             "\r\n\r\n 0\r\nEND:VCARD_$!<VCard-Separator>!$_BEGIN:VCARD\nFN:Ada\n  Lovelace\nTEL:+44\nEND:VCARD");
}

void NoteDocumentSeeds(Corpus& corpus) {
  const std::string texts[] = {"milk, eggs", std::string(3000, 'n'), "Trip \U0001F3D4\uFE0F caf\u00E9",
                               std::string("tab\x1A" "after", 9)};
  for (const std::string& text : texts) {
    corpus.Add(yhtest::NoteDocumentBlob(text));
    corpus.Add(yhtest::NoteDocument(text));
  }
  corpus.Add(yhtest::NoteDocumentBlob("cut short").substr(0, 20));
  corpus.Add(yhtest::NoteDocument("cut short").substr(0, 12));
}

// Old notes' HTML: blocks, breaks, entities of each form, hidden content,
// comments, and tags and entities cut short.
void HtmlTextSeeds(Corpus& corpus) {
  for (const char* html : {"Shopping list<div>Milk</div><div><br></div><div>Eggs</div>",
                           "<p>a &amp; b &lt;c&gt; &#39;d&#39; &#x1F600; &nbsp;</p><ul><li>e</li></ul>",
                           "<head><style>p{}</style></head><!-- note -->text<script>x</script>",
                           "cut <div", "&#xD800; &#1114112; &unknown; & alone", "<!-- never closed"}) {
    corpus.Add(html);
  }
}

// Databases with deleted rows, alone and with their -wal or journal, in
// the harness's layout: mode byte, split offset, then the files' bytes.
void CarveSeeds(Corpus& corpus) {
  const std::string rows =
      "CREATE TABLE t (id INTEGER PRIMARY KEY, v TEXT, b BLOB);"
      "INSERT INTO t VALUES (1, 'one', randomblob(1500)), (2, 'two', NULL), (3, 'three', x'00');"
      "DELETE FROM t WHERE id = 2;";
  const std::string modes[] = {"", "PRAGMA journal_mode=WAL; PRAGMA wal_autocheckpoint=0;",
                               "PRAGMA journal_mode=PERSIST;"};
  for (int mode = 0; mode < 3; ++mode) {
    const yhtest::StoredDatabase stored =
        yhtest::BuildStoredDatabase("PRAGMA page_size=512;" + modes[mode] + rows);
    const uint32_t split = static_cast<uint32_t>(stored.database.size());
    const std::string log = mode == 1 ? stored.wal : mode == 2 ? stored.journal : "";
    std::string seed(1, static_cast<char>(mode));
    for (int i = 0; i < 4; ++i) seed.push_back(static_cast<char>(split >> (8 * i)));
    corpus.Add(seed + stored.database + log);
  }
}

yhfuzz::Value ValueOf(const std::string& literal) {
  yhfuzz::Value value;
  if (literal == "NULL") return value;
  if (literal.size() >= 2 && literal.front() == '\'') {
    value.type = yhfuzz::Value::Text;
    value.bytes = literal.substr(1, literal.size() - 2);
  } else if (literal.rfind("X'", 0) == 0) {
    value.type = yhfuzz::Value::Blob;
    for (size_t i = 2; i + 1 < literal.size() - 1; i += 2) {
      value.bytes += static_cast<char>(std::stoi(literal.substr(i, 2), nullptr, 16));
    }
  } else if (literal.find('.') != std::string::npos) {
    value.type = yhfuzz::Value::Real;
    value.real = std::stod(literal);
  } else {
    value.type = yhfuzz::Value::Integer;
    value.integer = std::stoll(literal);
  }
  return value;
}

std::vector<yhfuzz::TableInput> Tables(const yhtest::sample::Database& database) {
  std::vector<yhfuzz::TableInput> tables;
  for (const yhtest::sample::Table& table : database.tables) {
    yhfuzz::TableInput input{table.name, table.columns, {}};
    for (const auto& row : table.rows) {
      std::vector<yhfuzz::Value> values;
      for (const std::string& literal : row) values.push_back(ValueOf(literal));
      input.rows.push_back(values);
    }
    tables.push_back(input);
  }
  return tables;
}

// The sample's Manifest.db rows, as the index target's input.
std::vector<yhfuzz::TableInput> IndexTables() {
  yhfuzz::TableInput files{"Files", {"fileID", "domain", "relativePath", "flags"}, {}};
  const auto add = [&files](const std::string& domain, const std::string& path) {
    files.rows.push_back({ValueOf("'" + yhtest::BackupBuilder::FileId(domain, path) + "'"), ValueOf("'" + domain + "'"),
                          ValueOf("'" + path + "'"), ValueOf("1")});
  };
  for (const auto& database : yhtest::sample::Databases(IndexKind::ManifestDb)) add(database.domain, database.path);
  for (const auto& file : yhtest::sample::Files(IndexKind::ManifestDb)) add(file.domain, file.path);
  return {files};
}

void RowsSeeds(Corpus& corpus) {
  const std::vector<yhfuzz::RowTarget>& targets = yhfuzz::RowTargets();
  for (size_t target = 0; target < targets.size(); ++target) {
    if (targets[target].path.empty()) {
      corpus.Add(yhfuzz::EncodeRows(target, IndexTables()));
      continue;
    }
    for (const auto& database : yhtest::sample::Databases(targets[target].kind)) {
      if (database.path == targets[target].path) corpus.Add(yhfuzz::EncodeRows(target, Tables(database)));
    }
  }
}

// Key bags of both generations, an MBFile archive and an encrypted
// Manifest.mbdb, each behind the byte that chooses its reader.
void KeyBagSeeds(Corpus& corpus, const std::string& scratch) {
  for (uint32_t sha256Iterations : {0u, 2u}) {
    corpus.Add('\0' + yhtest::BackupEncryptor({"password", 2, sha256Iterations}).KeyBag());
  }
  std::string stored;
  yhtest::BackupEncryptor({"password", 1, 1}).NewFileKey(yhtest::BackupEncryptor::kFileClass, &stored);
  corpus.Add('\1' + yhtest::ArchivedMBFile("Library/SMS/sms.db", stored, yhtest::BackupEncryptor::kFileClass, 4096));
  const std::string mbdb =
      yhtest::sample::Builder(IndexKind::Mbdb).Encrypt({"password", 1, 0}).Write(scratch + "encrypted");
  corpus.Add('\2' + yhtest::ReadBytes(mbdb + "Manifest.mbdb"));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fprintf(stderr, "usage: %s <corpus folder>\n", argv[0]);
    return 2;
  }
  const std::string out = argv[1];
  yhtest::TempDir scratch;
  const std::string mbdb = yhtest::sample::Builder(IndexKind::Mbdb).Write(scratch.Path() + "mbdb");

  Corpus mbdbCorpus(out, "MbdbIndex");
  MbdbSeeds(mbdbCorpus, mbdb);
  Corpus deviceInfo(out, "DeviceInfo");
  DeviceInfoSeeds(deviceInfo, mbdb);
  Corpus noteStore(out, "NoteStore");
  NoteStoreSeeds(noteStore);
  Corpus safariHistory(out, "SafariHistory");
  SafariHistorySeeds(safariHistory);
  Corpus attributedBody(out, "AttributedBody");
  AttributedBodySeeds(attributedBody);
  Corpus keyBag(out, "KeyBag");
  KeyBagSeeds(keyBag, scratch.Path());
  Corpus noteDocument(out, "NoteDocument");
  NoteDocumentSeeds(noteDocument);
  Corpus htmlText(out, "HtmlText");
  HtmlTextSeeds(htmlText);
  Corpus whatsAppBlobs(out, "WhatsAppBlobs");
  WhatsAppBlobSeeds(whatsAppBlobs);
  Corpus rows(out, "Rows");
  RowsSeeds(rows);
  Corpus carve(out, "Carve");
  CarveSeeds(carve);
  return 0;
}
