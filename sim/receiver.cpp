#include "sim/receiver.h"

#include <chrono>

#include <memory>

namespace sim {
namespace {

std::vector<void (*)()>& Hooks() {
  static std::vector<void (*)()> hooks;
  return hooks;
}

template <class T>
MwHandle Keep(std::shared_ptr<T> object) {
  return Register(std::move(object), true);
}

MwHandle Rating(const std::string& scheme, const std::string& name, int32_t value) {
  auto r = std::make_shared<RatingObject>();
  r->scheme = scheme;
  r->name = name;
  r->value = value;
  r->region = "gb";
  return Keep(r);
}

MwHandle Component(int32_t type, int32_t tag, int32_t pid, const char* encoding,
                   const char* language) {
  auto c = std::make_shared<ComponentObject>();
  c->type = type;
  c->tag = tag;
  c->pid = pid;
  c->encoding = encoding;
  c->language = language;
  if (type == 0) c->aspect_ratio = 1.78f;
  if (type == 1) c->audio_channels = 2;
  return Keep(c);
}

MwHandle Programme(const std::string& ccid, const std::string& name, int32_t start,
                   int32_t duration, const std::string& genre, int32_t age) {
  auto p = std::make_shared<ProgrammeObject>();
  p->name = name;
  p->programme_id = ccid + "/" + std::to_string(start);
  p->description = name + ": a programme of the simulated receiver";
  p->long_description = p->description + ".";
  p->channel_id = ccid;
  p->start_time = start;
  p->duration = duration;
  p->genre = {genre};
  p->audio_languages = {"eng"};
  if (age > 0) p->ratings.push_back(Rating("dvb-si", std::to_string(age), age));
  p->descriptors[0x54] = {"content:" + genre};
  return Keep(p);
}

struct ChannelSpec {
  int32_t type;
  const char* name;
  int32_t onid, tsid, sid;
};

}  // namespace

ResetHook::ResetHook(void (*fn)()) { Hooks().push_back(fn); }

void ResetSubsystems() {
  for (auto fn : Hooks()) fn();
}

Receiver& Rx() {
  static Receiver* rx = new Receiver;
  return *rx;
}

std::string CapabilitiesXml(const CapabilitySpec& c) {
  std::string name = c.ui_profile;
  for (const std::string& e : c.extensions) name += e;
  std::string xml = "<profilelist>\n  <ui_profile name=\"" + name + "\"/>\n";
  for (const CapabilitySpec::Media& m : c.media) {
    bool video = m.type.compare(0, 6, "video/") == 0;
    xml += std::string("  <") + (video ? "video_profile" : "audio_profile") + " name=\"" + m.name +
           "\" type=\"" + m.type + "\"";
    if (!m.transport.empty()) xml += " transport=\"" + m.transport + "\"";
    xml += "/>\n";
  }
  for (const std::string& b : c.broadcast) xml += "  <broadcast>" + b + "</broadcast>\n";
  for (const CapabilitySpec::Drm& d : c.drm)
    xml += "  <drm DRMSystemID=\"" + d.system_id + "\" protectionGateways=\"" + d.protection_gateways +
           "\"/>\n";
  return xml + "</profilelist>\n";
}

bool HasCapability(const CapabilitySpec& c, const std::string& name) {
  if (name.empty()) return false;
  std::string full = c.ui_profile;
  for (const std::string& e : c.extensions) {
    full += e;
    if (name == e || "+" + name == e) return true;
  }
  return name == c.ui_profile || name == full;
}

MediaSpec MediaAt(const std::string& url) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  const Receiver& rx = Rx();
  auto it = rx.media.find(url);
  MediaSpec m = it != rx.media.end() ? it->second : rx.default_media;
  if (m.title.empty()) m.title = url.substr(url.find_last_of('/') + 1);
  return m;
}

namespace {
int64_t SteadyMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch()).count();
}
}  // namespace

