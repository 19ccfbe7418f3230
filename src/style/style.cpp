// Where the plug-in's element lies on the page: the offsetParent walks, the
// element's style object, and the parser of the inline style attribute.
#include <cstring>

#include "frame/frame.h"
#include "frame/record.h"
#include "npapi/browser.h"
#include "npapi/log.h"
#include "style/style.h"
#include "style/style_internal.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

const char* const kStyleKeyNames[kStyleKeyCount] = {
    "position",    "left",  "top",           "width",       "height",      "marginLeft",
    "paddingLeft", "borderLeftWidth", "float", "verticalAlign", "outlineWidth",
};
const char* const kPositionKeywords[kPositionKeywordCount] = {"inherit", "static", "absolute",
                                                              "fixed", "relative"};

namespace {

const char* const kDomNames[kDomNameCount] = {
    "parentNode", "style",      "id",          "nodeName",     "offsetParent",
    "offsetLeft", "offsetTop",  "offsetWidth", "offsetHeight",
};

StyleNames g_names;

// Packed pairs: x (or width) in the low half, y (or height) in the high half.
uint32_t Pack(uint32_t low, uint32_t high) { return (low & 0xffffu) | ((high & 0xffffu) << 16); }
uint16_t Low(uint32_t pair) { return static_cast<uint16_t>(pair & 0xffffu); }
uint16_t High(uint32_t pair) { return static_cast<uint16_t>(pair >> 16); }

int32_t LeadingNumber(TextCursor text, int) { return ReadSignedNumber(&text); }

// A layout value of a DOM object as a number; a String by its leading
// number (empty: 0).
int32_t LayoutValue(NPP instance, NPObject* object, DomName name) {
  return NumberProperty(instance, object, StyleIds().dom[name], LeadingNumber, 0);
}

// The object's offsetParent (one reference, the caller's), or null.
NPObject* OffsetParent(NPP instance, NPObject* object) {
  NPVariant v;
  SetVoid(&v);
  if (!NPN_GetProperty(instance, object, StyleIds().dom[kDomOffsetParent], &v)) return nullptr;
  if (v.type == NPVariantType_Object && v.value.objectValue) return v.value.objectValue;
  NPN_ReleaseVariantValue(&v);
  return nullptr;
}

// Up the whole offsetParent chain, adding the offsets; no depth limit and no
// look at positions, margins or borders: the browser's offsets contain them.
uint32_t OffsetWalk(NPP instance, NPObject* object) {
  uint32_t x = static_cast<uint32_t>(LayoutValue(instance, object, kDomOffsetLeft));
  uint32_t y = static_cast<uint32_t>(LayoutValue(instance, object, kDomOffsetTop));
  NPObject* parent = OffsetParent(instance, object);
  if (!parent) return Pack(x, y);
  uint32_t base = OffsetWalk(instance, parent);
  NPN_ReleaseObject(parent);
  return Pack(Low(base) + x, High(base) + y);
}

// A zero dimension is taken from the nearest offsetParent that has it.
uint32_t SizeWalk(NPP instance, NPObject* object) {
  uint16_t w = static_cast<uint16_t>(LayoutValue(instance, object, kDomOffsetWidth));
  int16_t h = static_cast<int16_t>(LayoutValue(instance, object, kDomOffsetHeight));
  if (w && h) return Pack(w, static_cast<uint16_t>(h));
  NPObject* parent = OffsetParent(instance, object);
  if (!parent) return Pack(w, static_cast<uint16_t>(h));
  uint32_t size = SizeWalk(instance, parent);
  NPN_ReleaseObject(parent);
  if (w) return Pack(w, High(size));
  if (h) return Pack(Low(size), static_cast<uint16_t>(h));
  return size;
}

// The plug-in's element (one reference), or null after logging.
NPObject* PluginElement(NPP instance, const char* function, int line) {
  NPObject* element = nullptr;
  NPError err = NPN_GetValue(instance, NPNVPluginElementNPObject, &element);
  if (err != NPERR_NO_ERROR || !element) {
    ORV_ERROR(function, line, "getvalue failed err=%d\n", err);
    return nullptr;
  }
  return element;
}

// ---- the inline style parser ----

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\n'; }

void SkipBlanks(TextCursor* t) {
  while (!t->AtEnd() && IsBlank(*t->p)) t->p++;
}

// Past the next ";" (or to the end).
void SkipDeclaration(TextCursor* t) {
  while (!t->AtEnd() && *t->p != ';') t->p++;
  if (!t->AtEnd()) t->p++;
}

// Up to the next ";" (or the end).
void SkipValue(TextCursor* t) {
  while (!t->AtEnd() && *t->p != ';') t->p++;
}

bool StartsWith(const TextCursor& t, const char* word, size_t length) {
  return static_cast<size_t>(t.end - t.p) >= length && strncmp(t.p, word, length) == 0;
}

// The first style key that the text starts with, or -1.
int MatchKey(const TextCursor& t) {
  for (int k = 0; k < kStyleKeyCount; k++)
    if (StartsWith(t, kStyleKeyNames[k], StyleIds().key_lengths[k])) return k;
  return -1;
}

int32_t MatchPosition(const TextCursor& t) {
  for (int i = kPositionRelative; i >= kPositionInherit; i--)
    if (StartsWith(t, kPositionKeywords[i], StyleIds().position_lengths[i])) return i;
  return kPositionInherit;
}

uint32_t ReadUnsigned(TextCursor* t) {
  uint32_t value = 0;
  while (!t->AtEnd() && *t->p >= '0' && *t->p <= '9') value = value * 10u + static_cast<uint32_t>(*t->p++ - '0');
  if (t->Peek() == 'p' && t->p + 1 < t->end && t->p[1] == 'x') t->p += 2;
  return value;
}

void ParseStyle(StyleRecord* r, const char* text) {
  TextCursor t{text, text + strlen(text)};
  while (true) {
    SkipBlanks(&t);
    if (t.AtEnd()) return;
    int key = MatchKey(t);
    if (key < 0) {
      SkipDeclaration(&t);
      continue;
    }
    t.p += StyleIds().key_lengths[key];
    SkipBlanks(&t);
    if (t.Peek() != ':') {
      SkipDeclaration(&t);
      continue;
    }
    t.p++;
    SkipBlanks(&t);
    switch (key) {
      case kKeyPosition:
        r->position = MatchPosition(t);
        SkipValue(&t);
        break;
      case kKeyLeft: r->left = ReadSignedNumber(&t); break;
      case kKeyTop: r->top = ReadSignedNumber(&t); break;
      case kKeyWidth: r->width = static_cast<int32_t>(ReadUnsigned(&t)); break;
      case kKeyHeight: r->height = static_cast<int32_t>(ReadUnsigned(&t)); break;
      default: SkipValue(&t); break;  // recognised, not kept
    }
    SkipBlanks(&t);
    SkipDeclaration(&t);  // the ";", and whatever else the value held
  }
}

}  // namespace

