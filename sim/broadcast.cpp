// The simulated broadcast video instances. Tuning (bind, setChannel,
// next/prev) moves the receiver's current channel at once and, with
// automatic events on, reports connecting, the channel change and
// presenting a few milliseconds later from the simulator's thread. Stream
// events of the current channel reach their registrations after their delay
// (and again every repeat period) until the registration is withdrawn.
#include <algorithm>
#include <cstdlib>
#include <map>
#include <memory>

#include "middleware/broadcast.h"
#include "sim/broadcast_sim.h"
#include "sim/channel_sim.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

constexpr int kTuneDelayMs = 5;
constexpr int kEventDelayMs = 5;
constexpr int32_t kErrorUnknownChannel = 5;  // the receiver does not know the channel
constexpr int32_t kRightsNoLicence = 0;      // DRM rights error: no licence for the content
constexpr int kPositionIntervalMs = 1000;    // how often a timeshifted service reports its position

struct Registration {
  uint64_t id;
  std::string name;
  uint32_t kind;
};

struct BroadcastObject : sim::Object {
  sim::BroadcastState state;
  std::vector<Registration> registrations;
  std::map<int32_t, MwHandle> active;  // active component by type
  MwHandle blocked = 0;  // the rating that blocks the presented programme, 0 when none
  uint64_t presentation = 0;  // counts tunings and unbindings: what a scheduled report belongs to
  const char* Type() const override { return "broadcast"; }
};

// The rating of the presented programme against the threshold of its
// scheme: true when it reaches it (holds the lock).
bool OverThreshold(MwHandle rating) {
  auto r = sim::Find<sim::RatingObject>(rating);
  if (!r) return false;
  for (MwHandle s : sim::Rx().schemes) {
    auto scheme = sim::Find<sim::SchemeObject>(s);
    auto threshold = scheme ? sim::Find<sim::RatingObject>(scheme->threshold) : nullptr;
    if (threshold && scheme->name == r->scheme) return r->value >= threshold->value;
  }
  return false;
}

std::vector<MwHandle> g_instances;  // made since Reset, oldest first
uint64_t g_next_registration = 1;
int g_next_recording = 1;
bool g_paint_set = false;
MwRect g_paint_rect = {0, 0, 0, 0};

sim::ResetHook g_reset([] {
  g_instances.clear();
  g_next_registration = 1;
  g_next_recording = 1;
  g_paint_set = false;
});

std::shared_ptr<BroadcastObject> Instance(MwHandle h) { return sim::Find<BroadcastObject>(h); }

// A number of the instance's state, 0 for another handle.
int32_t Field(MwHandle h, int32_t sim::BroadcastState::*field) {
  return sim::Answer<BroadcastObject>(h, 0, [field](BroadcastObject& b) { return b.state.*field; });
}

std::shared_ptr<sim::ChannelObject> ChannelAt(size_t index) {
  sim::Receiver& rx = sim::Rx();
  return index < rx.channels.size() ? sim::Find<sim::ChannelObject>(rx.channels[index]) : nullptr;
}

// The channel's programmes that have not ended on the receiver's clock:
// the present one first (holds the lock).
std::vector<MwHandle> PresentAndFollowing(const sim::ChannelObject& channel) {
  std::vector<MwHandle> out;
  int32_t now = sim::ReceiverNow();
  for (MwHandle h : channel.programmes) {
    auto p = sim::Find<sim::ProgrammeObject>(h);
    if (p && static_cast<int64_t>(p->start_time) + p->duration > now) out.push_back(h);
  }
  return out;
}

// Components of the receiver's current channel whose type is `type`.
std::vector<MwHandle> CurrentComponents(int32_t type) {
  std::vector<MwHandle> out;
  auto channel = ChannelAt(sim::Rx().current);
  if (!channel) return out;
  for (MwHandle c : channel->components) {
    auto component = sim::Find<sim::ComponentObject>(c);
    if (component && component->type == type) out.push_back(c);
  }
  return out;
}

