#include "objects/programme.h"

#include "objects/collection.h"
#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"
#include "objects/scheduled_recording.h"
#include "utils/convert.h"

namespace {

RecordList g_programmes;

enum Property {
  kName,
  kProgrammeId,
  kProgrammeIdType,
  kDescription,
  kLongDescription,
  kStartTime,
  kDuration,
  kChannelId,
  kParentalRatings,
  kAudioType,
  kIsMultilingual,
  kAudioLanguages,
  kIsHd,
  kHasAudioDescription,
  kHasSignLanguage,
  kGenre,
  kHasGuidance,
  kGuidance,
  kMediaAssets,
  kPromotionalContentText,
  kHasHdSimulcast,
  kCrids,
  kHasRecording,
  kRecording,
};

const char* const kPropertyNames[] = {
    "name",          "programmeID",     "programmeIDType", "description",
    "longDescription", "startTime",     "duration",        "channelID",
    "parentalRatings", "audioType",     "isMultilingual",  "audioLanguages",
    "isHD",          "hasAudioDescription", "hasSignLanguage", "genre",
    "hasGuidance",   "guidance",        "mediaAssets",     "promotionalContentText",
    "hasHDSimulcast", "CRIDS",          "hasRecording",    "recording",
};
const char* const kMethodNames[] = {"getSIDescriptors"};

// A list property: a collection of `kind`, or Null and a failed read when
// there is no list or no collection could be made.
bool ListToResult(ObjectRecord* r, MwHandle list, uint32_t kind, NPVariant* result) {
  NPObject* collection = list ? CollectionCreate(r->instance, list, kind) : nullptr;
  SetObjectOrNull(result, collection);
  return collection != nullptr;
}

bool Flag(int32_t value, NPVariant* result) {
  SetBool(result, value != 0);
  return true;
}

bool Int(int32_t value, NPVariant* result) {
  SetInt(result, value);
  return true;
}

bool Text(MwHandle string, NPVariant* result) {
  NP_UtilsHbbtvStringToResult(string, result);
  return true;
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

struct Programme : HandedOutKind<Programme> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_programmes; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r) return false;
    MwHandle h = r->handle;
    switch (Properties().Find(id)) {
      case kName: return Text(MwProgrammeGetName(h), result);
      case kProgrammeId: return Text(MwProgrammeGetProgrammeID(h), result);
      case kProgrammeIdType: return Int(MwProgrammeGetProgrammeIDType(h), result);
      case kDescription: return Text(MwProgrammeGetDescription(h), result);
      case kLongDescription: return Text(MwProgrammeGetLongDescription(h), result);
      case kStartTime: return Int(MwProgrammeGetStartTime(h), result);
      case kDuration: return Int(MwProgrammeGetDuration(h), result);
      case kChannelId: return Text(MwProgrammeGetChannelID(h), result);
      case kParentalRatings:
        return ListToResult(r, MwProgrammeGetParentalRatings(h), kCollectionRatings, result);
      case kAudioType: return Int(MwProgrammeGetAudioType(h), result);
      case kIsMultilingual: return Flag(MwProgrammeIsMultilingual(h), result);
      case kAudioLanguages:
        return ListToResult(r, MwProgrammeGetAudioLanguages(h), kCollectionStrings, result);
      case kIsHd: return Flag(MwProgrammeIsHD(h), result);
      case kHasAudioDescription: return Flag(MwProgrammeHasAudioDescription(h), result);
      case kHasSignLanguage: return Flag(MwProgrammeHasSignLanguage(h), result);
      case kGenre: return ListToResult(r, MwProgrammeGetGenre(h), kCollectionStrings, result);
      case kHasGuidance: return Flag(MwProgrammeHasGuidance(h), result);
      case kGuidance: return ListToResult(r, MwProgrammeGetGuidance(h), kCollectionStrings, result);
      case kMediaAssets:
        return ListToResult(r, MwProgrammeGetMediaAssets(h), kCollectionMediaAssets, result);
      case kPromotionalContentText: return Text(MwProgrammeGetPromotionalContentText(h), result);
      case kHasHdSimulcast: return Flag(MwProgrammeHasHDSimulcast(h), result);
      case kCrids: return ListToResult(r, MwProgrammeGetCRIDS(h), kCollectionStrings, result);
      case kHasRecording: return Flag(MwProgrammeHasRecording(h), result);
      case kRecording: return Recording(r, result);
      default: return false;
    }
  }

  // getSIDescriptors(descriptorTag [, descriptorTagExtension]): a collection
  // of descriptor strings, or Null when there are none.
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r || Methods().Find(id) != 0) return false;
    uint32_t tag;
    if (count < 1 || count > 2 || !NP_UtilsGetU32BIT(&args[0], &tag)) return false;
    // An extension that cannot be read counts as none given, as a page
    // that passes no extension expects.
    int32_t extension = -1;
    uint32_t value;
    if (count == 2 && NP_UtilsGetU32BIT(&args[1], &value)) extension = static_cast<int32_t>(value);
    MwHandle list = MwProgrammeGetSIDescriptors(r->handle, tag, extension);
    SetObjectOrNull(result, list ? CollectionCreate(r->instance, list, kCollectionStrings) : nullptr);
    return true;
  }
};

}  // namespace

NPObject* ProgrammeCreate(NPP instance, MwHandle programme) {
  if (NPObject* shared = SharedObject<Programme>(programme)) return shared;
  return NewHandedOut<Programme>(instance, programme, kReleaseOnFailure);
}

MwHandle ProgrammeGetHandle(NPObject* object) { return HandleOf<Programme>(object); }

extern const CollectionItemKind kProgrammeItems = {ProgrammeCreate, true, nullptr, 0};
