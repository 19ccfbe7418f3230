#include "collection/collection.h"

#include <cstdlib>

#include "collection/collection_kinds.h"
#include "middleware/collection.h"
#include "plugin/record.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

CollectionRecord* g_collections = nullptr;

const char* const kNames[] = {
    "length",   "item",      "getChannel", "getChannelByTriplet", "addParentalRating",
    "addParentalRatingScheme", "getParentalRatingScheme", "getResults", "abort",
    "offset",   "totalSize",
};

CollectionRecord* Find(NPObject* object) { return FindByObject(g_collections, object); }

// The kind's extra property named by `id` (last entry first), or null.
const KindProperty* FindKindProperty(uint32_t kind, NPIdentifier id) {
  const CollectionKindInfo* info = CollectionKindOf(kind);
  if (!info) return nullptr;
  for (size_t i = info->property_count; i-- > 0;)
    if (CollectionNames()[info->properties[i].name] == id) return &info->properties[i];
  return nullptr;
}

const KindMethodEntry* FindKindMethod(uint32_t kind, NPIdentifier id) {
  const CollectionKindInfo* info = CollectionKindOf(kind);
  if (!info) return nullptr;
  for (size_t i = info->method_count; i-- > 0;)
    if (CollectionNames()[info->methods[i].name] == id) return &info->methods[i];
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

struct Collection : KindDefaults<Collection> {
  static void Deallocate(NPObject* object) {
    CollectionRecord* r = Find(object);
    if (!r) return;
    if (r->handle) MwObjectRelease(r->handle);
    Unlink(&g_collections, r);
    RecordFree(r);
  }

  static bool HasMethod(NPObject* object, NPIdentifier id) {
    if (id == CollectionNames()[kNameItem]) return true;
    CollectionRecord* r = Find(object);
    return r && FindKindMethod(r->kind, id);
  }

  static bool HasProperty(NPObject* object, NPIdentifier id) {
    if (id == CollectionNames()[kNameLength]) return true;
    CollectionRecord* r = Find(object);
    if (r && FindKindProperty(r->kind, id)) return true;
    uint32_t index;
    return IndexOf(id, &index);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    CollectionRecord* r = Find(object);
    if (!r) return false;
    if (id == CollectionNames()[kNameLength]) {
      SetInt(result, MwListGetCount(r->handle));
      return true;
    }
    if (const KindProperty* p = FindKindProperty(r->kind, id)) return p->get(r, result);
    uint32_t index;
    if (!IndexOf(id, &index)) return false;
    Element(r, index, result);
    return true;
  }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    CollectionRecord* r = Find(object);
    if (!r) return false;
    if (id == CollectionNames()[kNameItem]) {
      uint32_t index;
      if (count != 1 || !NP_UtilsGetU32BIT(&args[0], &index)) return false;
      Element(r, index, result);
      return true;
    }
    if (const KindMethodEntry* m = FindKindMethod(r->kind, id)) return m->call(r, args, count, result);
    return false;
  }
};

}  // namespace

NameTable& CollectionNames() {
  static NameTable t(kNames);
  return t;
}

NPObject* CollectionCreate(NPP instance, MwHandle list, uint32_t kind) {
  CollectionNames().Intern();
  // The list is the collection's from here on, also when none can be made.
  CollectionRecord* r = NewScriptRecord<CollectionRecord>(instance, ScriptClass<Collection>::Class());
  if (!r) {
    if (list) MwObjectRelease(list);
    return nullptr;
  }
  r->instance = instance;
  r->handle = list;
  r->kind = kind;
  PushFront(&g_collections, r);
  return r->object;
}
