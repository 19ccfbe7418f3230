#include "frame/listeners.h"

#include <cstring>

#include "npapi/browser.h"
#include "utils/convert.h"

namespace {

// An object whose instance went receives no events: it takes no listeners
// either (one could hold the object itself, a cycle nothing would break).
Listener* Add(ObjectRecord* record, const NPVariant* listener, uint32_t event, int32_t slot) {
  if (!listener || listener->type != NPVariantType_Object || !listener->value.objectValue ||
      record->orphaned)
    return nullptr;
  Listener* l = static_cast<Listener*>(NPN_MemAlloc(sizeof(Listener)));
  if (!l) return nullptr;
  *l = Listener{record->listeners, listener->value.objectValue, event, slot};
  NPN_RetainObject(l->object);
  record->listeners = l;
  return l;
}

void Free(Listener* l) {
  NPN_ReleaseObject(l->object);
  NPN_MemFree(l);
}

}  // namespace

NPObject* NP_UtilsAddEventListener(ObjectRecord* record, const NPVariant* listener, uint32_t event) {
  Listener* l = Add(record, listener, event, -1);
  return l ? l->object : nullptr;
}

int32_t NP_UtilsRemoveEventListener(ObjectRecord* record, NPObject* object) {
  for (Listener** link = &record->listeners; *link; link = &(*link)->next) {
    Listener* l = *link;
    if (l->object != object || l->event == kSlotEntry) continue;
    *link = l->next;
    int32_t event = static_cast<int32_t>(l->event);
    Free(l);
    return event;
  }
  return -1;
}

bool RemoveEventRegistration(ObjectRecord* record, NPObject* object, uint32_t event) {
  for (Listener** link = &record->listeners; *link; link = &(*link)->next) {
    Listener* l = *link;
    if (l->object != object || l->event != event) continue;
    *link = l->next;
    Free(l);
    return true;
  }
  return false;
}

void NP_UtilsRemoveFirstArgumentListener(ObjectRecord* record, const NPVariant* args, uint32_t count) {
  if (count >= 1 && IsObject(args[0])) NP_UtilsRemoveEventListener(record, args[0].value.objectValue);
}

void NP_UtilsFreeAllEventListeners(ObjectRecord* record) {
  Listener* l = record->listeners;
  record->listeners = nullptr;
  while (l) {
    Listener* next = l->next;
    Free(l);
    l = next;
  }
}

namespace {

Listener** SlotLink(ObjectRecord* record, int slot) {
  Listener** link = &record->listeners;
  while (*link && !((*link)->event == kSlotEntry && (*link)->slot == slot)) link = &(*link)->next;
  return link;
}

}  // namespace

NPObject* SlotListener(const ObjectRecord* record, int slot) {
  Listener* l = *SlotLink(const_cast<ObjectRecord*>(record), slot);
  return l ? l->object : nullptr;
}

bool ReadListenerSlot(const ObjectRecord* record, int slot, NPVariant* result) {
  NPObject* object = SlotListener(record, slot);
  if (!object) return false;
  SetObject(result, NPN_RetainObject(object));
  return true;
}

void WriteListenerSlot(ObjectRecord* record, const EventTable& table, int slot, const NPVariant* value) {
  Listener** link = SlotLink(record, slot);
  if (Listener* old = *link) {
    // The newest registration of that object goes, as removeEventListener
    // would take it: possibly one made for another event.
    *link = old->next;
    NP_UtilsRemoveEventListener(record, old->object);
    Free(old);
  }
  NPObject* added = NP_UtilsAddEventListener(record, value, table.entries[slot].event);
  if (added && !Add(record, value, kSlotEntry, slot)) NP_UtilsRemoveEventListener(record, added);
}

void AddListenerByType(ObjectRecord* record, const EventTable& table, const MwString& type,
                       const NPVariant* listener) {
  for (int i = 0; i < table.count; i++) {
    if (strncmp(type.data, table.entries[i].name + 2, type.length) == 0) {
      NP_UtilsAddEventListener(record, listener, table.entries[i].event);
      return;
    }
  }
}

bool ListenerMethod(ObjectRecord* record, const EventTable& table, bool add, const NPVariant* args,
                    uint32_t count) {
  static const NPVariant kVoid = {NPVariantType_Void, {}};
  if (!add) {
    NP_UtilsRemoveFirstArgumentListener(record, args, count);
    return true;
  }
  const NPVariant* listener = count >= 2 ? &args[1] : &kVoid;
  if (count >= 1 && IsString(args[0])) {
    // The strict rule wants the listener argument too.
    if (table.type_rule != TypeRule::kIgnore || count >= 2)
      AddListenerByType(record, table, ArgString(args[0]), listener);
  } else if (table.type_rule == TypeRule::kEmpty) {
    AddListenerByType(record, table, MwString{0, ""}, listener);
  } else {
    return table.type_rule != TypeRule::kFail;
  }
  return true;
}

bool ReadListenerProperty(const ObjectRecord* record, const EventTable& table, int slot, NPVariant* result) {
  SlotRead read = table.entries[slot].read;
  if (read == SlotRead::kNever) return false;
  if (read == SlotRead::kByTable && table.empty_read == EmptyRead::kNull) SetNull(result);
  return ReadListenerSlot(record, slot, result);
}
