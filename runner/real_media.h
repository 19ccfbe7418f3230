// Real media in orvane-run: A/V control players whose URL is a local file or
// on a local http server (127.0.0.1, localhost) play through GStreamer.
// Relative URLs resolve against the page's address, as a receiver's browser
// resolves them. Video frames are kept for the video plane, which draws them
// where the plug-in placed the player; audio goes to the default sink, or to
// a null sink where there is none (a virtual X server). Play states,
// duration, position, tracks, the end and errors go back to the simulator.
#ifndef ORVANE_RUNNER_REAL_MEDIA_H
#define ORVANE_RUNNER_REAL_MEDIA_H

#include <QImage>
#include <QMap>
#include <QMutex>
#include <QObject>
#include <QTimer>
#include <QUrl>

#include "sim/media_sim.h"

class RealMedia : public QObject, public sim::MediaEngine {
  Q_OBJECT
 public:
  RealMedia();
  ~RealMedia() override;
  // Whether this build plays real media at all.
  static bool Available();
  // The engine of this process, null before it is made.
  static RealMedia* Current();
  // The address relative URLs resolve against (the page's).
  void SetBase(const QUrl& base) { base_ = base; }
  // The user agent the players' http requests carry (the browser's).
  void SetUserAgent(const QString& agent) { user_agent_ = agent.toStdString(); }
  // The player's latest video frame; null when it has none.
  QImage Frame(MwHandle player);
  // Keeps a decoded frame (from a streaming thread).
  void StoreFrame(MwHandle player, const QImage& image);

  bool Plays(const std::string& url) override;
  void Open(MwHandle player, const std::string& url, bool video) override;
  void Play(MwHandle player, int32_t speed) override;
  void Seek(MwHandle player, int32_t ms) override;
  void Stop(MwHandle player) override;
  void Close(MwHandle player) override;
  int32_t Position(MwHandle player) override;
  void SetVolume(MwHandle player, int32_t volume) override;

 signals:
  void frame();  // a new video frame came

 private:
  struct Pipeline;
  QUrl Resolve(const std::string& url) const;
  void Poll();  // the pipelines' messages, on the GUI thread
  static void ReportDuration(const Pipeline* p);
  QUrl base_;
  std::string user_agent_;  // read by the source setup on streaming threads; set before players open
  QMap<MwHandle, Pipeline*> pipelines_;  // GUI thread only
  QMutex frames_mutex_;
  QMap<MwHandle, QImage> frames_;        // written from streaming threads
  QTimer poll_;
};

#endif
