/*
 * libYH: finds the device backups kept by desktop sync software for iPhone and
 * iPad, reads their index and extracts the owner's data as libplist trees.
 *
 * Calling order: CreateDataRecoveryService (or CreateCurrentDataRecoveryService);
 * table->GetBackupDeviceList (or GetBackupDeviceListAt); for a chosen record
 * table->AnalyzeBackup; table->GetContentList (or GetContentRecords) any
 * number of times; table->FreeBackupDevice on the head of the list; FreeiDeviceBackupService.
 *
 * Ownership: every plist the library returns belongs to the caller, who
 * frees it with plist_free; the four texts FreeBackupDevice leaves (see
 * there) are freed with YHFree, never with the host's own free(). Texts the
 * host passes in are copied; the host keeps them. The library never writes
 * into a backup.
 *
 * Threads: the described service (CreateDataRecoveryService) starts no
 * threads and is not thread-safe: use it from one thread at a time. The
 * current service keeps no global state: two threads may each use their own
 * records (list, analyse, ask) at once; one record is used from one thread at
 * a time. It may test the files of a large index on worker threads of its
 * own inside AnalyzeBackup; they end before AnalyzeBackup returns.
 * DecryptBackup and CarveDatabaseFile touch no record and may run beside
 * either service's calls.
 */
#ifndef LIBYH_H
#define LIBYH_H

#include <stdint.h>
#include <plist/plist.h>

/* The library's version, the one place it is kept: the build reads it from
 * here, and the shared object's SONAME carries the major number. */
#define LIBYH_VERSION_MAJOR 0
#define LIBYH_VERSION_MINOR 1
#define LIBYH_VERSION_PATCH 0
#define LIBYH_TEXT_(value) #value
#define LIBYH_TEXT(value) LIBYH_TEXT_(value)
#define LIBYH_VERSION \
  LIBYH_TEXT(LIBYH_VERSION_MAJOR) "." LIBYH_TEXT(LIBYH_VERSION_MINOR) "." LIBYH_TEXT(LIBYH_VERSION_PATCH)

#if defined(_WIN32) && defined(YH_BUILDING_LIBRARY)
#define YH_EXPORT __declspec(dllexport)
#elif defined(_WIN32)
#define YH_EXPORT __declspec(dllimport)
#elif defined(YH_BUILDING_LIBRARY)
#define YH_EXPORT __attribute__((visibility("default")))
#else
#define YH_EXPORT
#endif

/* Hosts never look inside the objects a record carries; they see untyped
 * pointers, so that no name of the library's own enters a C++ host. */
#if defined(__cplusplus) && defined(YH_BUILDING_LIBRARY)
class VqBase;
class CallHistory;
class Contact;
class Sms;
class SmsAttachment;
class Note;
class History;
class Calendar;
class Recording;
class Photo;
#define YH_OBJECT(T) T*
#else
#define YH_OBJECT(T) void*
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* One backup folder; the records form a singly linked list. Texts are UTF-8,
 * each its own malloc block. */
typedef struct BackupDevice {
  char* deviceName;
  char* lastBackupDate;   /* local time, "YYYY-MM-DD hh:mm:ss" */
  char* serialNumber;
  char* productName;
  char* productType;
  char* productVersion;
  char* uniqueIdentifier;
  uint32_t isEncrypted;
  char* backupPath;       /* always ends in "/" */
  YH_OBJECT(VqBase) indexReader;
  YH_OBJECT(CallHistory) callHistory;
  YH_OBJECT(Contact) contact;
  YH_OBJECT(Sms) sms;
  YH_OBJECT(SmsAttachment) smsAttachment;
  YH_OBJECT(Note) note;
  YH_OBJECT(History) history;
  YH_OBJECT(Calendar) calendar;
  YH_OBJECT(Recording) recording;
  YH_OBJECT(Photo) photo;
  struct BackupDevice* next;
  int32_t backupType;     /* 0: Manifest.mbdb, 1: Manifest.db */
} BackupDevice;

typedef enum iDeviceContentType {
  ContentCallHistory = 0,
  ContentContact = 1,
  ContentSms = 2,
  ContentSmsAttachment = 3,
  ContentNote = 4,
  ContentSafariHistory = 5,
  ContentCalendarEvent = 6,
  ContentCalendarReminder = 7,
  ContentRecording = 8,
  ContentCameraPhoto = 9,
  ContentOtherPhoto = 10,
  /* Answered by the current service only; the described service answers
   * these NULL, as it answers any type it does not know. */
  ContentVoicemail = 11,
  /* WhatsApp's chats, in the layout of ContentSms, with each message's kind,
   * media, quoted message and star (see README). */
  ContentWhatsApp = 12,
  /* WhatsApp's calls, in the layout of ContentCallHistory, group calls with
   * their participants. */
  ContentWhatsAppCalls = 13
} iDeviceContentType;

