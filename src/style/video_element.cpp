#include "style/video_element.h"

#include <algorithm>

void PlaceInWindow(VideoPlacement* p, const NPWindow& window, int32_t x, int32_t y,
                   uint16_t style_width, uint16_t style_height) {
  int32_t window_width = static_cast<int32_t>(window.width);
  int32_t window_height = static_cast<int32_t>(window.height);
  if (style_width && window_width && window_width != style_width)
    x = static_cast<int32_t>(int64_t{window_width} * x / style_width);
  if (style_height && window_height && window_height != style_height)
    y = static_cast<int32_t>(int64_t{window_height} * y / style_height);
  p->paintX = static_cast<int16_t>(x);
  p->paintY = static_cast<int16_t>(y);
  p->clipLeft = static_cast<int16_t>(x + window.clipRect.left);
  p->clipTop = static_cast<int16_t>(y + window.clipRect.top);
  p->clipRight = static_cast<int16_t>(x + window.clipRect.right);
  p->clipBottom = static_cast<int16_t>(y + window.clipRect.bottom);
}

MwRect PaintedRectangle(const VideoPlacement& p, const uint16_t update[4]) {
  MwRect rect;
  rect.left = std::max(static_cast<int16_t>(p.paintX + update[0]), p.clipLeft);
  rect.top = std::max(static_cast<int16_t>(p.paintY + update[1]), p.clipTop);
  rect.right = std::min(static_cast<int16_t>(p.paintX + update[2]), p.clipRight);
  rect.bottom = std::min(static_cast<int16_t>(p.paintY + update[3]), p.clipBottom);
  return rect;
}

ScreenRect ElementScreenRect(NPP instance, uint32_t size) {
  uint32_t offset = ScreenOffsetForPlugin(instance);
  return ScreenRect{static_cast<int16_t>(offset & 0xffff), static_cast<int16_t>(offset >> 16),
                    static_cast<uint16_t>(size & 0xffff), static_cast<uint16_t>(size >> 16)};
}

void KeepScreenRect(VideoPlacement* p, const ScreenRect& rect) {
  p->screenX = rect.x;
  p->screenY = rect.y;
  p->width = rect.width;
  p->height = rect.height;
}
