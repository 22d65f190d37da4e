#ifndef YH_KINDS_RECORDSINK_H
#define YH_KINDS_RECORDSINK_H

#include <plist/plist.h>

// Where a kind hands the dictionaries of its answer, one at a time and in
// the answer's order. The receiver may ask for no more; the sink then frees
// whatever it is still handed, so a kind that cannot stop at once (inside
// one database's query) stays correct, and one that checks Stopped() stops
// its reading early.
class RecordSink {
 public:
  virtual ~RecordSink() = default;

  // Hands `dict` on; it is the sink's from now on. False once the receiver
  // wants no more records.
  bool Put(plist_t dict) {
    if (stopped_) {
      plist_free(dict);
      return false;
    }
    stopped_ = !Receive(dict);
    return !stopped_;
  }
  bool Stopped() const { return stopped_; }

 protected:
  // Takes one dictionary; false asks for no more.
  virtual bool Receive(plist_t dict) = 0;

 private:
  bool stopped_ = false;
};

#endif
