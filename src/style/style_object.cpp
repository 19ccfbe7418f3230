// The style script object: a parsed copy of an element's inline style.
#include "frame/frame.h"
#include "style/style.h"
#include "style/style_internal.h"
#include "utils/convert.h"

namespace {

RecordList g_styles;

int KeyOf(NPIdentifier id) {
  const StyleNames& names = StyleIds();
  for (int k = 0; k < kStyleKeyCount; k++)
    if (names.keys[k] == id) return k;
  return -1;
}

struct StyleObject : HandedOutKind<StyleObject, StyleRecord> {
  static RecordList& List() { return g_styles; }
  static bool HasProperty(NPObject*, NPIdentifier id) { return KeyOf(id) >= 0; }

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
        // All four read the left value, as the style object always has
        // (pages read left only).
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

StyleRecord* NewStyleRecord(NPP instance) {
  StyleRecord* r = NewRecord<StyleObject>(instance);
  if (r) g_styles.Add(r);
  return r;
}

void StyleDestroy(StyleRecord* record) {
  if (record && g_styles.Remove(record)) FrameFreeRecord(record);
}
