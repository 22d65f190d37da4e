// yh: a command-line host over libYH's public interface.
#include <CLI/CLI.hpp>
#include <libYH.h>

#include <exception>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "Commands.h"
#include "Failure.h"
#include "Kinds.h"
#include "platform/Terminal.h"

namespace {

using yh::Format;

constexpr int kCannotDo = 1;
constexpr int kUsage = 2;

const char kRootHelp[] =
    "Folder that holds the backups (default: MobileSync/Backup in the user's Application Support folder)";
const char kPasswordHelp[] =
    "File whose first line is the password of an encrypted backup (else YH_BACKUP_PASSWORD, else asked for)";
const char kBackupHelp[] =
    "A backup folder's path, or a folder name, a unique prefix of one or a device name found under the root";

CLI::Validator KindCheck() {
  return CLI::Validator(
      [](std::string& text) {
        return yh::IsKindOrAll(text) ? std::string()
                                     : "unknown kind \"" + text + "\" (kinds: " + yh::KindNames() + ", 0 to 13, all)";
      },
      "", "kind");
}

// Turns a format's name into its value; `names` is what the help shows.
CLI::Validator FormatCheck(const std::map<std::string, Format>& formats, const std::string& names) {
  return CLI::Validator(
      [formats, names](std::string& text) {
        const auto found = formats.find(text);
        if (found == formats.end()) return "unknown format \"" + text + "\" (formats: " + names + ")";
        text = std::to_string(static_cast<int>(found->second));
        return std::string();
      },
      "", "format");
}

const char kClassicHelp[] =
    "Answer as the described service does (hosts built for it), instead of reading what today's devices store";

CLI::Option* AddClassicFlag(CLI::App& command, bool& classic) {
  return command.add_flag("--classic", classic, kClassicHelp);
}

// Deleted records come from the current service only.
void AddDeletedFlag(CLI::App& command, bool& deleted, CLI::Option* classic, const std::string& help) {
  command.add_flag("--deleted", deleted, help)->excludes(classic);
}

// The options of the commands that write a backup's kinds into a folder.
void AddWriteOptions(CLI::App& command, yh::ExportOptions& options, const std::string& outHelp,
                     const std::string& deletedHelp) {
  command.add_option("BACKUP", options.backup, kBackupHelp)->required();
  command.add_option("--out", options.out, outHelp)->required()->type_name("DIR");
  command.add_option("--kinds", options.kinds, "Comma-separated kinds (default: all)")
      ->type_name("LIST")
      ->delimiter(',')
      ->check(KindCheck());
  command.add_option("--root", options.root, kRootHelp)->type_name("DIR");
  command.add_option("--password-file", options.passwordFile, kPasswordHelp)->type_name("FILE");
  AddDeletedFlag(command, options.deleted, AddClassicFlag(command, options.classic), deletedHelp);
  command.add_flag("--resume", options.resume,
                   "Finish what an interrupted run of the same command left in --out, copying nothing twice");
}

// Errors print the message and the usage of the command at fault; --help
// and --version are no errors.
int ParseFailed(const CLI::App& app, const CLI::ParseError& error) {
  if (error.get_exit_code() == static_cast<int>(CLI::ExitCodes::Success)) return app.exit(error);
  const std::vector<std::string> left = app.remaining();
  if (app.get_subcommands().empty() && !left.empty()) {
    std::cerr << "yh: unknown command \"" << left.front() << "\"\n\n" << app.help();
  } else {
    std::cerr << "yh: " << error.what() << "\n\n" << app.help();
  }
  return kUsage;
}

}  // namespace

