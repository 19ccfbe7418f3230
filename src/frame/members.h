// A kind's members, one row each: a property is its name with a getter
// and/or a setter, a method its name with a call. Two marker rows stand for
// what the frame answers from the kind's event table: the onXxx properties
// (in the table's order) and addEventListener/removeEventListener.
//
//   using Row = Member<ObjectRecord>;
//   const Row kMembers[] = {
//       Row::Get("value", Value),
//       Row::Get("maximumValue", MaximumValue),
//       Row::Call("setValue", SetValue),
//   };
//
// The rows' order is the order of the name tables: a name that stands twice
// is answered by its first row.
#ifndef ORVANE_FRAME_MEMBERS_H
#define ORVANE_FRAME_MEMBERS_H

#include <cstddef>
#include <cstdint>

#include "frame/listeners.h"
#include "npapi/npapi.h"

enum class RowKind : uint8_t { kMember, kEventSlots, kListenerMethods };

template <class R>
struct Member {
  using Getter = bool (*)(R* record, NPVariant* result);
  using Setter = bool (*)(R* record, const NPVariant* value);
  using Caller = bool (*)(R* record, const NPVariant* args, uint32_t count, NPVariant* result);

  const char* name;
  Getter get;
  Setter set;
  Caller call;
  RowKind kind;

  static constexpr Member Get(const char* name, Getter get, Setter set = nullptr) {
    return {name, get, set, nullptr, RowKind::kMember};
  }
  static constexpr Member Call(const char* name, Caller call) {
    return {name, nullptr, nullptr, call, RowKind::kMember};
  }
  // The kind's onXxx properties, one per event table entry, here.
  static constexpr Member EventSlots() { return {nullptr, nullptr, nullptr, nullptr, RowKind::kEventSlots}; }
  // addEventListener and removeEventListener, here.
  static constexpr Member ListenerMethods() {
    return {nullptr, nullptr, nullptr, nullptr, RowKind::kListenerMethods};
  }
};

// What a name found: its row, and for an onXxx property its slot in the
// event table, or for a listener method which one it is.
struct FoundMember {
  const void* row;  // null: no such name
  int16_t slot;     // the onXxx slot, or -1
  int8_t listener;  // 1 add, 2 remove, 0 neither
};

// What the index reads of a row.
struct RowInfo {
  const void* row;
  const char* name;
  RowKind kind;
  bool method;
};

// The interned names of a kind's rows (the frame's side; the rows stay
// typed in MemberTable below). A lookup hashes the identifier, so its cost
// does not grow with the kind's number of members; a name that stands twice
// finds its first row.
class MemberIndex {
 public:
  using Info = RowInfo (*)(const void* rows, size_t i);
  MemberIndex(const void* rows, size_t count, Info info, const EventTable* events)
      : rows_(rows), count_(count), info_(info), events_(events) {}
  // Builds the identifiers once.
  void Intern();
  FoundMember Property(NPIdentifier id) const { return properties_.Look(id); }
  FoundMember Method(NPIdentifier id) const { return methods_.Look(id); }

 private:
  struct Name {
    NPIdentifier id;
    FoundMember found;
  };
  // Names in row order, and their positions (+1) by the identifier's hash.
  struct NameSet {
    static constexpr size_t kMax = 48, kSlots = 128;
    Name names[kMax] = {};
    uint8_t slots[kSlots] = {};
    size_t count = 0;
    void Add(const char* name, FoundMember found);
    FoundMember Look(NPIdentifier id) const;
  };

  const void* rows_;
  size_t count_;
  Info info_;
  const EventTable* events_;
  NameSet properties_;
  NameSet methods_;
  bool done_ = false;
};

template <class R>
class MemberTable {
 public:
  template <size_t N>
  explicit MemberTable(const Member<R> (&rows)[N], const EventTable* events = nullptr)
      : index_(rows, N, &Info, events) {}
  MemberTable(const Member<R>* rows, size_t count) : index_(rows, count, &Info, nullptr) {}
  MemberTable() : index_(nullptr, 0, &Info, nullptr) {}
  void Intern() { index_.Intern(); }
  FoundMember Property(NPIdentifier id) const { return index_.Property(id); }
  FoundMember Method(NPIdentifier id) const { return index_.Method(id); }
  static const Member<R>* RowOf(const FoundMember& f) { return static_cast<const Member<R>*>(f.row); }

 private:
  static RowInfo Info(const void* rows, size_t i) {
    const Member<R>& m = static_cast<const Member<R>*>(rows)[i];
    return {&m, m.name, m.kind, m.call != nullptr};
  }
  MemberIndex index_;
};

// A kind's table from its rows.
#define ORV_MEMBER_ROWS(rows)                 \
  static MemberTable<Record>& Members() {     \
    static MemberTable<Record> table(rows);   \
    return table;                             \
  }
// A kind's rows and the list of its records.
#define ORV_KIND(rows, list)                  \
  ORV_MEMBER_ROWS(rows)                       \
  static auto& List() { return list; }
// The same for a kind with events, from its event table.
#define ORV_KIND_WITH_EVENTS(rows, events, list)            \
  static const EventTable& Events() { return events; }      \
  static MemberTable<Record>& Members() {                   \
    static MemberTable<Record> table(rows, &Events());      \
    return table;                                           \
  }                                                         \
  static RecordList& List() { return list; }

#endif