int32_t ReceiverNow() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  const Receiver& rx = Rx();
  return static_cast<int32_t>(rx.now + (SteadyMs() - rx.loaded_ms) * rx.clock_rate / 1000);
}

void SetClockRate(int32_t rate) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Receiver& rx = Rx();
  rx.now = ReceiverNow();
  rx.loaded_ms = SteadyMs();
  rx.clock_rate = rate;
  FollowRecordings();
}

void SetReceiverTime(int32_t seconds) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Receiver& rx = Rx();
  rx.now = seconds;
  rx.loaded_ms = SteadyMs();
  FollowRecordings();
}

int32_t ReceiverTime() { return ReceiverNow(); }

std::vector<MwHandle> NetworkInterfaces() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return Rx().network_interfaces;
}

int64_t RealMsFor(int64_t seconds) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  int32_t rate = Rx().clock_rate;
  return rate > 0 ? seconds * 1000 / rate : -1;
}

MwHandle CurrentChannel() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Receiver& rx = Rx();
  return rx.current < rx.channels.size() ? rx.channels[rx.current] : 0;
}

std::vector<MwHandle> Channels() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return Rx().channels;
}

std::vector<MwHandle> ChannelComponents(size_t channel) {
  return Answer<ChannelObject>(Channels().at(channel), std::vector<MwHandle>(),
                               [](ChannelObject& c) { return c.components; });
}

std::vector<MwHandle> ChannelProgrammes(size_t channel) {
  return Answer<ChannelObject>(Channels().at(channel), std::vector<MwHandle>(),
                               [](ChannelObject& c) { return c.programmes; });
}

std::vector<MwHandle> RatingSchemes() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return Rx().schemes;
}

void SetKeyGroups(int32_t groups) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Rx().key_groups = groups;
}

void SetOtherKeys(std::vector<int32_t> keys) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Rx().other_keys = std::move(keys);
}

void SetFreeMemory(int32_t bytes) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Rx().free_memory = bytes;
}

MwHandle NewHandleList(std::vector<MwHandle> items) { return NewList(std::move(items)); }
MwHandle NewLentList(std::vector<MwHandle> items) { return NewList(std::move(items), Lending::kKeep); }
MwHandle NewTextList(std::vector<std::string> strings) { return NewStringList(std::move(strings)); }

std::string CurrentChannelName() {
  return Answer<ChannelObject>(CurrentChannel(), std::string(), [](ChannelObject& c) { return c.name; });
}

std::string HandleLabel(MwHandle handle) {
  std::shared_ptr<Object> object = Lookup(handle);
  if (auto s = std::dynamic_pointer_cast<StringObject>(object)) return "\"" + s->text + "\"";
  if (auto c = std::dynamic_pointer_cast<ChannelObject>(object)) return "(" + c->name + ")";
  return "";
}

