// Reading and writing the rectangle of an element's style object (the
// browser's CSSStyleDeclaration), and the default size.
#include <cstdio>
#include <cstring>

#include "frame/record.h"
#include "npapi/browser.h"
#include "npapi/log.h"
#include "style/style.h"
#include "style/style_internal.h"
#include "utils/convert.h"
#include "utils/record_alloc.h"

uint32_t g_width = 0;
uint32_t g_heigth = 0;

namespace {

constexpr StyleKey kRectKeys[] = {kKeyLeft, kKeyTop, kKeyWidth, kKeyHeight};

TextCursor StringText(const NPVariant& v) {
  const char* p = v.value.stringValue.UTF8Characters;
  return TextCursor{p, p ? p + v.value.stringValue.UTF8Length : p};
}

bool ContainsPx(const TextCursor& t) {
  for (const char* p = t.p; p + 1 < t.end; p++)
    if (p[0] == 'p' && p[1] == 'x') return true;
  return false;
}

// The keyword index a position text starts with, "relative" first; 0 for none.
int32_t PositionIndex(const TextCursor& t) {
  size_t length = static_cast<size_t>(t.end - t.p);
  for (int i = kPositionRelative; i >= kPositionInherit; i--) {
    size_t n = StyleIds().position_lengths[i];
    if (length >= n && strncmp(t.p, kPositionKeywords[i], n) == 0) return i;
  }
  return kPositionInherit;
}

// A style property's text: the keyword index for "position" and, for the
// others, its number when it holds "px" (0 without "px").
int32_t StyleText(TextCursor text, int key) {
  if (key == kKeyPosition) return PositionIndex(text);
  return ContainsPx(text) ? ReadSignedNumber(&text) : 0;
}

// One style property as a number (its text read by StyleText).
int32_t ReadStyleValue(NPP instance, NPObject* style, StyleKey key) {
  return NumberProperty(instance, style, StyleIds().keys[key], StyleText, key);
}

}  // namespace

bool StyleRect(NPP instance, NPObject* style, int32_t* left, int32_t* top, int32_t* width,
               int32_t* height) {
  int32_t* outputs[] = {left, top, width, height};
  bool ok = false;
  for (size_t i = 0; i < 4; i++) {
    NPVariant v;
    SetVoid(&v);
    ok = style && NPN_GetProperty(instance, style, StyleIds().keys[kRectKeys[i]], &v);
    int32_t value = 0;
    if (ok && v.type == NPVariantType_String) {
      TextCursor text = StringText(v);  // read whether or not it holds "px"
      value = ReadSignedNumber(&text);
    } else if (ok && v.type == NPVariantType_Int32) {
      value = v.value.intValue;
    }
    if (ok) NPN_ReleaseVariantValue(&v);
    if (outputs[i]) *outputs[i] = value;
  }
  return ok;
}

bool StyleSetRect(NPP instance, NPObject* style, int32_t left, int32_t top, int32_t width,
                  int32_t height) {
  const int32_t values[] = {left, top, width, height};
  bool ok = false;
  for (size_t i = 0; i < 4; i++) {
    char text[16];
    snprintf(text, sizeof text, "%dpx", values[i]);
    NPVariant v;
    v.type = NPVariantType_String;
    v.value.stringValue.UTF8Characters = text;
    v.value.stringValue.UTF8Length = static_cast<uint32_t>(strlen(text));
    ok = style && NPN_SetProperty(instance, style, StyleIds().keys[kRectKeys[i]], &v);
    if (!ok) ORV_ERROR("StyleSetRect", 1207, "Setproperty failed for %s\n", kStyleKeyNames[kRectKeys[i]]);
  }
  return ok;
}

// StyleSetWidth and StyleSetHeight only set the exported default size
// (g_width, g_heigth); the style object is left alone, so the element keeps
// the size the page's style gives it.
void StyleSetWidth(NPP, NPObject*, uint32_t width) { g_width = width; }
void StyleSetHeight(NPP, NPObject*, uint32_t height) { g_heigth = height; }

uint32_t StyleOffset(NPP instance, NPObject* style) {
  uint32_t left = static_cast<uint32_t>(ReadStyleValue(instance, style, kKeyLeft));
  uint32_t top = static_cast<uint32_t>(ReadStyleValue(instance, style, kKeyTop));
  return (left & 0xffffu) | ((top & 0xffffu) << 16);
}

uint32_t StyleSize(NPP instance, NPObject* style) {
  uint32_t width = static_cast<uint32_t>(ReadStyleValue(instance, style, kKeyWidth));
  uint32_t height = static_cast<uint32_t>(ReadStyleValue(instance, style, kKeyHeight));
  if (!width) width = g_width;
  if (!height) height = g_heigth;
  return (width & 0xffffu) | ((height & 0xffffu) << 16);
}

int32_t StylePosition(NPP instance, NPObject* style) {
  return ReadStyleValue(instance, style, kKeyPosition);
}

const char* StylePositionString(uint32_t index) {
  return index < kPositionKeywordCount ? kPositionKeywords[index] : kPositionKeywords[kPositionInherit];
}
