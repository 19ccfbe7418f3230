// The script-object frame: every object the page sees is a script object of
// one NPClass per kind, with its state in a record of the kind's list. A
// kind states its member rows, its record, its list and, when it has them,
// its events and its precondition; the NPClass plumbing, interning,
// listeners and the record life cycle are written here.
//
//   struct Keyset : HandedOutKind<Keyset> {
//     ORV_KIND(kMembers, g_keysets)  // its member rows and record list
//   };
//   NPObject* object = NewHandedOut<Keyset>(instance, handle, kReleaseOnFailure);
//
// The script object carries a pointer to its record, so that an operation
// finds it at once; the pointer is cleared when the record goes first.
//
// Defaults: hasMethod/hasProperty look the identifier up in the rows;
// invoke, getProperty and setProperty run the row's call, getter or setter
// (and fail for a name without one); invokeDefault, removeProperty,
// enumerate and construct answer kStubResult (true) and leave the browser
// nothing undefined (a Void result, no names). A getProperty or invoke that
// reports failure hands the browser no reference: a String or Object it
// built is released.
#ifndef ORVANE_FRAME_FRAME_H
#define ORVANE_FRAME_FRAME_H

#include <cstddef>
#include <cstring>
#include <type_traits>

#include "frame/listeners.h"
#include "frame/getters.h"
#include "frame/members.h"
#include "frame/record.h"
#include "npapi/browser.h"
#include "npapi/npapi.h"
#include "utils/record_alloc.h"

// The script object: the NPObject header and the record behind it.
struct ScriptObject {
  NPObject header;
  void* record;  // null once the record went
};

inline void BindRecord(NPObject* object, void* record) {
  if (object) reinterpret_cast<ScriptObject*>(object)->record = record;
}

// Frees a record that is off its list: its object no longer finds it, and
// a delivery running on it frees it when it ends.
void FrameFreeRecord(ObjectRecord* record);

// Keeps a record allocated while a call into the browser may destroy its
// object or instance (a listener's call; reading the element's layout, which
// may take the plug-in away): a destroy meanwhile only marks it gone, and
// the hold's end frees it.
class RecordHold {
 public:
  explicit RecordHold(ObjectRecord* r) : r_(r) { r_->deliveries++; }
  ~RecordHold() {
    if (--r_->deliveries == 0 && r_->gone) FrameFreeRecord(r_);
  }
  RecordHold(const RecordHold&) = delete;
  RecordHold& operator=(const RecordHold&) = delete;

 private:
  ObjectRecord* r_;
};

// Whether records of type R are full records (instance, listeners, list
// order) rather than shared ones.
template <class R>
constexpr bool kFullRecord = std::is_base_of<ObjectRecord, R>::value;

template <class K>
class ScriptClass {
 public:
  static NPClass* Class() { return &klass_; }
  static bool Is(const NPObject* o) { return o && o->_class == &klass_; }
  // The record of one of this class's objects; null for any other object
  // and for an object whose record is gone.
  static typename K::Record* RecordOf(const NPObject* o) {
    if (!Is(o)) return nullptr;
    return static_cast<typename K::Record*>(reinterpret_cast<const ScriptObject*>(o)->record);
  }

 private:
  static NPObject* Allocate(NPP, NPClass*) {
    void* o = NPN_MemAlloc(sizeof(ScriptObject));
    if (o) memset(o, 0, sizeof(ScriptObject));
    return static_cast<NPObject*>(o);
  }
  static void Deallocate(NPObject* o) {
    K::Deallocate(o);
    NPN_MemFree(o);
  }
  static void Invalidate(NPObject*) {}
  static bool HasMethod(NPObject* o, NPIdentifier id) { return K::HasMethod(o, id); }
  static bool Invoke(NPObject* o, NPIdentifier id, const NPVariant* args, uint32_t n, NPVariant* r) {
    NPVariant value;
    SetVoid(&value);
    return Hand(K::Invoke(o, id, args, n, &value), &value, r);
  }
  static bool InvokeDefault(NPObject*, const NPVariant*, uint32_t, NPVariant* r) {
    if (K::kStubResult && r) SetVoid(r);
    return K::kStubResult;
  }
  static bool HasProperty(NPObject* o, NPIdentifier id) { return K::HasProperty(o, id); }
  static bool GetProperty(NPObject* o, NPIdentifier id, NPVariant* r) {
    NPVariant value;
    SetVoid(&value);
    return Hand(K::GetProperty(o, id, &value), &value, r);
  }
  static bool SetProperty(NPObject* o, NPIdentifier id, const NPVariant* v) { return K::SetProperty(o, id, v); }
  static bool RemoveProperty(NPObject*, NPIdentifier) { return K::kStubResult; }
  static bool Enumerate(NPObject*, NPIdentifier** names, uint32_t* count) {
    if (K::kStubResult) {
      if (names) *names = nullptr;
      if (count) *count = 0;
    }
    return K::kStubResult;
  }
  static bool Construct(NPObject* o, const NPVariant* args, uint32_t n, NPVariant* r) {
    return InvokeDefault(o, args, n, r);
  }
  // The browser takes no reference from a failed call: a String or Object
  // built for one is let go, and the result stays as it was.
  static bool Hand(bool ok, NPVariant* value, NPVariant* result) {
    bool reference = value->type == NPVariantType_String || value->type == NPVariantType_Object;
    if (result && (ok || !reference)) *result = *value;
    else if (reference) NPN_ReleaseVariantValue(value);
    return ok;
  }

