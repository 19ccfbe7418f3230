#include "runner/real_media.h"

#include <QFileInfo>
#include <QMutexLocker>

#include "runner/log.h"

namespace {
RealMedia* g_current = nullptr;
}  // namespace

RealMedia* RealMedia::Current() { return g_current; }

#ifdef ORVANE_HAVE_GSTREAMER
#include <gst/app/gstappsink.h>
#include <gst/gst.h>
#include <gst/video/video-info.h>

namespace {

// The A/V control's error numbers: 0 format not supported, 1 cannot
// connect, 2 unidentified, 4 content corrupt, 5 content not available.
int32_t ErrorNumber(GError* error) {
  if (error->domain == GST_RESOURCE_ERROR) {
    if (error->code == GST_RESOURCE_ERROR_NOT_FOUND || error->code == GST_RESOURCE_ERROR_OPEN_READ ||
        error->code == GST_RESOURCE_ERROR_OPEN_READ_WRITE)
      return 5;
    return 1;
  }
  if (error->domain == GST_STREAM_ERROR) {
    if (error->code == GST_STREAM_ERROR_CODEC_NOT_FOUND || error->code == GST_STREAM_ERROR_TYPE_NOT_FOUND ||
        error->code == GST_STREAM_ERROR_WRONG_TYPE || error->code == GST_STREAM_ERROR_FORMAT)
      return 0;
    if (error->code == GST_STREAM_ERROR_DECODE || error->code == GST_STREAM_ERROR_DEMUX) return 4;
  }
  return 2;
}

// The default audio sink if it can open a device, else one that plays to
// nothing in real time.
GstElement* AudioSink() {
  static const bool device = [] {  // asked once: probing every sink takes a while
    GstElement* probe = gst_element_factory_make("autoaudiosink", nullptr);
    bool opens = probe && gst_element_set_state(probe, GST_STATE_READY) != GST_STATE_CHANGE_FAILURE;
    if (opens) {  // with no device it settles for a fake sink of its own
      GstElement* fake = gst_bin_get_by_name(GST_BIN(probe), "fake-audio-sink");
      if (fake) gst_object_unref(fake);
      opens = fake == nullptr;
    }
    if (probe) {
      gst_element_set_state(probe, GST_STATE_NULL);
      gst_object_unref(probe);
    }
    runlog::Line("media", opens ? "audio to the default sink" : "no audio device: audio plays to a null sink");
    return opens;
  }();
  if (device) return gst_element_factory_make("autoaudiosink", nullptr);
  GstElement* sink = gst_element_factory_make("fakesink", nullptr);
  g_object_set(sink, "sync", TRUE, nullptr);
  return sink;
}

std::vector<std::string> Languages(GstElement* playbin, const char* count_property, const char* signal) {
  gint n = 0;
  g_object_get(playbin, count_property, &n, nullptr);
  std::vector<std::string> out;
  for (gint i = 0; i < n; i++) {
    GstTagList* tags = nullptr;
    g_signal_emit_by_name(playbin, signal, i, &tags);
    gchar* language = nullptr;
    if (tags) gst_tag_list_get_string(tags, GST_TAG_LANGUAGE_CODE, &language);
    out.push_back(language ? language : "");
    g_free(language);
    if (tags) gst_tag_list_unref(tags);
  }
  return out;
}

}  // namespace

struct RealMedia::Pipeline {
  MwHandle player = 0;
  GstElement* playbin = nullptr;
  bool video = false;
  int32_t speed = 1;
  bool running = false;    // asked to play (or pause) by the player, not stopped
  bool reported = false;   // ready was reported since the last start
  bool described = false;  // duration and tracks were reported
  bool ended = false;
  int32_t failed = -1;     // the error number once it failed
};

namespace {

GstFlowReturn NewSample(GstAppSink* sink, gpointer data);

struct FrameTarget {
  RealMedia* media;
  MwHandle player;
};

}  // namespace

// Tells the simulator the medium's duration, once the pipeline knows it.
void RealMedia::ReportDuration(const Pipeline* p) {
  gint64 duration = 0;
  if (gst_element_query_duration(p->playbin, GST_FORMAT_TIME, &duration) && duration > 0)
    sim::MediaDuration(p->player, static_cast<int32_t>(duration / GST_MSECOND));
}

