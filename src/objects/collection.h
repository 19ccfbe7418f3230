// The one collection class behind every list-valued property and method.
#ifndef ORVANE_OBJECTS_COLLECTION_H
#define ORVANE_OBJECTS_COLLECTION_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

enum CollectionKind : uint32_t {
  kCollectionStrings = 0,
  kCollectionChannels = 1,
  kCollectionProgrammes = 2,
  kCollectionComponents = 3,
  kCollectionRatings = 4,
  kCollectionRatingSchemes = 5,
  kCollectionRecordings = 6,
  kCollectionNetworkInterfaces = 7,
  kCollectionMediaAssets = 8,
  kCollectionSearchResults = 9,
};

// A new collection owning `list` (not checked), or null. Takes over `list`
// in every case: on failure it is released here.
ORV_EXPORT NPObject* CollectionCreate(NPP instance, MwHandle list, uint32_t kind);

#endif
