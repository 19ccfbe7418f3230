// Lists of search results: paged by getResults, with their offset and the
// total found. Their elements are only counted.
#include "objects/collection_item.h"
#include "middleware/collection.h"
#include "npapi/browser.h"
#include "utils/convert.h"

namespace {

bool GetResults(CollectionRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  uint32_t offset, length;
  if (count != 2 || !NP_UtilsGetU32BIT(&args[0], &offset) || !NP_UtilsGetU32BIT(&args[1], &length))
    return false;
  SetBool(result, MwSearchResultsGetResults(r->handle, offset, length) != 0);
  return true;
}

bool Abort(CollectionRecord* r, const NPVariant*, uint32_t, NPVariant*) {
  MwSearchResultsAbort(r->handle);
  return true;
}

bool Offset(CollectionRecord* r, NPVariant* result) {
  SetInt(result, MwSearchResultsGetOffset(r->handle));
  return true;
}

bool TotalSize(CollectionRecord* r, NPVariant* result) {
  SetInt(result, MwSearchResultsGetTotalSize(r->handle));
  return true;
}

const CollectionMember kListMembers[] = {
    CollectionMember::Call("getResults", GetResults),
    CollectionMember::Call("abort", Abort),
    CollectionMember::Get("offset", Offset),
    CollectionMember::Get("totalSize", TotalSize),
};

}  // namespace

extern const CollectionItemKind kSearchResultItems = {nullptr, false, ORV_MEMBERS(kListMembers)};