// The receiver's defaults for a newly presented channel: its first video and
// first audio component.
void DefaultComponents(BroadcastObject* b) {
  b->active.clear();
  for (int32_t type : {0, 1}) {
    std::vector<MwHandle> of_type = CurrentComponents(type);
    if (!of_type.empty()) b->active[type] = of_type.front();
  }
}

// Runs `emit` a moment later on the simulator's thread if `h` still exists.
void Later(MwHandle h, std::function<void()> emit, int delay_ms = kEventDelayMs) {
  sim::OnSimThread(
      [h, emit] {
        if (Instance(h)) emit();
      },
      delay_ms);
}

void SetPlayState(MwHandle h, int32_t state) {
  sim::Update<BroadcastObject>(h, [state](BroadcastObject& b) { b.state.play_state = state; });
}

void EmitPlayState(MwHandle h, int32_t state, int32_t error) {
  SetPlayState(h, state);
  SIM_EMIT(Broadcast_onPlayStateChange, h, state, error);
}

// A new presentation of `h` (a tuning or an unbinding): reports scheduled
// for the one before no longer come (holds the lock).
uint64_t NewPresentation(BroadcastObject* b) { return ++b->presentation; }

// The channel `h` still presents in presentation `p`, or null.
std::shared_ptr<sim::ChannelObject> Presenting(MwHandle h, uint64_t p) {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(h);
  if (!b || b->presentation != p || !b->state.bound || b->state.play_state != 2) return nullptr;
  return ChannelAt(sim::Rx().current);
}

// A presented programme over the viewer's threshold is blocked, with a
// parental rating change carrying its rating; the next one under it
// unblocks, with a change carrying the rating that blocked.
void CheckRating(MwHandle h) {
  auto b = Instance(h);
  if (!b) return;
  MwHandle rating, was;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    MwHandle current = sim::CurrentRating();
    rating = OverThreshold(current) ? current : 0;
    was = b->blocked;
    b->blocked = rating;
  }
  if (!rating && !was) return;
  SIM_EMIT(Broadcast_onParentalRatingChange, h, 0, rating ? rating : was,
           sim::NewStringHandle("urn:dvb:casystemid:19188"), static_cast<uint8_t>(rating ? 1 : 0));
}

// A timeshifted service reports where it plays, every second while it is
// presented.
void ReportPosition(MwHandle h, uint64_t p, int32_t position_ms) {
  auto channel = Presenting(h, p);
  if (!channel || !channel->timeshift) return;
  SIM_EMIT(Broadcast_onPlayPositionChanged, h, position_ms);
  Later(h, [h, p, position_ms] { ReportPosition(h, p, position_ms + kPositionIntervalMs); },
        kPositionIntervalMs);
}

// When the present programme ends on the receiver's clock the guide changes:
// programmes changed, and the rating of the new present programme is checked.
void FollowGuide(MwHandle h, uint64_t p) {
  int64_t delay;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    auto channel = Presenting(h, p);
    std::vector<MwHandle> programmes = channel ? PresentAndFollowing(*channel) : std::vector<MwHandle>();
    auto present = programmes.empty() ? nullptr : sim::Find<sim::ProgrammeObject>(programmes.front());
    if (!present) return;
    delay = sim::RealMsFor(static_cast<int64_t>(present->start_time) + present->duration - sim::ReceiverNow());
  }
  if (delay < 0) return;  // the clock stands still
  Later(
      h,
      [h, p] {
        if (!Presenting(h, p)) return;
        SIM_EMIT(Broadcast_onProgrammesChanged, h);
        CheckRating(h);
        FollowGuide(h, p);
      },
      static_cast<int>(delay + 1));
}

