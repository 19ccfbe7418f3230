// The simulated A/V control players: a playlist (the data URL and what was
// queued) of media from the receiver description, played on the
// simulator's clock (or, for the URLs an installed media engine takes, for
// real), with placement, full screen, volume and media components, and
// every change reported from the simulator's thread.
#include <algorithm>
#include <chrono>
#include <functional>
#include <memory>
#include <set>
#include <string>

#include "middleware/avcontrol.h"
#include "sim/avcontrol_sim.h"
#include "sim/core.h"
#include "sim/media_sim.h"
#include "sim/receiver.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;
using Clock = std::chrono::steady_clock;

const int32_t kStopped = 0, kPlaying = 1, kPaused = 2, kConnecting = 3, kBuffering = 4,
              kFinished = 5, kError = 6;
// How long each step of starting a medium takes, and the delay of events.
const int kConnectMs = 120, kBufferMs = 180, kEventDelayMs = 5;
const char kDrmSystem[] = "urn:dvb:casystemid:19188";

int64_t NowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now().time_since_epoch()).count();
}

sim::MediaEngine* g_engine = nullptr;  // under the simulator's lock

struct PlayerObject : sim::Object {
  MwHandle self = 0;
  bool real = false;  // the engine plays the current medium
  sim::AVPlayerState state;
  sim::MediaSpec media;
  std::vector<MwHandle> components;  // persistent, of the current medium
  std::set<void*> selected_objects;
  int64_t anchor_ms = 0;     // when `state.position` was last true, while playing
  uint64_t generation = 0;   // timers of older generations do nothing
  const char* Type() const override { return "av-player"; }
  std::string Data() const {
    size_t t = static_cast<size_t>(state.track);
    return t < state.playlist.size() ? state.playlist[t] : "";
  }
  ~PlayerObject() override {
    if (real && g_engine) g_engine->Close(self);
  }
  // The position now; brings the anchor up to now.
  void Settle() {
    int64_t now = NowMs();
    if (real) {
      int32_t at = g_engine ? g_engine->Position(self) : -1;
      if (at >= 0) state.position = state.play_time > 0 ? std::min(at, state.play_time) : at;
      anchor_ms = now;
      return;
    }
    if (state.play_state == kPlaying && state.speed != 0) {
      int64_t p = state.position + (now - anchor_ms) * state.speed;
      state.position = static_cast<int32_t>(std::max<int64_t>(0, std::min<int64_t>(p, state.play_time)));
    }
    anchor_ms = now;
  }
};

std::vector<MwHandle> g_players;  // oldest first
bool g_clip_set = false;
MwRect g_clip = {0, 0, 0, 0};
sim::ResetHook g_reset([] {
  g_clip_set = false;
  g_players.clear();
});

MwHandle Component(const sim::MediaComponentSpec& spec) {
  auto c = std::make_shared<sim::ComponentObject>();
  c->type = spec.type;
  c->tag = spec.type + 1;
  c->encoding = spec.encoding;
  c->language = spec.language;
  c->audio_description = spec.audio_description;
  if (spec.type == 0) c->aspect_ratio = 1.78f;
  if (spec.type == 1) c->audio_channels = 2;
  return sim::Register(c, true);
}

// Makes the components of `specs` the player's: audio players have audio
// only; the first of each type plays, no subtitles.
void SetComponents(PlayerObject& p, const std::vector<sim::MediaComponentSpec>& specs) {
  bool video = p.state.kind == 7 || p.state.kind == 8;
  p.components.clear();
  p.state.active_types.clear();
  std::vector<int32_t>& active = p.state.active_types;
  for (const sim::MediaComponentSpec& spec : specs) {
    if (spec.type != 1 && !video) continue;
    p.components.push_back(Component(spec));
    if (spec.type != 2 && std::find(active.begin(), active.end(), spec.type) == active.end())
      active.push_back(spec.type);
  }
}

// Makes the current playlist item the player's medium, at position 0. One
// the engine plays has no duration or components until the engine knows them.
void Load(PlayerObject& p) {
  std::string url = p.Data();
  if (p.real && g_engine) g_engine->Close(p.self);
  p.media = sim::MediaAt(url);
  p.real = g_engine && p.self && !url.empty() && !p.media.simulated && g_engine->Plays(url);
  p.state.title = url.empty() ? "" : p.media.title;
  p.state.play_time = url.empty() || p.real ? 0 : p.media.duration_ms;
  p.state.position = 0;
  SetComponents(p, p.real ? std::vector<sim::MediaComponentSpec>() : p.media.components);
  if (p.real) g_engine->Open(p.self, url, p.state.kind == 7 || p.state.kind == 8);
}