int32_t ReadSignedNumber(TextCursor* t) {
  bool negative = t->Peek() == '-';
  if (negative) t->p++;
  uint32_t value = 0;
  while (!t->AtEnd() && *t->p >= '0' && *t->p <= '9') value = value * 10u + static_cast<uint32_t>(*t->p++ - '0');
  if (t->Peek() == 'p') t->p++;
  if (t->Peek() == 'x') t->p++;
  return static_cast<int32_t>(negative ? 0u - value : value);
}

void StyleInitialise() {
  for (int i = 0; i < kDomNameCount; i++) g_names.dom[i] = NPN_GetStringIdentifier(kDomNames[i]);
  for (int i = 0; i < kStyleKeyCount; i++) {
    g_names.keys[i] = NPN_GetStringIdentifier(kStyleKeyNames[i]);
    g_names.key_lengths[i] = strlen(kStyleKeyNames[i]);
  }
  for (size_t i = 0; i < kPositionKeywordCount; i++) g_names.position_lengths[i] = strlen(kPositionKeywords[i]);
  g_names.done = 1;
}

const StyleNames& StyleIds() {
  if (!g_names.done) StyleInitialise();
  return g_names;
}

StyleRecord* StyleCreate(NPP instance, const char* text) {
  StyleIds();
  StyleRecord* r = NewStyleRecord(instance);
  if (!r) return nullptr;
  if (!text) r->position = kPositionStatic;
  else ParseStyle(r, text);  // without a "position" key the index stays 0 ("inherit")
  return r;
}

