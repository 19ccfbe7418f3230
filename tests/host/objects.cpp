// NPObject life cycle and the NPN_* calls that dispatch to an object's class.
#include <cstdlib>
#include <unordered_map>

#include "host/internal.h"

namespace host {
namespace {

struct ObjectInfo {
  uint64_t generation;  // the Reset() period the object was made in
};

struct ObjectState {
  std::unordered_map<NPObject*, ObjectInfo> live;
  std::unordered_map<NPObject*, uint32_t> host_refs;  // references the host keeps
  size_t reference_errors = 0;
  uint64_t generation = 1;
};

ObjectState& State() {
  static ObjectState* state = new ObjectState;  // plug-in objects may outlive main
  return *state;
}

uint32_t HostRefs(NPObject* o) {
  auto it = State().host_refs.find(o);
  return it == State().host_refs.end() ? 0 : it->second;
}

// The object a call is made on, or null (counted) when it is not a live object.
NPClass* ClassFor(NPObject* o) {
  if (!o) return nullptr;
  if (!detail::Known(o)) {
    detail::CountReferenceError();
    return nullptr;
  }
  return o->_class;
}

}  // namespace

namespace detail {

bool Known(NPObject* o) { return o && State().live.count(o) != 0; }

void CountReferenceError() { ++State().reference_errors; }

void AddHostRef(NPObject* o) {
  if (!Known(o)) {
    CountReferenceError();
    return;
  }
  RetainObject(o);
  ++State().host_refs[o];
}

void DropHostRef(NPObject* o) {
  auto it = State().host_refs.find(o);
  if (it == State().host_refs.end()) return;  // never held (its retain failed)
  if (--it->second == 0) State().host_refs.erase(it);
  ReleaseObject(o);
}

NPObject* CreateObject(NPP npp, NPClass* cls) {
  if (!cls) return nullptr;
  NPObject* o = cls->allocate ? cls->allocate(npp, cls)
                              : static_cast<NPObject*>(malloc(sizeof(NPObject)));
  if (!o) return nullptr;
  o->_class = cls;
  o->referenceCount = 1;
  State().live[o] = ObjectInfo{State().generation};
  return o;
}

void RegisterHostObject(NPObject* o) { State().live[o] = ObjectInfo{State().generation}; }

NPObject* RetainObject(NPObject* o) {
  if (!o) return o;
  if (!Known(o) || o->referenceCount == 0) {
    CountReferenceError();
    return o;
  }
  ++o->referenceCount;
  return o;
}

void ReleaseObject(NPObject* o) {
  if (!o) return;
  if (!Known(o) || o->referenceCount == 0) {
    CountReferenceError();
    return;
  }
  if (--o->referenceCount > 0) return;
  State().live.erase(o);
  State().host_refs.erase(o);
  if (IsHost(o)) {
    KillHostObject(static_cast<HostObject*>(o));
  } else if (o->_class && o->_class->deallocate) {
    o->_class->deallocate(o);
  } else {
    free(o);
  }
}

void ForgetHostObject(NPObject* o) {
  State().live.erase(o);
  State().host_refs.erase(o);
}

void ReleaseVariantValue(NPVariant* v) {
  if (!v) return;
  if (v->type == NPVariantType_String) {
    MemFree(const_cast<NPUTF8*>(v->value.stringValue.UTF8Characters));
  } else if (v->type == NPVariantType_Object) {
    ReleaseObject(v->value.objectValue);
  }
  *v = Void();
}

bool Invoke(NPP, NPObject* o, NPIdentifier id, const NPVariant* args, uint32_t n,
            NPVariant* result) {
  NPClass* c = ClassFor(o);
  if (!c || !c->invoke || !result) return false;
  *result = Void();
  return c->invoke(o, id, args, n, result);
}

bool InvokeDefault(NPP, NPObject* o, const NPVariant* args, uint32_t n, NPVariant* result) {
  NPClass* c = ClassFor(o);
  if (!c || !c->invokeDefault || !result) return false;
  *result = Void();
  return c->invokeDefault(o, args, n, result);
}

bool GetProperty(NPP, NPObject* o, NPIdentifier id, NPVariant* result) {
  NPClass* c = ClassFor(o);
  if (!c || !c->getProperty || !result) return false;
  *result = Void();
  return c->getProperty(o, id, result);
}

bool SetProperty(NPP, NPObject* o, NPIdentifier id, const NPVariant* value) {
  NPClass* c = ClassFor(o);
  if (!c || !c->setProperty || !value) return false;
  return c->setProperty(o, id, value);
}

bool RemoveProperty(NPP, NPObject* o, NPIdentifier id) {
  NPClass* c = ClassFor(o);
  return c && c->removeProperty && c->removeProperty(o, id);
}

bool HasProperty(NPP, NPObject* o, NPIdentifier id) {
  NPClass* c = ClassFor(o);
  return c && c->hasProperty && c->hasProperty(o, id);
}

bool HasMethod(NPP, NPObject* o, NPIdentifier id) {
  NPClass* c = ClassFor(o);
  return c && c->hasMethod && c->hasMethod(o, id);
}

bool Enumerate(NPP, NPObject* o, NPIdentifier** ids, uint32_t* count) {
  NPClass* c = ClassFor(o);
  if (!c || !ids || !count) return false;
  if (c->structVersion < 2 || !c->enumerate) return false;
  return c->enumerate(o, ids, count);
}

bool Construct(NPP, NPObject* o, const NPVariant* args, uint32_t n, NPVariant* result) {
  NPClass* c = ClassFor(o);
  if (!c || c->structVersion < 2 || !c->construct || !result) return false;
  *result = Void();
  return c->construct(o, args, n, result);
}

void ResetObjects() {
  ObjectState& s = State();
  s.reference_errors = 0;
  ++s.generation;
}

}  // namespace detail

size_t LivePluginObjects() {
  size_t n = 0;
  for (const auto& entry : State().live) {
    NPObject* o = entry.first;
    if (detail::IsHost(o) || entry.second.generation != State().generation) continue;
    if (o->referenceCount > HostRefs(o)) ++n;
  }
  return n;
}

size_t ReferenceErrors() { return State().reference_errors; }

uint32_t RefCount(NPObject* o) { return detail::Known(o) ? o->referenceCount : 0; }

namespace detail {
uint32_t HostRefCount(NPObject* o) { return HostRefs(o); }
}  // namespace detail

}  // namespace host