int main(int argc, char** argv) {
  platform::PrepareStandardStreams();
  CLI::App app{"Lists the iPhone and iPad backups kept on this computer, shows what they hold, exports it and writes reports.", "yh"};
  app.set_version_flag("--version", std::string("yh ") + YH_VERSION + "\nlibYH " + LIBYH_VERSION);
  app.require_subcommand(1);
  // "/Users/..." is a path, not a Windows-style option (subcommands inherit this).
  app.allow_windows_style_options(false);
  app.footer("Kinds: " + yh::KindNames() +
             " (or 0 to 13, in that order), all.\n"
             "Exit codes: 0 done; 1 nothing found or a backup that cannot be read; 2 usage error.");

  const std::map<std::string, Format> listFormats{{"table", Format::Table}, {"json", Format::Json}};
  const std::map<std::string, Format> showFormats{
      {"json", Format::Json}, {"xml", Format::Xml}, {"csv", Format::Csv}, {"table", Format::Table}};
  const std::map<std::string, Format> carveFormats{
      {"json", Format::Json}, {"csv", Format::Csv}, {"table", Format::Table}};

  yh::ListOptions list;
  CLI::App* listCommand = app.add_subcommand(
      "list", "List the backups: folder, device, product, version, serial, last backup, encryption, index kind");
  listCommand->add_option("--root", list.root, kRootHelp)->type_name("DIR");
  listCommand->add_option("--format", list.format, "table (default) or json")
      ->transform(FormatCheck(listFormats, "table, json"))
      ->type_name("FORMAT");
  AddClassicFlag(*listCommand, list.classic);

  yh::ShowOptions show;
  CLI::App* showCommand = app.add_subcommand("show", "Show one kind of content of a backup, or all of them");
  showCommand->add_option("BACKUP", show.backup, kBackupHelp)->required();
  showCommand->add_option("KIND", show.kind, "A kind's name or number, or all")->required()->check(KindCheck());
  showCommand->add_option("--root", show.root, kRootHelp)->type_name("DIR");
  showCommand->add_option("--format", show.format, "json (default), xml, csv or table")
      ->transform(FormatCheck(showFormats, "json, xml, csv, table"))
      ->type_name("FORMAT");
  showCommand->add_option("--password-file", show.passwordFile, kPasswordHelp)->type_name("FILE");
  AddDeletedFlag(*showCommand, show.deleted, AddClassicFlag(*showCommand, show.classic),
                 "The records the owner deleted that the backup still holds, instead of the live ones");

  yh::ExportOptions exported;
  CLI::App* exportCommand =
      app.add_subcommand("export", "Write each kind as JSON and CSV, and copies of the media files, into a folder");
  AddWriteOptions(*exportCommand, exported, "Folder to write into (made when missing)",
                  "Also write the records the owner deleted that the backup still holds, as KIND-deleted.json and .csv");

  yh::DecryptOptions decrypt;
  CLI::App* decryptCommand =
      app.add_subcommand("decrypt", "Write a plain copy of an encrypted backup, which any program that reads backups reads");
  decryptCommand->add_option("BACKUP", decrypt.backup, kBackupHelp)->required();
  decryptCommand->add_option("--out", decrypt.out, "Folder to write the copy into (must be missing or empty)")
      ->required()
      ->type_name("DIR");
  decryptCommand->add_option("--root", decrypt.root, kRootHelp)->type_name("DIR");
  decryptCommand->add_option("--password-file", decrypt.passwordFile, kPasswordHelp)->type_name("FILE");
  AddClassicFlag(*decryptCommand, decrypt.classic);

  yh::ReportOptions report;
  CLI::App* reportCommand = app.add_subcommand(
      "report", "Write an HTML report to browse from disk: conversations, photos and tables of every kind");
  AddWriteOptions(*reportCommand, report, "Folder to write into: new or empty; open its index.html",
                  "Also show the records the owner deleted that the backup still holds, marked as recovered");

  yh::CarveOptions carve;
  CLI::App* carveCommand = app.add_subcommand(
      "carve", "Bring back the deleted rows and earlier versions of rows of any SQLite file, reading its pages");
  carveCommand->add_option("FILE", carve.database, "The database file (never opened through SQLite)")->required();
  carveCommand->add_option("--wal", carve.wal, "Its -wal file (default: FILE-wal when present)")->type_name("FILE");
  carveCommand->add_option("--journal", carve.journal, "Its rollback journal (default: FILE-journal when present)")
      ->type_name("FILE");
  carveCommand->add_option("--format", carve.format, "json (default), csv or table")
      ->transform(FormatCheck(carveFormats, "json, csv, table"))
      ->type_name("FORMAT");
  carveCommand->add_flag("--all", carve.all, "The live rows too");

  const std::vector<std::string> arguments = platform::CommandLineArguments(argc, argv);
  std::vector<const char*> pointers;
  for (const std::string& argument : arguments) pointers.push_back(argument.c_str());
  try {
    app.parse(static_cast<int>(pointers.size()), pointers.data());
  } catch (const CLI::ParseError& error) {
    return ParseFailed(app, error);
  }

  try {
    if (*listCommand) return yh::RunList(list, std::cout);
    if (*showCommand) return yh::RunShow(show, std::cout);
    if (*decryptCommand) return yh::RunDecrypt(decrypt, std::cout);
    if (*reportCommand) return yh::RunReport(report, std::cout);
    if (*carveCommand) return yh::RunCarve(carve, std::cout);
    return yh::RunExport(exported, std::cout);
  } catch (const std::exception& error) {
    std::cout.flush();
    std::cerr << "yh: " << error.what() << '\n';
    return kCannotDo;
  }
}