// What presenting a channel raises beyond the play state: a DRM rights
// error for a protected service, the speed and position of a timeshifted
// one, and later the guide's changes.
void Presented(MwHandle h, uint64_t p) {
  auto channel = Presenting(h, p);
  if (!channel) return;
  if (channel->protected_service)
    SIM_EMIT(Broadcast_onDRMRightsError, h, kRightsNoLicence, sim::NewStringHandleOrNull(channel->content_id),
             sim::NewStringHandle(channel->drm_system_id), sim::NewStringHandleOrNull(channel->rights_issuer_url));
  if (channel->timeshift) {
    SIM_EMIT(Broadcast_onPlaySpeedChanged, h, 1.0f);
    ReportPosition(h, p, 0);
  }
  FollowGuide(h, p);
}

// The events a tuning raises: connecting, then the change succeeded (with a
// new reference to the channel) and presenting, or the change failed. The
// object reads connecting from the call on.
void ReportTuning(MwHandle h, MwHandle channel, bool known) {
  uint64_t p = 0;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    if (auto b = Instance(h)) p = NewPresentation(b.get());
  }
  SetPlayState(h, 1);
  if (!sim::AutoEvents()) return;
  Later(
      h,
      [h, channel, known, p] {
        EmitPlayState(h, 1, -1);
        if (!Instance(h)) return;
        if (!known) {
          SIM_EMIT(Broadcast_onChannelChangeError, h, sim::Give(channel), kErrorUnknownChannel);
          if (Instance(h)) EmitPlayState(h, 0, kErrorUnknownChannel);
          return;
        }
        SIM_EMIT(Broadcast_onChannelChangeSucceeded, h, sim::Give(channel));
        if (!Instance(h)) return;
        EmitPlayState(h, 2, -1);
        CheckRating(h);
        Presented(h, p);
      },
      kTuneDelayMs);
}

// Unbinds `h`: it reads unrealized at once and reports it.
void GoUnrealized(MwHandle h) {
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    auto b = Instance(h);
    if (!b) return;
    b->state.bound = false;
    b->active.clear();
    b->state.play_state = 0;
    NewPresentation(b.get());
  }
  if (sim::AutoEvents()) Later(h, [h] { EmitPlayState(h, 0, -1); });
}

// Binds `h` to the receiver's channel at `index` (wrapped) and reports it.
void TuneTo(MwHandle h, long index) {
  MwHandle channel = 0;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    auto b = Instance(h);
    sim::Receiver& rx = sim::Rx();
    if (!b || rx.channels.empty()) return;
    long n = static_cast<long>(rx.channels.size());
    rx.current = static_cast<size_t>(((index % n) + n) % n);
    channel = rx.channels[rx.current];
    b->state.bound = true;
    DefaultComponents(b.get());
  }
  ReportTuning(h, channel, true);
}

// A component selected or unselected: the selected component of its type
// changed.
void ReportSelection(MwHandle h, int32_t type) {
  if (sim::AutoEvents()) Later(h, [h, type] { SIM_EMIT(Broadcast_onSelectedComponentChanged, h, type); });
}

bool IsComponentOfCurrentChannel(MwHandle component, int32_t* type) {
  auto c = sim::Find<sim::ComponentObject>(component);
  if (!c) return false;
  std::vector<MwHandle> of_type = CurrentComponents(c->type);
  *type = c->type;
  return std::find(of_type.begin(), of_type.end(), component) != of_type.end();
}

bool RegistrationLive(MwHandle h, uint64_t id) {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(h);
  if (!b) return false;
  for (const Registration& r : b->registrations)
    if (r.id == id) return true;
  return false;
}

void EmitStreamEvent(MwHandle h, uint32_t kind, const std::string& name, const std::string& data,
                     const std::string& text, int32_t status) {
  MwStreamEvent event = {static_cast<uint32_t>(name.size()), name.data(),
                         static_cast<uint32_t>(data.size()), data.data(),
                         static_cast<uint32_t>(text.size()), text.data(),
                         static_cast<uint32_t>(status)};
  const MwStreamEvent* p = &event;
  SIM_EMIT(Broadcast_onStreamEvent, h, kind, p);
}

