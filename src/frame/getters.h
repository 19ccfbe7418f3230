// Member rows for the common property shapes: a value the middleware reads
// from the record's handle on each access, given to the page as it is.
//
//   Row::Get("width", IntOf<Record, MwBroadcastGetWidth>)
#ifndef ORVANE_FRAME_GETTERS_H
#define ORVANE_FRAME_GETTERS_H

#include "middleware/types.h"
#include "npapi/browser.h"
#include "npapi/npapi.h"
#include "utils/convert.h"

template <class R, int32_t (*Read)(MwHandle)>
bool IntOf(R* r, NPVariant* result) {
  SetInt(result, Read(r->handle));
  return true;
}
// A middleware flag: true when non-zero.
template <class R, int32_t (*Read)(MwHandle)>
bool BoolOf(R* r, NPVariant* result) {
  SetBool(result, Read(r->handle) != 0);
  return true;
}
// A middleware string (released); Null when it has none.
template <class R, MwHandle (*Read)(MwHandle)>
bool TextOf(R* r, NPVariant* result) {
  NP_UtilsHbbtvStringToResult(Read(r->handle), result);
  return true;
}
// A fixed number.
template <class R, int32_t kValue>
bool Constant(R*, NPVariant* result) {
  SetInt(result, kValue);
  return true;
}
// A property that reads with no value and accepts any write.
template <class R>
bool NoValue(R*, NPVariant*) {
  return true;
}
template <class R>
bool Ignored(R*, const NPVariant*) {
  return true;
}

#endif
