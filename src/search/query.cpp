// Query objects: immutable search conditions, combined with and, or, not.
#include "frame/frame.h"
#include "middleware/search.h"
#include "search/search.h"
#include "utils/convert.h"

namespace {

RecordList g_queries;

// A new query from this one (and another, for and/or); a failed call when
// the other is no query or the middleware makes none.
bool Made(ObjectRecord* r, MwHandle made, NPVariant* result) {
  if (!made) return false;
  NPObject* query = QueryCreate(r->instance, made);
  SetObjectOrNull(result, query);
  return query != nullptr;
}

template <MwHandle (*Combine)(MwHandle, MwHandle)>
bool Combined(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  MwHandle other = count >= 1 && IsObject(args[0]) ? QueryGetHandle(args[0].value.objectValue) : 0;
  return other && Made(r, Combine(r->handle, other), result);
}

bool Not(ObjectRecord* r, const NPVariant*, uint32_t, NPVariant* result) {
  return Made(r, MwQueryNot(r->handle), result);
}

using Row = Member<ObjectRecord>;
const Row kMembers[] = {
    Row::Call("and", Combined<MwQueryAnd>),
    Row::Call("or", Combined<MwQueryOr>),
    Row::Call("not", Not),
};

struct Query : HandedOutKind<Query> {
  ORV_KIND(kMembers, g_queries)
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
