// The TV screen: the browser's view, composed over the video plane. The
// page is the graphics plane, transparent wherever it draws nothing; where
// a broadcast object shows video, the opaque black that the browser paints
// for the windowless plug-in becomes a hole through which the plane shows,
// as a receiver's browser punches the video through.
#ifndef ORVANE_RUNNER_SCREEN_H
#define ORVANE_RUNNER_SCREEN_H

#include <QWebView>

class VideoPlane;

class Screen : public QWebView {
  Q_OBJECT
 public:
  Screen(VideoPlane* plane, int width, int height);
  // The screen as it is now.
  QImage Picture();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void Compose(QPainter& p, const QRect& area);
  VideoPlane* plane_;
};

#endif
