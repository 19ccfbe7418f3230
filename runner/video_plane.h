// The receiver's video plane, below the page: while a broadcast object
// presents, a test picture with the channel's name fills the rectangle the
// plug-in gave the middleware, so that the screen shows the layout a TV
// would show.
#ifndef ORVANE_RUNNER_VIDEO_PLANE_H
#define ORVANE_RUNNER_VIDEO_PLANE_H

#include <QMap>
#include <QRect>
#include <QWidget>

#include "sim/sim.h"

class VideoPlane : public QWidget {
  Q_OBJECT
 public:
  VideoPlane(int width, int height);
  ~VideoPlane() override;
  // Takes note of a middleware call or event for the plane that exists, if
  // any; callable from any thread.
  static void Observe(const sim::Call& call);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Video {
    QRect rect;              // from MwBroadcastSetVideoRect
    int play_state = 0;      // last Broadcast_onPlayStateChange
    bool full_screen = false;
  };
  void Apply(const sim::Call& call);  // on the GUI thread
  void PaintPicture(class QPainter& p, const QRect& r, const QString& channel) const;
  QMap<QString, Video> videos_;  // by broadcast handle
  QRect paint_rect_;             // last MwVideoSetPaintRect, empty for none
};

#endif
