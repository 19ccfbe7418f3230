// The script-object frame: every object the page sees is a bare NPObject of
// one NPClass per kind, with its state in a record of the kind's handle list.
// A kind states its name tables and operations; the NPClass plumbing is
// written here once.
//
//   struct Keyset : KindDefaults<Keyset> {
//     static NameTable& Properties();  static NameTable& Methods();
//     static bool GetProperty(NPObject*, NPIdentifier, NPVariant*);  ...
//   };
//   NPN_CreateObject(instance, ScriptClass<Keyset>::Class());
//
// Defaults: hasMethod/hasProperty look the identifier up in the tables;
// invoke, getProperty and setProperty fail; invokeDefault, removeProperty,
// enumerate and construct answer kStubResult (true) without doing anything;
// Deallocate does nothing before the object's memory is freed.
#ifndef ORVANE_PLUGIN_FRAME_H
#define ORVANE_PLUGIN_FRAME_H

#include <cstddef>
#include <cstring>

#include "plugin/browser.h"
#include "plugin/npapi.h"
#include "plugin/record.h"
#include "utils/record_alloc.h"

// A kind's names, turned into identifiers once (or on every Intern(true)).
class NameTable {
 public:
  template <size_t N>
  explicit NameTable(const char* const (&names)[N]) : names_(names), count_(N) {
    static_assert(N <= kMax, "name table too long");
  }
  NameTable() : names_(nullptr), count_(0) {}
  // Interns the names unless done before; `again` interns them anyway.
  void Intern(bool again = false) {
    if (done_ && !again) return;
    for (size_t i = 0; i < count_; i++) ids_[i] = NPN_GetStringIdentifier(names_[i]);
    done_ = 1;
  }
  // Index of `id` in table order, or -1.
  int Find(NPIdentifier id) const {
    if (!done_) return -1;
    for (size_t i = 0; i < count_; i++)
      if (ids_[i] == id) return static_cast<int>(i);
    return -1;
  }
  NPIdentifier operator[](size_t i) const { return ids_[i]; }
  const char* Name(size_t i) const { return names_[i]; }
  size_t size() const { return count_; }
  bool done() const { return done_ != 0; }

 private:
  static constexpr size_t kMax = 48;
  const char* const* names_;
  size_t count_;
  NPIdentifier ids_[kMax] = {};
  int done_ = 0;
};

// A kind's tables from its arrays of names.
#define ORV_PROPERTY_TABLE(names)          \
  static NameTable& Properties() {         \
    static NameTable table(names);         \
    return table;                          \
  }
#define ORV_METHOD_TABLE(names)            \
  static NameTable& Methods() {            \
    static NameTable table(names);         \
    return table;                          \
  }

template <class K>
struct KindDefaults {
  static constexpr bool kStubResult = true;
  static NameTable& Properties() { static NameTable none; return none; }
  static NameTable& Methods() { static NameTable none; return none; }
  static bool HasMethod(NPObject*, NPIdentifier id) { return K::Methods().Find(id) >= 0; }
  static bool HasProperty(NPObject*, NPIdentifier id) { return K::Properties().Find(id) >= 0; }
  static bool Invoke(NPObject*, NPIdentifier, const NPVariant*, uint32_t, NPVariant*) { return false; }
  static bool GetProperty(NPObject*, NPIdentifier, NPVariant*) { return false; }
  static bool SetProperty(NPObject*, NPIdentifier, const NPVariant*) { return false; }
  static void Deallocate(NPObject*) {}
};

template <class K>
class ScriptClass {
 public:
  static NPClass* Class() { return &klass_; }
  static bool Is(const NPObject* o) { return o && o->_class == &klass_; }

 private:
  static NPObject* Allocate(NPP, NPClass*) {
    void* o = NPN_MemAlloc(sizeof(NPObject));
    if (o) memset(o, 0, sizeof(NPObject));
    return static_cast<NPObject*>(o);
  }
  static void Deallocate(NPObject* o) {
    K::Deallocate(o);
    NPN_MemFree(o);
  }
  static void Invalidate(NPObject*) {}
  static bool HasMethod(NPObject* o, NPIdentifier id) { return K::HasMethod(o, id); }
  static bool Invoke(NPObject* o, NPIdentifier id, const NPVariant* args, uint32_t n, NPVariant* r) {
    return K::Invoke(o, id, args, n, r);
  }
  static bool InvokeDefault(NPObject*, const NPVariant*, uint32_t, NPVariant*) { return K::kStubResult; }
  static bool HasProperty(NPObject* o, NPIdentifier id) { return K::HasProperty(o, id); }
  static bool GetProperty(NPObject* o, NPIdentifier id, NPVariant* r) { return K::GetProperty(o, id, r); }
  static bool SetProperty(NPObject* o, NPIdentifier id, const NPVariant* v) { return K::SetProperty(o, id, v); }
  static bool RemoveProperty(NPObject*, NPIdentifier) { return K::kStubResult; }
  static bool Enumerate(NPObject*, NPIdentifier**, uint32_t*) { return K::kStubResult; }
  static bool Construct(NPObject*, const NPVariant*, uint32_t, NPVariant*) { return K::kStubResult; }

  static NPClass klass_;
};

template <class K>
NPClass ScriptClass<K>::klass_ = {
    NP_CLASS_STRUCT_VERSION, &ScriptClass<K>::Allocate, &ScriptClass<K>::Deallocate,
    &ScriptClass<K>::Invalidate, &ScriptClass<K>::HasMethod, &ScriptClass<K>::Invoke,
    &ScriptClass<K>::InvokeDefault, &ScriptClass<K>::HasProperty, &ScriptClass<K>::GetProperty,
    &ScriptClass<K>::SetProperty, &ScriptClass<K>::RemoveProperty, &ScriptClass<K>::Enumerate,
    &ScriptClass<K>::Construct};

// A zeroed record with a new script object of class `klass` in its `object`
// member, or null (nothing left allocated) when either cannot be had.
template <class R>
R* NewScriptRecord(NPP instance, NPClass* klass) {
  R* r = RecordNew<R>();
  if (!r) return nullptr;
  r->object = NPN_CreateObject(instance, klass);
  if (!r->object) {
    RecordFree(r);
    return nullptr;
  }
  return r;
}

// The same for a page-instance kind K, with instance and kind filled in.
template <class R, class K>
R* NewInstanceRecord(NPP instance, uint32_t kind) {
  R* r = NewScriptRecord<R>(instance, ScriptClass<K>::Class());
  if (!r) return nullptr;
  r->instance = instance;
  r->kind = kind;
  return r;
}

#endif
