// Where the plug-in's element lies on the page, and the element's style
// rectangle: read from the DOM through NPAPI, written back to the element's
// style. Packed pairs hold x (or width) in the low 16 bits and y (or height)
// in the high 16 bits.
#ifndef ORVANE_STYLE_STYLE_H
#define ORVANE_STYLE_STYLE_H

#include <cstdint>

#include "frame/record.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

// The last width and height given to StyleSetWidth / StyleSetHeight; they
// stand in for a style size of 0.
ORV_EXPORT uint32_t g_width;
ORV_EXPORT uint32_t g_heigth;

// Position keywords by index.
enum StylePositionIndex : int32_t {
  kPositionInherit = 0,
  kPositionStatic = 1,
  kPositionAbsolute = 2,
  kPositionFixed = 3,
  kPositionRelative = 4,
};

// A parsed copy of an element's inline style attribute, behind a style script object.
struct StyleRecord : ObjectRecord {
  int32_t position;   // StylePositionIndex
  int32_t left, top, width, height;
};

void StyleInitialise();
StyleRecord* StyleCreate(NPP instance, const char* text);
void StyleDestroy(StyleRecord* record);

// The element's `style` object (one reference, the caller's), or null.
NPObject* StyleObjectForPlugin(NPP instance);
uint32_t ScreenOffsetForPlugin(NPP instance);  // packed (x, y)
uint32_t SizeForPlugin(NPP instance);          // packed (width, height)
void ScreenRectForPlugin(NPP instance, int32_t* x, int32_t* y, int32_t* width, int32_t* height);

// Reads left, top, width, height of an element style object; the result of the last read.
bool StyleRect(NPP instance, NPObject* style, int32_t* left, int32_t* top, int32_t* width,
               int32_t* height);
// Writes them as "%dpx" texts; the result of the last write.
bool StyleSetRect(NPP instance, NPObject* style, int32_t left, int32_t top, int32_t width,
                  int32_t height);
// Only set the default size (g_width, g_heigth); the style is not written.
void StyleSetWidth(NPP instance, NPObject* style, uint32_t width);
void StyleSetHeight(NPP instance, NPObject* style, uint32_t height);
uint32_t StyleOffset(NPP instance, NPObject* style);  // packed (left, top)
uint32_t StyleSize(NPP instance, NPObject* style);    // packed (width, height), defaults for 0
int32_t StylePosition(NPP instance, NPObject* style);
const char* StylePositionString(uint32_t index);

#endif
