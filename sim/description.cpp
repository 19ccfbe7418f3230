#include "sim/description.h"

#include <algorithm>
#include <cstdlib>
#include <cstdint>
#include <fstream>
#include <set>
#include <sstream>

#include "sim/receiver.h"

#if __has_include(<nlohmann/json.hpp>)
#include <nlohmann/json.hpp>
#define ORVANE_HAVE_JSON 1
#endif

namespace sim {

#ifdef ORVANE_HAVE_JSON
namespace {

using nlohmann::json;

// Programme times may be given relative to the receiver's clock.
const int32_t kClock = 1795000000;

// The folder of the description being read (ending in '/'; empty for a
// text): relative application URLs and carousel folders start there. Made
// on first use: a preloaded simulator reads its description before this
// unit's statics are constructed.
std::string& Base() {
  static std::string base;
  return base;
}

std::string Located(const std::string& path) {
  if (path.empty() || path[0] == '/' || path.find("://") != std::string::npos) return path;
  return Base().empty() ? path : Base() + path;
}

std::string Str(const json& j, const char* key, const std::string& fallback = "") {
  return j.contains(key) ? j.at(key).get<std::string>() : fallback;
}

// A number within 32 bits; anything else throws, naming `what`.
int32_t ToInt(const json& v, const std::string& what) {
  if (v.is_number()) {
    double d = v.get<double>();
    bool fits = v.is_number_unsigned() ? v.get<uint64_t>() <= INT32_MAX
                : v.is_number_integer() ? v.get<int64_t>() >= INT32_MIN && v.get<int64_t>() <= INT32_MAX
                                        : d >= INT32_MIN && d <= INT32_MAX;  // false for NaN
    if (!fits) throw std::runtime_error(what + ": " + v.dump() + " is beyond 32 bits");
  }
  return v.get<int32_t>();
}

std::vector<int32_t> ToInts(const json& v, const std::string& what) {
  if (!v.is_array()) throw std::runtime_error(what + " is no list of numbers");
  std::vector<int32_t> out;
  for (const json& x : v) out.push_back(ToInt(x, what));
  return out;
}

int32_t Int(const json& j, const char* key, int32_t fallback = 0) {
  if (!j.contains(key)) return fallback;
  const json& v = j.at(key);
  if (v.is_boolean()) return v.get<bool>() ? 1 : 0;
  return ToInt(v, key);
}

std::vector<std::string> Strings(const json& j, const char* key) {
  if (!j.contains(key)) return {};
  const json& v = j.at(key);
  if (v.is_string()) return {v.get<std::string>()};
  return v.get<std::vector<std::string>>();
}

// "media": {url: {title, duration (ms), components: [{type, encoding,
// language, audioDescription}], protected, unplayable, error}}; "default"
// names the clip that any other URL plays.
MediaSpec Media(const json& j, const MediaSpec& fallback) {
  MediaSpec m;
  m.title = Str(j, "title");
  m.duration_ms = Int(j, "duration", fallback.duration_ms);
  if (m.duration_ms <= 0) throw std::runtime_error("a medium's duration must be positive");
  m.components = fallback.components;
  if (j.contains("components")) {
    m.components.clear();
    for (const json& c : j.at("components")) {
      MediaComponentSpec spec;
      std::string type = Str(c, "type", "video");
      spec.type = type == "audio" ? 1 : type == "subtitle" ? 2 : 0;
      spec.encoding = Str(c, "encoding", spec.type == 0 ? "video/h264" : spec.type == 1 ? "audio/mp4" : "text/ttml");
      spec.language = Str(c, "language");
      spec.audio_description = Int(c, "audioDescription");
      m.components.push_back(spec);
    }
  }
  m.protected_media = Int(j, "protected") != 0;
  m.unplayable = Int(j, "unplayable") != 0;
  m.simulated = Int(j, "simulated") != 0;
  m.error = Int(j, "error", fallback.error);
  return m;
}

// "capabilities": {uiProfile, extensions ["+PVR", ...], broadcast [URN...],
// media [{name, type, transport}], drm [{systemId, protectionGateways,
// answers {messageType: {result, code}}, systemMessages [{message, delayMs}]}],
// extraSDVideoDecodes, extraHDVideoDecodes}.
void Capabilities(const json& j, Receiver& rx) {
  CapabilitySpec& c = rx.capabilities;
  c.ui_profile = Str(j, "uiProfile", c.ui_profile);
  if (j.contains("extensions")) c.extensions = Strings(j, "extensions");
  for (std::string& e : c.extensions)
    if (e.empty() || e[0] != '+') e = "+" + e;
  if (j.contains("broadcast")) c.broadcast = Strings(j, "broadcast");
  if (j.contains("media")) {
    c.media.clear();
    for (const json& m : j.at("media")) c.media.push_back({Str(m, "name"), Str(m, "type"), Str(m, "transport")});
  }
  if (j.contains("drm")) {
    c.drm.clear();
    for (const json& d : j.at("drm")) {
      CapabilitySpec::Drm drm;
      drm.system_id = Str(d, "systemId");
      drm.protection_gateways = Str(d, "protectionGateways");
      if (d.contains("answers"))
        for (auto& [type, a] : d.at("answers").items()) drm.answers[type] = {Str(a, "result"), Int(a, "code")};
      if (d.contains("systemMessages"))
        for (const json& m : d.at("systemMessages"))
          drm.system_messages.push_back({Str(m, "message"), Int(m, "delayMs", 100)});
      c.drm.push_back(drm);
    }
  }
  rx.extra_sd_decodes = Int(j, "extraSDVideoDecodes", rx.extra_sd_decodes);
  rx.extra_hd_decodes = Int(j, "extraHDVideoDecodes", rx.extra_hd_decodes);
}

MwHandle Rating(const json& j) {
  auto r = std::make_shared<RatingObject>();
  if (j.is_number()) {
    r->value = ToInt(j, "parentalRating");
    r->name = std::to_string(r->value);
    r->scheme = "dvb-si";
  } else {
    r->value = Int(j, "value");
    r->name = Str(j, "name", std::to_string(r->value));
    r->scheme = Str(j, "scheme", "dvb-si");
    r->labels = Int(j, "labels");
  }
  r->region = j.is_object() ? Str(j, "region", "gb") : "gb";
  return Register(r, true);
}

MwHandle Component(const json& j) {
  auto c = std::make_shared<ComponentObject>();
  std::string type = Str(j, "type", "video");
  if (type == "video") c->type = 0;
  else if (type == "audio") c->type = 1;
  else if (type == "subtitle") c->type = 2;
  else throw std::runtime_error("component type \"" + type + "\" is not video, audio or subtitle");
  c->tag = Int(j, "tag", -1);
  c->pid = Int(j, "pid");
  c->encoding = Str(j, "encoding");
  c->language = Str(j, "language");
  c->encrypted = Int(j, "encrypted");
  c->audio_description = Int(j, "audioDescription");
  c->audio_channels = Int(j, "audioChannels", c->type == 1 ? 2 : 0);
  c->hearing_impaired = Int(j, "hearingImpaired");
  c->aspect_ratio = c->type == 0 ? 1.78f : 0.0f;
  if (j.contains("aspectRatio")) {
    double ratio = j.at("aspectRatio").get<double>();
    if (!(ratio >= 0 && ratio <= 100)) throw std::runtime_error("aspectRatio: " + j.at("aspectRatio").dump() + " is no ratio");
    c->aspect_ratio = static_cast<float>(ratio);
  }
  return Register(c, true);
}

// A programme's SI descriptors: [{tag, tagExtension, bytes: "hex"}]. Each
// reads as a string whose characters are the descriptor's bytes (code
// points 0 to 255, carried as UTF-8); those given for a tag replace the
// genre text made up for it.
void Descriptors(const json& list, ProgrammeObject* p) {
  std::set<uint32_t> given;
  for (const json& d : list) {
    int32_t tag = Int(d, "tag", -1), extension = Int(d, "tagExtension", -1);
    if (tag < 0 || tag > 255 || extension > 255) throw std::runtime_error("a descriptor's tag is not a byte");
    std::string hex = Str(d, "bytes"), text;
    hex.erase(std::remove(hex.begin(), hex.end(), ' '), hex.end());
    if (hex.size() % 2 || hex.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
      throw std::runtime_error("a descriptor's bytes are not hexadecimal");
    for (size_t i = 0; i < hex.size(); i += 2) {
      unsigned byte = static_cast<unsigned>(std::stoul(hex.substr(i, 2), nullptr, 16));
      if (byte < 0x80) {
        text += static_cast<char>(byte);
      } else {
        text += static_cast<char>(0xc0 | (byte >> 6));
        text += static_cast<char>(0x80 | (byte & 0x3f));
      }
    }
    uint32_t key = static_cast<uint32_t>(tag);
    if (extension >= 0) key |= (static_cast<uint32_t>(extension) + 1) << 8;
    if (given.insert(key).second) p->descriptors[key].clear();
    p->descriptors[key].push_back(text);
  }
}

MwHandle Programme(const json& j, const std::string& ccid) {
  auto p = std::make_shared<ProgrammeObject>();
  p->name = Str(j, "name");
  p->start_time = j.contains("start") ? Int(j, "start") : kClock + Int(j, "startOffset");
  p->duration = Int(j, "duration", 1800);
  p->programme_id = Str(j, "id", ccid + "/" + std::to_string(p->start_time));
  p->programme_id_type = Int(j, "idType");
  p->description = Str(j, "description");
  p->long_description = Str(j, "longDescription", p->description);
  p->promotional_text = Str(j, "promotionalText");
  p->channel_id = ccid;
  p->genre = Strings(j, "genre");
  p->audio_languages = Strings(j, "audioLanguages");
  p->guidance = Strings(j, "guidance");
  p->has_guidance = p->guidance.empty() ? 0 : 1;
  p->crids = Strings(j, "crids");
  p->hd = Int(j, "hd");
  p->audio_description = Int(j, "audioDescription");
  p->sign_language = Int(j, "signLanguage");
  p->multilingual = Int(j, "multilingual");
  if (j.contains("parentalRating")) p->ratings.push_back(Rating(j.at("parentalRating")));
  for (const std::string& g : p->genre) p->descriptors[0x54].push_back("content:" + g);
  if (j.contains("descriptors")) Descriptors(j.at("descriptors"), p.get());
  return Register(p, true);
}

// "schedule": a compact form for a long guide: `count` programmes back to
// back from `startOffset`, each `duration` seconds, their titles, genres and
// ratings taken from the lists in turn (a title gets the programme's number
// when the list runs round).
void Schedule(const json& j, ChannelObject* c) {
  int32_t count = Int(j, "count", 48);
  int32_t duration = Int(j, "duration", 1800);
  if (count < 0 || count > 1000000 || duration <= 0)
    throw std::runtime_error("a schedule needs a count up to 1000000 and a positive duration");
  std::vector<std::string> titles = Strings(j, "titles");
  std::vector<std::string> genres = Strings(j, "genres");
  std::vector<int32_t> ratings = j.contains("ratings") ? ToInts(j.at("ratings"), "ratings")
                                                         : std::vector<int32_t>();
  if (titles.empty()) titles = {c->name + " programme"};
  int64_t start = int64_t{kClock} + Int(j, "startOffset");
  if (start < INT32_MIN || start + int64_t{count} * duration > INT32_MAX)
    throw std::runtime_error("a schedule's times leave the receiver's 32-bit clock");
  for (int32_t i = 0; i < count; i++) {
    json p;
    size_t t = static_cast<size_t>(i) % titles.size();
    p["name"] = static_cast<size_t>(i) < titles.size() ? titles[t] : titles[t] + " " + std::to_string(i + 1);
    p["start"] = static_cast<int32_t>(start + int64_t{i} * duration);
    p["duration"] = duration;
    if (!genres.empty()) p["genre"] = genres[static_cast<size_t>(i) % genres.size()];
    if (!ratings.empty()) p["parentalRating"] = ratings[static_cast<size_t>(i) % ratings.size()];
    p["description"] = c->name + ", programme " + std::to_string(i + 1);
    c->programmes.push_back(Programme(p, c->ccid));
  }
}

StreamEventSpec StreamEvent(const json& j) {
  StreamEventSpec e;
  e.name = Str(j, "name");
  e.data = Str(j, "data");
  e.text = Str(j, "text");
  e.status = Int(j, "status", 1);
  e.component_tag = Int(j, "componentTag", -1);
  e.delay_ms = Int(j, "delayMs", 20);
  e.repeat_ms = Int(j, "repeatMs", 0);
  if (e.name.empty()) throw std::runtime_error("a stream event has no name");
  return e;
}

// An AIT entry; a relative URL is a file beside the description.
AitEntry Application(const json& j) {
  AitEntry e;
  e.org_id = Int(j, "orgId");
  e.app_id = Int(j, "appId");
  e.url = Str(j, "url");
  if (e.url.empty()) throw std::runtime_error("an AIT application has no url");
  if (e.url.find("://") == std::string::npos) e.url = "file://" + Located(e.url);
  std::string control = Str(j, "control", "PRESENT");
  if (control != "AUTOSTART" && control != "PRESENT")
    throw std::runtime_error("AIT control \"" + control + "\" is not AUTOSTART or PRESENT");
  e.autostart = control == "AUTOSTART";
  e.broadcast_related = Int(j, "broadcastRelated", 1) != 0;
  return e;
}

MwHandle Channel(const json& j, size_t index) {
  auto c = std::make_shared<ChannelObject>();
  c->name = Str(j, "name");
  if (c->name.empty()) throw std::runtime_error("channel " + std::to_string(index) + " has no name");
  c->short_name = Str(j, "shortName", c->name);
  std::string type = Str(j, "type", "tv");
  if (type != "tv" && type != "radio") throw std::runtime_error("channel type \"" + type + "\" is not tv or radio");
  c->channel_type = type == "radio" ? 1 : 0;
  c->onid = Int(j, "onid");
  c->tsid = Int(j, "tsid");
  c->sid = Int(j, "sid");
  c->nid = Int(j, "nid");
  c->major_channel = Int(j, "majorChannel", static_cast<int32_t>(index) + 1);
  c->ccid = Str(j, "ccid", "ccid:dvbt." + std::to_string(index + 1));
  c->dsd = Str(j, "dsd", "dsd:" + std::to_string(c->onid) + "." + std::to_string(c->tsid));
  c->locked = Int(j, "locked");
  c->hidden = Int(j, "hidden");
  c->running_status = Int(j, "runningStatus", 1);
  if (j.contains("programmes"))
    for (const json& p : j.at("programmes")) c->programmes.push_back(Programme(p, c->ccid));
  if (j.contains("schedule")) Schedule(j.at("schedule"), c.get());
  if (j.contains("components"))
    for (const json& x : j.at("components")) c->components.push_back(Component(x));
  if (j.contains("streamEvents"))
    for (const json& e : j.at("streamEvents")) c->stream_events.push_back(StreamEvent(e));
  if (j.contains("ait"))
    for (const json& a : j.at("ait")) c->ait.push_back(Application(a));
  if (j.contains("carousel")) c->carousel = Located(Str(j, "carousel"));
  c->carousel_tag = Int(j, "carouselTag", -1);
  if (j.contains("streamEventObjects"))
    for (const json& o : j.at("streamEventObjects")) {
      std::string path = Str(o, "path");
      if (path.empty()) throw std::runtime_error("a stream event object has no path");
      c->stream_event_objects[path[0] == '/' ? path : "/" + path] = Int(o, "componentTag", -1);
    }
  if (j.contains("protected")) {
    const json& p = j.at("protected");
    c->protected_service = p.is_object() || (p.is_boolean() && p.get<bool>());
    if (p.is_object()) {
      c->drm_system_id = Str(p, "systemId");
      c->content_id = Str(p, "contentId");
      c->rights_issuer_url = Str(p, "rightsIssuerURL");
    }
    if (c->drm_system_id.empty()) c->drm_system_id = "urn:dvb:casystemid:19188";
  }
  c->timeshift = j.contains("timeshift") && j.at("timeshift").is_boolean() && j.at("timeshift").get<bool>();
  return Register(c, true);
}

int32_t KeyGroups(const json& j) {
  if (j.is_number()) return ToInt(j, "a key group");
  static const char* const kGroups[] = {"RED", "GREEN", "YELLOW", "BLUE", "NAVIGATION", "VCR",
                                        "SCROLL", "INFO", "NUMERIC", "ALPHA", "OTHER"};
  int32_t mask = 0;
  for (const json& g : j) {
    std::string name = g.get<std::string>();
    bool known = false;
    for (int i = 0; i < 11; i++)
      if (name == kGroups[i]) mask |= 1 << i, known = true;
    if (!known) throw std::runtime_error("unknown key group \"" + name + "\"");
  }
  return mask;
}

void Apply(const json& d, Receiver& rx) {
  if (!d.is_object()) throw std::runtime_error("a receiver description is a JSON object");
  if (d.contains("channels")) {
    rx.channels.clear();
    size_t i = 0;
    for (const json& c : d.at("channels")) rx.channels.push_back(Channel(c, i++));
    rx.current = 0;
  }
  if (d.contains("currentChannel")) {
    int32_t index = ToInt(d.at("currentChannel"), "currentChannel");
    if (index < 0) throw std::runtime_error("currentChannel is negative");
    size_t current = static_cast<size_t>(index);
    if (current >= rx.channels.size()) throw std::runtime_error("currentChannel is beyond the channel list");
    rx.current = current;
  }
  if (d.contains("genres")) rx.genres = d.at("genres").get<std::vector<std::string>>();
  if (d.contains("identity")) {
    const json& id = d.at("identity");
    rx.device_id = Str(id, "deviceId", rx.device_id);
    rx.vendor_name = Str(id, "vendorName", rx.vendor_name);
    rx.family_name = Str(id, "familyName", rx.family_name);
    rx.model_name = Str(id, "modelName", rx.model_name);
    rx.software_version = Str(id, "softwareVersion", rx.software_version);
    rx.hardware_version = Str(id, "hardwareVersion", rx.hardware_version);
    rx.oipf_profile = Str(id, "oipfProfile", rx.oipf_profile);
    rx.pvr_enabled = Int(id, "pvrEnabled", rx.pvr_enabled);
  }
  if (d.contains("keys")) {
    const json& k = d.at("keys");
    if (k.contains("groups")) rx.key_groups = KeyGroups(k.at("groups"));
    if (k.contains("otherKeys")) rx.other_keys = ToInts(k.at("otherKeys"), "otherKeys");
  }
  if (d.contains("preferences")) {
    const json& p = d.at("preferences");
    rx.audio_language = Str(p, "audioLanguage", rx.audio_language);
    rx.subtitle_language = Str(p, "subtitleLanguage", rx.subtitle_language);
    rx.ui_language = Str(p, "uiLanguage", rx.ui_language);
    rx.country_id = Str(p, "countryId", rx.country_id);
    rx.postcode = Str(p, "postcode", rx.postcode);
    rx.speech_description = Int(p, "speechDescription", rx.speech_description);
    rx.voice_control = Int(p, "voiceControl", rx.voice_control);
    rx.terminal_mode = Int(p, "terminalMode", rx.terminal_mode);
  }
  if (d.contains("pvr")) {
    const json& p = d.at("pvr");
    rx.pvr_enabled = Int(p, "enabled", rx.pvr_enabled);
    rx.pvr_status = Int(p, "status", rx.pvr_status);
    rx.tuners = Int(p, "tuners", rx.tuners);
  }
  if (d.contains("clock")) rx.clock_rate = Int(d.at("clock"), "rate", rx.clock_rate);
  if (d.contains("ratingSchemes")) {
    rx.schemes.clear();
    for (const json& j : d.at("ratingSchemes")) {
      auto scheme = std::make_shared<SchemeObject>();
      scheme->name = Str(j, "name", "dvb-si");
      scheme->values = Strings(j, "values");
      scheme->icons = Strings(j, "icons");
      if (j.contains("threshold")) {
        std::string t = Str(j, "threshold");
        auto r = std::make_shared<RatingObject>();
        r->scheme = scheme->name;
        r->name = t;
        auto at = std::find(scheme->values.begin(), scheme->values.end(), t);
        r->value = at != scheme->values.end() ? static_cast<int32_t>(at - scheme->values.begin())
                                              : std::atoi(t.c_str());
        if (scheme->name == "dvb-si") r->value = std::atoi(t.c_str());
        r->region = "gb";
        scheme->threshold = Register(r, true);
      }
      rx.schemes.push_back(Register(scheme, true));
    }
  }
  if (d.contains("capabilities")) Capabilities(d.at("capabilities"), rx);
  if (d.contains("timeline")) {
    rx.timeline.clear();
    for (const json& t : d.at("timeline")) {
      TimelineStep step;
      step.at_ms = Int(t, "at");
      step.network_interface = Int(t, "networkInterface", -1);
      step.connected = Int(t, "connected", 1);
      step.pvr_status = Int(t, "pvrStatus", -1);
      if (step.network_interface < 0 && step.pvr_status < 0)
        throw std::runtime_error("a timeline step names a networkInterface or a pvrStatus");
      rx.timeline.push_back(step);
    }
  }
  if (d.contains("networkInterfaces")) {
    rx.network_interfaces.clear();
    for (const json& n : d.at("networkInterfaces")) {
      auto ni = std::make_shared<NetworkInterfaceObject>();
      ni->ip_address = Str(n, "ipAddress");
      ni->mac_address = Str(n, "macAddress");
      ni->connected = Int(n, "connected", 1);
      ni->enabled = Int(n, "enabled", 1);
      rx.network_interfaces.push_back(Register(ni, true));
    }
  }
  if (d.contains("freeMemory")) rx.free_memory = Int(d, "freeMemory");
  if (d.contains("media")) {
    for (const auto& item : d.at("media").items()) {
      MediaSpec m = Media(item.value(), rx.default_media);
      if (item.key() == "default")
        rx.default_media = m;
      else
        rx.media[item.key()] = m;
    }
  }
}

}  // namespace

bool LoadDescriptionText(const std::string& text, std::string* error) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  LoadDefaultReceiver();
  Receiver rx = Rx();
  try {
    Apply(json::parse(text), rx);
  } catch (const std::exception& e) {
    if (error) *error = e.what();
    return false;
  }
  Rx() = rx;
  return true;
}

#else

bool LoadDescriptionText(const std::string&, std::string* error) {
  LoadDefaultReceiver();
  if (error) *error = "this build has no JSON support (install nlohmann-json3-dev)";
  return false;
}

#endif

bool LoadDescription(const std::string& path, std::string* error) {
  std::ifstream in(path);
  if (!in) {
    LoadDefaultReceiver();
    if (error) *error = "cannot read the file";
    return false;
  }
  std::stringstream text;
  text << in.rdbuf();
#ifdef ORVANE_HAVE_JSON
  char* real = realpath(path.c_str(), nullptr);
  std::string full = real ? real : path;
  free(real);
  Base() = full.substr(0, full.rfind('/') + 1);
#endif
  bool loaded = LoadDescriptionText(text.str(), error);
#ifdef ORVANE_HAVE_JSON
  Base().clear();
#endif
  return loaded;
}

}  // namespace sim
