#include "utils/listeners.h"

#include "plugin/browser.h"
#include "utils/convert.h"

namespace {

struct EventRecord {
  ObjectRecord** head;
  MwHandle handle;
  uint32_t event;
  NPVariant* arguments;
  uint32_t count;
};

void Deliver(void* data) {
  EventRecord* ev = static_cast<EventRecord*>(data);
  ObjectRecord* record = *ev->head;
  // Only the head of the list is tested: one object of each kind per page.
  if (record && record->handle == ev->handle) {
    Listener* calls = nullptr;  // oldest registration first
    for (Listener* l = record->listeners; l; l = l->next) {
      if (l->event != ev->event) continue;
      Listener* copy = static_cast<Listener*>(NPN_MemAlloc(sizeof(Listener)));
      if (!copy) continue;
      *copy = Listener{calls, l->object, l->event};
      NPN_RetainObject(copy->object);  // kept alive while listeners run
      calls = copy;
    }
    while (calls) {
      Listener* c = calls;
      calls = c->next;
      NPVariant ignored;
      SetVoid(&ignored);
      if (NPN_HasMethod(record->instance, c->object, g_id_handleEvent))
        NPN_Invoke(record->instance, c->object, g_id_handleEvent, ev->arguments, ev->count, &ignored);
      else
        NPN_InvokeDefault(record->instance, c->object, ev->arguments, ev->count, &ignored);
      NPN_ReleaseVariantValue(&ignored);
      NPN_ReleaseObject(c->object);
      NPN_MemFree(c);
    }
  }
  NP_UtilsFreeArguments(ev->arguments, ev->count);
  NPN_MemFree(ev);
}

}  // namespace

NPObject* NP_UtilsAddEventListener(ObjectRecord* record, const NPVariant* listener, uint32_t event) {
  if (!listener || listener->type != NPVariantType_Object || !listener->value.objectValue)
    return nullptr;
  Listener* l = static_cast<Listener*>(NPN_MemAlloc(sizeof(Listener)));
  if (!l) return nullptr;
  *l = Listener{record->listeners, listener->value.objectValue, event};
  NPN_RetainObject(l->object);
  record->listeners = l;
  return l->object;
}

int32_t NP_UtilsRemoveEventListener(ObjectRecord* record, NPObject* object) {
  for (Listener** link = &record->listeners; *link; link = &(*link)->next) {
    Listener* l = *link;
    if (l->object != object) continue;
    *link = l->next;
    int32_t event = static_cast<int32_t>(l->event);
    NPN_ReleaseObject(object);
    NPN_MemFree(l);
    return event;
  }
  return -1;
}

void NP_UtilsRemoveFirstArgumentListener(ObjectRecord* record, const NPVariant* args, uint32_t count) {
  if (count >= 1 && IsObject(args[0])) NP_UtilsRemoveEventListener(record, args[0].value.objectValue);
}

void NP_UtilsFreeAllEventListeners(ObjectRecord* record) {
  Listener* l = record->listeners;
  record->listeners = nullptr;
  while (l) {
    Listener* next = l->next;
    NPN_ReleaseObject(l->object);
    NPN_MemFree(l);
    l = next;
  }
}

void NP_UtilsFreeArguments(NPVariant* arguments, uint32_t count) {
  if (!arguments) return;
  for (uint32_t i = count; i-- > 0;) {
    NPVariant& v = arguments[i];
    if (v.type == NPVariantType_Object && v.value.objectValue) {
      NPN_ReleaseObject(v.value.objectValue);
    } else if (v.type == NPVariantType_String && v.value.stringValue.UTF8Characters) {
      NPN_MemFree(const_cast<NPUTF8*>(v.value.stringValue.UTF8Characters));
    }
  }
  NPN_MemFree(arguments);
}

NPVariant* NP_UtilsNewArguments(uint32_t count) {
  NPVariant* args = static_cast<NPVariant*>(NPN_MemAlloc(sizeof(NPVariant) * count));
  if (args)
    for (uint32_t i = 0; i < count; i++) SetVoid(&args[i]);
  return args;
}

void NP_UtilsAsyncCallback(ObjectRecord** head, MwHandle handle, uint32_t event,
                           NPVariant* arguments, uint32_t count) {
  ObjectRecord* record = *head ? FindByHandle(*head, handle) : nullptr;
  if (!record) {
    NP_UtilsFreeArguments(arguments, count);
    return;
  }
  EventRecord* ev = static_cast<EventRecord*>(NPN_MemAlloc(sizeof(EventRecord)));
  if (!ev) {
    NP_UtilsFreeArguments(arguments, count);
    return;
  }
  *ev = EventRecord{head, handle, event, arguments, count};
  NPN_PluginThreadAsyncCall(record->instance, Deliver, ev);
}

void NP_UtilsReplaceListener(ObjectRecord* record, NPObject** slot, const NPVariant* value,
                             uint32_t event) {
  if (*slot) NP_UtilsRemoveEventListener(record, *slot);
  *slot = NP_UtilsAddEventListener(record, value, event);
}

bool NP_UtilsListenerToResult(NPObject* slot, NPVariant* result) {
  if (!slot) return false;
  SetObject(result, NPN_RetainObject(slot));
  return true;
}
