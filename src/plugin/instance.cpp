// Instance creation by MIME type, and the per-instance entry points that
// route the browser's calls to the instance's kind.
#include <cstdlib>
#include <cstring>

#include "frame/events.h"
#include "frame/instance_kind.h"
#include "npapi/browser.h"
#include "npapi/log.h"
#include "plugin/entry.h"

namespace {

ElementAttributes ScanAttributes(int16_t argc, char* argn[], char* argv[]) {
  ElementAttributes a;
  for (uint16_t i = 0; i < static_cast<uint16_t>(argc); i++) {
    const char* name = argn[i];
    const char* value = argv[i];
    if (!name || !value) continue;
    if (!strcmp(name, "style")) a.style = value;
    else if (!strcmp(name, "data")) a.data = value;
    else if (!strcmp(name, "width")) a.width = static_cast<int32_t>(strtol(value, nullptr, 10));
    else if (!strcmp(name, "height")) a.height = static_cast<int32_t>(strtol(value, nullptr, 10));
    else if (!strcmp(name, "loop"))
      a.loop = !strcmp(value, "infinite") ? -1 : static_cast<int32_t>(strtol(value, nullptr, 10));
    else if (!strcmp(name, "cache") && !strcmp(value, "true")) a.cache = 1;
  }
  return a;
}

const InstanceKind* KindByMime(const char* mime) {
  for (const InstanceKind* const* k = g_instance_kinds; *k; k++)
    if (mime && !strcmp(mime, (*k)->mime)) return *k;
  return nullptr;
}

const InstanceKind* KindByNumber(uint32_t kind) {
  for (const InstanceKind* const* k = g_instance_kinds; *k; k++)
    if ((*k)->kind == kind) return *k;
  return nullptr;
}

ObjectRecord* RecordOf(NPP instance) {
  return instance ? static_cast<ObjectRecord*>(instance->pdata) : nullptr;
}

// A live instance other than those whose records are gone: the head of
// any kind's list.
NPP AnyLiveInstance() {
  for (const InstanceKind* const* k = g_instance_kinds; *k; k++)
    if ((*k)->list && (*k)->list->head()) return (*k)->list->head()->instance;
  return nullptr;
}

const InstanceKind* KindOf(NPP instance) {
  ObjectRecord* r = RecordOf(instance);
  return r ? KindByNumber(r->kind) : nullptr;
}

// The part of an X11 GraphicsExpose event that tells the dirty rectangle.
struct ExposeEvent {
  int type;
  unsigned long serial;
  int send_event;
  void* display;
  unsigned long drawable;
  int x, y, width, height;
};
constexpr int kGraphicsExpose = 13;

}  // namespace

extern "C" {

NPError NPP_New(NPMIMEType type, NPP instance, uint16_t, int16_t argc, char* argn[], char* argv[],
                NPSavedData*) {
  ElementAttributes attributes;
  if (argc > 0) attributes = ScanAttributes(argc, argn, argv);
  const InstanceKind* kind = KindByMime(type);
  if (!kind) {
    ORV_ERROR("NPP_New", 412, "NPERR_INVALID_PLUGIN_ERROR (%s)\n", type ? type : "(null)");
    return NPERR_INVALID_PLUGIN_ERROR;
  }
  ObjectRecord* record = kind->create(instance, attributes);
  instance->pdata = record;
  if (!record) {
    ORV_ERROR("NPP_New", 417, "NPERR_OUT_OF_MEMORY_ERROR\n");
    return NPERR_OUT_OF_MEMORY_ERROR;
  }
  // Every instance is windowless. Only an instance that is made says so: a
  // browser keeps a refused instance windowed, and a refused instance that
  // had switched crashes it later.
  NPN_SetValue(instance, NPPVpluginWindowBool, nullptr);
  EventsInstanceCreated(instance);
  return NPERR_NO_ERROR;
}

NPError NPP_Destroy(NPP instance, NPSavedData**) {
  ObjectRecord* record = RecordOf(instance);
  if (!record) return NPERR_INVALID_INSTANCE_ERROR;
  const InstanceKind* kind = KindByNumber(record->kind);
  if (!kind) return NPERR_INVALID_INSTANCE_ERROR;
  kind->destroy(record);
  instance->pdata = nullptr;  // the record is gone: later calls find no instance
  EventsInstanceDestroyed(instance, AnyLiveInstance());
  return NPERR_NO_ERROR;
}

NPError NPP_SetWindow(NPP instance, NPWindow* window) {
  const InstanceKind* kind = KindOf(instance);
  if (kind && kind->set_window) kind->set_window(RecordOf(instance), window);
  return NPERR_NO_ERROR;
}

int16_t NPP_HandleEvent(NPP instance, void* event) {
  const InstanceKind* kind = KindOf(instance);
  const ExposeEvent* expose = static_cast<const ExposeEvent*>(event);
  if (kind && kind->paint && expose && expose->type == kGraphicsExpose) {
    const uint16_t rect[4] = {static_cast<uint16_t>(expose->x), static_cast<uint16_t>(expose->y),
                              static_cast<uint16_t>(expose->x + expose->width),
                              static_cast<uint16_t>(expose->y + expose->height)};
    kind->paint(RecordOf(instance), rect);
  }
  return 0;
}

NPError NPP_GetValue(NPP instance, NPPVariable variable, void* value) {
  ObjectRecord* record = RecordOf(instance);
  if (!record || !value) return NPERR_INVALID_PARAM;
  const InstanceKind* kind = KindByNumber(record->kind);
  if (variable == NPPVpluginScriptableNPObject && record->kind >= kKindApplicationManager &&
      record->kind <= kKindDrmAgent) {
    // Handed over without a retain: the kind keeps the only reference.
    *static_cast<NPObject**>(value) = record->object;
    return NPERR_NO_ERROR;
  }
  if (variable == NPPVpluginWantsAllNetworkStreams && kind && kind->wants_all_streams) {
    *static_cast<NPBool*>(value) = 1;
    return NPERR_NO_ERROR;
  }
  return NPERR_INVALID_PARAM;
}

NPError NPP_NewStream(NPP instance, NPMIMEType, NPStream* stream, NPBool, uint16_t*) {
  const InstanceKind* kind = KindOf(instance);
  if (!kind || !kind->accepts_streams) return NPERR_INVALID_PARAM;
  stream->pdata = RecordOf(instance);
  return NPERR_NO_ERROR;
}

int32_t NPP_WriteReady(NPP, NPStream* stream) {
  return stream && stream->end ? static_cast<int32_t>(stream->end) : 65536;
}

int32_t NPP_Write(NPP instance, NPStream* stream, int32_t, int32_t length, void* buffer) {
  const InstanceKind* kind = KindOf(instance);
  if (kind && kind->accepts_streams && kind->stream_data)
    kind->stream_data(RecordOf(instance), stream, length, buffer);
  return length;
}

NPError NPP_DestroyStream(NPP instance, NPStream*, NPReason reason) {
  const InstanceKind* kind = KindOf(instance);
  if (kind && kind->accepts_streams && reason == NPRES_DONE) return NPERR_NO_ERROR;
  return NPERR_GENERIC_ERROR;
}

void NPP_URLNotify(NPP instance, const char*, NPReason reason, void* notify_data) {
  const InstanceKind* kind = KindOf(instance);
  if (kind && kind->url_notify) kind->url_notify(RecordOf(instance), notify_data, reason);
}

}  // extern "C"
