// The style script object: a parsed copy of an element's inline style.
#include "plugin/frame.h"
#include "plugin/record.h"
#include "style/style.h"
#include "style/style_internal.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

namespace {

StyleRecord* Find(NPObject* object) { return FindByObject(StyleList(), object); }

int KeyOf(NPIdentifier id) {
  const StyleNames& names = StyleIds();
  for (int k = 0; k < kStyleKeyCount; k++)
    if (names.keys[k] == id) return k;
  return -1;
}

struct StyleObject : KindDefaults<StyleObject> {
  static bool HasProperty(NPObject*, NPIdentifier id) { return KeyOf(id) >= 0; }

  static void Deallocate(NPObject* object) {
    StyleRecord* r = Find(object);
    if (!r) return;
    Unlink(&StyleList(), r);
    RecordFree(r);
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    StyleRecord* r = Find(object);
    if (!r) return false;
    switch (KeyOf(id)) {
      case kKeyPosition:
        return true;  // answered, with nothing filled in
      case kKeyLeft:
      case kKeyTop:
      case kKeyWidth:
      case kKeyHeight:
        // All four read the left value: intended.
        SetInt(result, r->left);
        return true;
      default:
        return false;
    }
  }

  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    StyleRecord* r = Find(object);
    if (!r) return false;
    int32_t* field;
    switch (KeyOf(id)) {
      case kKeyLeft: field = &r->left; break;
      case kKeyTop: field = &r->top; break;
      case kKeyWidth: field = &r->width; break;
      case kKeyHeight: field = &r->height; break;
      default: return false;
    }
    uint32_t number;
    if (!NP_UtilsGetU32BIT(value, &number)) return false;
    *field = static_cast<int32_t>(number);
    return true;
  }
};

}  // namespace

NPClass* StyleObjectClass() { return ScriptClass<StyleObject>::Class(); }
