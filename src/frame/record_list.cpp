#include <cstring>

#include "frame/record.h"
#include "utils/record_alloc.h"

namespace {

constexpr size_t kFirstCapacity = 16;

size_t Home(MwHandle key, size_t capacity) {
  return static_cast<size_t>((static_cast<uint64_t>(key) * 0x9E3779B97F4A7C15ull) >> 32) &
         (capacity - 1);
}

}  // namespace

RecordList::Slot* RecordList::FindSlot(MwHandle key) const {
  if (!slots_) return nullptr;
  for (size_t i = Home(key, capacity_);; i = (i + 1) & (capacity_ - 1)) {
    if (!slots_[i].newest) return nullptr;
    if (slots_[i].key == key) return &slots_[i];
  }
}

bool RecordList::IndexPut(ObjectRecord* r) {
  if (Slot* s = FindSlot(r->handle)) {
    s->newest = r;
    return true;
  }
  if ((used_ + 1) * 2 > capacity_) {
    if (!IndexGrow()) return false;
    if (Slot* s = FindSlot(r->handle)) {  // the rebuild took it from the list
      s->newest = r;
      return true;
    }
  }
  size_t i = Home(r->handle, capacity_);
  while (slots_[i].newest) i = (i + 1) & (capacity_ - 1);
  slots_[i] = Slot{r->handle, r};
  used_++;
  return true;
}

void RecordList::IndexErase(MwHandle key) {
  Slot* s = FindSlot(key);
  if (!s) return;
  size_t mask = capacity_ - 1;
  size_t hole = static_cast<size_t>(s - slots_);
  slots_[hole].newest = nullptr;
  used_--;
  // Shift back the entries whose probe run crosses the hole.
  for (size_t j = (hole + 1) & mask; slots_[j].newest; j = (j + 1) & mask) {
    size_t home = Home(slots_[j].key, capacity_);
    bool movable = hole <= j ? (home <= hole || home > j) : (home <= hole && home > j);
    if (!movable) continue;
    slots_[hole] = slots_[j];
    slots_[j].newest = nullptr;
    hole = j;
  }
}

// Rebuilds the index, larger, from the list; so an index that could not
// grow before comes back with the next record once memory does.
bool RecordList::IndexGrow() {
  size_t capacity = capacity_ ? capacity_ * 2 : kFirstCapacity;
  while (count_ * 2 >= capacity) capacity *= 2;
  Slot* slots = static_cast<Slot*>(RecordAlloc(capacity * sizeof(Slot)));
  if (!slots) {
    IndexDrop();
    return false;
  }
  memset(slots, 0, capacity * sizeof(Slot));
  RecordFree(slots_);
  slots_ = slots;
  capacity_ = capacity;
  used_ = 0;
  for (ObjectRecord* r = head_; r; r = r->next) {
    if (r->same_newer) continue;  // only the newest of each handle is indexed
    size_t i = Home(r->handle, capacity_);
    while (slots_[i].newest) i = (i + 1) & (capacity_ - 1);
    slots_[i] = Slot{r->handle, r};
    used_++;
  }
  return true;
}

void RecordList::IndexDrop() {
  RecordFree(slots_);
  slots_ = nullptr;
  capacity_ = 0;
  used_ = 0;
}

ObjectRecord* RecordList::FindByHandle(MwHandle handle) const {
  if (slots_) {
    Slot* s = FindSlot(handle);
    return s ? s->newest : nullptr;
  }
  for (ObjectRecord* r = head_; r; r = r->next)
    if (r->handle == handle) return r;
  return nullptr;
}

// Puts `r` (on the list) in the chain of its handle's records, at its place
// by list order.
void RecordList::LinkSameHandle(ObjectRecord* r) {
  ObjectRecord* newer = r->prev;
  while (newer && newer->handle != r->handle) newer = newer->prev;
  ObjectRecord* older = r->next;
  while (older && older->handle != r->handle) older = older->next;
  r->same_newer = newer;
  r->same_older = older;
  if (older) older->same_newer = r;
  if (newer) newer->same_older = r;
  else IndexPut(r);
}

void RecordList::UnlinkSameHandle(ObjectRecord* r) {
  if (r->same_newer) {
    r->same_newer->same_older = r->same_older;
  } else if (Slot* s = FindSlot(r->handle)) {
    if (r->same_older) s->newest = r->same_older;
    else IndexErase(r->handle);
  }
  if (r->same_older) r->same_older->same_newer = r->same_newer;
  r->same_newer = r->same_older = nullptr;
}

void RecordList::Add(ObjectRecord* r) {
  ObjectRecord* older = FindByHandle(r->handle);  // r becomes the newest of its handle
  r->prev = nullptr;
  r->next = head_;
  if (head_) head_->prev = r;
  head_ = r;
  r->list = this;
  count_++;
  r->same_newer = nullptr;
  r->same_older = older;
  if (older) older->same_newer = r;
  IndexPut(r);  // without an index, lookups walk the list
}

bool RecordList::Remove(ObjectRecord* r) {
  if (!Holds(r)) return false;
  UnlinkSameHandle(r);
  if (r->prev) r->prev->next = r->next;
  else head_ = r->next;
  if (r->next) r->next->prev = r->prev;
  r->next = r->prev = nullptr;
  r->list = nullptr;
  if (--count_ == 0) IndexDrop();
  return true;
}

void RecordList::SetHandle(ObjectRecord* r, MwHandle handle) {
  if (!Holds(r)) {
    r->handle = handle;
    return;
  }
  UnlinkSameHandle(r);
  r->handle = handle;
  LinkSameHandle(r);
}
