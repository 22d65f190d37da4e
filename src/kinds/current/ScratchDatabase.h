#ifndef YH_KINDS_CURRENT_SCRATCHDATABASE_H
#define YH_KINDS_CURRENT_SCRATCHDATABASE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "common/Database.h"
#include "recovery/RecoveredRow.h"

namespace current {

// A database in memory with the tables of a stored database as its pages
// declare them, filled with rows the recovery reader found there, so that a
// kind's reader, written for SQLite, reads what no SQLite open of the stored
// file gives: the live rows of a file SQLite refuses, or the rows a kind's
// records lost. Each table has its columns and their affinities (not the
// declared constraints), so any row goes in.
class ScratchDatabase {
 public:
  // What a row does when its table already holds its rowid.
  enum class WhenTaken { Skip, Replace };

  // The tables of `rows`, empty. A table dropped from the schema is made
  // only when no other table has its name.
  explicit ScratchDatabase(const RecoveredRows& rows);
  ~ScratchDatabase();
  ScratchDatabase(const ScratchDatabase&) = delete;
  ScratchDatabase& operator=(const ScratchDatabase&) = delete;

  Database& Get() { return database_; }

  // Adds the rows of `rows` at `positions`, each under its rowid when known,
  // else under a new negative one below every rowid its table held in the
  // stored files, so that no row of another table refers to it and a
  // reader can tell it was made up.
  void Add(const std::vector<size_t>& positions, WhenTaken whenTaken);
  // Removes every row of the table at this index of `rows.tables`.
  void Empty(size_t table);

 private:
  struct Table;
  const RecoveredRows& rows_;
  Database database_;
  std::vector<std::unique_ptr<Table>> tables_;  // by index of rows.tables; NULL when not made
};

// The positions of the live rows.
std::vector<size_t> LiveRows(const RecoveredRows& rows);

}  // namespace current

#endif
