#ifndef YH_KINDS_KIND_H
#define YH_KINDS_KIND_H

#include <plist/plist.h>

#include "common/VqBase.h"
#include "kinds/RecordSink.h"

// One content kind of a backup. The service creates one object of each kind
// per analysed backup and asks it for content, either as one new tree the
// caller owns (FindContent, NULL when there is nothing to give) or record by
// record (HandContent). Both come from the same walk, so the records a sink
// receives are exactly the array's elements, in its order.
class Kind : public VqBase {
 public:
  ~Kind() override = default;

  // Hands each record of the answer for `flag` to `sink`, in order, until
  // the sink stops. False when the answer is NULL: nothing was handed.
  virtual bool HandContent(void* device, int flag, RecordSink& sink) = 0;
  // The same for the records of the same layout that the owner deleted;
  // only kinds of the current service find any.
  virtual bool HandDeletedContent(void* /*device*/, int /*flag*/, RecordSink& /*sink*/) { return false; }

  // The walks above gathered into one array; NULL when they give nothing.
  plist_t FindContent(void* device, int flag) { return Gather(&Kind::HandContent, device, flag); }
  plist_t FindDeletedContent(void* device, int flag) { return Gather(&Kind::HandDeletedContent, device, flag); }

 private:
  plist_t Gather(bool (Kind::*hand)(void*, int, RecordSink&), void* device, int flag);
};

#endif
