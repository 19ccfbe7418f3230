#include "objects/programme.h"

#include "objects/collection.h"
#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"
#include "objects/scheduled_recording.h"
#include "utils/convert.h"

namespace {

RecordList g_programmes;

// A list property: a collection of `kind`, or Null and a failed read when
// there is no list or no collection could be made.
template <MwHandle (*Read)(MwHandle), uint32_t kKind>
bool List(ObjectRecord* r, NPVariant* result) {
  MwHandle list = Read(r->handle);
  NPObject* collection = list ? CollectionCreate(r->instance, list, kKind) : nullptr;
  SetObjectOrNull(result, collection);
  return collection != nullptr;
}

// No recording reads as undefined and the read succeeds: unlike the list
// properties, which give Null and fail (pages test `recording` for
// undefined, the lists for null).
bool Recording(ObjectRecord* r, NPVariant* result) {
  MwHandle recording = MwProgrammeGetRecording(r->handle);
  if (!recording) {
    SetVoid(result);
    return true;
  }
  SetObjectOrNull(result, ScheduledRecordingCreate(r->instance, recording));
  return true;
}

// getSIDescriptors(descriptorTag [, descriptorTagExtension]): a collection
// of descriptor strings, or Null when there are none.
bool GetSIDescriptors(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t tag;
  if (count < 1 || count > 2 || !NP_UtilsGetU32BIT(&args[0], &tag)) return false;
  // An extension that cannot be read counts as none given, as a page that
  // passes no extension expects.
  int32_t extension = -1;
  uint32_t value;
  if (count == 2 && NP_UtilsGetU32BIT(&args[1], &value)) extension = static_cast<int32_t>(value);
  MwHandle list = MwProgrammeGetSIDescriptors(r->handle, tag, extension);
  SetObjectOrNull(result, list ? CollectionCreate(r->instance, list, kCollectionStrings) : nullptr);
  return true;
}

using R = ObjectRecord;
using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("name", TextOf<R, MwProgrammeGetName>),
    Row::Get("programmeID", TextOf<R, MwProgrammeGetProgrammeID>),
    Row::Get("programmeIDType", IntOf<R, MwProgrammeGetProgrammeIDType>),
    Row::Get("description", TextOf<R, MwProgrammeGetDescription>),
    Row::Get("longDescription", TextOf<R, MwProgrammeGetLongDescription>),
    Row::Get("startTime", IntOf<R, MwProgrammeGetStartTime>),
    Row::Get("duration", IntOf<R, MwProgrammeGetDuration>),
    Row::Get("channelID", TextOf<R, MwProgrammeGetChannelID>),
    Row::Get("parentalRatings", List<MwProgrammeGetParentalRatings, kCollectionRatings>),
    Row::Get("audioType", IntOf<R, MwProgrammeGetAudioType>),
    Row::Get("isMultilingual", BoolOf<R, MwProgrammeIsMultilingual>),
    Row::Get("audioLanguages", List<MwProgrammeGetAudioLanguages, kCollectionStrings>),
    Row::Get("isHD", BoolOf<R, MwProgrammeIsHD>),
    Row::Get("hasAudioDescription", BoolOf<R, MwProgrammeHasAudioDescription>),
    Row::Get("hasSignLanguage", BoolOf<R, MwProgrammeHasSignLanguage>),
    Row::Get("genre", List<MwProgrammeGetGenre, kCollectionStrings>),
    Row::Get("hasGuidance", BoolOf<R, MwProgrammeHasGuidance>),
    Row::Get("guidance", List<MwProgrammeGetGuidance, kCollectionStrings>),
    Row::Get("mediaAssets", List<MwProgrammeGetMediaAssets, kCollectionMediaAssets>),
    Row::Get("promotionalContentText", TextOf<R, MwProgrammeGetPromotionalContentText>),
    Row::Get("hasHDSimulcast", BoolOf<R, MwProgrammeHasHDSimulcast>),
    Row::Get("CRIDS", List<MwProgrammeGetCRIDS, kCollectionStrings>),
    Row::Get("hasRecording", BoolOf<R, MwProgrammeHasRecording>),
    Row::Get("recording", Recording),
    Row::Call("getSIDescriptors", GetSIDescriptors),
};

struct Programme : HandedOutKind<Programme> {
  ORV_KIND(kMembers, g_programmes)
};

}  // namespace

NPObject* ProgrammeCreate(NPP instance, MwHandle programme) {
  if (NPObject* shared = SharedObject<Programme>(programme)) return shared;
  return NewHandedOut<Programme>(instance, programme, kReleaseOnFailure);
}

MwHandle ProgrammeGetHandle(NPObject* object) { return HandleOf<Programme>(object); }

extern const CollectionItemKind kProgrammeItems = {ProgrammeCreate, true, nullptr, 0};
