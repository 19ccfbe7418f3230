// Placement of an A/V control's video: the element's screen position and
// size go to the player, the visible part to the video plane.
#include "avcontrol/avcontrol_kind.h"
#include "middleware/avcontrol.h"
#include "frame/frame.h"
#include "style/style.h"

void AVControlSetWindow(AVControlRecord* r, NPWindow* window) {
  if (!r) return;
  RecordHold hold(r);
  VideoPlacement& p = r->place;
  int32_t x = 0, y = 0;
  uint16_t style_width = 0, style_height = 0;  // full screen: neither size nor scaling
  if (!MwAVIsFullScreen(r->handle)) {
    ScreenRect e = ElementScreenRect(r->instance, StyleSize(r->instance, r->styleObject));
    if (r->gone) return;  // the layout took the element away
    if (e.x != p.screenX || e.y != p.screenY) MwAVSetPosition(r->handle, e.x, e.y);
    if (e.width != p.width) MwAVSetWidth(r->handle, e.width);
    if (e.height != p.height) MwAVSetHeight(r->handle, e.height);
    KeepScreenRect(&p, e);
    x = e.x;
    y = e.y;
    style_width = e.width;
    style_height = e.height;
  }
  if (!window) return;
  PlaceInWindow(&p, *window, x, y, style_width, style_height);
  MwRect clip = {p.clipLeft, p.clipTop, p.clipRight, p.clipBottom};
  MwVideoSetClipRect(&clip);
}

void AVControlPaint(AVControlRecord* r, const uint16_t update[4]) {
  if (!r || !update) return;
  MwRect rect = PaintedRectangle(r->place, update);
  MwVideoSetClipRect(&rect);
}