void ScheduleStreamEvent(MwHandle h, uint64_t id, uint32_t kind, sim::StreamEventSpec spec,
                         int delay_ms) {
  sim::OnSimThread(
      [h, id, kind, spec] {
        if (!RegistrationLive(h, id)) return;
        EmitStreamEvent(h, kind, spec.name, spec.data, spec.text, spec.status);
        if (spec.repeat_ms > 0) ScheduleStreamEvent(h, id, kind, spec, spec.repeat_ms);
      },
      std::max(0, delay_ms));
}

// Keeps a registration and, with automatic events, schedules the current
// channel's events of that name for it; an event the service does not
// carry (or a URL of another service, `elsewhere`) gets one event whose
// status is error instead. False for an unknown instance.
bool Register(MwHandle h, const std::string& name, uint32_t kind, int32_t tag = -1, bool elsewhere = false) {
  uint64_t id;
  std::vector<sim::StreamEventSpec> due;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    auto b = Instance(h);
    if (!b) return false;
    id = g_next_registration++;
    b->registrations.push_back(Registration{id, name, kind});
    auto channel = sim::Find<sim::ChannelObject>(sim::CurrentChannel());
    if (channel && !elsewhere)
      for (const sim::StreamEventSpec& spec : channel->stream_events)
        if (spec.name == name && (tag < 0 || spec.component_tag < 0 || spec.component_tag == tag))
          due.push_back(spec);
  }
  if (!sim::AutoEvents()) return true;
  if (due.empty()) {
    sim::StreamEventSpec error;
    error.name = name;
    error.status = 0;
    due.push_back(error);
  }
  for (const sim::StreamEventSpec& spec : due) ScheduleStreamEvent(h, id, kind, spec, spec.delay_ms);
  return true;
}

// Where a stream-event description declares the event `name` (an attribute
// name="..." or '...' with that value), npos when it does not.
size_t DeclaredAt(const std::string& xml, const std::string& name) {
  size_t at = std::string::npos;
  for (char quote : {'"', '\''}) at = std::min(at, xml.find(std::string("name=") + quote + name + quote));
  return at;
}

// The component tag of the object that holds the event `name` in a
// stream-event description (its dsmcc_object's component_tag), -1 for none.
int32_t DescribedTag(const std::string& xml, const std::string& name) {
  size_t at = DeclaredAt(xml, name);
  size_t attribute = at == std::string::npos ? at : xml.rfind("component_tag=", at);
  if (attribute == std::string::npos) return -1;
  size_t value = attribute + 14;
  if (value < xml.size() && (xml[value] == '"' || xml[value] == '\'')) value++;
  char* end = nullptr;
  long tag = strtol(xml.c_str() + value, &end, 0);
  return end == xml.c_str() + value || tag < 0 || tag > 255 ? -1 : static_cast<int32_t>(tag);
}

void SelectType(MwHandle h, int32_t type, bool select) {
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(h);
  if (!b) return;
  auto& types = b->state.selected_types;
  types.erase(std::remove(types.begin(), types.end(), type), types.end());
  if (select) {
    std::vector<MwHandle> of_type = CurrentComponents(type);
    if (of_type.empty()) return;
    b->active[type] = of_type.front();
    types.push_back(type);
  } else {
    b->active.erase(type);
  }
  ReportSelection(h, type);
}

}  // namespace

namespace sim {

bool Broadcast(MwHandle broadcast, BroadcastState* out) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto b = Instance(broadcast);
  if (!b) return false;
  *out = b->state;
  out->stream_events.clear();
  for (const Registration& r : b->registrations) out->stream_events.emplace_back(r.name, r.kind);
  return true;
}

std::vector<MwHandle> BroadcastInstances() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  std::vector<MwHandle> out;
  for (MwHandle h : g_instances)
    if (Instance(h)) out.push_back(h);
  return out;
}

