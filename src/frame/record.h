// The record behind every script object, and the per-kind list that holds
// the records of live objects. Only the browser's thread touches records
// and lists.
#ifndef ORVANE_FRAME_RECORD_H
#define ORVANE_FRAME_RECORD_H

#include <cstddef>

#include "frame/handle_index.h"
#include "middleware/types.h"
#include "npapi/npapi.h"

struct Listener;
class RecordList;

// Instance kind numbers.
enum InstanceKindNumber : uint32_t {
  kKindAit = 0,
  kKindApplicationManager = 1,
  kKindConfiguration = 2,
  kKindCapabilities = 3,
  kKindSearchManager = 4,
  kKindParentalControlManager = 5,
  kKindBroadcast = 6,
  kKindVideoMpeg = 7,
  kKindVideoMp4 = 8,
  kKindAudioMpeg = 9,
  kKindAudioMp4 = 10,
  kKindRecordingScheduler = 11,
  kKindDrmAgent = 12,
};

// The common head of every kind's record. Page instances keep the layout
// next, instance, object, handle, kind, listeners; the rest is the list's.
struct ObjectRecord {
  ObjectRecord* next;   // older record of the same list
  NPP instance;
  NPObject* object;     // the script object; null once the browser deallocated it
  MwHandle handle;      // the middleware handle; change it with RecordList::SetHandle
  uint32_t kind;        // instance kind number (page instances)
  Listener* listeners;  // event listeners, null when none

  // Kept by the list and the event delivery.
  ObjectRecord* prev;    // newer record of the same list
  ObjectRecord* chain;   // next record in the list's index chain
  uint32_t deliveries;   // event deliveries and placements running on the record
  bool gone;             // destroyed during a delivery: freed when it ends
  bool orphaned;         // its page instance went: it receives no events
  bool listed;           // on its kind's list
};

// A kind's live records, newest first, and found by handle through an index
// whose cost does not grow with the number of records.
class RecordList {
 public:
  ObjectRecord* head() const { return head_; }
  size_t size() const { return index_.size(); }
  // Links `r` in at the head.
  void Add(ObjectRecord* r);
  // Unlinks `r`; false (nothing changed) when it is not on the list.
  bool Remove(ObjectRecord* r);
  // Records of a kind are only ever on that kind's list.
  bool Holds(const ObjectRecord* r) const { return r && r->listed; }
  // The newest record carrying `handle`, or null.
  ObjectRecord* FindByHandle(MwHandle handle) const { return index_.Newest(handle); }
  // Gives a record of this list (or of none) another handle.
  void SetHandle(ObjectRecord* r, MwHandle handle);

 private:
  ObjectRecord* head_ = nullptr;
  HandleIndex<ObjectRecord> index_;
};

// The record of a handed-out object that receives no events and makes no
// objects of its own (a channel, a component, a rating): its script object,
// its handle and its link in the index, nothing else.
struct SharedRecord {
  SharedRecord* chain;
  NPObject* object;
  MwHandle handle;
};

// The live records of such a kind: only found by handle.
class SharedList {
 public:
  size_t size() const { return index_.size(); }
  void Add(SharedRecord* r) { index_.Insert(r); }
  bool Remove(SharedRecord* r) { return index_.Erase(r); }
  SharedRecord* FindByHandle(MwHandle handle) const { return index_.Newest(handle); }

 private:
  HandleIndex<SharedRecord> index_;
};

#endif
