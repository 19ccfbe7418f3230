// The record behind every script object, and the per-kind list that holds
// the records of live objects, newest first.
//
// A list finds a record by its middleware handle (the newest one carrying
// it) through an index, so the cost does not grow with the number of live
// records; when the index cannot grow, lookups walk the list instead. Only
// the browser's thread touches records and lists.
#ifndef ORVANE_FRAME_RECORD_H
#define ORVANE_FRAME_RECORD_H

#include <cstddef>

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
  ObjectRecord* prev;        // newer record of the same list
  ObjectRecord* same_older;  // next older record carrying the same handle
  ObjectRecord* same_newer;
  RecordList* list;          // the list the record is on; null when on none
  uint32_t deliveries;       // event deliveries running on the record
  bool gone;                 // destroyed during a delivery: freed when it ends
  bool orphaned;             // its page instance went: it receives no events
};

class RecordList {
 public:
  ObjectRecord* head() const { return head_; }
  size_t size() const { return count_; }
  // Links `r` in at the head.
  void Add(ObjectRecord* r);
  // Unlinks `r`; false (nothing changed) when it is not on this list.
  bool Remove(ObjectRecord* r);
  bool Holds(const ObjectRecord* r) const { return r && r->list == this; }
  // The newest record carrying `handle`, or null.
  ObjectRecord* FindByHandle(MwHandle handle) const;
  // Gives a record of this list (or of none) another handle.
  void SetHandle(ObjectRecord* r, MwHandle handle);

 private:
  struct Slot {
    MwHandle key;
    ObjectRecord* newest;  // null: free slot
  };
  Slot* FindSlot(MwHandle key) const;
  bool IndexPut(ObjectRecord* r);  // false when the index cannot hold it
  void IndexErase(MwHandle key);
  bool IndexGrow();
  void IndexDrop();
  void LinkSameHandle(ObjectRecord* r);
  void UnlinkSameHandle(ObjectRecord* r);

  ObjectRecord* head_ = nullptr;
  size_t count_ = 0;
  Slot* slots_ = nullptr;  // open addressing, power-of-two size; null: walk the list
  size_t capacity_ = 0;
  size_t used_ = 0;
};

#endif
