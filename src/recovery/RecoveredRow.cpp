#include "recovery/RecoveredRow.h"

const char* RowSourceName(RowSource source) {
  switch (source) {
    case RowSource::Live:
      return "live";
    case RowSource::Freelist:
      return "freelist";
    case RowSource::Freeblock:
      return "freeblock";
    case RowSource::Unallocated:
      return "unallocated";
    case RowSource::Wal:
      return "wal";
    case RowSource::Journal:
      return "journal";
  }
  return "";
}

const char* RowStatusName(RowStatus status) {
  switch (status) {
    case RowStatus::Live:
      return "live";
    case RowStatus::Deleted:
      return "deleted";
    case RowStatus::EarlierVersion:
      return "earlier-version";
  }
  return "";
}

const char* StoredInName(StoredIn file) {
  switch (file) {
    case StoredIn::Database:
      return "database";
    case StoredIn::Wal:
      return "wal";
    case StoredIn::Journal:
      return "journal";
  }
  return "";
}
