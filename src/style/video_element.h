// What the broadcast and the video A/V control objects share as video
// elements: where the picture goes on the screen (the element's position
// and size as last given to the middleware, and the part of it the browser
// shows), the element's style object and the style of full screen. Their
// records have `place` and `styleObject`.
#ifndef ORVANE_STYLE_VIDEO_ELEMENT_H
#define ORVANE_STYLE_VIDEO_ELEMENT_H

#include <cstdint>

#include "frame/record.h"
#include "middleware/types.h"
#include "npapi/browser.h"
#include "npapi/npapi.h"
#include "style/style.h"

struct VideoPlacement {
  int16_t clipLeft, clipTop, clipRight, clipBottom;  // visible rectangle on screen
  int16_t screenX, screenY;  // position last sent to the middleware
  int16_t paintX, paintY;    // the position scaled to the browser window
  uint16_t width, height;    // size last sent to the middleware
  NPWindow* window;          // the browser's latest window, placed from its queue
  bool queued;               // a placement is queued with the browser
};

// NPP_SetWindow comes whenever the browser lays the document out, also while
// it tears the document down (a page being replaced): reading the element's
// offsets then re-enters a dying document, and the browser crashes. So the
// placement runs from the browser's queue a moment later, once for any
// number of windows given before it, for a record still on the kind's list:
// a destroyed instance's queued call is dropped by the browser or finds no
// record, and nothing was allocated for it. The browser keeps an NPWindow
// until its next NPP_SetWindow or NPP_Destroy.
template <class R, RecordList& (*List)(), void (*Place)(R*, NPWindow*)>
void PlaceQueued(void* instance) {
  for (ObjectRecord* o = List().head(); o; o = o->next) {
    if (o->instance != instance) continue;
    R* r = static_cast<R*>(o);
    if (!r->place.queued) return;
    r->place.queued = false;
    Place(r, r->place.window);
    return;
  }
}
template <class R, RecordList& (*List)(), void (*Place)(R*, NPWindow*)>
void QueuePlacement(R* r, NPWindow* window) {
  if (!r) return;
  r->place.window = window;
  if (r->place.queued) return;
  r->place.queued = true;
  NPN_PluginThreadAsyncCall(r->instance, PlaceQueued<R, List, Place>, r->instance);
}

// The element at (x, y) with the given style size: the position is scaled
// to the browser's window where a size is known and differs from the
// window's, kept as the paint offset, and the window's clip rectangle,
// moved by it, becomes the visible rectangle.
void PlaceInWindow(VideoPlacement* p, const NPWindow& window, int32_t x, int32_t y,
                   uint16_t style_width, uint16_t style_height);
// A paint event's dirty rectangle {left, top, right, bottom}, moved to the
// screen and kept within the visible rectangle.
MwRect PaintedRectangle(const VideoPlacement& p, const uint16_t update[4]);

// The element's style object, fetched afresh (the previous one let go);
// null for no record.
template <class R>
NPObject* TakeStyleObject(R* r) {
  if (!r) return nullptr;
  NPObject* previous = r->styleObject;
  r->styleObject = StyleObjectForPlugin(r->instance);
  if (previous) NPN_ReleaseObject(previous);
  return r->styleObject;
}

// The style object off the record, for the caller to let go once the
// instance has ended.
template <class R>
NPObject* DetachStyleObject(R* r) {
  NPObject* style = r->styleObject;
  r->styleObject = nullptr;
  return style;
}

// Full screen is a fixed 1280x720; back is the last place and size stored.
// Without a style object the four writes fail and say so.
template <class R>
void StyleFullScreen(R* r, bool on) {
  const VideoPlacement& p = r->place;
  if (on) StyleSetRect(r->instance, r->styleObject, 0, 0, 1280, 720);
  else StyleSetRect(r->instance, r->styleObject, p.screenX, p.screenY, p.width, p.height);
}

// The element's place on the screen with the size given (packed, width in
// the low half).
struct ScreenRect {
  int16_t x, y;
  uint16_t width, height;
};
ScreenRect ElementScreenRect(NPP instance, uint32_t size);
// Keeps `rect` as the place last given to the middleware.
void KeepScreenRect(VideoPlacement* p, const ScreenRect& rect);

#endif