/* The service table: four operations in this slot order. */
typedef struct iDeviceBackupService {
  BackupDevice* (*GetBackupDeviceList)(void);
  /* Frees the list, except each record's productName, productType,
   * productVersion and uniqueIdentifier: those stay the host's, to free with
   * YHFree. */
  void (*FreeBackupDevice)(BackupDevice* head);
  /* Reads the record's index and prepares its kinds; may be called again
   * (the record is analysed afresh). Returns 1 when the index was read;
   * 0 when Manifest.mbdb or Manifest.db is missing or cannot be read (the
   * kinds then answer as for a backup without their files: NULL or an empty
   * array); the record's backupType when it names no known index kind. */
  int32_t (*AnalyzeBackup)(BackupDevice* device);
  /* A new array for the content type, or NULL when the record has nothing
   * of it, was not analysed by this service, or the type is unknown. */
  plist_t (*GetContentList)(BackupDevice* device, iDeviceContentType type);
} iDeviceBackupService;

/* A new service table (malloc); release it with FreeiDeviceBackupService. */
YH_EXPORT iDeviceBackupService* CreateDataRecoveryService(void);

/* A new table of the current service (malloc), released the same way. Same
 * operations, calling order, content types and keys as the table above, but
 * it reads what today's devices store: true local dates (nanosecond counts
 * included), every conversation with group chats and texts kept only as
 * attributed strings, numbers matched by their digits, rows kept in a
 * database's -wal file. Extra keys follow the described ones (see README).
 * It also answers ContentVoicemail, ContentWhatsApp and ContentWhatsAppCalls. */
YH_EXPORT iDeviceBackupService* CreateCurrentDataRecoveryService(void);

/* Frees the table only, never a backup list. */
YH_EXPORT void FreeiDeviceBackupService(void* table);

/* Frees a block the library allocated and handed over: the productName,
 * productType, productVersion and uniqueIdentifier texts that
 * FreeBackupDevice leaves to the host. Use this, not the host's own free():
 * on Windows the host and the library may use different C runtimes, and
 * memory freed by the wrong one corrupts the heap. NULL is ignored. */
YH_EXPORT void YHFree(void* block);

/* Backups kept anywhere: when `folder` itself holds "Manifest.mbdb" or
 * "Manifest.db" the list has that one backup, otherwise one record per
 * sub-folder that holds one, as GetBackupDeviceList lists the default
 * location. NULL for a NULL or missing folder, or when nothing is found.
 * Free the list with the table's FreeBackupDevice. */
YH_EXPORT BackupDevice* GetBackupDeviceListAt(const char* folder);

/* Results of UnlockBackup and DecryptBackup. */
typedef enum YHBackupKeyResult {
  YHUnlocked = 0,          /* done */
  YHWrongPassword = 1,
  YHNotEncrypted = 2,      /* nothing to unlock: read it as it is */
  YHKeyBagDamaged = 3,     /* Manifest.plist, its key bag or a class key is missing or damaged */
  YHNoBackup = 4,          /* no backup record, or (DecryptBackup) no readable index in the folder */
  YHOutputNotEmpty = 5,    /* DecryptBackup: `out` exists and is not an empty folder */
  YHWriteFailed = 6,       /* DecryptBackup: the copy could not be written */
  YHDecryptedWithGaps = 7  /* DecryptBackup: done, but some stored files were missing or damaged */
} YHBackupKeyResult;

/* Unlocks an encrypted backup of the list with its password, before
 * AnalyzeBackup of either service: the password is stretched once here (a
 * few seconds for the ten million rounds of recent backups) and then
 * forgotten. The record's index, each database a kind reads and each media
 * file an answer names are decrypted when first needed into a private
 * folder (mode 0700, outside the backup), removed when the record is freed;
 * media paths in answers name those copies. Nothing is written into the
 * backup. Returns YHUnlocked, YHWrongPassword, YHNotEncrypted (read it as it
 * is), YHKeyBagDamaged, YHNoBackup for a NULL record or password, or
 * YHWriteFailed when the private folder cannot be made. */
YH_EXPORT int32_t UnlockBackup(BackupDevice* device, const char* password);

/* Optional: the folder in which the record's private folder is made (the
 * folder of mode 0700 that holds its decrypted copies and its copies of
 * databases with a -wal file, removed when the record is freed), instead of
 * $TMPDIR or, without it, /tmp. Call it before UnlockBackup or AnalyzeBackup
 * of either service; once the private folder exists it stays where it is.
 * `folder` must be an absolute path; the text is copied. Returns 1, or 0
 * (setting nothing) for a NULL record, a record of no known index type, or a
 * folder that is NULL or not absolute. */
YH_EXPORT int32_t SetTemporaryFolder(BackupDevice* device, const char* folder);

/* What DecryptBackup reports after each file. `skipped` is NULL, or the
 * stored name of a file that was missing or could not be decrypted. */
