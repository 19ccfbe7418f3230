// The AIT instance: an "application/vnd.dvb.ait+xml" element whose data the
// browser streams to the plug-in, fed to the middleware's AIT parser.
#include "frame/instance_kind.h"
#include "middleware/appmgr.h"
#include "npapi/browser.h"
#include "utils/record_alloc.h"

namespace {

ObjectRecord* CreateAit(NPP instance, const ElementAttributes&) {
  ObjectRecord* r = RecordNew<ObjectRecord>();
  if (!r) return nullptr;
  r->instance = instance;
  r->handle = MwAppManagerCreate(r);
  r->kind = kKindAit;
  return r;
}

void DestroyAit(ObjectRecord* r) {
  MwObjectRelease(r->handle);
  RecordFree(r);
}

int32_t WriteAit(ObjectRecord* r, NPStream* stream, int32_t length, void* bytes) {
  MwAitOutcome outcome{0, stream->url};
  MwAitParserWrite(r->handle, bytes, length, &outcome);
  if (outcome.navigate) NPN_GetURL(r->instance, outcome.url, "_top");
  return length;
}

}  // namespace

extern const InstanceKind kAitKind = {
    "application/vnd.dvb.ait+xml", kKindAit, CreateAit, DestroyAit, nullptr, nullptr,
    true, false, WriteAit, nullptr, nullptr,
};