MwHandle CreatePlayer(int32_t kind) {
  auto p = std::make_shared<PlayerObject>();
  p->state.kind = kind;
  Load(*p);
  MwHandle h = sim::Register(p, false);
  Lock lock(sim::Mutex());
  p->self = h;
  g_players.push_back(h);
  return h;
}


int32_t Get(MwHandle player, int32_t sim::AVPlayerState::*field) {
  return sim::Answer<PlayerObject>(player, int32_t{0}, [field](PlayerObject& p) { return p.state.*field; });
}

void Set(MwHandle player, int32_t sim::AVPlayerState::*field, int32_t value) {
  sim::Update<PlayerObject>(player, [field, value](PlayerObject& p) { p.state.*field = value; });
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

void StateEvent(MwHandle player) {
  if (!sim::AutoEvents()) return;
  Raise(player, true, kEventDelayMs, [player] { SIM_EMIT(AVControl_onPlayStateChange, player); });
}

void PositionEvent(MwHandle player, int32_t position) {
  if (!sim::AutoEvents()) return;
  Raise(player, true, kEventDelayMs,
        [player, position] { SIM_EMIT(AVControl_onPlayPositionChanged, player, position); });
}

// Runs `step` on the simulator's thread after `delay_ms`, unless the player
// changed course (or went) meanwhile.
void After(MwHandle player, uint64_t generation, int delay_ms, std::function<void(PlayerObject&)> step) {
  sim::OnSimThread(
      [player, generation, step] {
        auto p = sim::Find<PlayerObject>(player);
        if (!p) return;
        Lock lock(sim::Mutex());
        if (p->generation == generation) step(*p);
      },
      delay_ms);
}

void ChangeState(MwHandle player, PlayerObject& p, int32_t state, int32_t error = 0) {
  p.Settle();
  bool changed = p.state.play_state != state;
  p.state.play_state = state;
  p.state.error = error;
  if (changed) StateEvent(player);
}

void ScheduleEnd(MwHandle player, PlayerObject& p);
void Start(MwHandle player, PlayerObject& p);

// The end of the medium: loop, the next queued item, or finished.
void AtEnd(MwHandle player, PlayerObject& p) {
  p.Settle();
  if (p.state.loop != 0) {
    if (p.state.loop > 0) p.state.loop--;
    p.state.position = 0;
    p.anchor_ms = NowMs();
    if (p.real && g_engine) g_engine->Seek(p.self, 0);
    PositionEvent(player, 0);
    ScheduleEnd(player, p);
    return;
  }
  if (static_cast<size_t>(p.state.track) + 1 < p.state.playlist.size()) {
    p.state.track++;
    Load(p);
    Start(player, p);
    return;
  }
  p.state.speed = 0;
  p.state.position = p.state.play_time;
  ChangeState(player, p, kFinished);
}

// While playing, the next moment the position runs out of the medium.
void ScheduleEnd(MwHandle player, PlayerObject& p) {
  uint64_t generation = ++p.generation;
  if (p.real) return;  // the engine says when the medium ends
  if (p.state.play_state != kPlaying || p.state.speed == 0) return;
  int64_t left = p.state.speed > 0 ? (p.state.play_time - p.state.position) / p.state.speed
                                   : p.state.position / -static_cast<int64_t>(p.state.speed);
  int delay = static_cast<int>(std::min<int64_t>(std::max<int64_t>(left, 0) + 1, 1 << 30));
  After(player, generation, delay, [player](PlayerObject& q) {
    q.Settle();
    if (q.state.speed > 0) {
      AtEnd(player, q);
    } else {
      // Rewound to the start: play on from there.
      q.state.speed = 1;
      ScheduleEnd(player, q);
    }
  });
}

// Starting a medium: connecting, buffering, then playing (or paused at
// speed 0); unplayable and protected media end in error.
void Start(MwHandle player, PlayerObject& p) {
  ChangeState(player, p, kConnecting);
  uint64_t generation = ++p.generation;
  if (p.real) {
    if (g_engine) g_engine->Play(player, p.state.speed);
    return;  // buffering, playing or an error come from the engine
  }
  After(player, generation, kConnectMs, [player, generation](PlayerObject& q) {
    if (q.media.protected_media) {
      std::string url = q.Data();
      Raise(player, true, 0, [player, url] {
        SIM_EMIT(AVControl_onDRMRightsError, player, 0, sim::NewStringHandle(url),
                 sim::NewStringHandle(kDrmSystem), sim::NewStringHandle("http://rights.orvane.example/"));
      });
      ChangeState(player, q, kError, 2);
      return;
    }
    if (q.media.unplayable) {
      ChangeState(player, q, kError, q.media.error);
      return;
    }
    ChangeState(player, q, kBuffering);
    After(player, generation, kBufferMs, [player](PlayerObject& r) {
      r.anchor_ms = NowMs();
      ChangeState(player, r, r.state.speed == 0 ? kPaused : kPlaying);
      ScheduleEnd(player, r);
    });
  });
}

MwHandle ComponentList(MwHandle player, uint32_t type, bool active_only) {
  return sim::Answer<PlayerObject>(player, MwHandle{0}, [type, active_only](PlayerObject& p) {
    std::vector<MwHandle> items;
    for (MwHandle h : p.components) {
      auto c = sim::Find<sim::ComponentObject>(h);
      if (!c || c->type != static_cast<int32_t>(type)) continue;
      const std::vector<int32_t>& active = p.state.active_types;
      if (active_only && std::find(active.begin(), active.end(), c->type) == active.end()) continue;
      items.push_back(h);
      if (active_only) break;  // one component of a type plays
    }
    return sim::NewList(items);
  });
}

void SelectType(MwHandle player, uint32_t type, bool select) {
  // A selection is reported; an unselection when something was selected.
  bool report = sim::Answer<PlayerObject>(player, bool{false}, [type, select](PlayerObject& p) {
    std::vector<int32_t>& active = p.state.active_types;
    auto it = std::find(active.begin(), active.end(), static_cast<int32_t>(type));
    bool was = it != active.end();
    if (select && !was) active.push_back(static_cast<int32_t>(type));
    if (!select && was) active.erase(it);
    return select || was;
  });
  if (report && sim::AutoEvents())
    Raise(player, true, kEventDelayMs, [player, type] {
      SIM_EMIT(AVControl_onSelectedComponentChanged, player, static_cast<int32_t>(type));
    });
}

void SelectObject(MwHandle player, void* object, bool select) {
  sim::Update<PlayerObject>(player, [object, select](PlayerObject& p) {
    if (!object) return;
    if (select)
      p.selected_objects.insert(object);
    else
      p.selected_objects.erase(object);
    p.state.selected_objects = p.selected_objects.size();
  });
}

// A new medium stops the player.
void Replace(MwHandle player, PlayerObject& p) {
  p.generation++;
  Load(p);
  p.state.speed = 0;
  ChangeState(player, p, kStopped);
}

// Another item of the playlist: it becomes the medium, played from its start
// if the player was playing.
int32_t MoveTo(MwHandle player, int64_t index) {
  return sim::Answer<PlayerObject>(player, int32_t{0}, [player, index](PlayerObject& p) {
    if (index < 0 || index >= static_cast<int64_t>(p.state.playlist.size())) return 0;
    bool running = p.state.play_state == kPlaying || p.state.play_state == kPaused ||
                   p.state.play_state == kConnecting || p.state.play_state == kBuffering;
    p.state.track = static_cast<int32_t>(index);
    p.generation++;
    Load(p);
    if (running && sim::AutoEvents()) Start(player, p);
    return 1;
  });
}

}  // namespace

