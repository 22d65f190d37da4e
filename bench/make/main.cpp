// Writes a large backup for the benchmark: yh_bench_backup FOLDER mbdb|db SCALE.
// Scale 1 holds 250,000 index rows, 100,000 messages and 30,000 photos; the
// backup goes into FOLDER/<device id>/, replacing an earlier one.
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <string>

#include "AppData.h"
#include "Generation.h"
#include "support/BackupBuilder.h"

namespace {

using yhtest::BackupBuilder;
using yhtest::IndexKind;

const char kDeviceId[] = "0f6a4c1e9b8d7a6f5e4d3c2b1a0f9e8d7c6b5a43";
// Content comes after this share of the app data, as in real indexes where
// the owner's data sits among the apps'.
const double kAppDataAhead = 0.4;

void Describe(BackupBuilder& builder, IndexKind kind) {
  const bool newer = kind == IndexKind::ManifestDb;
  builder.InfoString("Device Name", "Benchmark iPhone")
      .InfoString("Display Name", "Benchmark iPhone")
      .InfoString("Product Type", newer ? "iPhone13,2" : "iPhone5,2")
      .InfoString("Product Version", newer ? "14.3" : "7.1.2")
      .InfoString("Serial Number", "F2LBENCH0001")
      .InfoString("Unique Identifier", kDeviceId)
      .InfoDate("Last Backup Date", 1609459200)
      .ManifestBool("IsEncrypted", false)
      .ManifestDate("Date", 1609459200);
}

}  // namespace

int main(int argc, char** argv) {
  const std::string kindName = argc == 4 ? argv[2] : "";
  const double scale = argc == 4 ? std::atof(argv[3]) : 0;
  if ((kindName != "mbdb" && kindName != "db") || !(scale > 0)) {
    std::cerr << "usage: yh_bench_backup FOLDER mbdb|db SCALE\n";
    return 2;
  }
  const auto start = std::chrono::steady_clock::now();
  const IndexKind kind = kindName == "db" ? IndexKind::ManifestDb : IndexKind::Mbdb;
  BackupBuilder builder(kind);
  Describe(builder, kind);
  bench::Generation generation(scale, kind, builder);
  const size_t rows = generation.counts.indexRows;

  bench::AppData apps(generation);
  apps.AddUntil(static_cast<size_t>(static_cast<double>(rows) * kAppDataAhead));
  const std::vector<bench::Contact> contacts = bench::MakeContacts(generation);
  bench::AddAddressBook(generation, contacts);
  bench::AddMessages(generation, contacts);
  bench::AddCalls(generation, contacts);
  bench::AddNotes(generation);
  bench::AddCalendar(generation);
  bench::AddSafari(generation);
  bench::AddPhotos(generation);
  bench::AddRecordings(generation);
  if (generation.Newer()) bench::AddWhatsApp(generation, contacts);
  apps.AddUntil(rows);

  const std::filesystem::path folder = std::filesystem::path(argv[1]) / kDeviceId;
  std::filesystem::remove_all(folder);
  builder.Write(folder.string());
  const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  std::cout << "wrote " << folder.string() << ": " << generation.rows.Count() << " index rows ("
            << (kind == IndexKind::ManifestDb ? "Manifest.db" : "Manifest.mbdb") << ", scale " << scale << ") in "
            << seconds << " s\n";
  // The builder reports what it could not write as test failures.
  return ::testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed() ? 1 : 0;
}
