#include "objects/av_component.h"

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"
#include "utils/convert.h"

namespace {

RecordList g_components;

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

struct AVComponent : HandedOutKind<AVComponent> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  static RecordList& List() { return g_components; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
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
  return NewHandedOut<AVComponent>(instance, component, kLeaveOnFailure);
}

MwHandle AVComponentGetHandle(NPObject* object) { return HandleOf<AVComponent>(object); }

extern const CollectionItemKind kComponentItems = {AVComponentCreate, false, nullptr, 0};
