#include "runner/video_plane.h"

#include <QMetaObject>
#include <QPainter>
#include <mutex>

#include "runner/real_media.h"
#include "sim/avcontrol_sim.h"
#include "sim/receiver_sim.h"

namespace {

int Number(const sim::Call& c, size_t i) {
  if (i >= c.args.size()) return 0;
  try {
    return std::stoi(c.args[i]);
  } catch (...) {
    return 0;
  }
}

// "[l,t,r,b]" as the simulator prints a rectangle.
QRect RectArg(const sim::Call& c, size_t i) {
  if (i >= c.args.size()) return QRect();
  QString text = QString::fromStdString(c.args[i]);
  if (!text.startsWith('[')) return QRect();
  QStringList v = text.mid(1, text.size() - 2).split(',');
  if (v.size() != 4) return QRect();
  return QRect(QPoint(v[0].toInt(), v[1].toInt()), QPoint(v[2].toInt() - 1, v[3].toInt() - 1));
}

QString PresentedChannelName() {
  std::string name = sim::CurrentChannelName();
  return name.empty() ? QString("no channel") : QString::fromStdString(name);
}

std::mutex g_mu;
VideoPlane* g_plane = nullptr;  // the plane that observes, under g_mu

}  // namespace

VideoPlane::VideoPlane(int width, int height) : screen_(0, 0, width, height) {
  {
    std::lock_guard<std::mutex> lock(g_mu);
    g_plane = this;
  }
  connect(&clock_, &QTimer::timeout, this, [this] {
    if (!Players().isEmpty()) emit changed();
  });
  clock_.start(100);
  if (RealMedia* media = RealMedia::Current())
    connect(media, &RealMedia::frame, this, [this] { emit changed(); }, Qt::QueuedConnection);
}

VideoPlane::~VideoPlane() {
  std::lock_guard<std::mutex> lock(g_mu);
  if (g_plane == this) g_plane = nullptr;
}

void VideoPlane::Observe(const sim::Call& call) {
  static const char* const kWatched[] = {
      "MwBroadcastSetVideoRect", "MwVideoSetPaintRect", "MwBroadcastSetFullScreen",
      "event:Broadcast_onPlayStateChange", "event:Broadcast_onChannelChangeSucceeded",
      "MwBroadcastStop", "MwBroadcastRelease", "MwBroadcastBindToCurrentChannel"};
  bool watched = false;
  for (const char* name : kWatched) watched |= call.op == name;
  if (!watched) return;
  sim::Call copy = call;
  std::lock_guard<std::mutex> lock(g_mu);
  VideoPlane* plane = g_plane;
  // A queued call to a plane deleted meanwhile is dropped by Qt.
  if (plane) QMetaObject::invokeMethod(plane, [plane, copy] { plane->Apply(copy); }, Qt::QueuedConnection);
}

void VideoPlane::Apply(const sim::Call& c) {
  QString handle = c.args.empty() ? QString() : QString::fromStdString(c.args[0]);
  if (c.op == "MwBroadcastSetVideoRect") {
    videos_[handle].rect = QRect(Number(c, 1), Number(c, 2), Number(c, 3), Number(c, 4));
  } else if (c.op == "MwVideoSetPaintRect") {
    // Comes with every paint of the page (repainting for it would never end);
    // only stands in for a video rectangle the middleware was not given.
    paint_rect_ = RectArg(c, 0);
    return;
  } else if (c.op == "MwBroadcastSetFullScreen") {
    videos_[handle].full_screen = Number(c, 1) != 0;
  } else if (c.op == "event:Broadcast_onPlayStateChange") {
    videos_[handle].play_state = Number(c, 1);
  } else if (c.op == "MwBroadcastStop" || c.op == "MwBroadcastRelease") {
    if (videos_.contains(handle)) videos_[handle].play_state = 0;
  }
  emit changed();
}

QRect VideoPlane::Where(const Video& v) const {
  if (v.play_state != 1 && v.play_state != 2) return QRect();  // neither connecting nor presenting
  QRect r = v.full_screen ? screen_ : v.rect;
  if (r.isEmpty()) r = paint_rect_;
  return r.intersected(screen_);
}

QVector<QRect> VideoPlane::Showing() const {
  QVector<QRect> out;
  for (const Video& v : videos_)
    if (!Where(v).isEmpty()) out << Where(v);
  for (const Player& player : Players()) out << player.rect;
  return out;
}

namespace {

QString Timecode(int ms) {
  ms = qMax(0, ms);
  return QString("%1:%2.%3")
      .arg(ms / 60000, 2, 10, QChar('0'))
      .arg(ms / 1000 % 60, 2, 10, QChar('0'))
      .arg(ms / 100 % 10);
}

const char* const kPlayerStates[] = {"stopped", "playing", "paused", "connecting", "buffering",
                                     "finished", "error"};

}  // namespace

