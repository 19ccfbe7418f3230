// The simulated A/V control players: a playlist (the data URL and what was
// queued), play state, position, speed, volume, placement, full screen and
// media components, with play-state and full-screen events from the
// simulator's thread.
#include <algorithm>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "middleware/avcontrol.h"
#include "sim/avcontrol_sim.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

const int32_t kStopped = 0, kPlaying = 1, kPaused = 2;
const int32_t kMediaLengthMs = 600000;  // every simulated medium lasts ten minutes
const int kEventDelayMs = 5;

struct PlayerObject : sim::Object {
  sim::AVPlayerState state;
  std::vector<MwHandle> components;  // persistent, of this player's medium
  std::set<void*> selected_objects;
  const char* Type() const override { return "av-player"; }
  std::string Data() const {
    size_t t = static_cast<size_t>(state.track);
    return t < state.playlist.size() ? state.playlist[t] : "";
  }
};

bool g_clip_set = false;
MwRect g_clip = {0, 0, 0, 0};
sim::ResetHook g_reset([] { g_clip_set = false; });

MwHandle Component(int32_t type, const char* encoding) {
  auto c = std::make_shared<sim::ComponentObject>();
  c->type = type;
  c->tag = type + 1;
  c->encoding = encoding;
  if (type == 0) c->aspect_ratio = 1.78f;
  if (type == 1) {
    c->language = "eng";
    c->audio_channels = 2;
  }
  return sim::Register(c, true);
}

MwHandle CreatePlayer(int32_t kind) {
  auto p = std::make_shared<PlayerObject>();
  p->state.kind = kind;
  bool video = kind == 7 || kind == 8;
  if (video) p->components.push_back(Component(0, kind == 7 ? "video/mpeg2" : "video/h264"));
  p->components.push_back(Component(1, kind == 7 || kind == 9 ? "audio/mpeg" : "audio/mp4"));
  for (MwHandle c : p->components) p->state.active_types.push_back(sim::Find<sim::ComponentObject>(c)->type);
  return sim::Register(p, false);
}

// Runs `fn` on the player's state under the lock; `fallback` for another handle.
template <class R>
R WithPlayer(MwHandle player, R fallback, const std::function<R(PlayerObject&)>& fn) {
  auto p = sim::Find<PlayerObject>(player);
  if (!p) return fallback;
  Lock lock(sim::Mutex());
  return fn(*p);
}

void WithPlayer(MwHandle player, const std::function<void(PlayerObject&)>& fn) {
  auto p = sim::Find<PlayerObject>(player);
  if (!p) return;
  Lock lock(sim::Mutex());
  fn(*p);
}

int32_t Get(MwHandle player, int32_t sim::AVPlayerState::*field) {
  return WithPlayer<int32_t>(player, 0, [field](PlayerObject& p) { return p.state.*field; });
}

void Set(MwHandle player, int32_t sim::AVPlayerState::*field, int32_t value) {
  WithPlayer(player, [field, value](PlayerObject& p) { p.state.*field = value; });
}

// Raises `emit` now or on the simulator's thread, if the player still exists then.
void Raise(MwHandle player, bool on_sim_thread, int delay_ms, std::function<void()> emit) {
  if (!on_sim_thread) {
    emit();
    return;
  }
  sim::OnSimThread(
      [player, emit] {
        if (sim::Find<PlayerObject>(player)) emit();
      },
      delay_ms);
}

void AutoPlayStateEvent(MwHandle player) {
  if (!sim::AutoEvents()) return;
  Raise(player, true, kEventDelayMs, [player] { SIM_EMIT(AVControl_onPlayStateChange, player); });
}

MwHandle ComponentList(MwHandle player, uint32_t type, bool active_only) {
  return WithPlayer<MwHandle>(player, 0, [type, active_only](PlayerObject& p) {
    std::vector<MwHandle> items;
    for (MwHandle h : p.components) {
      auto c = sim::Find<sim::ComponentObject>(h);
      if (!c || c->type != static_cast<int32_t>(type)) continue;
      const std::vector<int32_t>& active = p.state.active_types;
      if (active_only && std::find(active.begin(), active.end(), c->type) == active.end()) continue;
      items.push_back(h);
    }
    return sim::NewList(items);
  });
}

