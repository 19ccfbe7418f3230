// Placement of an A/V control's video: the element's screen position and
// size go to the player, the visible part to the video plane.
#include "avcontrol/avcontrol_kind.h"
#include "middleware/avcontrol.h"
#include "style/style.h"

void AVControlSetWindow(AVControlRecord* r, NPWindow* window) {
  if (!r) return;
  VideoPlacement& p = r->place;
  int32_t x = 0, y = 0;
  uint16_t style_width = 0, style_height = 0;  // full screen: neither size nor scaling
  if (!MwAVIsFullScreen(r->handle)) {
    uint32_t offset = ScreenOffsetForPlugin(r->instance);
    uint32_t size = StyleSize(r->instance, r->styleObject);
    int16_t sx = static_cast<int16_t>(offset & 0xffff);
    int16_t sy = static_cast<int16_t>(offset >> 16);
    style_width = static_cast<uint16_t>(size & 0xffff);
    style_height = static_cast<uint16_t>(size >> 16);
    if (sx != p.screenX || sy != p.screenY) MwAVSetPosition(r->handle, sx, sy);
    if (style_width != p.width) MwAVSetWidth(r->handle, style_width);
    if (style_height != p.height) MwAVSetHeight(r->handle, style_height);
    p.screenX = sx;
    p.screenY = sy;
    p.width = style_width;
    p.height = style_height;
    x = sx;
    y = sy;
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
