// Shared by the placement code, the rectangle functions and the style
// script object: the interned names, the style list and the number reader.
#ifndef ORVANE_STYLE_STYLE_INTERNAL_H
#define ORVANE_STYLE_STYLE_INTERNAL_H

#include <cstddef>
#include <cstdint>

#include "npapi/npapi.h"
#include "style/style.h"

enum DomName {
  kDomParentNode,
  kDomStyle,
  kDomId,
  kDomNodeName,
  kDomOffsetParent,
  kDomOffsetLeft,
  kDomOffsetTop,
  kDomOffsetWidth,
  kDomOffsetHeight,
  kDomNameCount,
};

enum StyleKey {
  kKeyPosition,
  kKeyLeft,
  kKeyTop,
  kKeyWidth,
  kKeyHeight,
  kKeyMarginLeft,
  kKeyPaddingLeft,
  kKeyBorderLeftWidth,
  kKeyFloat,
  kKeyVerticalAlign,
  kKeyOutlineWidth,
  kStyleKeyCount,
};

constexpr size_t kPositionKeywordCount = 5;

struct StyleNames {
  NPIdentifier dom[kDomNameCount];
  NPIdentifier keys[kStyleKeyCount];
  size_t key_lengths[kStyleKeyCount];
  size_t position_lengths[kPositionKeywordCount];  // by StylePositionIndex
  int done;
};

// The names, interned on first use.
const StyleNames& StyleIds();
extern const char* const kStyleKeyNames[kStyleKeyCount];
extern const char* const kPositionKeywords[kPositionKeywordCount];

// The style records, newest first.
// A new style record and script object, on the style list; null on failure.
StyleRecord* NewStyleRecord(NPP instance);

// A bounded view of characters that need not end in NUL.
struct TextCursor {
  const char* p;
  const char* end;
  bool AtEnd() const { return p >= end; }
  char Peek() const { return AtEnd() ? '\0' : *p; }
};
// An optional "-", decimal digits, an optional "p" and an optional "x".
int32_t ReadSignedNumber(TextCursor* text);

// Property `id` of `object` as a number: failure (or no object) 0, Bool
// 0/1, Int32 as is, Double truncated toward zero, a String as `from_text`
// reads it (given `key`), anything else 0.
int32_t NumberProperty(NPP instance, NPObject* object, NPIdentifier id,
                       int32_t (*from_text)(TextCursor text, int key), int key);

#endif
