// The simulated programme getters over the receiver's programmes (and the
// empty programmes that the recording scheduler makes).
#include <memory>
#include <string>

#include "middleware/broadcast.h"
#include "sim/core.h"
#include "sim/fields.h"
#include "sim/receiver.h"

namespace {

using sim::ProgrammeObject;
using Lock = std::lock_guard<std::recursive_mutex>;

// The receiver's media-asset element: the plug-in only counts such lists,
// so their elements are lent and stay the receiver's.
struct MediaAsset : sim::Object {
  const char* Type() const override { return "media-asset"; }
};
MwHandle g_media_asset = 0;

MwHandle MediaAssetElement() {
  if (!sim::Find<MediaAsset>(g_media_asset)) g_media_asset = sim::Register(std::make_shared<MediaAsset>(), true);
  return g_media_asset;
}

}  // namespace

extern "C" {

MwHandle MwProgrammeGetName(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringField(programme, &ProgrammeObject::name);
}

MwHandle MwProgrammeGetProgrammeID(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringField(programme, &ProgrammeObject::programme_id);
}

int32_t MwProgrammeGetProgrammeIDType(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::programme_id_type);
}

MwHandle MwProgrammeGetDescription(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringField(programme, &ProgrammeObject::description);
}

MwHandle MwProgrammeGetLongDescription(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringField(programme, &ProgrammeObject::long_description);
}

int32_t MwProgrammeGetStartTime(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::start_time);
}

int32_t MwProgrammeGetDuration(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::duration);
}

MwHandle MwProgrammeGetChannelID(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringField(programme, &ProgrammeObject::channel_id);
}

// Always a list, possibly empty, so that the page can add ratings to it.
MwHandle MwProgrammeGetParentalRatings(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::Answer<ProgrammeObject>(programme, MwHandle{0},
                                      [&](ProgrammeObject& p) { return sim::NewList(p.ratings); });
}

int32_t MwProgrammeGetAudioType(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::audio_type);
}

int32_t MwProgrammeIsMultilingual(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::multilingual);
}

MwHandle MwProgrammeGetAudioLanguages(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringListField(programme, &ProgrammeObject::audio_languages);
}

int32_t MwProgrammeIsHD(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::hd);
}

int32_t MwProgrammeHasAudioDescription(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::audio_description);
}

int32_t MwProgrammeHasSignLanguage(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::sign_language);
}

MwHandle MwProgrammeGetGenre(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringListField(programme, &ProgrammeObject::genre);
}

int32_t MwProgrammeHasGuidance(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::has_guidance);
}

MwHandle MwProgrammeGetGuidance(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringListField(programme, &ProgrammeObject::guidance);
}

// A list of `media_assets` placeholder elements: the plug-in only counts it.
MwHandle MwProgrammeGetMediaAssets(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  auto p = sim::Find<ProgrammeObject>(programme);
  if (!p) return 0;
  Lock lock(sim::Mutex());
  size_t n = p->media_assets > 0 ? static_cast<size_t>(p->media_assets) : 0;
  return sim::NewList(std::vector<MwHandle>(n, MediaAssetElement()), sim::Lending::kKeep);
}

MwHandle MwProgrammeGetPromotionalContentText(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringField(programme, &ProgrammeObject::promotional_text);
}

int32_t MwProgrammeHasHDSimulcast(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::IntField(programme, &ProgrammeObject::hd_simulcast);
}

MwHandle MwProgrammeGetCRIDS(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::StringListField(programme, &ProgrammeObject::crids);
}

int32_t MwProgrammeHasRecording(MwHandle programme) {
  SIM_CALL(int32_t, programme);
  return sim::Answer<ProgrammeObject>(programme, int32_t{0},
                                      [&](ProgrammeObject& p) { return p.recording != 0 ? 1 : 0; });
}

MwHandle MwProgrammeGetRecording(MwHandle programme) {
  SIM_CALL(MwHandle, programme);
  return sim::Answer<ProgrammeObject>(programme, MwHandle{0},
                                      [&](ProgrammeObject& p) { return sim::Give(p.recording); });
}

MwHandle MwProgrammeGetSIDescriptors(MwHandle programme, uint32_t tag, int32_t tagExtension) {
  SIM_CALL(MwHandle, programme, tag, tagExtension);
  auto p = sim::Find<ProgrammeObject>(programme);
  if (!p) return 0;
  uint32_t key = tag;
  if (tagExtension >= 0) key |= (static_cast<uint32_t>(tagExtension) + 1) << 8;
  Lock lock(sim::Mutex());
  auto it = p->descriptors.find(key);
  return it == p->descriptors.end() || it->second.empty() ? 0 : sim::NewStringList(it->second);
}

}  // extern "C"
