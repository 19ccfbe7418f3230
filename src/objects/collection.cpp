#include "objects/collection.h"

#include <cstdlib>

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/collection.h"
#include "utils/convert.h"

namespace {

RecordList g_collections;

enum Name { kLength, kItem };
const char* const kNames[] = {"length", "item"};

constexpr size_t kMaxMembers = 4;
// The identifiers of each kind's members, interned on the first collection
// of the kind.
struct MemberIds {
  bool done;
  NPIdentifier ids[kMaxMembers];
};
MemberIds g_member_ids[kCollectionKindCount];

const CollectionItemKind* ItemKind(uint32_t kind) {
  return kind < kCollectionKindCount ? g_collection_item_kinds[kind] : nullptr;
}

void InternMembers(uint32_t kind) {
  const CollectionItemKind* info = ItemKind(kind);
  if (!info || g_member_ids[kind].done) return;
  for (size_t i = 0; i < info->member_count && i < kMaxMembers; i++)
    g_member_ids[kind].ids[i] = NPN_GetStringIdentifier(info->members[i].name);
  g_member_ids[kind].done = true;
}

// The kind's member named by `id`, or null.
const CollectionMember* FindMember(uint32_t kind, NPIdentifier id) {
  const CollectionItemKind* info = ItemKind(kind);
  if (!info || !g_member_ids[kind].done) return nullptr;
  for (size_t i = 0; i < info->member_count && i < kMaxMembers; i++)
    if (g_member_ids[kind].ids[i] == id) return &info->members[i];
  return nullptr;
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

struct Collection : HandedOutKind<Collection, CollectionRecord> {
  ORV_PROPERTY_TABLE(kNames)
  static RecordList& List() { return g_collections; }

  static bool HasMethod(NPObject* object, NPIdentifier id) {
    if (id == Properties()[kItem]) return true;
    CollectionRecord* r = Find(object);
    const CollectionMember* m = r ? FindMember(r->kind, id) : nullptr;
    return m && m->call;
  }

  static bool HasProperty(NPObject* object, NPIdentifier id) {
    if (id == Properties()[kLength]) return true;
    CollectionRecord* r = Find(object);
    const CollectionMember* m = r ? FindMember(r->kind, id) : nullptr;
    if (m && m->get) return true;
    uint32_t index;
    return IndexOf(id, &index);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    CollectionRecord* r = Find(object);
    if (!r) return false;
    if (id == Properties()[kLength]) {
      SetInt(result, MwListGetCount(r->handle));
      return true;
    }
    const CollectionMember* m = FindMember(r->kind, id);
    if (m && m->get) return m->get(r, result);
    uint32_t index;
    if (!IndexOf(id, &index)) return false;
    Element(r, index, result);
    return true;
  }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    CollectionRecord* r = Find(object);
    if (!r) return false;
    if (id == Properties()[kItem]) {
      uint32_t index;
      if (count != 1 || !NP_UtilsGetU32BIT(&args[0], &index)) return false;
      Element(r, index, result);
      return true;
    }
    const CollectionMember* m = FindMember(r->kind, id);
    return m && m->call && m->call(r, args, count, result);
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

MwString CollectionStringArg(const NPVariant& v) {
  return IsString(v) ? ArgString(v) : MwString{0, ""};
}
