#include "objects/stream_event.h"

#include <cstring>

#include "frame/frame.h"
#include "utils/convert.h"

namespace {

// One block: this record, then the name, data and text back to back (not
// terminated).
struct StreamEventRecord : ObjectRecord {
  MwStreamEvent event;  // its texts point into the block
};

RecordList g_events;

struct StatusText {
  uint32_t length;
  const char* text;
};
const StatusText kTrigger = {7, "trigger"};
const StatusText kError = {5, "error"};

using R = StreamEventRecord;

bool Name(R* r, NPVariant* result) {
  NP_UtilsStringToResult(r->event.nameLength, r->event.name, result);
  return true;
}

bool Data(R* r, NPVariant* result) {
  NP_UtilsStringToResult(r->event.dataLength, r->event.data, result);
  return true;
}

bool Text(R* r, NPVariant* result) {
  NP_UtilsStringToResult(r->event.textLength, r->event.text, result);
  return true;
}

bool Status(R* r, NPVariant* result) {
  const StatusText& s = r->event.status == 1 ? kTrigger : kError;
  NP_UtilsStringToResult(s.length, s.text, result);
  return true;
}

const Member<R> kMembers[] = {
    Member<R>::Get("name", Name),
    Member<R>::Get("data", Data),
    Member<R>::Get("text", Text),
    Member<R>::Get("status", Status),
};

struct StreamEvent : HandedOutKind<StreamEvent, StreamEventRecord> {
  ORV_KIND(kMembers, g_events)
};

// Copies `length` bytes of `from` (null reads as nothing) to `to`; the
// copy's start.
const char* Copy(char** to, const char* from, uint32_t length) {
  char* start = *to;
  if (length && from) memcpy(start, from, length);
  else if (length) memset(start, 0, length);
  *to += length;
  return start;
}

}  // namespace

void SEventInit() { StreamEvent::Members().Intern(); }

NPObject* SEventCreate(NPP instance, const MwStreamEvent* event) {
  if (!event) return nullptr;
  size_t bytes_length = size_t{event->nameLength} + event->dataLength + event->textLength;
  StreamEventRecord* r = NewRecord<StreamEvent>(instance, bytes_length);
  if (!r) return nullptr;
  char* bytes = reinterpret_cast<char*>(r + 1);
  r->event = *event;
  r->event.name = Copy(&bytes, event->name, event->nameLength);
  r->event.data = Copy(&bytes, event->data, event->dataLength);
  r->event.text = Copy(&bytes, event->text, event->textLength);
  g_events.Add(r);
  return r->object;
}