bool RealMedia::Available() { return true; }

RealMedia::RealMedia() {
  g_current = this;
  gst_init(nullptr, nullptr);
  connect(&poll_, &QTimer::timeout, this, &RealMedia::Poll);
  poll_.start(20);
}

RealMedia::~RealMedia() {
  for (MwHandle player : pipelines_.keys()) Close(player);
  g_current = nullptr;
}

QUrl RealMedia::Resolve(const std::string& url) const {
  QUrl given(QString::fromStdString(url));
  return given.isRelative() ? base_.resolved(given) : given;
}

bool RealMedia::Plays(const std::string& url) {
  QUrl u = Resolve(url);
  if (u.isLocalFile()) return true;
  return (u.scheme() == "http" || u.scheme() == "https") &&
         (u.host() == "127.0.0.1" || u.host() == "localhost" || u.host() == "::1");
}

void RealMedia::Open(MwHandle player, const std::string& url, bool video) {
  Close(player);
  // The browser engine registers an http source of its own that works only
  // on its thread, when it is free: players fetch for themselves.
  if (GstPluginFeature* webkit = gst_registry_lookup_feature(gst_registry_get(), "webkitwebsrc")) {
    gst_plugin_feature_set_rank(webkit, GST_RANK_NONE);
    gst_object_unref(webkit);
  }
  auto* p = new Pipeline;
  p->player = player;
  p->video = video;
  p->playbin = gst_element_factory_make("playbin", nullptr);
  QUrl u = Resolve(url);
  g_object_set(p->playbin, "uri", u.toString(QUrl::FullyEncoded).toUtf8().constData(), nullptr);
  // An http source asks with the browser's user agent, as a receiver's player does.
  g_signal_connect(p->playbin, "source-setup", G_CALLBACK(+[](GstElement*, GstElement* source, gpointer agent) {
                     if (g_object_class_find_property(G_OBJECT_GET_CLASS(source), "user-agent"))
                       g_object_set(source, "user-agent", static_cast<const std::string*>(agent)->c_str(), nullptr);
                   }),
                   &user_agent_);
  GstElement* video_sink;
  if (video) {
    video_sink = gst_element_factory_make("appsink", nullptr);
    GstCaps* caps = gst_caps_from_string("video/x-raw,format=BGRx");
    g_object_set(video_sink, "caps", caps, "sync", TRUE, "max-buffers", 2, "drop", TRUE, nullptr);
    gst_caps_unref(caps);
    GstAppSinkCallbacks callbacks = {};
    callbacks.new_sample = NewSample;
    gst_app_sink_set_callbacks(GST_APP_SINK(video_sink), &callbacks, new FrameTarget{this, player},
                               [](gpointer target) { delete static_cast<FrameTarget*>(target); });
  } else {
    video_sink = gst_element_factory_make("fakesink", nullptr);
  }
  g_object_set(p->playbin, "video-sink", video_sink, "audio-sink", AudioSink(), nullptr);
  pipelines_[player] = p;
  runlog::Line("media", QString("player %1 opens %2").arg(player).arg(u.toString()));
  gst_element_set_state(p->playbin, GST_STATE_PAUSED);  // prerolls: the duration comes
}

