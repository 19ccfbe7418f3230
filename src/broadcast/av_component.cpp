#include "broadcast/av_component.h"

#include "middleware/broadcast.h"
#include "plugin/frame.h"
#include "plugin/record.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

struct ComponentRecord {
  NPObject* object;
  MwHandle handle;  // owned
  ComponentRecord* next;
};

ComponentRecord* g_components = nullptr;

enum Property {
  kComponentTag,
  kPid,
  kType,
  kEncoding,
  kEncrypted,
  kAspectRatio,
  kLanguage,
  kAudioDescription,
  kAudioChannels,
  kHearingImpaired,
};

const char* const kPropertyNames[] = {
    "componentTag", "pid",      "type",             "encoding",      "encrypted",
    "aspectRatio",  "language", "audioDescription", "audioChannels", "hearingImpaired",
};

struct AVComponent : KindDefaults<AVComponent> {
  ORV_PROPERTY_TABLE(kPropertyNames)

  static void Deallocate(NPObject* object) {
    ComponentRecord* r = FindByObject(g_components, object);
    if (!r) return;
    if (r->handle) MwObjectRelease(r->handle);
    Unlink(&g_components, r);
    RecordFree(r);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ComponentRecord* r = FindByObject(g_components, object);
    if (!r) return false;
    MwHandle h = r->handle;
    switch (Properties().Find(id)) {
      case kComponentTag: {
        int32_t tag = MwComponentGetTag(h);
        if (tag == -1) return false;  // the component has no tag
        SetInt(result, tag);
        return true;
      }
      case kPid: SetInt(result, MwComponentGetPid(h)); return true;
      case kType: SetInt(result, MwComponentGetType(h)); return true;
      case kEncoding: NP_UtilsHbbtvStringToResult(MwComponentGetEncoding(h), result); return true;
      // The flags count as set only for exactly 1.
      case kEncrypted: SetBool(result, MwComponentIsEncrypted(h) == 1); return true;
      case kAspectRatio: SetDouble(result, MwComponentGetAspectRatio(h)); return true;
      case kLanguage: NP_UtilsHbbtvStringToResult(MwComponentGetLanguage(h), result); return true;
      case kAudioDescription: SetBool(result, MwComponentHasAudioDescription(h) == 1); return true;
      case kAudioChannels: SetInt(result, MwComponentGetAudioChannels(h)); return true;
      case kHearingImpaired: SetBool(result, MwComponentIsHearingImpaired(h) == 1); return true;
      default: return false;
    }
  }
};

}  // namespace

NPObject* AVComponentCreate(NPP instance, MwHandle component) {
  // Interned on every creation (the identifiers come out the same each time).
  AVComponent::Properties().Intern(true);
  ComponentRecord* r = NewScriptRecord<ComponentRecord>(instance, ScriptClass<AVComponent>::Class());
  if (!r) return nullptr;
  r->handle = component;
  PushFront(&g_components, r);
  return r->object;
}

MwHandle AVComponentGetHandle(NPObject* object) {
  if (!object) return 0;
  ComponentRecord* r = FindByObject(g_components, object);
  return r ? r->handle : 0;
}
