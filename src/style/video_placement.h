// Where a video object's picture goes on the screen: the element's position
// and size as last given to the middleware, and the part of it the browser
// shows, for the broadcast and the video A/V control objects alike.
#ifndef ORVANE_STYLE_VIDEO_PLACEMENT_H
#define ORVANE_STYLE_VIDEO_PLACEMENT_H

#include <cstdint>

#include "middleware/types.h"
#include "npapi/npapi.h"

struct VideoPlacement {
  int16_t clipLeft, clipTop, clipRight, clipBottom;  // visible rectangle on screen
  int16_t screenX, screenY;  // position last sent to the middleware
  int16_t paintX, paintY;    // the position scaled to the browser window
  uint16_t width, height;    // size last sent to the middleware
};

// The element at (x, y) with the given style size: the position is scaled
// to the browser's window where a size is known and differs from the
// window's, kept as the paint offset, and the window's clip rectangle,
// moved by it, becomes the visible rectangle.
void PlaceInWindow(VideoPlacement* p, const NPWindow& window, int32_t x, int32_t y,
                   uint16_t style_width, uint16_t style_height);
// A paint event's dirty rectangle {left, top, right, bottom}, moved to the
// screen and kept within the visible rectangle.
MwRect PaintedRectangle(const VideoPlacement& p, const uint16_t update[4]);

#endif
