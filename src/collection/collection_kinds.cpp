// The collection kinds: what `item` makes of an element, and the extra
// properties and methods of each kind.
//
// An element kind joins by filling its slot in kKinds below with its
// creator (and including its header), e.g. for programmes:
//   /* 2 programmes */ {ProgrammeCreateTakingHandle, true, nullptr, 0, nullptr, 0},
// The second member says whether the creator takes over the handle even
// when it fails (ChannelCreate does); the collection releases it otherwise.
// The flag cannot express a creator that shares an existing object and
// leaves the handle with the caller (ProgrammeCreate): such a kind joins
// through a variant that takes the handle in every case.
// Until a slot is filled, elements of that kind read as Null (the element
// handle is released). The rating-scheme slot (kind 5) also serves the
// results of addParentalRatingScheme and getParentalRatingScheme.
#include "collection/collection_kinds.h"

#include "broadcast/av_component.h"
#include "broadcast/channel.h"
#include "broadcast/programme.h"
#include "middleware/types.h"
#include "parental/parental_rating.h"
#include "plugin/browser.h"
#include "recording/scheduled_recording.h"
#include "utils/convert.h"

namespace {

const KindMethodEntry kChannelMethods[] = {
    {kNameGetChannel, CollectionGetChannel},
    {kNameGetChannelByTriplet, CollectionGetChannelByTriplet},
};
const KindMethodEntry kRatingMethods[] = {
    {kNameAddParentalRating, CollectionAddParentalRating},
};
const KindMethodEntry kSchemeMethods[] = {
    {kNameAddParentalRatingScheme, CollectionAddParentalRatingScheme},
    {kNameGetParentalRatingScheme, CollectionGetParentalRatingScheme},
};
const KindMethodEntry kSearchMethods[] = {
    {kNameGetResults, CollectionGetResults},
    {kNameAbort, CollectionAbort},
};
const KindProperty kSearchProperties[] = {
    {kNameOffset, CollectionOffset},
    {kNameTotalSize, CollectionTotalSize},
};

#define ORV_ENTRIES(table) table, sizeof(table) / sizeof(table[0])

const CollectionKindInfo kKinds[kCollectionKindCount] = {
    /* 0 strings (converted) */ {nullptr, false, nullptr, 0, nullptr, 0},
    /* 1 channels */ {ChannelCreate, true, nullptr, 0, ORV_ENTRIES(kChannelMethods)},
    /* 2 programmes */ {ProgrammeCreateTakingHandle, true, nullptr, 0, nullptr, 0},
    /* 3 AV components */ {AVComponentCreate, false, nullptr, 0, nullptr, 0},
    /* 4 parental ratings */ {ParentalRatingCreate, false, nullptr, 0, ORV_ENTRIES(kRatingMethods)},
    /* 5 rating schemes */ {nullptr, false, nullptr, 0, ORV_ENTRIES(kSchemeMethods)},
    /* 6 scheduled recordings */ {ScheduledRecordingCreate, true, nullptr, 0, nullptr, 0},
    /* 7 network interfaces */ {nullptr, false, nullptr, 0, nullptr, 0},
    /* 8 media assets (counted only) */ {nullptr, false, nullptr, 0, nullptr, 0},
    /* 9 search results */
    {nullptr, false, ORV_ENTRIES(kSearchProperties), ORV_ENTRIES(kSearchMethods)},
};

#undef ORV_ENTRIES

}  // namespace

const CollectionKindInfo* CollectionKindOf(uint32_t kind) {
  return kind < kCollectionKindCount ? &kKinds[kind] : nullptr;
}

void CollectionElementToResult(NPP instance, uint32_t kind, MwHandle element, NPVariant* result) {
  SetVoid(result);
  if (!element) return;
  if (kind == kCollectionStrings) {
    NP_UtilsHbbtvStringToResult(element, result);
    return;
  }
  // Media assets and search results are only counted: no element objects.
  if (kind >= kCollectionMediaAssets) {
    MwObjectRelease(element);
    return;
  }
  const CollectionKindInfo* info = CollectionKindOf(kind);
  NPObject* object = info->create ? info->create(instance, element) : nullptr;
  if (!object && !(info->create && info->create_takes_handle)) MwObjectRelease(element);
  SetObjectOrNull(result, object);
}
