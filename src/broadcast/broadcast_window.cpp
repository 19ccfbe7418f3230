// Placement of the broadcast video: the element's screen rectangle goes to
// the middleware, and paint events punch the video plane through within the
// visible part of the plug-in.
#include <algorithm>

#include "broadcast/broadcast_kind.h"
#include "middleware/broadcast.h"
#include "style/style.h"

void BroadcastSetWindow(BroadcastRecord* r, NPWindow* window) {
  if (!r) return;
  int32_t x = 0, y = 0;
  if (!MwBroadcastIsFullScreen(r->handle)) {
    uint32_t offset = ScreenOffsetForPlugin(r->instance);
    uint32_t size = SizeForPlugin(r->instance);
    int16_t sx = static_cast<int16_t>(offset & 0xffff);
    int16_t sy = static_cast<int16_t>(offset >> 16);
    uint16_t w = static_cast<uint16_t>(size & 0xffff);
    uint16_t h = static_cast<uint16_t>(size >> 16);
    if (sx != r->screenX || sy != r->screenY || w != r->width || h != r->height)
      MwBroadcastSetVideoRect(r->handle, sx, sy, w, h);
    r->screenX = sx;
    r->screenY = sy;
    r->width = w;
    r->height = h;
    x = sx;
    y = sy;
  }
  if (!window) return;
  // Scale the position to the browser's window when the two sizes differ.
  int32_t window_width = static_cast<int32_t>(window->width);
  int32_t window_height = static_cast<int32_t>(window->height);
  if (r->width && window_width && window_width != r->width) x = static_cast<int32_t>(int64_t{window_width} * x / r->width);
  if (r->height && window_height && window_height != r->height) y = static_cast<int32_t>(int64_t{window_height} * y / r->height);
  r->paintX = static_cast<int16_t>(x);
  r->paintY = static_cast<int16_t>(y);
  r->clipLeft = static_cast<int16_t>(x + window->clipRect.left);
  r->clipTop = static_cast<int16_t>(y + window->clipRect.top);
  r->clipRight = static_cast<int16_t>(x + window->clipRect.right);
  r->clipBottom = static_cast<int16_t>(y + window->clipRect.bottom);
}

void BroadcastPaint(BroadcastRecord* r, const uint16_t update[4]) {
  if (!r || !update) return;
  if (r->playState != 1 && r->playState != 2) return;  // video shows only while connecting or presenting
  MwRect rect;
  rect.left = std::max(static_cast<int16_t>(r->paintX + update[0]), r->clipLeft);
  rect.top = std::max(static_cast<int16_t>(r->paintY + update[1]), r->clipTop);
  rect.right = std::min(static_cast<int16_t>(r->paintX + update[2]), r->clipRight);
  rect.bottom = std::min(static_cast<int16_t>(r->paintY + update[3]), r->clipBottom);
  MwVideoSetPaintRect(&rect);
}
