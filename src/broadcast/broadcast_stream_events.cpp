// Stream-event listeners: registered with the middleware directly for a
// "dvb:" URL, or through a description document that the browser fetches.
#include <cstddef>
#include <cstring>

#include "broadcast/broadcast_kind.h"
#include "frame/listeners.h"
#include "middleware/broadcast.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"
#include "utils/url.h"

// The notify data of a description download (from NPN_MemAlloc): the
// registration it made (listener and kind, which no other registration of
// the record has) and the event name (pointing into the record's tail),
// linked into its record's pending requests until the download ends.
struct StreamEventRequest {
  NPObject* listener;  // only compared, never used: the page may have let it go; 0 once withdrawn
  uint32_t nameLength;
  const char* name;
  uint32_t kind;
  StreamEventRequest* prev;
  StreamEventRequest* next;
  char bytes[1];  // the name and a NUL
};

namespace {

void Link(BroadcastRecord* r, StreamEventRequest* request) {
  request->prev = nullptr;
  request->next = r->pendingRequests;
  if (request->next) request->next->prev = request;
  r->pendingRequests = request;
}

void Unlink(BroadcastRecord* r, StreamEventRequest* request) {
  if (request->prev) request->prev->next = request->next;
  else if (r->pendingRequests == request) r->pendingRequests = request->next;
  if (request->next) request->next->prev = request->prev;
  request->prev = request->next = nullptr;
}

bool ArgumentsFit(const NPVariant* args, uint32_t count) {
  return count == 3 && IsString(args[0]) && IsString(args[1]) && IsObject(args[2]);
}

bool IsDvbUrl(const MwString& url) { return url.length >= 4 && memcmp(url.data, "dvb:", 4) == 0; }

// Asks the browser for the description at `url` (as the page gave it).
bool RequestDescription(BroadcastRecord* r, const MwString& url, const MwString& name,
                        NPObject* listener, uint32_t kind) {
  size_t size = offsetof(StreamEventRequest, bytes) + name.length + 1;
  StreamEventRequest* request = static_cast<StreamEventRequest*>(NPN_MemAlloc(static_cast<uint32_t>(size)));
  if (!request) return false;
  request->listener = listener;
  request->nameLength = name.length;
  if (name.length) memcpy(request->bytes, name.data, name.length);
  request->bytes[name.length] = '\0';
  request->name = request->bytes;
  request->kind = kind;
  // The page's characters need not end in NUL: the browser gets a terminated copy.
  MwString copy;
  char* target = RecordTextCopy(url.data, url.length, &copy);
  bool sent = false;
  if (target) {
    Link(r, request);  // before the call: a browser may answer within it
    sent = NPN_GetURLNotify(r->instance, target, nullptr, request) == NPERR_NO_ERROR;
    RecordFree(target);
  }
  if (!sent) {
    if (target) Unlink(r, request);
    NPN_MemFree(request);
  }
  return sent;
}

}  // namespace

bool BroadcastAddStreamEventListener(BroadcastRecord* r, const NPVariant* args, uint32_t count) {
  if (!ArgumentsFit(args, count)) return false;
  uint32_t kind = r->nextStreamEventKind;
  NPObject* listener = NP_UtilsAddEventListener(r, &args[2], kind);
  if (!listener) return false;  // the kind is not used up
  MwString given = ArgString(args[0]);
  MwString name = ArgString(args[1]);
  MwString url = given;
  int resolved = NP_UtilsResolveUrl(r->instance, &url);
  bool ok;
  if (IsDvbUrl(url)) {
    ok = MwBroadcastAddStreamEventListener(r->handle, url.length, url.data, name.length, name.data,
                                           kind) != 0;
    if (!ok) NP_UtilsRemoveEventListener(r, listener);
  } else {
    // On failure the listener stays registered (a later description may
    // still arrive for it); only the "dvb:"
    // path withdraws it.
    ok = RequestDescription(r, given, name, listener, kind);
  }
  if (resolved) NPN_MemFree(const_cast<char*>(url.data));
  r->nextStreamEventKind++;  // every registration gets its own kind, failed or not
  return ok;
}

bool BroadcastRemoveStreamEventListener(BroadcastRecord* r, const NPVariant* args, uint32_t count) {
  if (!ArgumentsFit(args, count)) return false;
  MwString name = ArgString(args[1]);
  int32_t kind = NP_UtilsRemoveEventListener(r, args[2].value.objectValue);
  if (kind != -1)
    MwBroadcastRemoveStreamEventListener(r->handle, name.length, name.data,
                                         static_cast<uint32_t>(kind));
  return true;
}

int32_t BroadcastStreamData(BroadcastRecord* r, void* notify, int32_t count, const void* bytes) {
  StreamEventRequest* request = static_cast<StreamEventRequest*>(notify);
  if (!r || !request || count < 0) return 0;
  int32_t added = MwBroadcastAddStreamEventXml(r->handle, static_cast<const char*>(bytes),
                                               static_cast<uint32_t>(count), request->nameLength,
                                               request->name, request->kind);
  if (added) return added;
  bool removed = RemoveEventRegistration(r, request->listener, request->kind);
  request->listener = nullptr;
  return removed ? static_cast<int32_t>(request->kind) : -1;
}

void BroadcastStreamNotify(BroadcastRecord* r, void* notify, NPReason reason) {
  StreamEventRequest* request = static_cast<StreamEventRequest*>(notify);
  if (!request) return;
  if (r) Unlink(r, request);
  if (r && reason != NPRES_DONE && RemoveEventRegistration(r, request->listener, request->kind))
    MwBroadcastRemoveStreamEventListener(r->handle, request->nameLength, request->name,
                                         request->kind);
  NPN_MemFree(request);
}

void BroadcastDropRequests(BroadcastRecord* r) {
  while (StreamEventRequest* request = r->pendingRequests) {
    Unlink(r, request);
    NPN_MemFree(request);
  }
}
