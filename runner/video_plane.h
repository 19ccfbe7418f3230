// The receiver's video plane: the service behind the page, what each
// broadcast object presents and where, as the middleware learns it from the
// plug-in (video rectangles, play states, full screen), and the test picture
// that stands in for the video: colour bars with the channel's name filling
// the rectangle (the whole screen for the service behind the page). Video
// A/V control players show in the rectangle the plug-in gave them, with
// the medium's name and a running timecode; audio players show nothing.
#ifndef ORVANE_RUNNER_VIDEO_PLANE_H
#define ORVANE_RUNNER_VIDEO_PLANE_H

#include <QMap>
#include <QObject>
#include <QRect>
#include <QTimer>
#include <QVector>

#include "sim/sim.h"

class QPainter;

class VideoPlane : public QObject {
  Q_OBJECT
 public:
  VideoPlane(int width, int height);
  ~VideoPlane() override;
  // Takes note of a middleware call or event for the plane that exists, if
  // any; callable from any thread.
  static void Observe(const sim::Call& call);
  // The rectangles of the video objects that show video now.
  QVector<QRect> Showing() const;
  // Paints the plane: black, with the test picture in each rectangle showing,
  // or the current channel full screen while no video object controls the video.
  void Paint(QPainter& p) const;

 signals:
  void changed();

 private:
  struct Video {
    QRect rect;              // from MwBroadcastSetVideoRect
    int play_state = 0;      // last Broadcast_onPlayStateChange
    bool full_screen = false;
  };
  void Apply(const sim::Call& call);  // on the GUI thread
  QRect Where(const Video& v) const;
  bool Controlled() const;  // a video object or player has the video
  void PaintPicture(QPainter& p, const QRect& r, const QString& channel) const;
  // A video player's rectangle and picture (empty when it shows nothing).
  struct Player {
    MwHandle handle;
    QRect rect;
    QString title, status;
  };
  QVector<Player> Players() const;
  void PaintPlayer(QPainter& p, const Player& player) const;
  QTimer clock_;  // repaints while a player shows, so that its timecode runs
  QRect screen_;
  QMap<QString, Video> videos_;  // by broadcast handle
  QRect paint_rect_;             // last MwVideoSetPaintRect, empty for none
};

#endif