NPObject* StyleObjectForPlugin(NPP instance) {
  StyleIds();
  NPObject* element = PluginElement(instance, "StyleObjectForPlugin", 1024);
  if (!element) return nullptr;
  NPVariant v;
  SetVoid(&v);
  bool ok = NPN_GetProperty(instance, element, StyleIds().dom[kDomStyle], &v);
  NPN_ReleaseObject(element);
  if (!ok || v.type != NPVariantType_Object || !v.value.objectValue) {
    if (ok) NPN_ReleaseVariantValue(&v);
    ORV_ERROR("StyleObjectForPlugin", 1018, "getproperty failed\n");
    return nullptr;
  }
  // The caller's reference; the one that came with the value is given back.
  NPObject* style = NPN_RetainObject(v.value.objectValue);
  NPN_ReleaseVariantValue(&v);
  return style;
}

namespace {

// A walk from the plug-in's element; 0 when there is no element.
uint32_t FromElement(NPP instance, const char* function, int code, uint32_t (*walk)(NPP, NPObject*)) {
  StyleIds();
  NPObject* element = PluginElement(instance, function, code);
  if (!element) return 0;
  uint32_t packed = walk(instance, element);
  NPN_ReleaseObject(element);
  return packed;
}

}  // namespace

uint32_t ScreenOffsetForPlugin(NPP instance) {
  return FromElement(instance, "ScreenOffsetForPlugin", 1055, OffsetWalk);
}

uint32_t SizeForPlugin(NPP instance) { return FromElement(instance, "SizeForPlugin", 1084, SizeWalk); }

// The element's own size, without the walk (unlike SizeForPlugin): the
// screen rectangle follows the element's box as the page styled it.
void ScreenRectForPlugin(NPP instance, int32_t* x, int32_t* y, int32_t* width, int32_t* height) {
  StyleIds();
  int32_t unused[4];
  if (!x) x = &unused[0];
  if (!y) y = &unused[1];
  if (!width) width = &unused[2];
  if (!height) height = &unused[3];
  *x = *y = *width = *height = 0;
  NPObject* element = PluginElement(instance, "ScreenRectForPlugin", 1126);
  if (!element) return;
  uint32_t offset = OffsetWalk(instance, element);
  *x = static_cast<int16_t>(Low(offset));
  *y = static_cast<int16_t>(High(offset));
  *width = static_cast<int16_t>(LayoutValue(instance, element, kDomOffsetWidth));
  *height = LayoutValue(instance, element, kDomOffsetHeight);
  NPN_ReleaseObject(element);
}

int32_t NumberProperty(NPP instance, NPObject* object, NPIdentifier id,
                       int32_t (*from_text)(TextCursor text, int key), int key) {
  NPVariant v;
  SetVoid(&v);
  if (!object || !NPN_GetProperty(instance, object, id, &v)) return 0;
  int32_t value = 0;
  switch (v.type) {
    case NPVariantType_Bool: value = v.value.boolValue ? 1 : 0; break;
    case NPVariantType_Int32: value = v.value.intValue; break;
    case NPVariantType_Double: value = NP_UtilsDoubleToInt32(v.value.doubleValue); break;
    case NPVariantType_String: {
      const char* p = v.value.stringValue.UTF8Characters;
      value = from_text(TextCursor{p, p ? p + v.value.stringValue.UTF8Length : p}, key);
      break;
    }
    default: break;
  }
  NPN_ReleaseVariantValue(&v);
  return value;
}
