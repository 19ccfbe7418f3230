// Placement of the broadcast video: the element's screen rectangle goes to
// the middleware, and paint events punch the video plane through within the
// visible part of the plug-in.
#include "broadcast/broadcast_kind.h"
#include "middleware/broadcast.h"
#include "style/style.h"

void BroadcastSetWindow(BroadcastRecord* r, NPWindow* window) {
  if (!r) return;
  VideoPlacement& p = r->place;
  int32_t x = 0, y = 0;
  if (!MwBroadcastIsFullScreen(r->handle)) {
    uint32_t offset = ScreenOffsetForPlugin(r->instance);
    uint32_t size = SizeForPlugin(r->instance);
    int16_t sx = static_cast<int16_t>(offset & 0xffff);
    int16_t sy = static_cast<int16_t>(offset >> 16);
    uint16_t w = static_cast<uint16_t>(size & 0xffff);
    uint16_t h = static_cast<uint16_t>(size >> 16);
    if (sx != p.screenX || sy != p.screenY || w != p.width || h != p.height)
      MwBroadcastSetVideoRect(r->handle, sx, sy, w, h);
    p.screenX = sx;
    p.screenY = sy;
    p.width = w;
    p.height = h;
    x = sx;
    y = sy;
  }
  if (window) PlaceInWindow(&p, *window, x, y, p.width, p.height);
}

void BroadcastPaint(BroadcastRecord* r, const uint16_t update[4]) {
  if (!r || !update) return;
  if (r->playState != 1 && r->playState != 2) return;  // video shows only while connecting or presenting
  MwRect rect = PaintedRectangle(r->place, update);
  MwVideoSetPaintRect(&rect);
}
