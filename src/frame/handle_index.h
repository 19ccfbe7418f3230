// A kind's records by middleware handle: a hash of chains linked through the
// records themselves (their `chain` field), so that a record pays one link
// and the buckets cost a quarter to half a pointer per record.
//
// A chain holds the records of its handles newest first, so the first one
// found for a handle is its newest. When the bucket array cannot grow,
// the chains only grow longer; before the first array (and when it cannot
// be had) one chain holds every record. Only the browser's thread uses it.
#ifndef ORVANE_FRAME_HANDLE_INDEX_H
#define ORVANE_FRAME_HANDLE_INDEX_H

#include <cstddef>
#include <cstring>

#include "middleware/types.h"
#include "utils/record_alloc.h"

// Spreads every bit of a handle over the low bits, which pick the bucket:
// handles that are addresses or multiples of a stride still spread.
inline uint32_t HandleHash(MwHandle h) {
  h ^= h >> 16;
  h *= 0x7feb352du;
  h ^= h >> 15;
  h *= 0x846ca68bu;
  return h ^ (h >> 16);
}

template <class R>
class HandleIndex {
 public:
  HandleIndex() = default;
  HandleIndex(const HandleIndex&) = delete;
  HandleIndex& operator=(const HandleIndex&) = delete;

  size_t size() const { return count_; }

  // The newest record carrying `handle`, or null.
  R* Newest(MwHandle handle) const {
    R* r = *Bucket(handle);
    while (r && r->handle != handle) r = r->chain;
    return r;
  }
  // Links `r` in as the newest record of its handle: at its chain's head,
  // without touching any other record.
  void Insert(R* r) { Link(Bucket(r->handle), r); }
  // Links `r` in just before `older`, a record of r's handle on the index,
  // or, with `older` null, as the oldest of its handle (at the chain's end).
  void InsertBefore(R* r, R* older) {
    R** link = Bucket(r->handle);
    while (*link && *link != older) link = &(*link)->chain;
    Link(link, r);
  }
  // Unlinks `r`; false (nothing changed) when it is not on the index.
  bool Erase(R* r) {
    R** link = Bucket(r->handle);
    while (*link && *link != r) link = &(*link)->chain;
    if (!*link) return false;
    *link = r->chain;
    r->chain = nullptr;
    if (--count_ == 0) Drop();
    return true;
  }

 private:
  static constexpr size_t kFirstCapacity = 16;

  void Link(R** link, R* r) {
    r->chain = *link;
    *link = r;
    if (++count_ > 2 * capacity_) Grow();
  }
  R** Bucket(MwHandle handle) const { return &buckets_[HandleHash(handle) & (capacity_ - 1)]; }

  // Twice the buckets (at least the first array). Each old chain is turned
  // round and its records pushed onto their new chains, which keeps the
  // order of the records of a handle.
  void Grow() {
    size_t capacity = capacity_ == 1 ? kFirstCapacity : capacity_ * 2;
    R** buckets = static_cast<R**>(RecordAlloc(capacity * sizeof(R*)));
    if (!buckets) return;  // longer chains until memory comes back
    memset(buckets, 0, capacity * sizeof(R*));
    for (size_t i = 0; i < capacity_; i++) {
      R* reversed = nullptr;
      for (R* r = buckets_[i]; r;) {
        R* next = r->chain;
        r->chain = reversed;
        reversed = r;
        r = next;
      }
      for (R* r = reversed; r;) {
        R* next = r->chain;
        R** head = &buckets[HandleHash(r->handle) & (capacity - 1)];
        r->chain = *head;
        *head = r;
        r = next;
      }
    }
    if (buckets_ != &single_) RecordFree(buckets_);
    buckets_ = buckets;
    capacity_ = capacity;
  }
  void Drop() {
    if (buckets_ != &single_) RecordFree(buckets_);
    single_ = nullptr;
    buckets_ = &single_;
    capacity_ = 1;
  }

  R* single_ = nullptr;     // the one chain while there is no array
  R** buckets_ = &single_;  // power-of-two count
  size_t capacity_ = 1;
  size_t count_ = 0;
};

#endif
