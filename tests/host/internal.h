// Shared state of the fake browser. Only tests/host/*.cpp include this.
#ifndef ORVANE_TESTS_HOST_INTERNAL_H
#define ORVANE_TESTS_HOST_INTERNAL_H

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "host/host.h"

namespace host {
namespace detail {

// The plug-in's blocks and records as heap chunks: PluginHeap().
void CountChunk(void* p, bool allocated);

// ---- memory (memory.cpp) ----------------------------------------------------
void* MemAlloc(uint32_t size);
void MemFree(void* p);
char* CopyString(const std::string& s);  // NPN_MemAlloc'd, NUL-terminated; null on failure
void ResetMemory();

// ---- identifiers (identifiers.cpp) ------------------------------------------
NPIdentifier GetStringIdentifier(const NPUTF8* name);
void GetStringIdentifiers(const NPUTF8** names, int32_t count, NPIdentifier* out);
NPIdentifier GetIntIdentifier(int32_t value);
bool IdentifierIsString(NPIdentifier id);
NPUTF8* UTF8FromIdentifier(NPIdentifier id);
int32_t IntFromIdentifier(NPIdentifier id);
// The identifier's text, or "" for integer and unknown identifiers.
std::string Name(NPIdentifier id);
// The integer of an integer identifier; false for string identifiers.
bool IntOf(NPIdentifier id, int32_t* value);

// ---- values the host keeps (variants.cpp) -----------------------------------
// A value stored on the host's side: characters in a std::string (so they never
// show up as plug-in allocations), objects retained and counted as host-held.
struct Held {
  NPVariantType type = NPVariantType_Void;
  bool b = false;
  int32_t i = 0;
  double d = 0;
  std::string s;
  NPObject* o = nullptr;

  Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  Held(Held&& other) noexcept;
  Held& operator=(Held&& other) noexcept;
  ~Held();
};
Held Hold(const NPVariant& v);
Held HoldString(const std::string& s);
// A fresh copy for the plug-in, as a browser returns values: the characters
// NPN_MemAlloc'd, objects retained. False when the allocation fails.
bool Give(const Held& h, NPVariant* out);
// A view of the value without ownership (characters point into `h`).
NPVariant View(const Held& h);
std::string Text(const NPVariant& v);  // string form as the DOM converts values

// ---- objects (objects.cpp) ----------------------------------------------------
NPObject* CreateObject(NPP npp, NPClass* cls);
NPObject* RetainObject(NPObject* o);
void ReleaseObject(NPObject* o);
bool Known(NPObject* o);            // live and made by NPN_CreateObject or the host
void CountReferenceError();
void AddHostRef(NPObject* o);       // the host now keeps one of the object's references
void DropHostRef(NPObject* o);
void ReleaseVariantValue(NPVariant* v);
void ResetObjects();                // new generation; plug-in objects stay known
void DropAllValues();               // host objects let go of the values stored in them
void RegisterHostObject(NPObject* o);
void ForgetHostObject(NPObject* o);   // no longer a live object (Reset)
uint32_t HostRefCount(NPObject* o);   // references the host itself keeps

bool Invoke(NPP, NPObject*, NPIdentifier, const NPVariant*, uint32_t, NPVariant*);
bool InvokeDefault(NPP, NPObject*, const NPVariant*, uint32_t, NPVariant*);
bool GetProperty(NPP, NPObject*, NPIdentifier, NPVariant*);
bool SetProperty(NPP, NPObject*, NPIdentifier, const NPVariant*);
bool RemoveProperty(NPP, NPObject*, NPIdentifier);
bool HasProperty(NPP, NPObject*, NPIdentifier);
bool HasMethod(NPP, NPObject*, NPIdentifier);
bool Enumerate(NPP, NPObject*, NPIdentifier**, uint32_t*);
bool Construct(NPP, NPObject*, const NPVariant*, uint32_t, NPVariant*);

// ---- host objects (host_object.cpp) -----------------------------------------
using Method = std::function<bool(const NPVariant* args, uint32_t count, NPVariant* result)>;
using Getter = std::function<bool(NPVariant* result)>;

enum class Missing { kFail, kVoid, kEmptyString };

struct HostObject : NPObject {
  std::string kind;   // "window", "element", "array", "function", ...
  std::string name;   // function name
  bool page_object = false;
  bool dead = false;  // released to zero (memory kept until Reset)
  uint32_t baseline = 0;
  Missing missing = Missing::kVoid;
  bool strings_only = false;  // style: every value set is stored as its text
  std::map<NPIdentifier, Held> bag;
  std::map<NPIdentifier, Getter> getters;
  std::map<NPIdentifier, Method> methods;
  Method call;               // invokeDefault; empty: fails
  std::vector<Held> items;   // Array elements
  std::string parsed_text;   // parsed document
};

NPClass* HostClass();
bool IsHost(NPObject* o);
HostObject* AsHost(NPObject* o);  // null unless a live host object
// A new host object with one reference (the caller's).
HostObject* NewHostObject(const std::string& kind);
void KillHostObject(HostObject* h);  // refcount reached 0
size_t CountTransient();
size_t CountUnbalancedPage();
void ResetHostObjects();
HostObject* NewArray();
bool Evaluate(NPP npp, NPObject* obj, NPString* script, NPVariant* result);

// ---- pages (page.cpp) ---------------------------------------------------------
NPError GetValue(NPP npp, NPNVariable var, void* value);
NPError SetValue(NPP npp, NPPVariable var, void* value);
NPError GetURL(NPP npp, const char* url, const char* target);
NPError GetURLNotify(NPP npp, const char* url, const char* target, void* data);
void SetException(NPObject* o, const NPUTF8* message);
void ResetPages();

// ---- script functions (functions.cpp) -----------------------------------------
void ResetFunctions();

// ---- the browser's thread (thread.cpp) ------------------------------------------
void PluginThreadAsyncCall(NPP npp, void (*func)(void*), void* data);
void ResetThread();
// Notes an NPN call; one off the browser's thread is kept unless NPAPI
// allows it there (memory, NPN_PluginThreadAsyncCall).
void NoteCall(const char* name);

// ---- record allocation (record_alloc.cpp) -----------------------------------------
void ResetRecords();

}  // namespace detail
}  // namespace host

#endif
