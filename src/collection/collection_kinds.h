// Inside the collection class: its record, its names, and the per-kind table
// of element constructors, extra properties and extra methods.
#ifndef ORVANE_COLLECTION_COLLECTION_KINDS_H
#define ORVANE_COLLECTION_COLLECTION_KINDS_H

#include <cstddef>

#include "collection/collection.h"
#include "plugin/frame.h"

struct CollectionRecord {
  CollectionRecord* next;
  NPP instance;      // passed on to the element constructors
  NPObject* object;  // the collection's script object
  MwHandle handle;   // the middleware list; owned
  uint32_t kind;     // CollectionKind
};

// The collection's identifiers, in this order.
enum CollectionName {
  kNameLength,
  kNameItem,
  kNameGetChannel,
  kNameGetChannelByTriplet,
  kNameAddParentalRating,
  kNameAddParentalRatingScheme,
  kNameGetParentalRatingScheme,
  kNameGetResults,
  kNameAbort,
  kNameOffset,
  kNameTotalSize,
};
NameTable& CollectionNames();

// Wraps one middleware element handle into a script object.
using ItemConstructor = NPObject* (*)(NPP instance, MwHandle element);
using KindGetter = bool (*)(CollectionRecord* record, NPVariant* result);
using KindMethod = bool (*)(CollectionRecord* record, const NPVariant* args, uint32_t count,
                            NPVariant* result);

struct KindProperty {
  CollectionName name;
  KindGetter get;  // Int32 results; no kind has setters
};
struct KindMethodEntry {
  CollectionName name;
  KindMethod call;
};

struct CollectionKindInfo {
  ItemConstructor create;  // null: elements of this kind give Null
  // True when `create` takes over the handle even when it fails (it releases
  // it itself); otherwise a failed construction leaves the handle with the
  // collection, which releases it.
  bool create_takes_handle;
  const KindProperty* properties;
  size_t property_count;
  const KindMethodEntry* methods;
  size_t method_count;
};

constexpr uint32_t kCollectionKindCount = 10;
// The descriptor of a kind, or null for a number outside 0..9.
const CollectionKindInfo* CollectionKindOf(uint32_t kind);

// Wraps `element` (a handle of a kind-`kind` list, owned by the caller) as
// the kind's script object: Null when no object could be made (the handle is
// then released), undefined for kinds without element objects.
void CollectionElementToResult(NPP instance, uint32_t kind, MwHandle element, NPVariant* result);

// The extra methods, by kind.
bool CollectionGetChannel(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionGetChannelByTriplet(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionAddParentalRating(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionAddParentalRatingScheme(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionGetParentalRatingScheme(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionGetResults(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionAbort(CollectionRecord*, const NPVariant*, uint32_t, NPVariant*);
bool CollectionOffset(CollectionRecord*, NPVariant*);
bool CollectionTotalSize(CollectionRecord*, NPVariant*);

#endif
