#include "frame/members.h"

#include "npapi/browser.h"

void MemberIndex::AddName(Name* names, size_t* count, const char* name, FoundMember found) {
  if (*count == kMax) return;  // the kinds' tables are far shorter
  names[*count].id = NPN_GetStringIdentifier(name);
  names[*count].found = found;
  ++*count;
}

void MemberIndex::Intern() {
  if (done_) return;
  done_ = true;
  for (size_t i = 0; i < count_; i++) {
    RowInfo row = info_(rows_, i);
    FoundMember found = {row.row, -1, 0};
    switch (row.kind) {
      case RowKind::kMember:
        if (row.method) AddName(methods_, &method_count_, row.name, found);
        else AddName(properties_, &property_count_, row.name, found);
        break;
      case RowKind::kEventSlots:
        for (int slot = 0; events_ && slot < events_->count; slot++) {
          found.slot = static_cast<int16_t>(slot);
          AddName(properties_, &property_count_, events_->entries[slot].name, found);
        }
        break;
      case RowKind::kListenerMethods:
        found.listener = 1;
        AddName(methods_, &method_count_, "addEventListener", found);
        found.listener = 2;
        AddName(methods_, &method_count_, "removeEventListener", found);
        break;
    }
  }
}

FoundMember MemberIndex::Look(const Name* names, size_t count, NPIdentifier id) {
  for (size_t i = 0; i < count; i++)
    if (names[i].id == id) return names[i].found;
  return FoundMember{nullptr, -1, 0};
}