namespace sim {

void SetMediaEngine(MediaEngine* engine) {
  Lock lock(Mutex());
  g_engine = engine;
}

void MediaDuration(MwHandle player, int32_t ms) {
  sim::Update<PlayerObject>(player, [ms](PlayerObject& p) {
    if (p.real && ms > 0) p.state.play_time = ms;
  });
}

void MediaTracks(MwHandle player, int32_t video, const std::vector<std::string>& audio,
                 const std::vector<std::string>& subtitles) {
  sim::Update<PlayerObject>(player, [video, &audio, &subtitles](PlayerObject& p) {
    if (!p.real || !p.components.empty()) return;
    std::vector<MediaComponentSpec> specs;
    for (int32_t i = 0; i < video; i++) specs.push_back({0, "", "", 0});
    for (const std::string& language : audio) specs.push_back({1, "", language, 0});
    for (const std::string& language : subtitles) specs.push_back({2, "", language, 0});
    SetComponents(p, specs);
  });
}

void MediaBuffering(MwHandle player) {
  sim::Update<PlayerObject>(player, [player](PlayerObject& p) {
    if (p.real && p.state.play_state == kConnecting) ChangeState(player, p, kBuffering);
  });
}

void MediaReady(MwHandle player) {
  sim::Update<PlayerObject>(player, [player](PlayerObject& p) {
    if (!p.real || (p.state.play_state != kConnecting && p.state.play_state != kBuffering)) return;
    p.anchor_ms = NowMs();
    ChangeState(player, p, p.state.speed == 0 ? kPaused : kPlaying);
  });
}

void MediaEnded(MwHandle player) {
  sim::Update<PlayerObject>(player, [player](PlayerObject& p) {
    if (p.real && p.state.play_state == kPlaying) AtEnd(player, p);
  });
}

void MediaFailed(MwHandle player, int32_t error) {
  sim::Update<PlayerObject>(player, [player, error](PlayerObject& p) {
    if (p.real && p.state.play_state != kStopped) ChangeState(player, p, kError, error);
  });
}

bool AVPlayer(MwHandle player, AVPlayerState* out) {
  return sim::Answer<PlayerObject>(player, bool{false}, [out](PlayerObject& p) {
    p.Settle();
    if (out) *out = p.state;
    return true;
  });
}

std::vector<MwHandle> AVPlayers() {
  Lock lock(Mutex());
  std::vector<MwHandle> live;
  for (MwHandle h : g_players)
    if (Find<PlayerObject>(h)) live.push_back(h);
  g_players = live;
  return live;
}

bool LastClipRect(MwRect* out) {
  Lock lock(Mutex());
  if (g_clip_set && out) *out = g_clip;
  return g_clip_set;
}

void RaiseAVPlayStateChange(MwHandle player, int32_t state, int32_t error, bool on_sim_thread) {
  sim::Update<PlayerObject>(player, [state, error](PlayerObject& p) {
    p.Settle();
    p.generation++;
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
  return sim::Answer<PlayerObject>(player, MwHandle{0},
                                  [](PlayerObject& p) { return sim::NewStringHandleOrNull(p.Data()); });
}

// A new data URL replaces the playlist and stops the player.
void MwAVSetData(MwHandle player, const MwString* data) {
  SIM_VOID(player, data);
  std::string url = sim::Text(data);
  sim::Update<PlayerObject>(player, [player, &url](PlayerObject& p) {
    p.state.playlist.clear();
    if (!url.empty()) p.state.playlist.push_back(url);
    p.state.track = 0;
    Replace(player, p);
  });
}

int32_t MwAVGetPlayPosition(MwHandle player) {
  SIM_CALL(int32_t, player);
  return sim::Answer<PlayerObject>(player, int32_t{0}, [](PlayerObject& p) {
    p.Settle();
    return p.state.position;
  });
}

int32_t MwAVGetNrTracks(MwHandle player) {
  SIM_CALL(int32_t, player);
  return sim::Answer<PlayerObject>(player, int32_t{0},
                                  [](PlayerObject& p) { return static_cast<int32_t>(p.state.playlist.size()); });
}

// The player's fields as they stand.
#define SIM_PLAYER_FIELD(name, field)                 \
  int32_t name(MwHandle player) {                     \
    SIM_CALL(int32_t, player);                        \
    return Get(player, &sim::AVPlayerState::field);   \
  }
SIM_PLAYER_FIELD(MwAVGetPlayTime, play_time)
SIM_PLAYER_FIELD(MwAVGetPlayState, play_state)
SIM_PLAYER_FIELD(MwAVGetError, error)
SIM_PLAYER_FIELD(MwAVGetSpeed, speed)
SIM_PLAYER_FIELD(MwAVGetCurrentTrackIndex, track)
SIM_PLAYER_FIELD(MwAVGetWidth, width)
SIM_PLAYER_FIELD(MwAVGetHeight, height)
SIM_PLAYER_FIELD(MwAVGetPersist, persist)
SIM_PLAYER_FIELD(MwAVIsFullScreen, full_screen)
#undef SIM_PLAYER_FIELD

void MwAVSetCurrentTrackIndex(MwHandle player, uint32_t index) {
  SIM_VOID(player, index);
  MoveTo(player, index);
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
  sim::Update<PlayerObject>(player, [x, y](PlayerObject& p) {
    p.state.x = x;
    p.state.y = y;
  });
}

// The speed is a signed factor: 0 pauses, 2 plays twice as fast, -1
// rewinds. From stopped, finished or error the medium starts anew.
int32_t MwAVPlay(MwHandle player, uint32_t speed) {
  SIM_CALL(int32_t, player, speed);
  int32_t factor = static_cast<int32_t>(speed);
  return sim::Answer<PlayerObject>(player, int32_t{0}, [player, factor](PlayerObject& p) {
    if (p.state.playlist.empty()) return 0;
    p.Settle();
    p.state.speed = factor;
    int32_t state = p.state.play_state;
    if (!sim::AutoEvents()) {  // driven by hand: the state only
      p.state.play_state = factor == 0 ? kPaused : kPlaying;
      p.state.error = 0;
      return 1;
    }
    if (state == kStopped || state == kFinished || state == kError) {
      if (state != kStopped) p.state.position = 0;
      Start(player, p);
    } else if (state == kPlaying || state == kPaused) {
      if (p.real && g_engine) g_engine->Play(player, factor);
      ChangeState(player, p, factor == 0 ? kPaused : kPlaying);
      ScheduleEnd(player, p);
    }  // connecting or buffering: the new speed applies once playing
    return 1;
  });
}

int32_t MwAVSeek(MwHandle player, uint32_t position) {
  SIM_CALL(int32_t, player, position);
  return sim::Answer<PlayerObject>(player, int32_t{0}, [player, position](PlayerObject& p) {
    if (p.state.playlist.empty() || position > static_cast<uint32_t>(p.state.play_time)) return 0;
    p.Settle();
    if (p.real && g_engine) g_engine->Seek(player, static_cast<int32_t>(position));
    p.state.position = static_cast<int32_t>(position);
    PositionEvent(player, p.state.position);
    ScheduleEnd(player, p);
    return 1;
  });
}

int32_t MwAVSetVolume(MwHandle player, uint32_t volume) {
  SIM_CALL(int32_t, player, volume);
  return sim::Answer<PlayerObject>(player, int32_t{0}, [volume](PlayerObject& p) {
    if (volume > 100) return 0;
    p.state.volume = static_cast<int32_t>(volume);
    if (p.real && g_engine) g_engine->SetVolume(p.self, p.state.volume);
    return 1;
  });
}

int32_t MwAVStop(MwHandle player) {
  SIM_CALL(int32_t, player);
  return sim::Answer<PlayerObject>(player, int32_t{0}, [player](PlayerObject& p) {
    p.generation++;
    p.state.speed = 0;
    if (p.real && g_engine) g_engine->Stop(player);
    ChangeState(player, p, kStopped);
    p.state.position = 0;
    return 1;
  });
}

int32_t MwAVNext(MwHandle player) {
  SIM_CALL(int32_t, player);
  return MoveTo(player, Get(player, &sim::AVPlayerState::track) + 1);
}

int32_t MwAVPrevious(MwHandle player) {
  SIM_CALL(int32_t, player);
  return MoveTo(player, Get(player, &sim::AVPlayerState::track) - 1);
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

// Queues after the last item; null (or an empty URL) drops everything
// queued after the current item.
int32_t MwAVQueue(MwHandle player, const MwString* url) {
  SIM_CALL(int32_t, player, url);
  std::string text = sim::Text(url);
  return sim::Answer<PlayerObject>(player, int32_t{0}, [&text](PlayerObject& p) {
    std::vector<std::string>& list = p.state.playlist;
    if (text.empty()) {
      if (list.size() > static_cast<size_t>(p.state.track) + 1) list.resize(static_cast<size_t>(p.state.track) + 1);
      return 1;
    }
    list.push_back(text);
    if (list.size() == 1) Load(p);  // the first item is the medium
    return 1;
  });
}

// The change is reported a moment later when the flag actually changes.
void MwAVSetFullScreen(MwHandle player, uint8_t fullScreen) {
  SIM_VOID(player, fullScreen);
  bool changed = sim::Answer<PlayerObject>(player, bool{false}, [fullScreen](PlayerObject& p) {
    int32_t now = fullScreen ? 1 : 0;
    bool differs = p.state.full_screen != now;
    p.state.full_screen = now;
    return differs;
  });
  if (changed && sim::AutoEvents())
    Raise(player, true, kEventDelayMs, [player] { SIM_EMIT(AVControl_onFullScreenChange, player); });
}

// Replaces the current item and stops the player.
void MwAVSetSource(MwHandle player, const MwString* url, uint32_t reserved) {
  SIM_VOID(player, url, reserved);
  std::string text = sim::Text(url);
  sim::Update<PlayerObject>(player, [player, &text](PlayerObject& p) {
    size_t t = static_cast<size_t>(p.state.track);
    if (t < p.state.playlist.size())
      p.state.playlist[t] = text;
    else
      p.state.playlist.push_back(text);
    p.state.track = static_cast<int32_t>(std::min(t, p.state.playlist.size() - 1));
    Replace(player, p);
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
