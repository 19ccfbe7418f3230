// The simulated receiver's data: channels with their programmes and
// components, rating schemes, device identity, network interfaces,
// preferences and key groups. All access holds sim::Mutex().
#ifndef ORVANE_SIM_RECEIVER_H
#define ORVANE_SIM_RECEIVER_H

#include <map>
#include <string>
#include <vector>

#include "sim/core.h"
#include "sim/receiver_sim.h"

namespace sim {

struct RatingObject : Object {
  std::string name, scheme, region;
  int32_t value = 0, labels = 0;
  const char* Type() const override { return "rating"; }
};

struct SchemeObject : Object {
  std::string name;
  std::vector<std::string> values, icons;
  MwHandle threshold = 0;  // a persistent rating, 0 when none
  const char* Type() const override { return "scheme"; }
};

struct ComponentObject : Object {
  int32_t tag = -1, pid = 0, type = 0;  // 0 video, 1 audio, 2 subtitle
  std::string encoding, language;
  int32_t encrypted = 0, audio_description = 0, audio_channels = 0, hearing_impaired = 0;
  float aspect_ratio = 0.0f;
  const char* Type() const override { return "component"; }
};

struct ProgrammeObject : Object {
  std::string name, programme_id, description, long_description, channel_id, promotional_text;
  int32_t programme_id_type = 0, start_time = 0, duration = 0, audio_type = 0;
  int32_t multilingual = 0, hd = 0, audio_description = 0, sign_language = 0, has_guidance = 0,
          hd_simulcast = 0;
  std::vector<MwHandle> ratings;  // persistent ratings
  std::vector<std::string> audio_languages, genre, guidance, crids;
  int32_t media_assets = 0;
  MwHandle recording = 0;
  // SI descriptors by tag; one with a tag extension is keyed tag | (extension + 1) << 8.
  std::map<uint32_t, std::vector<std::string>> descriptors;
  const char* Type() const override { return "programme"; }
};

struct StreamEventSpec {
  std::string name, data, text;
  int32_t status = 1;
  int32_t delay_ms = 20;  // after a listener for it is registered
  int32_t repeat_ms = 0;  // 0: once
  int32_t component_tag = -1;  // the carousel component that carries it; -1: any
};

struct ChannelObject : Object {
  int32_t channel_type = 0;  // 0 TV, 1 radio
  std::string ccid, dsd, name, short_name;
  int32_t onid = 0, tsid = 0, sid = 0, nid = 0, major_channel = -1;
  int32_t locked = 0, running_status = 1, hidden = 0, opal_channel_type = 0, freesat_service_id = 0;
  std::vector<MwHandle> programmes;  // persistent, now first
  std::vector<MwHandle> components;  // persistent
  std::vector<StreamEventSpec> stream_events;  // events the channel's carousel carries
  std::vector<AitEntry> ait;                    // the applications the service signals
  std::string carousel;  // folder its dvb:// files are served from (absolute), empty: none
  int32_t carousel_tag = -1;  // the component that carries the carousel; -1: any
  // The carousel's stream event objects: path ("/events") to the component
  // tag of the elementary stream that carries their events (the object's tap).
  std::map<std::string, int32_t> stream_event_objects;
  // A service whose content is protected: presenting it without rights
  // raises a DRM rights error (no licence).
  bool protected_service = false;
  std::string drm_system_id, content_id, rights_issuer_url;
  // A service presented through a timeshift buffer: presenting it reports
  // the play speed, then the play position every second.
  bool timeshift = false;
  const char* Type() const override { return "channel"; }
};

// A medium the A/V control players can play, by URL.
struct MediaComponentSpec {
  int32_t type = 0;  // 0 video, 1 audio, 2 subtitle
  std::string encoding, language;
  int32_t audio_description = 0;
};
struct MediaSpec {
  std::string title;        // what the video plane shows; the URL's last part when empty
  int32_t duration_ms = 60000;
  std::vector<MediaComponentSpec> components;
  bool protected_media = false;  // no rights: a DRM rights error, then error
  bool unplayable = false;       // error, with `error`
  int32_t error = 4;             // the player's error number for unplayable media
  bool simulated = false;        // stays simulated where a media engine would play it
};

// What the receiver can do; the capability description XML and
// hasCapability() are both made from it.
struct CapabilitySpec {
  std::string ui_profile = "OITF_HD_UIPROF";
  std::vector<std::string> extensions;  // "+DVB_T", "+TRICKMODE", "+PVR", "+DL", "+DRM", ...
  std::vector<std::string> broadcast;   // broadcast formats (URNs)
  struct Media {
    std::string name, type, transport;  // a video_profile (type video/...) or audio_profile
  };
  std::vector<Media> media;
  // A DRM system the receiver has: what it answers to each message type it
  // knows, and the messages it sends of its own accord.
  struct DrmAnswer {
    std::string result;
    int32_t code = 0;  // 0 successful
  };
  struct DrmSystemMessage {
    std::string message;
    int32_t delay_ms = 100;  // after a DRM agent is made
  };
  struct Drm {
    std::string system_id, protection_gateways;
    std::map<std::string, DrmAnswer> answers;  // by message type
    std::vector<DrmSystemMessage> system_messages;
  };
  std::vector<Drm> drm;
};

// A change the receiver makes on its own, some time after a page opened
// its configuration: an interface (dis)connects or the PVR status changes.
struct TimelineStep {
  int32_t at_ms = 0;
  int32_t network_interface = -1;  // index, or -1
  int32_t connected = 1;
  int32_t pvr_status = -1;         // or -1
};

struct NetworkInterfaceObject : Object {
  std::string ip_address, mac_address;
  int32_t connected = 1, enabled = 1;
  const char* Type() const override { return "network-interface"; }
};

struct Receiver {
  std::vector<MwHandle> channels;  // persistent channel handles, in list order
  size_t current = 0;              // index of the channel the receiver presents
  std::vector<std::string> genres;
  std::vector<MwHandle> schemes;   // persistent rating schemes
  // identity
  std::string device_id, vendor_name, family_name, model_name, software_version,
      hardware_version, oipf_profile;
  int32_t pvr_enabled = 1, pvr_status = 0;
  std::vector<MwHandle> network_interfaces;
  // preferences
  std::string audio_language, subtitle_language, ui_language, country_id, postcode;
  int32_t speech_description = 0, voice_control = 2, terminal_mode = 0;
  // capabilities
  CapabilitySpec capabilities;
  int32_t extra_sd_decodes = 1, extra_hd_decodes = 0;
  std::vector<TimelineStep> timeline;
  // applications
  int32_t key_groups = 0x7ff;          // groups the simulated remote has
  std::vector<int32_t> other_keys;     // further key codes
  int32_t free_memory = 64 * 1024 * 1024;
  // media by URL (a URL that is not here plays as `default_media`)
  std::map<std::string, MediaSpec> media;
  MediaSpec default_media;
  // the receiver's clock, seconds since the epoch, when the receiver was
  // loaded; it stands still (so that runs repeat) unless `clock_rate` runs it
  // at that many receiver seconds per real second
  int32_t now = 0;
  int32_t clock_rate = 0;
  int64_t loaded_ms = 0;  // steady clock when the receiver was loaded
  int32_t tuners = 2;     // recordings that can run at once
};

Receiver& Rx();
// Replaces the receiver's data with the built-in default receiver.
void LoadDefaultReceiver();
// The capability description XML, and whether a profile name is supported
// ("OITF_HD_UIPROF", "+PVR", "PVR", or a ui_profile name it covers).
std::string CapabilitiesXml(const CapabilitySpec& c);
bool HasCapability(const CapabilitySpec& c, const std::string& name);
// The medium at `url`: the description's, or the default clip.
MediaSpec MediaAt(const std::string& url);
// The receiver's clock now, in seconds; and how many real milliseconds
// `seconds` of it take (-1 while it stands still).
int32_t ReceiverNow();
int64_t RealMsFor(int64_t seconds);
// The recordings take up the clock's new rate.
void FollowRecordings();
// Whether a dvb: URL names the current service: dvb://ONID.TSID.SID[.TAG]
// (hexadecimal), dvb://current or dvb://current.ait, with anything after
// it; `tag` gets the component tag or -1.
bool NamesCurrentService(const std::string& url, int32_t* tag);
// A dvb: URL of the current service with a path names a stream event object
// of its carousel, when the service describes such objects: kObject with
// `tag` set to the component that carries the object's events, or
// kNoObject when the carousel (at the URL's component) has no such object.
// kNoPath for a URL without a path or a service that describes none: the
// URL's own component tag counts.
enum StreamEventObject { kNoPath, kObject, kNoObject };
StreamEventObject FindStreamEventObject(const std::string& url, int32_t* tag);

// Lets a subsystem drop its runtime state on sim::Reset.
struct ResetHook {
  explicit ResetHook(void (*fn)());
};

}  // namespace sim

#endif