void LoadDefaultReceiver() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Receiver& rx = Rx();
  rx = Receiver();
  const int32_t now = 1795000000;  // a fixed clock, so that runs repeat
  rx.now = now;
  rx.loaded_ms = SteadyMs();
  // Any URL plays as a one-minute clip with video, two audio languages and
  // subtitles; two named clips show the other cases.
  rx.default_media.components = {{0, "video/h264", ""}, {1, "audio/mp4", "eng"},
                                 {1, "audio/mp4", "deu"}, {2, "text/ttml", "eng"}};
  MediaSpec locked = rx.default_media;
  locked.title = "Protected clip";
  locked.protected_media = true;
  rx.media["http://media.orvane.example/protected.mp4"] = locked;
  MediaSpec broken = rx.default_media;
  broken.title = "Broken clip";
  broken.unplayable = true;
  rx.media["http://media.orvane.example/broken.mp4"] = broken;
  const ChannelSpec specs[] = {
      {0, "Orvane One", 8468, 4100, 4164},
      {0, "Orvane Two", 8468, 4100, 4228},
      {0, "Orvane News", 8468, 4101, 4287},
      {1, "Orvane Radio", 8468, 4102, 4352},
  };
  const char* genres[] = {"Drama", "Comedy", "News", "Music"};
  int n = 0;
  for (const ChannelSpec& s : specs) {
    auto c = std::make_shared<ChannelObject>();
    c->channel_type = s.type;
    c->name = s.name;
    c->short_name = std::string(s.name).substr(7);
    c->onid = s.onid;
    c->tsid = s.tsid;
    c->sid = s.sid;
    c->nid = 12339;
    c->major_channel = n + 1;
    c->ccid = "ccid:dvbt." + std::to_string(n + 1);
    c->dsd = "dsd:" + std::to_string(s.onid) + "." + std::to_string(s.tsid);
    c->programmes = {Programme(c->ccid, std::string(s.name) + " Now", now - 600, 1800, genres[n], n == 0 ? 12 : 0),
                     Programme(c->ccid, std::string(s.name) + " Next", now + 1200, 3600, genres[n], 0)};
    if (s.type == 0) c->components.push_back(Component(0, 1, 101 + n * 10, "video/h264", ""));
    c->components.push_back(Component(1, 2, 102 + n * 10, "audio/mpeg", "eng"));
    if (s.type == 0) {
      c->components.push_back(Component(1, 3, 103 + n * 10, "audio/ac3", "deu"));
      c->components.push_back(Component(2, 4, 104 + n * 10, "subtitle/dvb", "eng"));
    }
    c->stream_events.push_back({"now", "chapter-" + std::to_string(n + 1), s.name, 1});
    rx.channels.push_back(Keep(c));
    rx.genres.push_back(genres[n]);
    n++;
  }
  rx.current = 0;

  // A receiver's dvb-si scheme lists no values: its ratings are ages.
  auto scheme = std::make_shared<SchemeObject>();
  scheme->name = "dvb-si";
  scheme->threshold = Rating("dvb-si", "16", 16);
  rx.schemes.push_back(Keep(scheme));

  rx.device_id = "ORV-SIM-0001";
  rx.vendor_name = "Orvane";
  rx.family_name = "Simulated Receiver";
  rx.model_name = "ORV-1";
  rx.software_version = "1.0.0";
  rx.hardware_version = "sim";
  rx.oipf_profile = "";  // the capabilities' ui_profile name
  auto eth = std::make_shared<NetworkInterfaceObject>();
  eth->ip_address = "192.0.2.10";
  eth->mac_address = "02:00:00:00:00:01";
  rx.network_interfaces.push_back(Keep(eth));

  rx.audio_language = "eng";
  rx.subtitle_language = "eng";
  rx.ui_language = "eng";
  rx.country_id = "GBR";
  rx.postcode = "";
  rx.capabilities.extensions = {"+DVB_T", "+TRICKMODE", "+PVR", "+DRM"};
  rx.capabilities.broadcast = {"urn:dvb:broadcast:ird:video:25_Hz_H.264_AVC_HDTV_IRD",
                               "urn:dvb:broadcast:ird:audio:MPEG-1_AUDIO_LAYER_II"};
  rx.capabilities.media = {{"MP4_AVC_HD_25_HEAAC", "video/mp4", "dash"},
                           {"MPEG1_L3", "audio/mpeg", ""},
                           {"HEAAC", "audio/mp4", ""}};
  CapabilitySpec::Drm marlin;
  marlin.system_id = "urn:dvb:casystemid:19188";
  marlin.protection_gateways = "mp4";
  marlin.answers["application/vnd.marlin.drm.actiontoken+xml"] = {"OK", 0};
  rx.capabilities.drm = {marlin};
  rx.key_groups = 0x1f | 0x20 | 0x40 | 0x80 | 0x100;  // no ALPHA, no OTHER
  rx.other_keys = {0x1CD, 0x1CE};
}

}  // namespace sim
