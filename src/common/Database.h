#ifndef YH_COMMON_DATABASE_H
#define YH_COMMON_DATABASE_H

#include <cstdint>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

// The one place that opens a database. Every device database and the backup
// index are opened read-only and immutable, so that SQLite never creates a
// journal, -wal or -shm file, nor an empty database for a missing path: the
// library never writes a byte into a backup. Only a regular file (or a link
// to one) is opened at all, so that a named pipe cannot block the open.
class Database {
 public:
  // sqlite3_exec's row-callback shape: columns by position, NULL for SQL NULL.
  using RowCallback = int (*)(void* context, int columnCount, char** values, char** columnNames);

  // How a file is opened. A backup's own files are immutable: SQLite neither
  // writes nor looks for a -wal beside them. A private copy of a database with
  // its -wal (outside the backup) is opened normally, so that SQLite replays
  // the log; that may write to the copy, never to the backup.
  enum class Access { Immutable, PrivateCopy };

  explicit Database(const std::string& path, Access access = Access::Immutable);
  // A new empty database in memory, written by the library alone: rows read
  // from a stored file's pages are laid out there for the kinds' readers.
  // One thread at a time uses it (it takes no lock of its own).
  struct InMemory {};
  explicit Database(InMemory);
  ~Database();  // closes the handle, also after a failed open
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  bool IsOpen() const { return open_; }
  // Whether SQLite refused the file as damaged or as no database at all (on
  // opening it, preparing a statement or stepping through rows), so that its
  // rows may be incomplete.
  bool Refused() const { return refused_; }

  // Runs the query to completion over every row; true when SQLite says
  // SQLITE_OK. A failed query frees SQLite's message and gives false.
  bool Exec(const char* sql, RowCallback callback, void* context);

  // A prepared statement stepped row by row, for readers that need BLOB columns.
  class Statement {
   public:
    Statement(Database& db, const char* sql);
    ~Statement();
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;
    bool IsValid() const { return stmt_ != nullptr; }
    // Binds a text to the 1-based parameter and rewinds the statement, so
    // that one prepared lookup serves many values.
    bool BindText(int parameter, const std::string_view& text);
    // The same for the other stored types.
    bool BindInt64(int parameter, int64_t value);
    bool BindReal(int parameter, double value);
    bool BindBlob(int parameter, const std::string_view& bytes);
    bool BindNull(int parameter);
    // Rewinds and sets every parameter to NULL at once: a row of many
    // columns, most of them NULL, binds only its values.
    void ClearBindings();
    bool Step();  // true while a row is ready
    // The position of the result column named `name` (its AS name, or the
    // column's own), so that rows are read by name; -1 when there is none.
    int Column(const char* name) const;
    const char* Text(int column) const;
    // The column's text with every byte, zero bytes included; "" for NULL.
    std::string WholeText(int column) const;
    // The same bytes without a copy, valid until the next step.
    std::string_view WholeView(int column) const;
    bool IsNull(int column) const;
    bool IsBlob(int column) const;
    int64_t Int64(int column) const;
    double Double(int column) const;
    const void* Blob(int column) const;
    int Bytes(int column) const;

   private:
    Database& db_;
    sqlite3_stmt* stmt_ = nullptr;
  };

  // "file:" URI for a filesystem path, with the characters that would end or
  // alter the path part ("%", "?", "#") escaped.
  static std::string ReadOnlyUri(const std::string& path);

 private:
  // Notes a refusal when SQLite's last answer on this connection was one.
  void NoteRefusal(int code);

  sqlite3* db_ = nullptr;
  bool open_ = false;
  bool refused_ = false;
};

#endif