typedef struct YHDecryptProgress {
  uint64_t bytesDone;
  uint64_t bytesTotal;
  uint32_t filesDone;
  uint32_t filesTotal;
  const char* skipped;
} YHDecryptProgress;
typedef void (*YHDecryptProgressCallback)(const YHDecryptProgress* progress, void* userData);

/* Writes a plain copy of the encrypted backup folder `backup` into `out`
 * (which must be missing or an empty folder): Manifest.plist saying it is
 * not encrypted, the decrypted index and every stored file at its usual
 * place. Files are written under a temporary name and renamed when whole; the
 * index and Manifest.plist come last. A wrong password writes nothing.
 * `progress` may be NULL. Returns a YHBackupKeyResult. */
YH_EXPORT int32_t DecryptBackup(const char* backup, const char* out, const char* password,
                                YHDecryptProgressCallback progress, void* userData);

/* What the owner deleted, for a record the current service analysed: an
 * array in the layout of that type's GetContentList answer (the same keys in
 * the same order) holding only deleted records, each with two more keys:
 * "deleted_from" ("recently-deleted" for what the system itself keeps after a
 * deletion, else where the bytes were found: "wal", "freelist", "freeblock",
 * "unallocated", "journal") and "deleted_date" (when the system recorded the
 * deletion, as local time, else ""). Messages carry both keys on each
 * message. An earlier version of a live record whose content differs is
 * listed too, with "earlier_version" true. A value that could not be read is
 * "" or 0, never a guess. Rows are read from the stored databases' bytes and
 * their -wal files (the decrypted copies of an encrypted backup), never
 * written. NULL for a record the current service did not analyse, for a type
 * it does not know and for a type with nothing recovered. Free it with
 * plist_free. */
YH_EXPORT plist_t GetDeletedContentList(BackupDevice* device, iDeviceContentType type);

/* Record by record: what a YHRecordCallback returns, bits that combine. */
enum {
  YHRecordNext = 0,  /* go on with the next record; the library frees this one */
  YHRecordStop = 1,  /* hand no more records */
  YHRecordTaken = 2  /* the host keeps the record and frees it with plist_free */
};
/* Called with each record's dictionary in turn; returns YHRecordNext,
 * YHRecordStop, YHRecordTaken or YHRecordTaken | YHRecordStop. A record not
 * taken is freed by the library once the callback returns, so the callback
 * keeps no pointer into it. */
typedef int32_t (*YHRecordCallback)(plist_t record, void* userData);

/* How a walk of GetContentRecords or GetDeletedContentRecords ended. */
typedef enum YHRecordsResult {
  YHRecordsDone = 0,     /* every record was handed (none for an empty answer) */
  YHRecordsStopped = 1,  /* the callback returned YHRecordStop */
  YHRecordsNone = 2,     /* nothing to give: the array answer would be NULL */
  YHRecordsInvalid = 3   /* NULL record or callback; nothing was read */
} YHRecordsResult;

/* The records of GetContentList's answer handed one at a time: the
 * callback gets, in the array's order, exactly the dictionaries that array
 * holds (for ContentSms and ContentWhatsApp a conversation with its
 * messages), answered by the service that last analysed the record. Each
 * record is converted just before it is handed, and the answer is never
 * built whole, so a host that writes each record out and frees it needs
 * memory for one record, not for the answer. The records a kind reads from
 * its databases are kept as for GetContentList. Returns a YHRecordsResult. */
YH_EXPORT int32_t GetContentRecords(BackupDevice* device, iDeviceContentType type, YHRecordCallback callback,
                                    void* userData);

/* The same walk over GetDeletedContentList's answer: YHRecordsNone wherever
 * that answer is NULL (a record of the described service among them). */
YH_EXPORT int32_t GetDeletedContentRecords(BackupDevice* device, iDeviceContentType type,
                                           YHRecordCallback callback, void* userData);

/* Rows read page by page from any SQLite database file, without opening it
 * through SQLite: the deleted rows and earlier versions of rows its free
 * space, its -wal frames and its rollback journal still hold, and with
 * `includeLive` non-zero the live rows too. `walPath` and `journalPath` may
 * be NULL: then `path` with "-wal" and "-journal" appended is read when
 * present. An array of dictionaries, one per row: "table", "source"
 * ("live", "freelist", "freeblock", "unallocated", "wal", "journal"),
 * "status" ("live", "deleted", "earlier-version"), "rowid" (when known),
 * "file" ("database", "wal", "journal") and "offset" (of the cell in that
 * file), "partial" (true, only for a record whose overflow chain was cut:
 * the values past the cut have no key, a text or blob cut keeps its start),
 * and "values" keyed by column name (a NULL has no key; blobs are data; a
 * negative integer is a real, or its decimal text below -2^53).
 * NULL when `path` is no regular file. Free it with plist_free. */
YH_EXPORT plist_t CarveDatabaseFile(const char* path, const char* walPath, const char* journalPath,
                                    int32_t includeLive);

#ifdef __cplusplus
}
#endif

#undef YH_OBJECT

#endif