void SelectType(MwHandle player, uint32_t type, bool select) {
  WithPlayer(player, [type, select](PlayerObject& p) {
    std::vector<int32_t>& active = p.state.active_types;
    auto it = std::find(active.begin(), active.end(), static_cast<int32_t>(type));
    if (select && it == active.end()) active.push_back(static_cast<int32_t>(type));
    if (!select && it != active.end()) active.erase(it);
  });
}

void SelectObject(MwHandle player, void* object, bool select) {
  WithPlayer(player, [object, select](PlayerObject& p) {
    if (!object) return;
    if (select)
      p.selected_objects.insert(object);
    else
      p.selected_objects.erase(object);
    p.state.selected_objects = p.selected_objects.size();
  });
}

}  // namespace

namespace sim {

bool AVPlayer(MwHandle player, AVPlayerState* out) {
  return WithPlayer<bool>(player, false, [out](PlayerObject& p) {
    if (out) *out = p.state;
    return true;
  });
}

bool LastClipRect(MwRect* out) {
  Lock lock(Mutex());
  if (g_clip_set && out) *out = g_clip;
  return g_clip_set;
}

void RaiseAVPlayStateChange(MwHandle player, int32_t state, int32_t error, bool on_sim_thread) {
  WithPlayer(player, [state, error](PlayerObject& p) {
    p.state.play_state = state;
    p.state.error = error;
  });
  Raise(player, on_sim_thread, 0, [player] { SIM_EMIT(AVControl_onPlayStateChange, player); });
}

void RaiseAVFullScreenChange(MwHandle player, bool fullScreen, bool on_sim_thread) {
  Set(player, &AVPlayerState::full_screen, fullScreen ? 1 : 0);
  Raise(player, on_sim_thread, 0, [player] { SIM_EMIT(AVControl_onFullScreenChange, player); });
}

void RaiseAVPlayPositionChanged(MwHandle player, int32_t position, bool on_sim_thread) {
  Set(player, &AVPlayerState::position, position);
  Raise(player, on_sim_thread, 0,
        [player, position] { SIM_EMIT(AVControl_onPlayPositionChanged, player, position); });
}

void RaiseAVSelectedComponentChanged(MwHandle player, int32_t componentType, bool on_sim_thread) {
  Raise(player, on_sim_thread, 0, [player, componentType] {
    SIM_EMIT(AVControl_onSelectedComponentChanged, player, componentType);
  });
}

void RaiseAVDRMRightsError(MwHandle player, int32_t errorState, const char* contentId,
                           const char* drmSystemId, const char* rightsIssuerUrl, bool on_sim_thread) {
  // The strings are made when the event is raised, so that a dropped event holds none.
  auto text = [](const char* s) { return s ? std::make_shared<std::string>(s) : nullptr; };
  auto content = text(contentId), system = text(drmSystemId), issuer = text(rightsIssuerUrl);
  Raise(player, on_sim_thread, 0, [player, errorState, content, system, issuer] {
    auto handle = [](const std::shared_ptr<std::string>& s) { return s ? NewStringHandle(*s) : 0; };
    SIM_EMIT(AVControl_onDRMRightsError, player, errorState, handle(content), handle(system), handle(issuer));
  });
}

}  // namespace sim

extern "C" {

MwHandle MwAVCreateVideoMpeg(void) {
  SIM_CALL(MwHandle);
  return CreatePlayer(7);
}

MwHandle MwAVCreateVideoMp4(void) {
  SIM_CALL(MwHandle);
  return CreatePlayer(8);
}

MwHandle MwAVCreateAudioMpeg(void) {
  SIM_CALL(MwHandle);
  return CreatePlayer(9);
}

MwHandle MwAVCreateAudioMp4(void) {
  SIM_CALL(MwHandle);
  return CreatePlayer(10);
}

void MwVideoSetClipRect(const MwRect* rect) {
  SIM_VOID(rect);
  Lock lock(sim::Mutex());
  g_clip_set = rect != nullptr;
  if (rect) g_clip = *rect;
}

MwHandle MwAVGetData(MwHandle player) {
  SIM_CALL(MwHandle, player);
  return WithPlayer<MwHandle>(player, 0, [](PlayerObject& p) { return sim::NewStringHandleOrNull(p.Data()); });
}

// A new data URL replaces the playlist and stops the player.
void MwAVSetData(MwHandle player, const MwString* data) {
  SIM_VOID(player, data);
  std::string url = sim::Text(data);
  WithPlayer(player, [&url](PlayerObject& p) {
    p.state.playlist.clear();
    if (!url.empty()) p.state.playlist.push_back(url);
    p.state.track = 0;
    p.state.play_state = kStopped;
    p.state.position = 0;
    p.state.speed = 0;
    p.state.play_time = url.empty() ? 0 : kMediaLengthMs;
  });
}

int32_t MwAVGetPlayPosition(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::position);
}