void RealMedia::Play(MwHandle player, int32_t speed) {
  Pipeline* p = pipelines_.value(player);
  if (!p) return;
  if (p->failed >= 0) {
    int32_t error = p->failed;  // again, once the caller's call is over
    QTimer::singleShot(0, this, [player, error] { sim::MediaFailed(player, error); });
    return;
  }
  runlog::Line("media", QString("player %1 plays at speed %2").arg(player).arg(speed));
  bool from_start = !p->running || p->ended;
  if (from_start) {
    p->reported = false;
    if (p->ended) gst_element_seek_simple(p->playbin, GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0);
    p->ended = false;
  }
  p->running = true;
  if (speed != p->speed && speed != 0) {
    gint64 at = 0;
    gst_element_query_position(p->playbin, GST_FORMAT_TIME, &at);
    gst_element_seek(p->playbin, speed, GST_FORMAT_TIME, static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH),
                     speed > 0 ? GST_SEEK_TYPE_SET : GST_SEEK_TYPE_NONE, speed > 0 ? at : 0,
                     speed > 0 ? GST_SEEK_TYPE_NONE : GST_SEEK_TYPE_SET, speed > 0 ? GST_CLOCK_TIME_NONE : at);
  }
  if (speed != 0) p->speed = speed;
  gst_element_set_state(p->playbin, speed == 0 ? GST_STATE_PAUSED : GST_STATE_PLAYING);
  GstState now = GST_STATE_NULL, pending = GST_STATE_NULL;
  gst_element_get_state(p->playbin, &now, &pending, 0);
  if (speed == 0 && now == GST_STATE_PAUSED && pending == GST_STATE_VOID_PENDING && !p->reported) {
    p->reported = true;  // already paused at its first frame: no change will tell
    QTimer::singleShot(0, this, [player] { sim::MediaReady(player); });
  }
}

void RealMedia::Seek(MwHandle player, int32_t ms) {
  Pipeline* p = pipelines_.value(player);
  if (!p) return;
  p->ended = false;
  gst_element_seek_simple(p->playbin, GST_FORMAT_TIME,
                          static_cast<GstSeekFlags>(GST_SEEK_FLAG_FLUSH | GST_SEEK_FLAG_ACCURATE),
                          static_cast<gint64>(ms) * GST_MSECOND);
}

void RealMedia::Stop(MwHandle player) {
  Pipeline* p = pipelines_.value(player);
  if (!p) return;
  p->running = false;
  p->ended = false;
  gst_element_set_state(p->playbin, GST_STATE_PAUSED);
  gst_element_seek_simple(p->playbin, GST_FORMAT_TIME, GST_SEEK_FLAG_FLUSH, 0);
  QMutexLocker lock(&frames_mutex_);
  frames_.remove(player);
}

void RealMedia::Close(MwHandle player) {
  Pipeline* p = pipelines_.take(player);
  if (p) {
    gst_element_set_state(p->playbin, GST_STATE_NULL);  // the streaming threads are gone after this
    gst_object_unref(p->playbin);
    delete p;
  }
  QMutexLocker lock(&frames_mutex_);
  frames_.remove(player);
}

int32_t RealMedia::Position(MwHandle player) {
  Pipeline* p = pipelines_.value(player);
  gint64 at = 0;
  if (!p || !gst_element_query_position(p->playbin, GST_FORMAT_TIME, &at)) return -1;
  return static_cast<int32_t>(at / GST_MSECOND);
}

void RealMedia::SetVolume(MwHandle player, int32_t volume) {
  Pipeline* p = pipelines_.value(player);
  if (p) g_object_set(p->playbin, "volume", volume / 100.0, nullptr);
}

QImage RealMedia::Frame(MwHandle player) {
  QMutexLocker lock(&frames_mutex_);
  return frames_.value(player);
}

namespace {

GstFlowReturn NewSample(GstAppSink* sink, gpointer data) {
  auto* target = static_cast<FrameTarget*>(data);
  GstSample* sample = gst_app_sink_pull_sample(sink);
  if (!sample) return GST_FLOW_OK;
  GstVideoInfo info;
  GstBuffer* buffer = gst_sample_get_buffer(sample);
  GstMapInfo map;
  if (gst_video_info_from_caps(&info, gst_sample_get_caps(sample)) && gst_buffer_map(buffer, &map, GST_MAP_READ)) {
    QImage image(map.data, GST_VIDEO_INFO_WIDTH(&info), GST_VIDEO_INFO_HEIGHT(&info),
                 GST_VIDEO_INFO_PLANE_STRIDE(&info, 0), QImage::Format_RGB32);
    target->media->StoreFrame(target->player, image.copy());
    gst_buffer_unmap(buffer, &map);
  }
  gst_sample_unref(sample);
  return GST_FLOW_OK;
}

}  // namespace