  static NPClass klass_;
};

template <class K>
NPClass ScriptClass<K>::klass_ = {
    NP_CLASS_STRUCT_VERSION, &ScriptClass<K>::Allocate, &ScriptClass<K>::Deallocate,
    &ScriptClass<K>::Invalidate, &ScriptClass<K>::HasMethod, &ScriptClass<K>::Invoke,
    &ScriptClass<K>::InvokeDefault, &ScriptClass<K>::HasProperty, &ScriptClass<K>::GetProperty,
    &ScriptClass<K>::SetProperty, &ScriptClass<K>::RemoveProperty, &ScriptClass<K>::Enumerate,
    &ScriptClass<K>::Construct};

// Which access a kind's precondition is asked about, and its answer: go
// on to the member, or answer the call at once with false or true.
enum class Access : uint8_t { kGet, kSet, kCall };
enum class Gate : uint8_t { kGo, kFail, kSucceed };

// What a kind has unless it says otherwise. R is the kind's record.
// Properties and methods come from the kind's member rows: the kind's
// precondition (`Check`: a record is needed) is asked first, then the name
// is looked up; an unknown name (or a property without that accessor) is
// `Unknown`'s to answer (false): it gets the call's arguments (a write's
// value as one argument) and result.
template <class K, class R = ObjectRecord>
struct KindDefaults {
  using Record = R;
  static constexpr bool kStubResult = true;
  static MemberTable<R>& Members() { static MemberTable<R> none; return none; }
  static const EventTable& Events() {
    static const EventTable none = {nullptr, 0, TypeRule::kIgnore, EmptyRead::kNoValue};
    return none;
  }
  static R* Find(const NPObject* o) { return ScriptClass<K>::RecordOf(o); }
  static Gate Check(const R* r, Access) { return r ? Gate::kGo : Gate::kFail; }
  static bool Unknown(R*, NPIdentifier, Access, const NPVariant*, uint32_t, NPVariant*) { return false; }
  static bool HasMethod(NPObject*, NPIdentifier id) {
    return K::Members().Method(id).row != nullptr;
  }
  static bool HasProperty(NPObject*, NPIdentifier id) {
    return K::Members().Property(id).row != nullptr;
  }
  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    R* r = K::Find(object);
    Gate gate = K::Check(r, Access::kGet);
    if (gate != Gate::kGo) return gate == Gate::kSucceed;
    FoundMember found = K::Members().Property(id);
    if constexpr (kFullRecord<R>)
      if (found.slot >= 0) return ReadListenerProperty(r, K::Events(), found.slot, result);
    const Member<R>* m = MemberTable<R>::RowOf(found);
    return m && m->get ? m->get(r, result) : K::Unknown(r, id, Access::kGet, nullptr, 0, result);
  }
  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    R* r = K::Find(object);
    Gate gate = K::Check(r, Access::kSet);
    if (gate != Gate::kGo) return gate == Gate::kSucceed;
    FoundMember found = K::Members().Property(id);
    if constexpr (kFullRecord<R>) {
      if (found.slot >= 0) {
        WriteListenerSlot(r, K::Events(), found.slot, value);
        return true;
      }
    }
    const Member<R>* m = MemberTable<R>::RowOf(found);
    return m && m->set ? m->set(r, value) : K::Unknown(r, id, Access::kSet, value, 1, nullptr);
  }
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    R* r = K::Find(object);
    Gate gate = K::Check(r, Access::kCall);
    if (gate != Gate::kGo) return gate == Gate::kSucceed;
    FoundMember found = K::Members().Method(id);
    if constexpr (kFullRecord<R>)
      if (found.listener) return ListenerMethod(r, K::Events(), found.listener == 1, args, count);
    const Member<R>* m = MemberTable<R>::RowOf(found);
    return m && m->call ? m->call(r, args, count, result) : K::Unknown(r, id, Access::kCall, args, count, result);
  }
  static void Deallocate(NPObject*) {}
};

// A precondition of kinds whose members all need the middleware object.
template <class R>
Gate NeedHandle(const R* r) {
  return r && r->handle ? Gate::kGo : Gate::kFail;
}