// Video players that are starting, playing or paused, where the plug-in put them.
QVector<VideoPlane::Player> VideoPlane::Players() const {
  QVector<Player> out;
  MwRect clip;
  bool clipped = sim::LastClipRect(&clip);
  for (MwHandle h : sim::AVPlayers()) {
    sim::AVPlayerState s;
    if (!sim::AVPlayer(h, &s) || (s.kind != 7 && s.kind != 8)) continue;
    if (s.play_state < 1 || s.play_state > 4) continue;
    QRect r = s.full_screen ? screen_ : QRect(s.x, s.y, s.width, s.height);
    if (r.isEmpty() && clipped) r = QRect(QPoint(clip.left, clip.top), QPoint(clip.right - 1, clip.bottom - 1));
    r = r.intersected(screen_);
    if (r.isEmpty()) continue;
    QString status = Timecode(s.position) + " / " + Timecode(s.play_time);
    if (s.play_state != 1) status += QString("  (%1)").arg(kPlayerStates[s.play_state]);
    else if (s.speed != 1) status += QString("  x%1").arg(s.speed);
    out << Player{h, r, QString::fromStdString(s.title), status};
  }
  return out;
}

void VideoPlane::PaintPlayer(QPainter& p, const Player& player) const {
  const QRect& r = player.rect;
  QImage frame = RealMedia::Current() ? RealMedia::Current()->Frame(player.handle) : QImage();
  if (!frame.isNull()) {
    // A real medium's picture, scaled into the rectangle with its shape kept.
    p.fillRect(r, Qt::black);
    QSize size = frame.size().scaled(r.size(), Qt::KeepAspectRatio);
    QRect where(QPoint(0, 0), size);
    where.moveCenter(r.center());
    p.drawImage(where, frame);
    return;
  }
  p.save();
  p.setClipRect(r);
  QLinearGradient g(r.topLeft(), r.bottomRight());
  g.setColorAt(0, QColor(20, 60, 110));
  g.setColorAt(1, QColor(80, 20, 90));
  p.fillRect(r, g);
  QFont f = p.font();
  f.setPixelSize(qMax(10, r.height() / 9));
  f.setBold(true);
  p.setFont(f);
  p.setPen(Qt::white);
  p.drawText(r.adjusted(0, 0, 0, -r.height() / 4), Qt::AlignCenter, player.title);
  f.setPixelSize(qMax(9, r.height() / 14));
  f.setBold(false);
  p.setFont(f);
  p.drawText(r.adjusted(0, r.height() / 3, 0, 0), Qt::AlignCenter, player.status);
  p.setPen(QPen(Qt::white, 2, Qt::DashLine));
  p.drawRect(r.adjusted(1, 1, -1, -1));
  p.restore();
}

bool VideoPlane::Controlled() const {
  for (const Video& v : videos_)
    if (v.play_state >= 1 && v.play_state <= 3) return true;  // connecting, presenting, stopped
  return !Players().isEmpty();
}

void VideoPlane::Paint(QPainter& p) const {
  p.fillRect(screen_, Qt::black);
  QString channel = PresentedChannelName();
  // The service the application started over runs behind the page, full
  // screen, until a video object takes the video (or there is none).
  if (!Controlled() && sim::CurrentChannel()) PaintPicture(p, screen_, channel);
  for (const Video& v : videos_) {
    QRect r = Where(v);
    if (!r.isEmpty()) PaintPicture(p, r, v.play_state == 1 ? channel + " (connecting)" : channel);
  }
  for (const Player& player : Players()) PaintPlayer(p, player);
}

void VideoPlane::PaintPicture(QPainter& p, const QRect& r, const QString& channel) const {
  static const QColor kBars[] = {QColor(192, 192, 192), QColor(192, 192, 0), QColor(0, 192, 192),
                                 QColor(0, 192, 0),     QColor(192, 0, 192), QColor(192, 0, 0),
                                 QColor(0, 0, 192)};
  p.save();
  p.setClipRect(r);
  const int n = 7;
  for (int i = 0; i < n; i++) {
    int x0 = r.left() + r.width() * i / n, x1 = r.left() + r.width() * (i + 1) / n;
    p.fillRect(QRect(x0, r.top(), x1 - x0, r.height() * 3 / 4), kBars[i]);
  }
  p.fillRect(QRect(r.left(), r.top() + r.height() * 3 / 4, r.width(), r.height() - r.height() * 3 / 4),
             QColor(16, 16, 48));
  // The channel's name on a dark band across the middle, and the rectangle.
  QFont f = p.font();
  f.setPixelSize(qMax(10, r.height() / 10));
  f.setBold(true);
  p.setFont(f);
  QRect band(r.left(), r.top() + r.height() * 3 / 8 - r.height() / 12, r.width(), r.height() / 6);
  p.fillRect(band, QColor(0, 0, 0, 180));
  p.setPen(Qt::white);
  p.drawText(band, Qt::AlignCenter, channel);
  QFont small = p.font();
  small.setPixelSize(qBound(8, r.height() / 20, 16));
  small.setBold(false);
  p.setFont(small);
  p.drawText(r.adjusted(6, 0, -6, -4), Qt::AlignBottom | Qt::AlignLeft,
             QString("video %1,%2 %3x%4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height()));
  p.setPen(QPen(Qt::white, 2, Qt::DashLine));
  p.drawRect(r.adjusted(1, 1, -1, -1));
  p.restore();
}
