// The page's event listeners of a script object: registrations made with
// addEventListener and through the onXxx properties, on one list per record,
// newest first. An onXxx property also keeps the object last set through it
// in a slot entry on the same list: the slot holds a reference of its own and
// is called for no event, so it reads back what the page set, whatever path
// removed the registration since, and never names freed memory.
#ifndef ORVANE_FRAME_LISTENERS_H
#define ORVANE_FRAME_LISTENERS_H

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/npapi.h"

struct Listener {
  Listener* next;
  NPObject* object;  // retained while listed
  uint32_t event;    // kSlotEntry for a slot
  int32_t slot;      // the onXxx property of a slot entry; -1 for a registration
};
constexpr uint32_t kSlotEntry = 0xffffffffu;

// Adds an Object-valued listener for `event`; returns the object, or null
// (nothing added) for any other value or when memory is short.
NPObject* NP_UtilsAddEventListener(ObjectRecord* record, const NPVariant* listener, uint32_t event);
// Removes the newest registration of `object`; its event id, or -1.
int32_t NP_UtilsRemoveEventListener(ObjectRecord* record, NPObject* object);
// Removes the newest registration of `object` for `event`; true when one went.
bool RemoveEventRegistration(ObjectRecord* record, NPObject* object, uint32_t event);
void NP_UtilsFreeAllEventListeners(ObjectRecord* record);
// removeEventListener(type, listener) as the kinds answer it: it removes the
// registration whose object is the FIRST argument, so in the usual call form
// (a type string first) it removes nothing. Intended; pages rely on it.
void NP_UtilsRemoveFirstArgumentListener(ObjectRecord* record, const NPVariant* args, uint32_t count);

// How one onXxx property reads: by its table's rule for an empty slot, as
// a failed read with no value when empty whatever the rule, or as a failed
// read always (set or not).
enum class SlotRead : uint8_t { kByTable, kNoNull, kNever };
// A kind's events as its onXxx properties name them ("onLowMemory"); the
// event type of addEventListener is the name without "on". A property's
// slot is its index in the kind's table.
struct EventProperty {
  const char* name;
  uint32_t event;
  SlotRead read = SlotRead::kByTable;
};
// What addEventListener does with a type that is missing or no String.
enum class TypeRule : uint8_t {
  kIgnore,       // nothing is added; the call succeeds
  kEmpty,        // it counts as the empty type (the first event)
  kFail,         // the call fails
};
// What an empty onXxx property reads: a failed read with no value, or
// with Null.
enum class EmptyRead : uint8_t { kNoValue, kNull };
struct EventTable {
  const EventProperty* entries;
  int count;
  TypeRule type_rule;
  EmptyRead empty_read;
};
#define ORV_EVENT_TABLE(entries, ...) \
  EventTable{entries, static_cast<int>(sizeof(entries) / sizeof(entries[0])), __VA_ARGS__}

// addEventListener(type, listener) (`add`) and removeEventListener(listener,
// ...) as every kind answers them; the call's result. The type is compared
// as AddListenerByType does, after the table's rule for a type that is no
// String; removal looks at the first argument
// (NP_UtilsRemoveFirstArgumentListener).
bool ListenerMethod(ObjectRecord* record, const EventTable& table, bool add, const NPVariant* args,
                    uint32_t count);
// The onXxx read of slot `slot` by the table's rule for an empty slot.
bool ReadListenerProperty(const ObjectRecord* record, const EventTable& table, int slot, NPVariant* result);

// The object last set through slot `slot`, or null.
NPObject* SlotListener(const ObjectRecord* record, int slot);
// The onXxx read: that object, retained, as an Object; false (and no
// value) when the slot is empty.
bool ReadListenerSlot(const ObjectRecord* record, int slot, NPVariant* result);
// The onXxx write: the newest registration of the slot's object goes (by
// pointer, whatever event it is for), then `value` is added for the slot's
// event and the slot keeps it (an object; anything else empties the slot).
void WriteListenerSlot(ObjectRecord* record, const EventTable& table, int slot, const NPVariant* value);
// addEventListener: `type` is compared for its own length with each event
// type in table order, so a prefix (even the empty one) selects the first
// event it begins: a lenient match kept as pages know it.
void AddListenerByType(ObjectRecord* record, const EventTable& table, const MwString& type,
                       const NPVariant* listener);

#endif
