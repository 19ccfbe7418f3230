#include "frame/record.h"

void RecordList::Add(ObjectRecord* r) {
  r->prev = nullptr;
  r->next = head_;
  if (head_) head_->prev = r;
  head_ = r;
  r->listed = true;
  index_.Insert(r);
}

bool RecordList::Remove(ObjectRecord* r) {
  if (!Holds(r)) return false;
  index_.Erase(r);
  if (r->prev) r->prev->next = r->next;
  else head_ = r->next;
  if (r->next) r->next->prev = r->prev;
  r->next = r->prev = nullptr;
  r->listed = false;
  return true;
}

// The record takes its place among the records of its new handle by list
// order: at once when it is the only one, else after a walk to the nearest
// older one.
void RecordList::SetHandle(ObjectRecord* r, MwHandle handle) {
  if (!Holds(r)) {
    r->handle = handle;
    return;
  }
  index_.Erase(r);
  r->handle = handle;
  ObjectRecord* older = nullptr;
  if (index_.Newest(handle)) {
    older = r->next;
    while (older && older->handle != handle) older = older->next;
  }
  index_.InsertBefore(r, older);
}
