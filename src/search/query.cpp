// Query objects: immutable search conditions, combined with and, or, not.
#include "frame/frame.h"
#include "middleware/search.h"
#include "search/search.h"
#include "utils/convert.h"

namespace {

RecordList g_queries;

enum Method { kAnd, kOr, kNot };
const char* const kMethodNames[] = {"and", "or", "not"};

struct Query : HandedOutKind<Query> {
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_queries; }

  // A new query from this one (and another, for and/or); a failed call
  // when the other is no query or the middleware makes none.
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    int method = Methods().Find(id);
    if (!r || method < 0) return false;
    MwHandle made;
    if (method == kNot) {
      made = MwQueryNot(r->handle);
    } else {
      MwHandle other = count >= 1 && IsObject(args[0]) ? QueryGetHandle(args[0].value.objectValue) : 0;
      if (!other) return false;
      made = method == kAnd ? MwQueryAnd(r->handle, other) : MwQueryOr(r->handle, other);
    }
    if (!made) return false;
    NPObject* query = QueryCreate(r->instance, made);
    SetObjectOrNull(result, query);
    return query != nullptr;
  }
};

}  // namespace

NPObject* QueryCreate(NPP instance, MwHandle query) {
  if (!browser_funcs) {
    if (query) MwObjectRelease(query);
    return nullptr;
  }
  return NewHandedOut<Query>(instance, query, kReleaseOnFailure);
}

MwHandle QueryGetHandle(NPObject* object) { return HandleOf<Query>(object); }
