// The common head of the records of page instances and of every kind that
// delivers events: the instance dispatch reads `object` and `kind`, the
// asynchronous event dispatch reads `next`, `instance`, `handle` and
// `listeners`.
#ifndef ORVANE_PLUGIN_RECORD_H
#define ORVANE_PLUGIN_RECORD_H

#include "middleware/types.h"
#include "plugin/npapi.h"

struct Listener;

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

struct ObjectRecord {
  ObjectRecord* next;
  NPP instance;
  NPObject* object;     // the script object; null once the browser deallocated it
  MwHandle handle;      // the middleware handle; events are matched by it
  uint32_t kind;        // instance kind number
  Listener* listeners;  // event listeners, null when none
};

// Generic walks over singly linked handle lists (records with `next`,
// `object` and `handle` members).
template <class R>
R* FindByObject(R* head, const NPObject* object) {
  for (; head; head = head->next)
    if (head->object == object) return head;
  return nullptr;
}

template <class R>
R* FindByHandle(R* head, MwHandle handle) {
  for (; head; head = head->next)
    if (head->handle == handle) return head;
  return nullptr;
}

template <class R>
void PushFront(R** head, R* record) {
  record->next = *head;
  *head = record;
}

// Unlinks `record`; false (and nothing changed) when it is not on the list.
template <class R>
bool Unlink(R** head, R* record) {
  for (R** link = head; *link; link = &(*link)->next) {
    if (*link == record) {
      *link = record->next;
      record->next = nullptr;
      return true;
    }
  }
  return false;
}

#endif