int32_t MwAVGetPlayTime(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::play_time);
}

int32_t MwAVGetPlayState(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::play_state);
}

int32_t MwAVGetError(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::error);
}

int32_t MwAVGetNrTracks(MwHandle player) {
  SIM_CALL(int32_t, player);
  return WithPlayer<int32_t>(player, 0, [](PlayerObject& p) { return static_cast<int32_t>(p.state.playlist.size()); });
}

int32_t MwAVGetSpeed(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::speed);
}

int32_t MwAVGetCurrentTrackIndex(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::track);
}

int32_t MwAVGetWidth(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::width);
}

int32_t MwAVGetHeight(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::height);
}

int32_t MwAVGetPersist(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::persist);
}

int32_t MwAVIsFullScreen(MwHandle player) {
  SIM_CALL(int32_t, player);
  return Get(player, &sim::AVPlayerState::full_screen);
}

void MwAVSetCurrentTrackIndex(MwHandle player, uint32_t index) {
  SIM_VOID(player, index);
  WithPlayer(player, [index](PlayerObject& p) {
    if (index < p.state.playlist.size()) {
      p.state.track = static_cast<int32_t>(index);
      p.state.position = 0;
    }
  });
}

void MwAVSetPersist(MwHandle player, uint8_t persist) {
  SIM_VOID(player, persist);
  Set(player, &sim::AVPlayerState::persist, persist ? 1 : 0);
}

void MwAVSetWidth(MwHandle player, uint32_t width) {
  SIM_VOID(player, width);
  Set(player, &sim::AVPlayerState::width, static_cast<int32_t>(width));
}

void MwAVSetHeight(MwHandle player, uint32_t height) {
  SIM_VOID(player, height);
  Set(player, &sim::AVPlayerState::height, static_cast<int32_t>(height));
}

void MwAVSetPosition(MwHandle player, int32_t x, int32_t y) {
  SIM_VOID(player, x, y);
  WithPlayer(player, [x, y](PlayerObject& p) {
    p.state.x = x;
    p.state.y = y;
  });
}

// Speed 0 pauses; any other speed plays.
int32_t MwAVPlay(MwHandle player, uint32_t speed) {
  SIM_CALL(int32_t, player, speed);
  int32_t ok = WithPlayer<int32_t>(player, 0, [speed](PlayerObject& p) {
    p.state.speed = static_cast<int32_t>(speed);
    p.state.play_state = speed == 0 ? kPaused : kPlaying;
    p.state.error = 0;
    return 1;
  });
  if (ok) AutoPlayStateEvent(player);
  return ok;
}

int32_t MwAVSeek(MwHandle player, uint32_t position) {
  SIM_CALL(int32_t, player, position);
  return WithPlayer<int32_t>(player, 0, [position](PlayerObject& p) {
    if (position > static_cast<uint32_t>(p.state.play_time)) return 0;
    p.state.position = static_cast<int32_t>(position);
    return 1;
  });
}

int32_t MwAVSetVolume(MwHandle player, uint32_t volume) {
  SIM_CALL(int32_t, player, volume);
  return WithPlayer<int32_t>(player, 0, [volume](PlayerObject& p) {
    if (volume > 100) return 0;
    p.state.volume = static_cast<int32_t>(volume);
    return 1;
  });
}

