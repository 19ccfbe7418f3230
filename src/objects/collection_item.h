// What an element kind brings to the collection: how `item` makes the
// kind's script object from an element handle, and the extra properties
// and methods of lists of that kind. The collection itself knows no element
// kind; the library wiring puts each kind's descriptor at its kind number.
#ifndef ORVANE_OBJECTS_COLLECTION_ITEM_H
#define ORVANE_OBJECTS_COLLECTION_ITEM_H

#include <cstddef>

#include "objects/collection.h"
#include "frame/members.h"
#include "frame/record.h"

// A collection's record: `handle` is its middleware list (owned), `kind`
// its collection kind.
struct CollectionRecord : ObjectRecord {};

// Wraps one middleware element handle into a script object.
using ItemConstructor = NPObject* (*)(NPP instance, MwHandle element);

// A list kind's own properties (no kind has setters) and methods.
using CollectionMember = Member<CollectionRecord>;

struct CollectionItemKind {
  ItemConstructor create;  // null: elements of this kind give Null
  // True when `create` takes over the handle even when it fails (it releases
  // it itself); otherwise a failed construction leaves the handle with the
  // collection, which releases it. A creator that shares an existing object
  // and leaves the handle with the caller joins through a variant that
  // takes the handle in every case.
  bool create_takes_handle;
  const CollectionMember* members;
  size_t member_count;
};
#define ORV_MEMBERS(table) table, sizeof(table) / sizeof(table[0])

constexpr uint32_t kCollectionKindCount = 10;
// Set by the library wiring: the descriptor of each collection kind, null
// for a kind whose elements have no objects (yet).
extern const CollectionItemKind* const g_collection_item_kinds[kCollectionKindCount];

// Wraps `element` (a handle of a kind-`kind` list, owned by the caller) as
// the kind's script object: Null when no object could be made (the handle is
// then released), undefined for kinds without element objects.
void CollectionElementToResult(NPP instance, uint32_t kind, MwHandle element, NPVariant* result);

#endif
