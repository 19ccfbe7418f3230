#include "runner/screen.h"

#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QWebFrame>

#include "runner/video_plane.h"

namespace {

// Turns the plug-in's opaque black into transparency inside `hole`.
void Punch(QImage& page, const QRect& hole) {
  QRect r = hole.intersected(page.rect());
  const QRgb black = qRgba(0, 0, 0, 255);
  for (int y = r.top(); y <= r.bottom(); y++) {
    QRgb* line = reinterpret_cast<QRgb*>(page.scanLine(y));
    for (int x = r.left(); x <= r.right(); x++)
      if (line[x] == black) line[x] = 0;
  }
}

}  // namespace

Screen::Screen(VideoPlane* plane, int width, int height) : plane_(plane) {
  setFixedSize(width, height);
  setAttribute(Qt::WA_OpaquePaintEvent, true);
  connect(plane_, &VideoPlane::changed, this, [this] { update(); });
}

void Screen::Compose(QPainter& p, const QRect& area) {
  QImage page(size(), QImage::Format_ARGB32_Premultiplied);
  page.fill(Qt::transparent);
  {
    QPainter pp(&page);
    this->page()->mainFrame()->render(&pp, QRegion(area));
  }
  for (const QRect& hole : plane_->Showing()) Punch(page, hole);
  p.setClipRect(area);
  plane_->Paint(p);
  p.drawImage(0, 0, page);
}

void Screen::paintEvent(QPaintEvent* event) {
  QPainter p(this);
  Compose(p, event->rect());
}

QImage Screen::Picture() {
  QImage shot(size(), QImage::Format_RGB32);
  QPainter p(&shot);
  Compose(p, rect());
  return shot;
}
