// The simulated channels, AV components and channel configuration, read
// from the receiver's data.
#include <memory>
#include <string>

#include "middleware/broadcast.h"
#include "sim/channel_sim.h"
#include "sim/core.h"
#include "sim/fields.h"
#include "sim/receiver.h"

namespace {

using sim::ChannelObject;
using sim::ComponentObject;
using Lock = std::lock_guard<std::recursive_mutex>;

// A channel configuration: a view of the receiver's channel line-up.
struct ChannelConfigObject : sim::Object {
  const char* Type() const override { return "channel-config"; }
};

}  // namespace

namespace sim {

MwHandle NewChannelConfig() { return Register(std::make_shared<ChannelConfigObject>(), false); }

}  // namespace sim

extern "C" {

// ---- channels ----
int32_t MwChannelGetChannelType(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::channel_type);
}

MwHandle MwChannelGetCcid(MwHandle channel) {
  SIM_CALL(MwHandle, channel);
  return sim::StringField(channel, &ChannelObject::ccid);
}

MwHandle MwChannelGetDsd(MwHandle channel) {
  SIM_CALL(MwHandle, channel);
  return sim::StringField(channel, &ChannelObject::dsd);
}

int32_t MwChannelGetOnid(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::onid);
}

int32_t MwChannelGetTsid(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::tsid);
}

int32_t MwChannelGetSid(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::sid);
}

MwHandle MwChannelGetName(MwHandle channel) {
  SIM_CALL(MwHandle, channel);
  return sim::StringField(channel, &ChannelObject::name);
}

int32_t MwChannelGetNid(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::nid);
}

int32_t MwChannelGetMajorChannel(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::major_channel, -1);
}

int32_t MwChannelIsLocked(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::locked);
}

MwHandle MwChannelGetShortName(MwHandle channel) {
  SIM_CALL(MwHandle, channel);
  return sim::StringField(channel, &ChannelObject::short_name);
}

int32_t MwChannelGetRunningStatus(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::running_status);
}

int32_t MwChannelIsHidden(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::hidden);
}

int32_t MwChannelGetOpalChannelType(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::opal_channel_type);
}

int32_t MwChannelGetFreesatServiceID(MwHandle channel) {
  SIM_CALL(int32_t, channel);
  return sim::IntField(channel, &ChannelObject::freesat_service_id);
}

// ---- channel configuration ----
MwHandle MwChannelConfigGetChannelList(MwHandle config) {
  SIM_CALL(MwHandle, config);
  return sim::Answer<ChannelConfigObject>(config, MwHandle{0}, [&](ChannelConfigObject&) {
    return sim::NewList(sim::Rx().channels);
  });
}

MwHandle MwChannelConfigGetGenres(MwHandle config) {
  SIM_CALL(MwHandle, config);
  return sim::Answer<ChannelConfigObject>(config, MwHandle{0}, [&](ChannelConfigObject&) {
    return sim::NewStringList(sim::Rx().genres);
  });
}

// ---- AV components ----
int32_t MwComponentGetTag(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::tag, -1);
}

int32_t MwComponentGetPid(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::pid);
}

int32_t MwComponentGetType(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::type);
}

MwHandle MwComponentGetEncoding(MwHandle component) {
  SIM_CALL(MwHandle, component);
  return sim::StringField(component, &ComponentObject::encoding);
}

int32_t MwComponentIsEncrypted(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::encrypted);
}

float MwComponentGetAspectRatio(MwHandle component) {
  SIM_CALL(float, component);
  return sim::Answer<ComponentObject>(component, float{0.0f},
                                      [&](ComponentObject& c) { return c.aspect_ratio; });
}

MwHandle MwComponentGetLanguage(MwHandle component) {
  SIM_CALL(MwHandle, component);
  return sim::StringField(component, &ComponentObject::language);
}

int32_t MwComponentHasAudioDescription(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::audio_description);
}

int32_t MwComponentGetAudioChannels(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::audio_channels);
}

int32_t MwComponentIsHearingImpaired(MwHandle component) {
  SIM_CALL(int32_t, component);
  return sim::IntField(component, &ComponentObject::hearing_impaired);
}

}  // extern "C"
