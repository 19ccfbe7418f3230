#include "objects/collection.h"

#include <cstdlib>

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/collection.h"
#include "utils/convert.h"

namespace {

RecordList g_collections;

// Each kind's members, interned on the first collection of the kind.
MemberTable<CollectionRecord> g_members[kCollectionKindCount];
bool g_members_done[kCollectionKindCount];

const CollectionItemKind* ItemKind(uint32_t kind) {
  return kind < kCollectionKindCount ? g_collection_item_kinds[kind] : nullptr;
}

void InternMembers(uint32_t kind) {
  const CollectionItemKind* info = ItemKind(kind);
  if (!info || g_members_done[kind]) return;
  g_members[kind] = MemberTable<CollectionRecord>(info->members, info->member_count);
  g_members[kind].Intern();
  g_members_done[kind] = true;
}

// The kind's property or method named by `id`, or null.
const CollectionMember* FindMember(uint32_t kind, NPIdentifier id, bool method) {
  if (kind >= kCollectionKindCount || !g_members_done[kind]) return nullptr;
  FoundMember found = method ? g_members[kind].Method(id) : g_members[kind].Property(id);
  return MemberTable<CollectionRecord>::RowOf(found);
}

// The index a property identifier names: an integer identifier, or a string
// identifier whose text is all digits. False for anything else.
bool IndexOf(NPIdentifier id, uint32_t* index) {
  if (!NPN_IdentifierIsString(id)) {
    *index = static_cast<uint32_t>(NPN_IntFromIdentifier(id));
    return true;
  }
  NPUTF8* text = NPN_UTF8FromIdentifier(id);
  if (!text) return false;
  bool numeric = NP_UtilsStringIsNumeric(text) != 0;
  if (numeric) *index = static_cast<uint32_t>(strtol(text, nullptr, 10));
  NPN_MemFree(text);
  return numeric;
}

void Element(CollectionRecord* r, uint32_t index, NPVariant* result) {
  CollectionElementToResult(r->instance, r->kind, MwListGetItem(r->handle, index), result);
}

bool Item(CollectionRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t index;
  if (count != 1 || !NP_UtilsGetU32BIT(&args[0], &index)) return false;
  Element(r, index, result);
  return true;
}

const CollectionMember kMembers[] = {
    CollectionMember::Get("length", IntOf<CollectionRecord, MwListGetCount>),
    CollectionMember::Call("item", Item),
};

// After its own members, a collection answers its kind's members, then
// reads of an index.
struct Collection : HandedOutKind<Collection, CollectionRecord> {
  ORV_KIND(kMembers, g_collections)

  static bool HasMethod(NPObject* object, NPIdentifier id) {
    if (Members().Method(id).row) return true;
    CollectionRecord* r = Find(object);
    return r && FindMember(r->kind, id, true);
  }

  static bool HasProperty(NPObject* object, NPIdentifier id) {
    if (Members().Property(id).row) return true;
    CollectionRecord* r = Find(object);
    if (r && FindMember(r->kind, id, false)) return true;
    uint32_t index;
    return IndexOf(id, &index);
  }

  static bool Unknown(CollectionRecord* r, NPIdentifier id, Access access, const NPVariant* args,
                      uint32_t count, NPVariant* result) {
    if (access == Access::kSet) return false;
    const CollectionMember* m = FindMember(r->kind, id, access == Access::kCall);
    if (m) return access == Access::kCall ? m->call(r, args, count, result) : m->get(r, result);
    uint32_t index;
    if (access == Access::kCall || !IndexOf(id, &index)) return false;
    Element(r, index, result);
    return true;
  }
};

}  // namespace

NPObject* CollectionCreate(NPP instance, MwHandle list, uint32_t kind) {
  // The list is the collection's from here on, also when none can be made.
  CollectionRecord* r = NewRecord<Collection>(instance);
  if (!r) {
    if (list) MwObjectRelease(list);
    return nullptr;
  }
  InternMembers(kind);
  r->handle = list;
  r->kind = kind;
  g_collections.Add(r);
  return r->object;
}

void CollectionElementToResult(NPP instance, uint32_t kind, MwHandle element, NPVariant* result) {
  SetVoid(result);
  if (!element) return;
  if (kind == kCollectionStrings) {
    NP_UtilsHbbtvStringToResult(element, result);
    return;
  }
  // Media assets and search results are only counted: no element objects,
  // and their elements stay the middleware's.
  if (kind >= kCollectionMediaAssets) return;
  const CollectionItemKind* info = ItemKind(kind);
  ItemConstructor create = info ? info->create : nullptr;
  NPObject* object = create ? create(instance, element) : nullptr;
  // A constructor that could not make its record lets go of the element.
  if (!object && create && !info->create_takes_handle) MwObjectRelease(element);
  SetObjectOrNull(result, object);
}