// A zeroed record of kind K (with `extra` bytes after it) and its new
// script object, on no list; null, with nothing left, when either cannot be
// had. The kind's names are interned on its first creation.
template <class K>
typename K::Record* NewRecord(NPP instance, size_t extra = 0) {
  using R = typename K::Record;
  K::Members().Intern();
  R* r = static_cast<R*>(RecordAlloc(sizeof(R) + extra));
  if (!r) return nullptr;
  *r = R();
  r->object = NPN_CreateObject(instance, ScriptClass<K>::Class());
  if (!r->object) {
    RecordFree(r);
    return nullptr;
  }
  BindRecord(r->object, r);
  if constexpr (kFullRecord<R>) r->instance = instance;
  return r;
}

// ---- objects handed out by other objects -------------------------------------
// Their record belongs to the script object: it goes, with its handle, when
// the browser deallocates the object.

// Who holds the handle when no object can be made.
enum HandleOnFailure { kReleaseOnFailure, kLeaveOnFailure };

template <class K, class R = ObjectRecord>
struct HandedOutKind : KindDefaults<K, R> {
  // How the record lets go of its handle; a kind may hand it on instead.
  static void ReleaseHandle(MwHandle handle) { MwObjectRelease(handle); }
  static void Deallocate(NPObject* object) {
    R* r = ScriptClass<K>::RecordOf(object);
    if (!r) return;
    if (r->handle) K::ReleaseHandle(r->handle);
    K::List().Remove(r);
    if constexpr (kFullRecord<R>) {
      NP_UtilsFreeAllEventListeners(r);
      r->object = nullptr;
      FrameFreeRecord(r);
    } else {
      BindRecord(object, nullptr);
      RecordFree(r);
    }
  }
};

// A new object of kind K whose record takes over `handle`; null on failure.
template <class K>
NPObject* NewHandedOut(NPP instance, MwHandle handle, HandleOnFailure failure) {
  typename K::Record* r = NewRecord<K>(instance);
  if (!r) {
    if (failure == kReleaseOnFailure && handle) MwObjectRelease(handle);
    return nullptr;
  }
  r->handle = handle;
  K::List().Add(r);
  return r->object;
}

// The object already made for `handle` (newest first), retained; null when none.
template <class K>
NPObject* SharedObject(MwHandle handle) {
  auto* r = handle ? K::List().FindByHandle(handle) : nullptr;
  return r && r->object ? NPN_RetainObject(r->object) : nullptr;
}

// The handle behind an object of kind K; 0 for any other object.
template <class K>
MwHandle HandleOf(const NPObject* object) {
  const auto* r = ScriptClass<K>::RecordOf(object);
  return r ? r->handle : 0;
}

// ---- page instances ------------------------------------------------------------
// Their record lives until NPP_Destroy; the browser may deallocate the
// script object earlier, which only clears the record's object pointer.

template <class K, class R = ObjectRecord>
struct InstanceKindBase : KindDefaults<K, R> {
  static void Deallocate(NPObject* object) {
    if (R* r = ScriptClass<K>::RecordOf(object)) r->object = nullptr;
  }
};

// A page-instance kind whose middleware handle goes with its script object
// (the record stays, with handle 0, until NPP_Destroy).
template <class K, class R = ObjectRecord>
struct HandleWithObjectKind : InstanceKindBase<K, R> {
  static void Deallocate(NPObject* object) {
    R* r = ScriptClass<K>::RecordOf(object);
    if (!r) return;
    if (r->handle) {
      MwObjectRelease(r->handle);
      K::List().SetHandle(r, 0);
    }
    r->object = nullptr;
  }
};

// A new page-instance record of kind K (instance kind number `kind`), not
// yet on its list; null on failure.
template <class K>
typename K::Record* NewInstance(NPP instance, uint32_t kind) {
  typename K::Record* r = NewRecord<K>(instance);
  if (r) r->kind = kind;
  return r;
}

// The same, with the middleware's handle from `open` (given the new script
// object as its context, or nothing), on its list; null on failure.
template <class K>
typename K::Record* OpenInstance(NPP instance, uint32_t kind, MwHandle (*open)(void* context)) {
  typename K::Record* r = NewInstance<K>(instance, kind);
  if (!r) return nullptr;
  r->handle = open(r->object);
  K::List().Add(r);
  return r;
}
template <class K>
typename K::Record* OpenInstance(NPP instance, uint32_t kind, MwHandle (*open)(void)) {
  typename K::Record* r = NewInstance<K>(instance, kind);
  if (!r) return nullptr;
  r->handle = open();
  K::List().Add(r);
  return r;
}

// The end of a page instance: off its list, its middleware handle released
// (0 while the release runs), its listeners freed, the record freed. False,
// with nothing done, when the record is not on `list`.
bool DestroyInstance(RecordList& list, ObjectRecord* record);

#endif
