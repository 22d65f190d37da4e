// yh_bench_decrypt WORK [MEGABYTES] [ROUNDS]: writes an encrypted Manifest.db
// backup of about MEGABYTES (default 1024) of stored files into WORK, then
// times, round by round, `cp -r` of the backup folder and DecryptBackup of
// it, each followed by sync() so that both pay for their writes, and prints
// the medians and the throughput of DecryptBackup as a share of cp's.
#include <gcrypt.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "libYH.h"
#include "support/BackupBuilder.h"

namespace {

namespace fs = std::filesystem;

double Seconds(const std::function<void()>& run) {
  const auto start = std::chrono::steady_clock::now();
  run();
  sync();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 2];
}

// Sizes as a phone holds them: many small files, a few large ones.
std::string WriteBackup(const std::string& folder, uint64_t bytes) {
  const size_t sizes[] = {4 << 10, 64 << 10, 1 << 20, 8 << 20};
  yhtest::BackupBuilder builder(yhtest::IndexKind::ManifestDb);
  builder.InfoString("Device Name", "Bench").Encrypt({"bench", 1, 1});
  std::string block(8 << 20, '\0');
  gcry_create_nonce(block.data(), block.size());
  uint64_t written = 0;
  for (size_t i = 0; written < bytes; ++i) {
    const size_t size = sizes[i % 4];
    builder.AddFile("MediaDomain", "Media/file" + std::to_string(i), block.substr(i % 4096, size));
    written += size;
  }
  return builder.Write(folder);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 2) {
    std::fprintf(stderr, "usage: %s WORK [MEGABYTES] [ROUNDS]\n", argv[0]);
    return 2;
  }
  const std::string work = fs::absolute(argv[1]).string() + "/";
  const uint64_t megabytes = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1024;
  const int rounds = argc > 3 ? std::atoi(argv[3]) : 3;
  fs::remove_all(work);
  const std::string backup = WriteBackup(work + "encrypted", megabytes << 20);
  sync();
  std::vector<double> copies;
  std::vector<double> decryptions;
  for (int round = 0; round < rounds; ++round) {
    fs::remove_all(work + "copy");
    fs::remove_all(work + "plain");
    sync();
    const std::string command = "cp -r '" + backup + "' '" + work + "copy'";
    copies.push_back(Seconds([&] {
      if (std::system(command.c_str()) != 0) std::fprintf(stderr, "cp failed\n");
    }));
    decryptions.push_back(Seconds([&] {
      if (DecryptBackup(backup.c_str(), (work + "plain").c_str(), "bench", nullptr, nullptr) != YHUnlocked) {
        std::fprintf(stderr, "DecryptBackup failed\n");
      }
    }));
  }
  const double copy = Median(copies);
  const double decrypt = Median(decryptions);
  std::printf("stored files: %llu MB; median of %d rounds\n", static_cast<unsigned long long>(megabytes), rounds);
  std::printf("cp -r:         %8.0f ms  %7.0f MB/s\n", copy * 1000, megabytes / copy);
  std::printf("DecryptBackup: %8.0f ms  %7.0f MB/s\n", decrypt * 1000, megabytes / decrypt);
  std::printf("DecryptBackup throughput / cp throughput: %.2f\n", copy / decrypt);
  fs::remove_all(work);
  return 0;
}
