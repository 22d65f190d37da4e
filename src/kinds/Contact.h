#ifndef YH_KINDS_CONTACT_H
#define YH_KINDS_CONTACT_H

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "kinds/Kind.h"
#include "kinds/Person.h"
#include "kinds/PhoneIndex.h"

// The address book. It answers content requests with the people of the first
// address-book database, and serves messages and call history as the
// directory that turns a phone number into a name, looking in every database.
// The people are read once, by whichever of the two comes first.
class Contact : public Kind {
 public:
  // People of one database by ascending record id.
  using PersonMap = std::map<int32_t, std::unique_ptr<Person>>;

  Contact() = default;

  // Always an answer (an empty one when there is nobody); `flag` is ignored.
  bool HandContent(void* device, int flag, RecordSink& sink) override;

  // The name of the first person, database by database and by ascending
  // record id, one of whose values answers to `phone`; NULL when nobody does,
  // or for a NULL or empty `phone`. A value answers to every ";"-separated
  // piece of it once everything but "0"-"9", "#", "*", "+", "," and ";" is
  // removed; `phone` itself is compared as it is, whole and exactly. The text
  // belongs to the person and lives as long as this object.
  const char* FindNameByPhone(void* device, const char* phone);

 private:
  // Reads every address-book database of the backup, one map per database in
  // key-list order (an unreadable database leaves an empty map).
  void StorePersonMap(void* device);
  static void AddContactList(PersonMap& people, const std::string& path);
  static void ConvertToPlist(const PersonMap& people, RecordSink& sink);
  // Lists every number of every person, in the order a lookup would meet them.
  void IndexNumbers();

  std::vector<PersonMap> personMaps_;
  PhoneIndex names_;
};

#endif