int32_t MwAVStop(MwHandle player) {
  SIM_CALL(int32_t, player);
  int32_t ok = WithPlayer<int32_t>(player, 0, [](PlayerObject& p) {
    p.state.play_state = kStopped;
    p.state.speed = 0;
    p.state.position = 0;
    return 1;
  });
  if (ok) AutoPlayStateEvent(player);
  return ok;
}

int32_t MwAVNext(MwHandle player) {
  SIM_CALL(int32_t, player);
  return WithPlayer<int32_t>(player, 0, [](PlayerObject& p) {
    if (static_cast<size_t>(p.state.track) + 1 >= p.state.playlist.size()) return 0;
    p.state.track++;
    p.state.position = 0;
    return 1;
  });
}

int32_t MwAVPrevious(MwHandle player) {
  SIM_CALL(int32_t, player);
  return WithPlayer<int32_t>(player, 0, [](PlayerObject& p) {
    if (p.state.track == 0) return 0;
    p.state.track--;
    p.state.position = 0;
    return 1;
  });
}

MwHandle MwAVGetComponents(MwHandle player, uint32_t componentType) {
  SIM_CALL(MwHandle, player, componentType);
  return ComponentList(player, componentType, false);
}

MwHandle MwAVGetActiveComponents(MwHandle player, uint32_t componentType) {
  SIM_CALL(MwHandle, player, componentType);
  return ComponentList(player, componentType, true);
}

void MwAVSelectComponent(MwHandle player, void* componentObject) {
  SIM_VOID(player, componentObject);
  SelectObject(player, componentObject, true);
}

void MwAVUnselectComponent(MwHandle player, void* componentObject) {
  SIM_VOID(player, componentObject);
  SelectObject(player, componentObject, false);
}

void MwAVSelectComponentType(MwHandle player, uint32_t componentType) {
  SIM_VOID(player, componentType);
  SelectType(player, componentType, true);
}

void MwAVUnselectComponentType(MwHandle player, uint32_t componentType) {
  SIM_VOID(player, componentType);
  SelectType(player, componentType, false);
}

// Queues after the current item; null (or an empty URL) drops everything queued after it.
int32_t MwAVQueue(MwHandle player, const MwString* url) {
  SIM_CALL(int32_t, player, url);
  std::string text = sim::Text(url);
  return WithPlayer<int32_t>(player, 0, [&text](PlayerObject& p) {
    std::vector<std::string>& list = p.state.playlist;
    if (text.empty()) {
      if (list.size() > static_cast<size_t>(p.state.track) + 1) list.resize(static_cast<size_t>(p.state.track) + 1);
      return 1;
    }
    list.push_back(text);
    return 1;
  });
}

// The change is reported a moment later when the flag actually changes.
void MwAVSetFullScreen(MwHandle player, uint8_t fullScreen) {
  SIM_VOID(player, fullScreen);
  bool changed = WithPlayer<bool>(player, false, [fullScreen](PlayerObject& p) {
    int32_t now = fullScreen ? 1 : 0;
    bool differs = p.state.full_screen != now;
    p.state.full_screen = now;
    return differs;
  });
  if (changed && sim::AutoEvents())
    Raise(player, true, kEventDelayMs, [player] { SIM_EMIT(AVControl_onFullScreenChange, player); });
}

// Replaces the current item, keeping the play state.
void MwAVSetSource(MwHandle player, const MwString* url, uint32_t reserved) {
  SIM_VOID(player, url, reserved);
  std::string text = sim::Text(url);
  WithPlayer(player, [&text](PlayerObject& p) {
    size_t t = static_cast<size_t>(p.state.track);
    if (t < p.state.playlist.size())
      p.state.playlist[t] = text;
    else
      p.state.playlist.push_back(text);
    p.state.position = 0;
    p.state.play_time = kMediaLengthMs;
  });
}

void MwAVSetCache(MwHandle player, int32_t cache) {
  SIM_VOID(player, cache);
  Set(player, &sim::AVPlayerState::cache, cache);
}

void MwAVSetLoop(MwHandle player, int32_t loop) {
  SIM_VOID(player, loop);
  Set(player, &sim::AVPlayerState::loop, loop);
}

}  // extern "C"
