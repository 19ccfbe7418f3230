// The host's own objects: property bags with named methods, arrays, the
// DOMParser and the documents it makes.
#include <algorithm>
#include <cstring>
#include <memory>

#include "host/internal.h"

namespace host {
namespace detail {
namespace {

std::vector<std::unique_ptr<HostObject>>& AllHostObjects() {
  // Every host object made since Reset; memory is kept until then so that a
  // stale pointer is recognised as dead instead of being reused.
  static auto* all = new std::vector<std::unique_ptr<HostObject>>;
  return *all;
}

HostObject* Self(NPObject* o) { return static_cast<HostObject*>(o); }

bool HasMethodSlot(NPObject* o, NPIdentifier id) { return Self(o)->methods.count(id) != 0; }

bool InvokeSlot(NPObject* o, NPIdentifier id, const NPVariant* args, uint32_t n,
                NPVariant* result) {
  auto it = Self(o)->methods.find(id);
  if (it == Self(o)->methods.end()) return false;
  Method m = it->second;  // the call may change the method table
  return m(args, n, result);
}

bool InvokeDefaultSlot(NPObject* o, const NPVariant* args, uint32_t n, NPVariant* result) {
  Method m = Self(o)->call;
  return m ? m(args, n, result) : false;
}

bool ArrayIndex(HostObject* h, NPIdentifier id, size_t* index) {
  int32_t i;
  if (h->kind != "array" || !IntOf(id, &i) || i < 0) return false;
  *index = static_cast<size_t>(i);
  return true;
}

bool HasPropertySlot(NPObject* o, NPIdentifier id) {
  HostObject* h = Self(o);
  size_t index;
  if (ArrayIndex(h, id, &index)) return index < h->items.size();
  if (h->getters.count(id) || h->bag.count(id)) return true;
  return h->missing == Missing::kEmptyString && IdentifierIsString(id);
}

bool GetPropertySlot(NPObject* o, NPIdentifier id, NPVariant* result) {
  HostObject* h = Self(o);
  size_t index;
  if (ArrayIndex(h, id, &index)) {
    if (index >= h->items.size()) return true;  // undefined
    return Give(h->items[index], result);
  }
  auto g = h->getters.find(id);
  if (g != h->getters.end()) {
    Getter getter = g->second;
    return getter(result);
  }
  auto b = h->bag.find(id);
  if (b != h->bag.end()) return Give(b->second, result);
  switch (h->missing) {
    case Missing::kFail: return false;
    case Missing::kVoid: return true;
    case Missing::kEmptyString: return Give(HoldString(""), result);
  }
  return false;
}

bool SetPropertySlot(NPObject* o, NPIdentifier id, const NPVariant* value) {
  HostObject* h = Self(o);
  if (!IdentifierIsString(id) || h->getters.count(id)) return false;
  Held v = h->strings_only ? HoldString(Text(*value)) : Hold(*value);
  h->bag[id] = std::move(v);
  return true;
}

bool RemovePropertySlot(NPObject* o, NPIdentifier id) {
  Held old;
  auto it = Self(o)->bag.find(id);
  if (it != Self(o)->bag.end()) {
    old = std::move(it->second);
    Self(o)->bag.erase(it);
  }
  return true;
}

bool EnumerateSlot(NPObject* o, NPIdentifier** ids, uint32_t* count) {
  HostObject* h = Self(o);
  std::vector<NPIdentifier> names;
  for (const auto& g : h->getters) names.push_back(g.first);
  for (const auto& b : h->bag) names.push_back(b.first);
  for (const auto& m : h->methods) names.push_back(m.first);
  auto* out = static_cast<NPIdentifier*>(MemAlloc(
      static_cast<uint32_t>(std::max<size_t>(names.size(), 1) * sizeof(NPIdentifier))));
  if (!out) return false;
  std::copy(names.begin(), names.end(), out);
  *ids = out;
  *count = static_cast<uint32_t>(names.size());
  return true;
}

void DeallocateSlot(NPObject*) {
  // Host objects are freed by Reset(); reaching zero only marks them dead.
}

NPClass g_host_class = {
    NP_CLASS_STRUCT_VERSION, nullptr,          DeallocateSlot,     nullptr,
    HasMethodSlot,           InvokeSlot,       InvokeDefaultSlot,  HasPropertySlot,
    GetPropertySlot,         SetPropertySlot,  RemovePropertySlot, EnumerateSlot,
    nullptr,
};

// Takes the object's stored values out so that releasing them cannot reach
// back into a half-cleared object.
void DropValues(HostObject* h) {
  std::map<NPIdentifier, Held> bag;
  std::vector<Held> items;
  bag.swap(h->bag);
  items.swap(h->items);
  h->getters.clear();
  h->methods.clear();
  h->call = nullptr;
}

std::string Trim(const std::string& s) {
  size_t b = s.find_first_not_of(" \t\r\n");
  if (b == std::string::npos) return std::string();
  size_t e = s.find_last_not_of(" \t\r\n");
  return s.substr(b, e - b + 1);
}

std::vector<std::string>& Parsed() {
  static auto* parsed = new std::vector<std::string>;
  return *parsed;
}

HostObject* NewParsedDocument(const std::string& text) {
  Parsed().push_back(text);
  HostObject* doc = NewHostObject("parsed-document");
  doc->parsed_text = text;
  return doc;
}

HostObject* NewParser() {
  HostObject* parser = NewHostObject("parser");
  parser->methods[GetStringIdentifier("parseFromString")] =
      [](const NPVariant* args, uint32_t n, NPVariant* result) {
        if (n < 1 || args[0].type != NPVariantType_String) return false;
        *result = Obj(NewParsedDocument(AsString(args[0])));
        return true;
      };
  return parser;
}

}  // namespace

NPClass* HostClass() { return &g_host_class; }

bool IsHost(NPObject* o) { return o && o->_class == &g_host_class; }

HostObject* AsHost(NPObject* o) { return Known(o) && IsHost(o) ? Self(o) : nullptr; }

HostObject* NewHostObject(const std::string& kind) {
  AllHostObjects().push_back(std::make_unique<HostObject>());
  HostObject* h = AllHostObjects().back().get();
  h->_class = &g_host_class;
  h->referenceCount = 1;
  h->kind = kind;
  RegisterHostObject(h);
  return h;
}

void KillHostObject(HostObject* h) {
  h->dead = true;
  DropValues(h);
}

HostObject* NewArray() {
  HostObject* a = NewHostObject("array");
  a->methods[GetStringIdentifier("push")] = [a](const NPVariant* args, uint32_t n,
                                                NPVariant* result) {
    for (uint32_t i = 0; i < n; ++i) a->items.push_back(Hold(args[i]));
    *result = Int(static_cast<int32_t>(a->items.size()));
    return true;
  };
  a->getters[GetStringIdentifier("length")] = [a](NPVariant* result) {
    *result = Int(static_cast<int32_t>(a->items.size()));
    return true;
  };
  return a;
}

bool Evaluate(NPP, NPObject* obj, NPString* script, NPVariant* result) {
  if (!obj || !Known(obj)) {
    if (obj) CountReferenceError();
    return false;
  }
  if (!script || !result || !script->UTF8Characters) return false;
  std::string text = Trim(std::string(script->UTF8Characters, script->UTF8Length));
  *result = Void();
  if (text == "new DOMParser();" || text == "new DOMParser()") {
    *result = Obj(NewParser());
    return true;
  }
  return false;
}

size_t CountTransient() {
  size_t n = 0;
  for (const auto& h : AllHostObjects()) {
    if (h->dead || h->page_object) continue;
    // A test holds one reference to each function it made.
    uint32_t own = h->kind == "function" ? 1 : 0;
    if (h->referenceCount > own + HostRefCount(h.get())) ++n;
  }
  return n;
}

size_t CountUnbalancedPage() {
  size_t n = 0;
  for (const auto& h : AllHostObjects()) {
    if (!h->page_object) continue;
    if (h->dead || h->referenceCount != h->baseline + HostRefCount(h.get())) ++n;
  }
  return n;
}

void DropAllValues() {
  auto& all = AllHostObjects();
  for (size_t i = 0; i < all.size(); ++i) {
    if (!all[i]->dead) DropValues(all[i].get());
  }
}

void ResetHostObjects() {
  auto& all = AllHostObjects();
  // Releasing stored values may release other host objects (and plug-in
  // objects the host held); those go through the normal path.
  for (size_t i = 0; i < all.size(); ++i) {
    if (!all[i]->dead) DropValues(all[i].get());
  }
  for (const auto& h : all) {
    if (!h->dead) ForgetHostObject(h.get());
    h->dead = true;
  }
  all.clear();
  Parsed().clear();
}

}  // namespace detail

size_t LiveTransientHostObjects() { return detail::CountTransient(); }
size_t UnbalancedPageObjects() { return detail::CountUnbalancedPage(); }

std::vector<int32_t> ArrayValues(NPObject* array) {
  std::vector<int32_t> values;
  detail::HostObject* a = detail::AsHost(array);
  if (!a) return values;
  for (const auto& item : a->items) {
    if (item.type == NPVariantType_Int32) values.push_back(item.i);
    else if (item.type == NPVariantType_Double) values.push_back(static_cast<int32_t>(item.d));
    else if (item.type == NPVariantType_Bool) values.push_back(item.b ? 1 : 0);
    else values.push_back(0);
  }
  return values;
}

std::string ParsedText(NPObject* document) {
  // Also answers for a document the plug-in has already released.
  for (const auto& h : detail::AllHostObjects())
    if (h.get() == document) return h->parsed_text;
  return std::string();
}

const std::vector<std::string>& ParsedTexts() { return detail::Parsed(); }

}  // namespace host
