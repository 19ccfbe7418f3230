// Placement of an A/V control's video: the element's screen position and
// size go to the player, the visible part to the video plane.
#include <algorithm>

#include "avcontrol/avcontrol_kind.h"
#include "middleware/avcontrol.h"
#include "style/style.h"

void AVControlSetWindow(AVControlRecord* r, NPWindow* window) {
  if (!r) return;
  int32_t x = 0, y = 0;
  uint16_t style_width = 0, style_height = 0;
  if (!MwAVIsFullScreen(r->handle)) {
    uint32_t offset = ScreenOffsetForPlugin(r->instance);
    uint32_t size = StyleSize(r->instance, r->styleObject);
    int16_t sx = static_cast<int16_t>(offset & 0xffff);
    int16_t sy = static_cast<int16_t>(offset >> 16);
    style_width = static_cast<uint16_t>(size & 0xffff);
    style_height = static_cast<uint16_t>(size >> 16);
    if (sx != r->screenX || sy != r->screenY) MwAVSetPosition(r->handle, sx, sy);
    if (style_width != r->width) MwAVSetWidth(r->handle, style_width);
    if (style_height != r->height) MwAVSetHeight(r->handle, style_height);
    r->screenX = sx;
    r->screenY = sy;
    r->width = style_width;
    r->height = style_height;
    x = sx;
    y = sy;
  }
  if (!window) return;
  // Scale the position to the browser's window when the two sizes differ.
  int32_t window_width = static_cast<int32_t>(window->width);
  int32_t window_height = static_cast<int32_t>(window->height);
  if (style_width && window_width && window_width != style_width)
    x = static_cast<int16_t>(int64_t{window_width} * x / style_width);
  if (style_height && window_height && window_height != style_height)
    y = static_cast<int16_t>(int64_t{window_height} * y / style_height);
  r->paintX = static_cast<int16_t>(x);
  r->paintY = static_cast<int16_t>(y);
  r->clipLeft = static_cast<int16_t>(x + window->clipRect.left);
  r->clipTop = static_cast<int16_t>(y + window->clipRect.top);
  r->clipRight = static_cast<int16_t>(x + window->clipRect.right);
  r->clipBottom = static_cast<int16_t>(y + window->clipRect.bottom);
  MwRect clip = {r->clipLeft, r->clipTop, r->clipRight, r->clipBottom};
  MwVideoSetClipRect(&clip);
}

// The dirty area, moved to the screen and kept within the clip rectangle.
void AVControlPaint(AVControlRecord* r, const uint16_t update[4]) {
  if (!r || !update) return;
  MwRect rect;
  rect.left = std::max(static_cast<int16_t>(r->paintX + update[0]), r->clipLeft);
  rect.top = std::max(static_cast<int16_t>(r->paintY + update[1]), r->clipTop);
  rect.right = std::min(static_cast<int16_t>(r->paintX + update[2]), r->clipRight);
  rect.bottom = std::min(static_cast<int16_t>(r->paintY + update[3]), r->clipBottom);
  MwVideoSetClipRect(&rect);
}