void RealMedia::StoreFrame(MwHandle player, const QImage& image) {
  {
    QMutexLocker lock(&frames_mutex_);
    frames_[player] = image;
  }
  emit frame();  // queued to the plane's thread
}

void RealMedia::Poll() {
  for (Pipeline* p : pipelines_.values()) {
    MwHandle player = p->player;
    GstBus* bus = gst_element_get_bus(p->playbin);
    while (GstMessage* m = gst_bus_pop(bus)) {
      if (getenv("ORVANE_MEDIA_TRACE")) runlog::Line("media", QString("player %1 message %2 from %3").arg(player).arg(GST_MESSAGE_TYPE_NAME(m)).arg(GST_OBJECT_NAME(GST_MESSAGE_SRC(m))));
      switch (GST_MESSAGE_TYPE(m)) {
        case GST_MESSAGE_ERROR: {
          GError* error = nullptr;
          gst_message_parse_error(m, &error, nullptr);
          bool first = p->failed < 0;  // the first error says why; the rest follow from it
          if (first) p->failed = ErrorNumber(error);
          if (first) runlog::Line("media", QString("player %1: %2 (error %3)").arg(player).arg(error->message).arg(p->failed));
          g_error_free(error);
          if (first) sim::MediaFailed(player, p->failed);
          break;
        }
        case GST_MESSAGE_EOS:
          p->ended = true;
          sim::MediaEnded(player);
          break;
        case GST_MESSAGE_BUFFERING: {
          gint percent = 100;
          gst_message_parse_buffering(m, &percent);
          if (percent < 100) sim::MediaBuffering(player);
          break;
        }
        case GST_MESSAGE_ASYNC_DONE:
        case GST_MESSAGE_DURATION_CHANGED: {
          ReportDuration(p);
          if (!p->described && GST_MESSAGE_TYPE(m) == GST_MESSAGE_ASYNC_DONE) {
            p->described = true;
            gint videos = 0;
            g_object_get(p->playbin, "n-video", &videos, nullptr);
            sim::MediaTracks(player, videos, Languages(p->playbin, "n-audio", "get-audio-tags"),
                             Languages(p->playbin, "n-text", "get-text-tags"));
          }
          break;
        }
        case GST_MESSAGE_STATE_CHANGED: {
          if (GST_MESSAGE_SRC(m) != GST_OBJECT(p->playbin) || !p->running || p->reported) break;
          GstState now;
          gst_message_parse_state_changed(m, nullptr, &now, nullptr);
          if (now == GST_STATE_PLAYING || now == GST_STATE_PAUSED) {
            GstState target = GST_STATE_VOID_PENDING;
            gst_element_get_state(p->playbin, nullptr, &target, 0);
            if (now == GST_STATE_PLAYING || target != GST_STATE_PLAYING) {
              p->reported = true;
              ReportDuration(p);  // known before the page hears it plays
              sim::MediaReady(player);
            }
          }
          break;
        }
        default:
          break;
      }
      gst_message_unref(m);
      if (pipelines_.value(player) != p) break;  // closed by what the report set off
    }
    gst_object_unref(bus);
  }
}

#else  // no GStreamer: every medium stays simulated

bool RealMedia::Available() { return false; }
RealMedia::RealMedia() { g_current = this; }
RealMedia::~RealMedia() { g_current = nullptr; }
QUrl RealMedia::Resolve(const std::string& url) const { return QUrl(QString::fromStdString(url)); }
bool RealMedia::Plays(const std::string&) { return false; }
void RealMedia::Open(MwHandle, const std::string&, bool) {}
void RealMedia::Play(MwHandle, int32_t) {}
void RealMedia::Seek(MwHandle, int32_t) {}
void RealMedia::Stop(MwHandle) {}
void RealMedia::Close(MwHandle) {}
int32_t RealMedia::Position(MwHandle) { return -1; }
void RealMedia::SetVolume(MwHandle, int32_t) {}
QImage RealMedia::Frame(MwHandle) { return QImage(); }
void RealMedia::StoreFrame(MwHandle, const QImage&) {}
void RealMedia::Poll() {}
void RealMedia::ReportDuration(const Pipeline*) {}

#endif
