// Identifiers: interned for the life of the process, as browsers keep them.
#include <map>
#include <mutex>
#include <string>

#include "host/internal.h"

namespace host {
namespace {

struct Identifier {
  bool is_string;
  std::string text;
  int32_t value;
};

struct IdentifierTable {
  std::mutex mutex;
  std::map<std::string, Identifier*> strings;
  std::map<int32_t, Identifier*> ints;
};

// Never destroyed: the plug-in may hold identifiers in statics.
IdentifierTable& Table() {
  static IdentifierTable* table = new IdentifierTable;
  return *table;
}

Identifier* Lookup(NPIdentifier id) { return static_cast<Identifier*>(id); }

}  // namespace

namespace detail {

NPIdentifier GetStringIdentifier(const NPUTF8* name) {
  if (!name) return nullptr;
  IdentifierTable& t = Table();
  std::lock_guard<std::mutex> lock(t.mutex);
  Identifier*& slot = t.strings[name];
  if (!slot) slot = new Identifier{true, name, 0};
  return slot;
}

void GetStringIdentifiers(const NPUTF8** names, int32_t count, NPIdentifier* out) {
  if (!names || !out) return;
  for (int32_t i = 0; i < count; ++i) out[i] = GetStringIdentifier(names[i]);
}

NPIdentifier GetIntIdentifier(int32_t value) {
  IdentifierTable& t = Table();
  std::lock_guard<std::mutex> lock(t.mutex);
  Identifier*& slot = t.ints[value];
  if (!slot) slot = new Identifier{false, std::string(), value};
  return slot;
}

bool IdentifierIsString(NPIdentifier id) { return id && Lookup(id)->is_string; }

NPUTF8* UTF8FromIdentifier(NPIdentifier id) {
  if (!IdentifierIsString(id)) return nullptr;
  return CopyString(Lookup(id)->text);
}

int32_t IntFromIdentifier(NPIdentifier id) {
  if (!id || Lookup(id)->is_string) return INT32_MIN;
  return Lookup(id)->value;
}

std::string Name(NPIdentifier id) {
  return IdentifierIsString(id) ? Lookup(id)->text : std::string();
}

bool IntOf(NPIdentifier id, int32_t* value) {
  if (!id || Lookup(id)->is_string) return false;
  *value = Lookup(id)->value;
  return true;
}

}  // namespace detail

NPIdentifier Id(const char* name) { return detail::GetStringIdentifier(name); }
NPIdentifier IntId(int32_t value) { return detail::GetIntIdentifier(value); }

}  // namespace host