bool ViewerTune(size_t index) {
  std::vector<MwHandle> bound;
  {
    std::lock_guard<std::recursive_mutex> lock(Mutex());
    if (index >= Rx().channels.size()) return false;
    Rx().current = index;
    for (MwHandle h : g_instances)
      if (auto b = ::Instance(h))
        if (b->state.bound) bound.push_back(h);
  }
  for (MwHandle h : bound) TuneTo(h, static_cast<long>(index));
  return true;
}

bool LastPaintRect(MwRect* out) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  if (g_paint_set) *out = g_paint_rect;
  return g_paint_set;
}

void FireStreamEvent(const std::string& name, const std::string& data, const std::string& text,
                     int32_t status) {
  std::vector<std::pair<MwHandle, uint32_t>> targets;
  {
    std::lock_guard<std::recursive_mutex> lock(Mutex());
    for (MwHandle h : g_instances)
      if (auto b = Instance(h))
        for (const Registration& r : b->registrations)
          if (r.name == name) targets.emplace_back(h, r.kind);
  }
  for (auto& t : targets) EmitStreamEvent(t.first, t.second, name, data, text, status);
}

MwHandle CurrentRating() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto channel = ChannelAt(Rx().current);
  std::vector<MwHandle> programmes = channel ? PresentAndFollowing(*channel) : std::vector<MwHandle>();
  if (programmes.empty()) return 0;
  auto programme = Find<ProgrammeObject>(programmes.front());
  return programme && !programme->ratings.empty() ? programme->ratings.front() : 0;
}

bool SetPresentRating(const std::string& name, int32_t value) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto channel = ChannelAt(Rx().current);
  std::vector<MwHandle> programmes = channel ? PresentAndFollowing(*channel) : std::vector<MwHandle>();
  auto programme = programmes.empty() ? nullptr : Find<ProgrammeObject>(programmes.front());
  if (!programme) return false;
  if (programme->ratings.empty()) {  // a dvb-si rating the receiver keeps
    auto rating = std::make_shared<RatingObject>();
    rating->scheme = "dvb-si";
    rating->region = "gb";
    programme->ratings.push_back(Register(rating, true));
  }
  return Update<RatingObject>(programme->ratings.front(), [&](RatingObject& r) {
    r.name = name;
    r.value = value;
  });
}

void RaiseParentalRatingChange(MwHandle broadcast, const char* contentId, const char* drmSystemId,
                               bool blocked) {
  SIM_EMIT(Broadcast_onParentalRatingChange, broadcast, contentId ? NewStringHandle(contentId) : 0,
           CurrentRating(), drmSystemId ? NewStringHandle(drmSystemId) : 0,
           static_cast<uint8_t>(blocked ? 1 : 0));
}

void RaiseParentalRatingError(MwHandle broadcast, const char* contentId, const char* drmSystemId) {
  SIM_EMIT(Broadcast_onParentalRatingError, broadcast, contentId ? NewStringHandle(contentId) : 0,
           CurrentRating(), drmSystemId ? NewStringHandle(drmSystemId) : 0);
}

}  // namespace sim

