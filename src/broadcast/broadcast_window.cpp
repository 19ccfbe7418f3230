// Placement of the broadcast video: the element's screen rectangle goes to
// the middleware, and paint events punch the video plane through within the
// visible part of the plug-in.
#include "broadcast/broadcast_kind.h"
#include "middleware/broadcast.h"
#include "frame/frame.h"
#include "style/style.h"

void BroadcastSetWindow(BroadcastRecord* r, NPWindow* window) {
  if (!r) return;
  RecordHold hold(r);
  VideoPlacement& p = r->place;
  int32_t x = 0, y = 0;
  if (!MwBroadcastIsFullScreen(r->handle)) {
    ScreenRect e = ElementScreenRect(r->instance, SizeForPlugin(r->instance));
    if (r->gone) return;  // the layout took the element away
    if (e.x != p.screenX || e.y != p.screenY || e.width != p.width || e.height != p.height)
      MwBroadcastSetVideoRect(r->handle, e.x, e.y, e.width, e.height);
    KeepScreenRect(&p, e);
    x = e.x;
    y = e.y;
  }
  if (window) PlaceInWindow(&p, *window, x, y, p.width, p.height);
}

void BroadcastPaint(BroadcastRecord* r, const uint16_t update[4]) {
  if (!r || !update) return;
  if (r->playState != 1 && r->playState != 2) return;  // video shows only while connecting or presenting
  MwRect rect = PaintedRectangle(r->place, update);
  MwVideoSetPaintRect(&rect);
}
