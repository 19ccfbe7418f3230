#include "frame/members.h"

#include <cstdint>

#include "npapi/browser.h"

namespace {

size_t SlotOf(NPIdentifier id, size_t slots) {
  uintptr_t p = reinterpret_cast<uintptr_t>(id);
  return static_cast<size_t>((p >> 4) ^ (p >> 11)) & (slots - 1);
}

}  // namespace

void MemberIndex::NameSet::Add(const char* name, FoundMember found) {
  if (count == kMax) return;  // the kinds' tables are far shorter
  NPIdentifier id = NPN_GetStringIdentifier(name);
  names[count] = Name{id, found};
  count++;
  for (size_t i = SlotOf(id, kSlots);; i = (i + 1) & (kSlots - 1)) {
    if (!slots[i]) {
      slots[i] = static_cast<uint8_t>(count);
      return;
    }
    if (names[slots[i] - 1].id == id) return;  // the first row keeps the name
  }
}

FoundMember MemberIndex::NameSet::Look(NPIdentifier id) const {
  if (id)
    for (size_t i = SlotOf(id, kSlots); slots[i]; i = (i + 1) & (kSlots - 1))
      if (names[slots[i] - 1].id == id) return names[slots[i] - 1].found;
  return FoundMember{nullptr, -1, 0};
}

void MemberIndex::Intern() {
  if (done_) return;
  done_ = true;
  for (size_t i = 0; i < count_; i++) {
    RowInfo row = info_(rows_, i);
    FoundMember found = {row.row, -1, 0};
    switch (row.kind) {
      case RowKind::kMember:
        (row.method ? methods_ : properties_).Add(row.name, found);
        break;
      case RowKind::kEventSlots:
        for (int slot = 0; events_ && slot < events_->count; slot++) {
          found.slot = static_cast<int16_t>(slot);
          properties_.Add(events_->entries[slot].name, found);
        }
        break;
      case RowKind::kListenerMethods:
        found.listener = 1;
        methods_.Add("addEventListener", found);
        found.listener = 2;
        methods_.Add("removeEventListener", found);
        break;
    }
  }
}