extern "C" {

MwHandle MwBroadcastCreate(void* scriptObject) {
  SIM_CALL(MwHandle, scriptObject);
  MwHandle h = sim::Register(std::make_shared<BroadcastObject>(), false);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  g_instances.push_back(h);
  return h;
}

void MwVideoSetPaintRect(const MwRect* rect) {
  SIM_VOID(rect);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  g_paint_set = rect != nullptr;
  if (rect) g_paint_rect = *rect;
}

void MwBroadcastSetVideoRect(MwHandle broadcast, int32_t x, int32_t y, int32_t width, int32_t height) {
  SIM_VOID(broadcast, x, y, width, height);
  sim::Update<BroadcastObject>(broadcast, [&](BroadcastObject& b) {
    b.state.x = x;
    b.state.y = y;
    b.state.width = width;
    b.state.height = height;
  });
}

int32_t MwBroadcastIsFullScreen(MwHandle broadcast) {
  SIM_CALL(int32_t, broadcast);
  return Field(broadcast, &sim::BroadcastState::full_screen);
}

int32_t MwBroadcastGetWidth(MwHandle broadcast) {
  SIM_CALL(int32_t, broadcast);
  return sim::Answer<BroadcastObject>(broadcast, 0, [](BroadcastObject& b) {
    return b.state.full_screen ? 1280 : b.state.width;
  });
}

int32_t MwBroadcastGetHeight(MwHandle broadcast) {
  SIM_CALL(int32_t, broadcast);
  return sim::Answer<BroadcastObject>(broadcast, 0, [](BroadcastObject& b) {
    return b.state.full_screen ? 720 : b.state.height;
  });
}

int32_t MwBroadcastGetPlayState(MwHandle broadcast) {
  SIM_CALL(int32_t, broadcast);
  return Field(broadcast, &sim::BroadcastState::play_state);
}

MwHandle MwBroadcastGetData(MwHandle broadcast) {
  SIM_CALL(MwHandle, broadcast);
  return sim::Answer<BroadcastObject>(broadcast, MwHandle{0}, [](BroadcastObject& b) {
    return sim::NewStringHandleOrNull(b.state.data);
  });
}

void MwBroadcastSetData(MwHandle broadcast, MwString* data) {
  SIM_VOID(broadcast, data);
  sim::Update<BroadcastObject>(broadcast, [data](BroadcastObject& b) { b.state.data = sim::Text(data); });
  // Taken over: both blocks came from malloc.
  if (data) free(const_cast<char*>(data->data));
  free(data);
}

MwHandle MwBroadcastGetCurrentChannel(MwHandle broadcast) {
  SIM_CALL(MwHandle, broadcast);
  // An instance that was never bound presents nothing.
  return sim::Answer<BroadcastObject>(broadcast, MwHandle{0}, [](BroadcastObject& b) {
    return b.state.bound ? sim::Give(sim::CurrentChannel()) : 0;
  });
}

MwHandle MwBroadcastGetProgrammes(MwHandle broadcast) {
  SIM_CALL(MwHandle, broadcast);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(broadcast);
  auto channel = ChannelAt(sim::Rx().current);
  if (!b || !b->state.bound || !channel) return 0;
  return sim::NewList(PresentAndFollowing(*channel), sim::Lending::kGiveUnlessHeld);
}

int32_t MwBroadcastGetRecordingState(MwHandle broadcast) {
  SIM_CALL(int32_t, broadcast);
  return Field(broadcast, &sim::BroadcastState::recording_state);
}

MwHandle MwBroadcastGetChannelConfig(MwHandle broadcast) {
  SIM_CALL(MwHandle, broadcast);
  return Instance(broadcast) ? sim::NewChannelConfig() : 0;
}

void MwBroadcastBindToCurrentChannel(MwHandle broadcast) {
  SIM_VOID(broadcast);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  if (sim::CurrentChannel()) {
    TuneTo(broadcast, static_cast<long>(sim::Rx().current));
    return;
  }
  GoUnrealized(broadcast);  // nothing is presented: the object says so
}

MwHandle MwBroadcastCreateChannelObject(MwHandle broadcast, uint32_t idType, uint32_t onid,
                                        uint32_t tsid, uint32_t sid, uint32_t sourceId,
                                        const MwString* ipBroadcastId) {
  SIM_CALL(MwHandle, broadcast, idType, onid, tsid, sid, sourceId, ipBroadcastId);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  if (!Instance(broadcast)) return 0;
  for (MwHandle h : sim::Rx().channels) {
    auto c = sim::Find<sim::ChannelObject>(h);
    if (c && static_cast<uint32_t>(c->onid) == onid && static_cast<uint32_t>(c->tsid) == tsid &&
        static_cast<uint32_t>(c->sid) == sid)
      return sim::Give(h);
  }
  return 0;
}

MwHandle MwBroadcastCreateChannelObjectByDsd(MwHandle broadcast, uint32_t idType,
                                             const MwString* dsd, uint32_t sid) {
  SIM_CALL(MwHandle, broadcast, idType, dsd, sid);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  if (!Instance(broadcast)) return 0;
  std::string text = sim::Text(dsd);
  for (MwHandle h : sim::Rx().channels) {
    auto c = sim::Find<sim::ChannelObject>(h);
    if (c && c->dsd == text && static_cast<uint32_t>(c->sid) == sid) return sim::Give(h);
  }
  return 0;
}

void MwBroadcastSetChannel(MwHandle broadcast, MwHandle channel, uint32_t trickplay,
                           const MwString* contentAccessDescriptorUrl) {
  SIM_VOID(broadcast, channel, trickplay, contentAccessDescriptorUrl);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  if (!Instance(broadcast)) return;
  const std::vector<MwHandle>& channels = sim::Rx().channels;
  auto it = std::find(channels.begin(), channels.end(), channel);
  if (channel == 0) {
    // A broadcast-independent application: the receiver stops presenting
    // the service and the object goes unrealized, with no error.
    sim::Rx().current = channels.size();
    GoUnrealized(broadcast);
    return;
  }
  if (it == channels.end()) {
    // Only a handle the registry knows can be handed back in the error.
    ReportTuning(broadcast, sim::Lookup(channel) ? channel : 0, false);
    return;
  }
  TuneTo(broadcast, static_cast<long>(it - channels.begin()));
}

void MwBroadcastPrevChannel(MwHandle broadcast) {
  SIM_VOID(broadcast);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  TuneTo(broadcast, static_cast<long>(sim::Rx().current) - 1);
}

void MwBroadcastNextChannel(MwHandle broadcast) {
  SIM_VOID(broadcast);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  TuneTo(broadcast, static_cast<long>(sim::Rx().current) + 1);
}

void MwBroadcastSetFullScreen(MwHandle broadcast, uint32_t fullScreen) {
  SIM_VOID(broadcast, fullScreen);
  auto set = [fullScreen](BroadcastObject& b) { b.state.full_screen = fullScreen ? 1 : 0; };
  if (!sim::Update<BroadcastObject>(broadcast, set)) return;
  if (sim::AutoEvents()) Later(broadcast, [broadcast] { SIM_EMIT(Broadcast_onFullScreenChange, broadcast); });
}

void MwBroadcastRelease(MwHandle broadcast) {
  SIM_VOID(broadcast);
  GoUnrealized(broadcast);
}

void MwBroadcastStop(MwHandle broadcast) {
  SIM_VOID(broadcast);
  if (!Instance(broadcast)) return;
  if (sim::AutoEvents()) Later(broadcast, [broadcast] { EmitPlayState(broadcast, 3, -1); });
}

MwHandle MwBroadcastGetComponents(MwHandle broadcast, uint32_t componentType) {
  SIM_CALL(MwHandle, broadcast, componentType);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(broadcast);
  if (!b || !b->state.bound) return 0;
  return sim::NewList(CurrentComponents(static_cast<int32_t>(componentType)));
}

MwHandle MwBroadcastGetCurrentActiveComponents(MwHandle broadcast, uint32_t componentType) {
  SIM_CALL(MwHandle, broadcast, componentType);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(broadcast);
  if (!b || !b->state.bound) return 0;
  // Nothing of the type selected: an empty list, not none.
  auto it = b->active.find(static_cast<int32_t>(componentType));
  return sim::NewList(it == b->active.end() ? std::vector<MwHandle>() : std::vector<MwHandle>{it->second});
}

void MwBroadcastSelectComponent(MwHandle broadcast, MwHandle component) {
  SIM_VOID(broadcast, component);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(broadcast);
  int32_t type = 0;
  if (!b || !IsComponentOfCurrentChannel(component, &type)) return;
  b->active[type] = component;
  b->state.selected_components++;
  ReportSelection(broadcast, type);
}

void MwBroadcastUnselectComponent(MwHandle broadcast, MwHandle component) {
  SIM_VOID(broadcast, component);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(broadcast);
  int32_t type = 0;
  if (!b || !IsComponentOfCurrentChannel(component, &type)) return;
  auto it = b->active.find(type);
  if (it != b->active.end() && it->second == component) b->active.erase(it);
  if (b->state.selected_components > 0) b->state.selected_components--;
  ReportSelection(broadcast, type);
}

void MwBroadcastSelectComponentType(MwHandle broadcast, uint32_t componentType) {
  SIM_VOID(broadcast, componentType);
  SelectType(broadcast, static_cast<int32_t>(componentType), true);
}

void MwBroadcastUnselectComponentType(MwHandle broadcast, uint32_t componentType) {
  SIM_VOID(broadcast, componentType);
  SelectType(broadcast, static_cast<int32_t>(componentType), false);
}

int32_t MwBroadcastAddStreamEventListener(MwHandle broadcast, uint32_t urlLength, const char* url,
                                          uint32_t nameLength, const char* name, uint32_t kind) {
  MwString url_text{urlLength, url}, name_text{nameLength, name};
  SIM_CALL(int32_t, broadcast, &url_text, &name_text, kind);
  std::string target = sim::Text(&url_text);
  if (target.compare(0, 4, "dvb:") != 0) return 0;
  int32_t tag;
  bool here = sim::NamesCurrentService(target, &tag);
  // A path names a stream event object: its events come on the component its
  // tap names; an object the carousel lacks gives the error event.
  int32_t object_tag = -1;
  switch (sim::FindStreamEventObject(target, &object_tag)) {
    case sim::kObject: tag = object_tag; break;
    case sim::kNoObject: here = false; break;
    case sim::kNoPath: break;
  }
  return Register(broadcast, sim::Text(&name_text), kind, tag, !here) ? 1 : 0;
}

int32_t MwBroadcastAddStreamEventXml(MwHandle broadcast, const char* bytes, uint32_t count,
                                     uint32_t nameLength, const char* name, uint32_t kind) {
  MwString xml_text{count, bytes}, name_text{nameLength, name};
  SIM_CALL(int32_t, broadcast, &xml_text, &name_text, kind);
  std::string event = sim::Text(&name_text);
  std::string xml = sim::Text(&xml_text);
  if (event.empty() || DeclaredAt(xml, event) == std::string::npos) return 0;
  // The events come on the component the description names; one the
  // service does not carry gives the error event.
  return Register(broadcast, event, kind, DescribedTag(xml, event)) ? 1 : 0;
}

void MwBroadcastRemoveStreamEventListener(MwHandle broadcast, uint32_t nameLength,
                                          const char* name, uint32_t kind) {
  MwString name_text{nameLength, name};
  SIM_VOID(broadcast, &name_text, kind);
  std::string event = sim::Text(&name_text);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  auto b = Instance(broadcast);
  if (!b) return;
  auto& regs = b->registrations;
  regs.erase(std::remove_if(regs.begin(), regs.end(),
                            [&](const Registration& r) { return r.name == event && r.kind == kind; }),
             regs.end());
}

MwHandle MwBroadcastRecordNow(MwHandle broadcast, int32_t durationSeconds) {
  SIM_CALL(MwHandle, broadcast, durationSeconds);
  std::string id;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    auto b = Instance(broadcast);
    if (!b) return 0;
    b->state.recording_state = 1;
    id = "rec-" + std::to_string(g_next_recording++);
  }
  if (sim::AutoEvents())
    Later(broadcast, [broadcast, id] {
      SIM_EMIT(Broadcast_onRecordingEvent, broadcast, int32_t{1}, int32_t{0}, sim::NewStringHandle(id));
    });
  return sim::NewStringHandle(id);
}

void MwBroadcastStopRecording(MwHandle broadcast) {
  SIM_VOID(broadcast);
  sim::Update<BroadcastObject>(broadcast, [](BroadcastObject& b) { b.state.recording_state = 0; });
}

}  // extern "C"
