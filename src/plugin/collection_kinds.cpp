// The element kinds of the collection, by collection kind number. A kind
// whose elements get objects joins with one line here.
#include "objects/collection_item.h"

extern const CollectionItemKind kChannelItems;
extern const CollectionItemKind kProgrammeItems;
extern const CollectionItemKind kComponentItems;
extern const CollectionItemKind kRatingItems;
extern const CollectionItemKind kRatingSchemeItems;
extern const CollectionItemKind kRecordingItems;
extern const CollectionItemKind kNetworkInterfaceItems;
extern const CollectionItemKind kSearchResultItems;

const CollectionItemKind* const g_collection_item_kinds[kCollectionKindCount] = {
    nullptr,              // 0 strings (converted)
    &kChannelItems,       // 1
    &kProgrammeItems,     // 2
    &kComponentItems,     // 3
    &kRatingItems,        // 4
    &kRatingSchemeItems,  // 5
    &kRecordingItems,     // 6
    &kNetworkInterfaceItems,  // 7
    nullptr,              // 8 media assets (counted only)
    &kSearchResultItems,  // 9 search results (counted only)
};
