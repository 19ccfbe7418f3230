#include "appmgr/keyset.h"

#include <cstdint>

#include "frame/frame.h"
#include "middleware/appmgr.h"
#include "utils/convert.h"

namespace {

RecordList g_keysets;

// The eleven key groups, as bit masks in table order (RED = 0x1 ... OTHER = 0x400).
constexpr int kGroupCount = 11;
enum Property { kValue = kGroupCount, kMaximumValue, kOtherKeys };

const char* const kPropertyNames[] = {"RED",    "GREEN", "YELLOW",  "BLUE",  "NAVIGATION",
                                      "VCR",    "SCROLL", "INFO",   "NUMERIC", "ALPHA",
                                      "OTHER",  "value", "maximumValue", "otherKeys"};
const char* const kMethodNames[] = {"setValue"};

// A requested mask: numbers truncated toward zero (clamped to 32 bits),
// anything else 0.
int32_t Mask(const NPVariant* args, uint32_t count) {
  if (count < 1) return 0;
  if (args[0].type == NPVariantType_Int32) return args[0].value.intValue;
  if (args[0].type != NPVariantType_Double) return 0;
  return NP_UtilsDoubleToInt32(args[0].value.doubleValue);
}

struct Keyset : HandedOutKind<Keyset> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)

  static RecordList& List() { return g_keysets; }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r || !r->handle || Methods().Find(id) != 0) return false;
    // The answer is the mask granted, which may be smaller than the one asked for.
    SetInt(result, MwKeysetSetValue(r->handle, Mask(args, count)));
    return true;
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    // The group constants answer even for an object whose record is gone.
    ObjectRecord* r = Find(object);
    MwHandle handle = r ? r->handle : 0;
    int index = Properties().Find(id);
    if (index >= 0 && index < kGroupCount) {
      SetInt(result, 1 << index);
      return true;
    }
    switch (index) {
      case kValue:
        SetInt(result, MwKeysetGetValue(handle));
        return true;
      case kMaximumValue:
        SetInt(result, MwKeysetGetMaximumValue(handle));
        return true;
      case kOtherKeys: {
        if (!r) return false;
        const int32_t* keys = nullptr;
        uint32_t n = MwKeysetGetOtherKeys(handle, &keys);
        // The array stays the middleware's.
        NP_UtilsArrayToResult(r->instance, keys, keys ? n : 0, result);
        return true;
      }
      default:
        return false;
    }
  }
};

}  // namespace

NPObject* KeysetCreate(NPP instance, MwHandle keyset) {
  return NewHandedOut<Keyset>(instance, keyset, kReleaseOnFailure);
}
