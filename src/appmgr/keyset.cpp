#include "appmgr/keyset.h"

#include <cstdint>

#include "frame/frame.h"
#include "middleware/appmgr.h"
#include "utils/convert.h"

namespace {

RecordList g_keysets;

// A requested mask: numbers truncated toward zero (clamped to 32 bits),
// anything else 0. The answer is the mask granted, which may be smaller
// than the one asked for.
bool SetValue(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  int32_t mask = 0;
  if (count >= 1 && args[0].type == NPVariantType_Int32) mask = args[0].value.intValue;
  if (count >= 1 && args[0].type == NPVariantType_Double) mask = NP_UtilsDoubleToInt32(args[0].value.doubleValue);
  SetInt(result, MwKeysetSetValue(r->handle, mask));
  return true;
}

// Reads of an object whose record is gone ask the middleware about handle 0.
MwHandle HandleOrZero(const ObjectRecord* r) { return r ? r->handle : 0; }

bool Value(ObjectRecord* r, NPVariant* result) {
  SetInt(result, MwKeysetGetValue(HandleOrZero(r)));
  return true;
}

bool MaximumValue(ObjectRecord* r, NPVariant* result) {
  SetInt(result, MwKeysetGetMaximumValue(HandleOrZero(r)));
  return true;
}

bool OtherKeys(ObjectRecord* r, NPVariant* result) {
  if (!r) return false;
  const int32_t* keys = nullptr;
  uint32_t n = MwKeysetGetOtherKeys(r->handle, &keys);
  // The array stays the middleware's.
  NP_UtilsArrayToResult(r->instance, keys, keys ? n : 0, result);
  return true;
}

// The eleven key groups are bit masks (RED = 0x1 ... OTHER = 0x400).
using Row = Member<ObjectRecord>;
const Row kMembers[] = {
    Row::Get("RED", Constant<ObjectRecord, 0x1>),
    Row::Get("GREEN", Constant<ObjectRecord, 0x2>),
    Row::Get("YELLOW", Constant<ObjectRecord, 0x4>),
    Row::Get("BLUE", Constant<ObjectRecord, 0x8>),
    Row::Get("NAVIGATION", Constant<ObjectRecord, 0x10>),
    Row::Get("VCR", Constant<ObjectRecord, 0x20>),
    Row::Get("SCROLL", Constant<ObjectRecord, 0x40>),
    Row::Get("INFO", Constant<ObjectRecord, 0x80>),
    Row::Get("NUMERIC", Constant<ObjectRecord, 0x100>),
    Row::Get("ALPHA", Constant<ObjectRecord, 0x200>),
    Row::Get("OTHER", Constant<ObjectRecord, 0x400>),
    Row::Get("value", Value),
    Row::Get("maximumValue", MaximumValue),
    Row::Get("otherKeys", OtherKeys),
    Row::Call("setValue", SetValue),
};

struct Keyset : HandedOutKind<Keyset> {
  ORV_KIND(kMembers, g_keysets)
  // The group constants and the values answer even for an object whose
  // record is gone; setValue needs the middleware's keyset.
  static Gate Check(const ObjectRecord* r, Access access) {
    return access == Access::kGet ? Gate::kGo : NeedHandle(r);
  }
};

}  // namespace

NPObject* KeysetCreate(NPP instance, MwHandle keyset) {
  return NewHandedOut<Keyset>(instance, keyset, kReleaseOnFailure);
}
