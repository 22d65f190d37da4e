#include "BackupFinder.h"

#include <cctype>
#include <filesystem>
#include <functional>
#include <iostream>
#include <initializer_list>
#include <vector>

#include "Failure.h"
#include "Password.h"
#include "TerminalText.h"
#include "platform/BackupFolders.h"
#include "platform/FileSystem.h"

namespace yh {
namespace {

namespace fs = std::filesystem;

// Paths are UTF-8 on every system, hence fs::u8path.
bool IsFolder(const std::string& path) {
  std::error_code error;
  return fs::is_directory(fs::u8path(path), error);
}

bool HasAny(const std::string& folder, std::initializer_list<const char*> names) {
  std::error_code error;
  for (const char* name : names) {
    if (fs::exists(fs::u8path(folder) / name, error)) return true;
  }
  return false;
}

bool HasIndex(const std::string& folder) { return HasAny(folder, {"Manifest.mbdb", "Manifest.db"}); }

// Why the library takes a folder for no backup.
std::string WhyNotABackup(const Library& library, const std::string& folder) {
  if (HasAny(folder, {"Info.plist", "Manifest.plist", "Status.plist"}))
    return "no index (neither Manifest.db nor Manifest.mbdb)";
  const size_t inside = library.List(folder).Devices().size();
  if (inside) return "not a backup but a folder of " + std::to_string(inside) + " backups (give it as --root)";
  return "not a backup (no Info.plist, Manifest.plist or index)";
}

// The library's private folder (decrypted copies, copies of databases, the
// pictures it writes out) goes into a folder of yh's own, so that files named
// in answers are known to be the library's copies, not files of anywhere.
// NULL when none can be made.
std::unique_ptr<PrivateFolder> CopiesFolder(BackupDevice& device) {
  auto copies = std::make_unique<PrivateFolder>();
  if (copies->Path().empty() || !SetTemporaryFolder(&device, copies->Path().c_str())) return nullptr;
  return copies;
}

// Unlocks an encrypted backup, whose copies need a folder.
void Unlock(BackupDevice& device, const std::string& passwordFile, bool hasCopiesFolder) {
  const std::string name = Describe(device);
  std::string password = BackupPassword(passwordFile, name);
  if (!hasCopiesFolder) throw Failure("backup " + name + ": no private temporary folder could be made");
  std::cerr << "Checking the password (backups of iOS 10.2 and later take a few seconds)...\n";
  const int32_t result = UnlockBackup(&device, password.c_str());
  Wipe(&password);
  // A backup listed as encrypted whose Manifest.plist says otherwise is read as it is.
  if (result == YHNotEncrypted || result == YHUnlocked) return;
  throw Failure("backup " + name + ": " + UnlockProblem(result));
}

void ReadIndex(const Library& library, BackupDevice& device) {
  if (library.Analyze(device)) return;
  const std::string why = device.isEncrypted
                              ? "encrypted index: the backup is encrypted and " + IndexName(device) + " cannot be read"
                              : "unreadable index: " + IndexName(device) + " is damaged or not an index";
  throw Failure("backup " + Describe(device) + ": " + why);
}

FoundBackup FromPath(const Library& library, const std::string& path) {
  if (!IsFolder(path)) throw Failure(Printable(path) + ": no such folder");
  if (!HasIndex(path)) throw Failure(Printable(path) + ": " + WhyNotABackup(library, path));
  // A folder that holds an index is listed as that one backup.
  DeviceList list = library.List(path);
  if (list.Devices().empty()) throw Failure(Printable(path) + ": " + WhyNotABackup(library, path));
  BackupDevice* device = list.Devices().front();
  return {nullptr, std::move(list), device};
}

// A device name as typed: device names come with a typographic apostrophe
// ("Ada’s iPhone") that is hard to type, so a plain one matches it, and
// letters match without regard to case.
std::string Typed(std::string name) {
  const std::string typographic = "’";
  for (size_t at = name.find(typographic); at != std::string::npos; at = name.find(typographic, at + 1)) {
    name.replace(at, typographic.size(), "'");
  }
  for (char& c : name) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return name;
}

bool StartsWith(const std::string& text, const std::string& start) { return text.compare(0, start.size(), start) == 0; }

// The first rule that any backup meets decides: the folder name, the device
// name, the start of folder names, the start of device names.
std::vector<BackupDevice*> Matching(const DeviceList& list, const std::string& name) {
  using Test = std::function<bool(const BackupDevice&)>;
  const std::string typed = Typed(name);
  const Test tests[] = {
      [&](const BackupDevice& device) { return FolderName(device) == name; },
      [&](const BackupDevice& device) { return Typed(Text(device.deviceName)) == typed; },
      [&](const BackupDevice& device) { return StartsWith(FolderName(device), name); },
      [&](const BackupDevice& device) { return !typed.empty() && StartsWith(Typed(Text(device.deviceName)), typed); },
  };
  for (const Test& test : tests) {
    std::vector<BackupDevice*> found;
    for (BackupDevice* device : list.Devices()) {
      if (test(*device)) found.push_back(device);
    }
    if (!found.empty()) return found;
  }
  return {};
}

std::string Where(const std::string& root) { return root.empty() ? "the default location" : Printable(root); }

FoundBackup FromRoot(const Library& library, const std::string& name, const std::string& root) {
  DeviceList list = ListBackups(library, root);
  const std::string where = Where(root);
  const std::vector<BackupDevice*> found = Matching(list, name);
  if (found.empty()) throw Failure("no backup \"" + Printable(name) + "\" in " + where + " (see yh list)");
  if (found.size() > 1) {
    std::string names;
    for (const BackupDevice* device : found) names += (names.empty() ? "" : ", ") + Describe(*device);
    throw Failure("\"" + Printable(name) + "\" names " + std::to_string(found.size()) + " backups: " + names +
                  "; give more of the folder name");
  }
  return {nullptr, std::move(list), found.front()};
}

FoundBackup Find(const Library& library, const std::string& name, const std::string& root) {
  if (name.find('/') != std::string::npos || platform::IsAbsolutePath(name) || IsFolder(name)) {
    return FromPath(library, name);
  }
  // A folder of the root that the library did not list still gets its reason.
  // "/" between names on every system, as the library writes them.
  const std::string inRoot = root + (!root.empty() && root.back() == '/' ? "" : "/") + name;
  if (!root.empty() && !name.empty() && IsFolder(inRoot)) return FromPath(library, inRoot);
  return FromRoot(library, name, root);
}

}  // namespace

DeviceList ListBackups(const Library& library, const std::string& root) {
  if (!root.empty() && !IsFolder(root)) throw Failure(Printable(root) + ": no such folder");
  DeviceList list = library.List(root);
  if (!list.Devices().empty()) return list;
  if (!root.empty()) {
    throw Failure("no backups found in " + Printable(root) +
                  " (a backup is a folder holding Manifest.db or Manifest.mbdb); give the folder that holds them "
                  "with --root DIR");
  }
  std::string looked;
  for (const std::string& folder : platform::DefaultBackupFolders()) {
    looked += (looked.empty() ? "" : ", ") + Printable(folder) + (IsFolder(folder) ? " (no backup in it)" : " (missing)");
  }
  throw Failure("no backups found; looked in " + looked + "; give the folder that holds them with --root DIR");
}

FoundBackup LocateBackup(const Library& library, const std::string& name, const std::string& root) {
  return Find(library, name, root);
}

FoundBackup FindBackup(const Library& library, const std::string& name, const std::string& root,
                       const std::string& passwordFile) {
  FoundBackup found = Find(library, name, root);
  found.copies = CopiesFolder(*found.device);
  if (found.device->isEncrypted) Unlock(*found.device, passwordFile, found.copies != nullptr);
  ReadIndex(library, *found.device);
  return found;
}

}  // namespace yh
