#include "objects/av_component.h"

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"
#include "utils/convert.h"

namespace {

SharedList g_components;

// The component has no tag: the read fails.
bool ComponentTag(SharedRecord* r, NPVariant* result) {
  int32_t tag = MwComponentGetTag(r->handle);
  if (tag == -1) return false;
  SetInt(result, tag);
  return true;
}

// The flags count as set only for exactly 1.
template <int32_t (*Read)(MwHandle)>
bool Flag(SharedRecord* r, NPVariant* result) {
  SetBool(result, Read(r->handle) == 1);
  return true;
}

bool AspectRatio(SharedRecord* r, NPVariant* result) {
  SetDouble(result, MwComponentGetAspectRatio(r->handle));
  return true;
}

using R = SharedRecord;
using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("componentTag", ComponentTag),
    Row::Get("pid", IntOf<R, MwComponentGetPid>),
    Row::Get("type", IntOf<R, MwComponentGetType>),
    Row::Get("encoding", TextOf<R, MwComponentGetEncoding>),
    Row::Get("encrypted", Flag<MwComponentIsEncrypted>),
    Row::Get("aspectRatio", AspectRatio),
    Row::Get("language", TextOf<R, MwComponentGetLanguage>),
    Row::Get("audioDescription", Flag<MwComponentHasAudioDescription>),
    Row::Get("audioChannels", IntOf<R, MwComponentGetAudioChannels>),
    Row::Get("hearingImpaired", Flag<MwComponentIsHearingImpaired>),
};

struct AVComponent : HandedOutKind<AVComponent, SharedRecord> {
  ORV_KIND(kMembers, g_components)
};

}  // namespace

NPObject* AVComponentCreate(NPP instance, MwHandle component) {
  return NewHandedOut<AVComponent>(instance, component, kLeaveOnFailure);
}

MwHandle AVComponentGetHandle(NPObject* object) { return HandleOf<AVComponent>(object); }

extern const CollectionItemKind kComponentItems = {AVComponentCreate, false, nullptr, 0};
