// The simulated recording scheduler and its recordings.
#include <algorithm>
#include <functional>
#include <memory>
#include <string>

#include "middleware/recording.h"
#include "sim/broadcast_sim.h"
#include "sim/channel_sim.h"
#include "sim/core.h"
#include "sim/fields.h"
#include "sim/receiver.h"
#include "sim/recording_sim.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

const int32_t kScheduled = 0, kStarted = 1, kCompleted = 2, kPartlyCompleted = 3, kError = 4;
const int32_t kErrorTunerConflict = 1;  // the error a conflict reports
const int32_t kDaySeconds = 24 * 3600;

struct SchedulerObject : sim::Object {
  const char* Type() const override { return "recording-scheduler"; }
};

struct RecordingObject : sim::Object {
  std::string id, name, description;
  int32_t start_time = 0, duration = 0, repeat_days = 0, start_padding = 0, end_padding = 0;
  int32_t state = kScheduled, recording_start_time = 0, recording_duration = 0, error = 0;
  uint64_t generation = 0;  // timers of an older one do nothing (the clock changed)
  MwHandle channel = 0;              // persistent, 0 when unknown
  MwHandle programme = 0;            // the programme recorded, 0 for a time slot
  std::vector<MwHandle> ratings;     // persistent
  const char* Type() const override { return "recording"; }
};

std::vector<MwHandle> g_recordings;  // persistent recording handles, oldest first
int g_next_id = 1;
sim::ResetHook g_reset([] {
  g_recordings.clear();
  g_next_id = 1;
});

// The state on the receiver's clock and what has been recorded so far (holds the lock).
void StartOnClock(RecordingObject& r) {
  int64_t now = sim::ReceiverNow(), end = static_cast<int64_t>(r.start_time) + r.duration;
  if (now < r.start_time) return;
  r.state = now < end ? kStarted : kCompleted;
  r.recording_start_time = r.start_time;
  r.recording_duration = static_cast<int32_t>(std::min(now, end) - r.start_time);
}

// Every broadcast object hears of a recording's new state.
void Report(MwHandle recording) {
  auto r = sim::Find<RecordingObject>(recording);
  if (!r || !sim::AutoEvents()) return;
  int32_t state, error;
  std::string id;
  {
    Lock lock(sim::Mutex());
    state = r->state;
    error = r->error;
    id = r->id;
  }
  for (MwHandle b : sim::BroadcastInstances())
    SIM_EMIT(Broadcast_onRecordingEvent, b, state, error, sim::NewStringHandle(id));
}

// More recordings than tuners at some moment of [start, end)?
bool Conflicts(const RecordingObject& r) {
  int64_t start = r.start_time, end = start + r.duration;
  int32_t overlapping = 0;
  for (MwHandle h : g_recordings) {
    auto o = sim::Find<RecordingObject>(h);
    if (!o || (o->state != kScheduled && o->state != kStarted)) continue;
    int64_t os = o->start_time, oe = os + o->duration;
    if (os < end && start < oe) overlapping++;
  }
  return overlapping >= sim::Rx().tuners;
}

MwHandle Add(std::shared_ptr<RecordingObject> r);

// The next day of `repeat_days` (bit 0 Sunday ... bit 6 Saturday) after the
// recording's day, the same time; 0 when it does not repeat.
int32_t NextOccurrence(const RecordingObject& r) {
  if (!(r.repeat_days & 0x7f)) return 0;
  int weekday = static_cast<int>((r.start_time / kDaySeconds + 4) % 7);  // 1970-01-01 was a Thursday
  for (int d = 1; d <= 7; d++)
    if (r.repeat_days & (1 << ((weekday + d) % 7))) return r.start_time + d * kDaySeconds;
  return 0;
}

// The recording's start and end on the receiver's clock, when it runs.
void Follow(MwHandle h) {
  auto r = sim::Find<RecordingObject>(h);
  if (!r) return;
  int64_t now = sim::ReceiverNow();
  uint64_t generation = ++r->generation;
  auto at = [h, generation](int64_t seconds, std::function<void(RecordingObject&)> step) {
    int64_t ms = sim::RealMsFor(std::max<int64_t>(seconds, 0));
    if (ms < 0) return;  // the clock stands still
    sim::OnSimThread(
        [h, generation, step] {
          auto q = sim::Find<RecordingObject>(h);
          if (!q) return;
          {
            Lock lock(sim::Mutex());
            if (q->generation != generation ||
                std::find(g_recordings.begin(), g_recordings.end(), h) == g_recordings.end())
              return;
            step(*q);
          }
          Report(h);
        },
        static_cast<int>(std::min<int64_t>(ms, 1 << 30)));
  };
  if (r->state == kScheduled)
    at(r->start_time - now, [](RecordingObject& q) {
      if (q.state != kScheduled) return;
      q.state = kStarted;
      q.recording_start_time = q.start_time;
    });
  if (r->state == kScheduled || r->state == kStarted)
    at(static_cast<int64_t>(r->start_time) + r->duration - now, [](RecordingObject& q) {
      if (q.state != kStarted) return;
      q.state = kCompleted;
      q.recording_duration = q.duration;
      if (int32_t next = NextOccurrence(q)) {  // a repeating recording schedules its next day
        auto again = std::make_shared<RecordingObject>(q);
        again->start_time = next;
        again->state = kScheduled;
        again->recording_start_time = again->recording_duration = 0;
        again->programme = 0;
        MwHandle h2 = Add(again);
        MwObjectRelease(h2);
      }
    });
}

MwHandle ChannelByCcid(const std::string& ccid) {
  for (MwHandle h : sim::Rx().channels) {
    auto c = sim::Find<sim::ChannelObject>(h);
    if (c && c->ccid == ccid) return h;
  }
  return 0;
}

// Registers the recording with the receiver; one reference for the caller
// (holds the lock). One that needs a tuner none is free for fails at once.
MwHandle Add(std::shared_ptr<RecordingObject> r) {
  r->id = "rec-" + std::to_string(g_next_id++);
  bool conflict = Conflicts(*r);
  StartOnClock(*r);
  if (conflict && (r->state == kScheduled || r->state == kStarted)) {
    r->state = kError;
    r->error = kErrorTunerConflict;
  }
  MwHandle h = sim::Register(r, true);
  g_recordings.push_back(h);
  if (r->state == kError) sim::OnSimThread([h] { Report(h); });
  Follow(h);
  return sim::Give(h);
}

MwHandle ListWhere(MwHandle scheduler, bool scheduled) {
  if (!sim::Find<SchedulerObject>(scheduler)) return 0;
  Lock lock(sim::Mutex());
  std::vector<MwHandle> items;
  for (MwHandle h : g_recordings) {
    auto r = sim::Find<RecordingObject>(h);
    if (r && (r->state == kScheduled) == scheduled) items.push_back(h);
  }
  return sim::NewList(items);
}

void SetText(MwHandle recording, std::string RecordingObject::*field, const MwString* text) {
  auto r = sim::Find<RecordingObject>(recording);
  if (!r) return;
  std::string value = sim::Text(text);
  Lock lock(sim::Mutex());
  (*r).*field = value;
}

}  // namespace

namespace sim {

void FollowRecordings() {
  Lock lock(Mutex());
  std::vector<MwHandle> all = g_recordings;
  for (MwHandle h : all) Follow(h);
}

std::vector<MwHandle> Recordings() {
  Lock lock(Mutex());
  return g_recordings;
}

void SetRecordingState(MwHandle recording, int32_t state) {
  SetIntField(recording, &RecordingObject::state, state);
}

void ClearRecordingId(MwHandle recording) {
  auto r = Find<RecordingObject>(recording);
  if (!r) return;
  Lock lock(Mutex());
  r->id.clear();
}

}  // namespace sim

extern "C" {

// ---- the scheduler ----
MwHandle MwRecordingSchedulerOpen(void) {
  SIM_CALL(MwHandle);
  return sim::Register(std::make_shared<SchedulerObject>(), false);
}

MwHandle MwRecSchedGetRecordings(MwHandle scheduler) {
  SIM_CALL(MwHandle, scheduler);
  return ListWhere(scheduler, false);
}

// A programme already scheduled gives its recording again.
MwHandle MwRecSchedRecord(MwHandle scheduler, MwHandle programme) {
  SIM_CALL(MwHandle, scheduler, programme);
  auto p = sim::Find<sim::ProgrammeObject>(programme);
  if (!sim::Find<SchedulerObject>(scheduler) || !p) return 0;
  Lock lock(sim::Mutex());
  if (sim::Find<RecordingObject>(p->recording)) return sim::Give(p->recording);
  auto r = std::make_shared<RecordingObject>();
  r->name = p->name;
  r->description = p->description;
  r->start_time = p->start_time;
  r->duration = p->duration;
  r->channel = ChannelByCcid(p->channel_id);
  r->ratings = p->ratings;
  r->programme = programme;
  MwHandle h = Add(r);
  p->recording = h;
  return h;
}

// The channel id is a ccid of the receiver's line-up; an unknown one fails.
MwHandle MwRecSchedRecordAt(MwHandle scheduler, uint32_t startTime, uint32_t duration,
                            uint32_t repeatDays, const MwString* channelId) {
  SIM_CALL(MwHandle, scheduler, startTime, duration, repeatDays, channelId);
  if (!sim::Find<SchedulerObject>(scheduler)) return 0;
  std::string ccid = sim::Text(channelId);
  Lock lock(sim::Mutex());
  MwHandle channel = ChannelByCcid(ccid);
  auto c = sim::Find<sim::ChannelObject>(channel);
  if (!c) return 0;
  auto r = std::make_shared<RecordingObject>();
  r->name = c->name;
  r->start_time = static_cast<int32_t>(startTime);
  r->duration = static_cast<int32_t>(duration);
  r->repeat_days = static_cast<int32_t>(repeatDays);
  r->channel = channel;
  return Add(r);
}

MwHandle MwRecSchedGetScheduledRecordings(MwHandle scheduler) {
  SIM_CALL(MwHandle, scheduler);
  return ListWhere(scheduler, true);
}

MwHandle MwRecSchedGetChannelConfig(MwHandle scheduler) {
  SIM_CALL(MwHandle, scheduler);
  if (!sim::Find<SchedulerObject>(scheduler)) return 0;
  return sim::NewChannelConfig();
}

// The recording leaves the receiver's lists and its programme; handles to it stay valid.
void MwRecSchedRemove(MwHandle scheduler, MwHandle recording) {
  SIM_VOID(scheduler, recording);
  auto r = sim::Find<RecordingObject>(recording);
  if (!sim::Find<SchedulerObject>(scheduler) || !r) return;
  {
    Lock lock(sim::Mutex());
    // A recording stopped while it runs stays, partly completed.
    if (r->state == kStarted) {
      r->state = kPartlyCompleted;
      r->recording_duration = std::max(0, sim::ReceiverNow() - r->start_time);
    } else {
      g_recordings.erase(std::remove(g_recordings.begin(), g_recordings.end(), recording), g_recordings.end());
      auto p = sim::Find<sim::ProgrammeObject>(r->programme);
      if (p && p->recording == recording) p->recording = 0;
      return;
    }
  }
  Report(recording);
}

MwHandle MwRecSchedCreateProgramme(MwHandle scheduler) {
  SIM_CALL(MwHandle, scheduler);
  if (!sim::Find<SchedulerObject>(scheduler)) return 0;
  return sim::Register(std::make_shared<sim::ProgrammeObject>(), false);
}

// ---- recordings ----
int32_t MwRecGetStartPadding(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::start_padding);
}

int32_t MwRecGetEndPadding(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::end_padding);
}

int32_t MwRecGetStartTime(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::start_time);
}

int32_t MwRecGetDuration(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::duration);
}

int32_t MwRecGetState(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::state);
}

int32_t MwRecGetRecordingStartTime(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::recording_start_time);
}

int32_t MwRecGetRecordingDuration(MwHandle recording) {
  SIM_CALL(int32_t, recording);
  return sim::IntField(recording, &RecordingObject::recording_duration);
}

MwHandle MwRecGetName(MwHandle recording) {
  SIM_CALL(MwHandle, recording);
  return sim::StringField(recording, &RecordingObject::name);
}

MwHandle MwRecGetDescription(MwHandle recording) {
  SIM_CALL(MwHandle, recording);
  return sim::StringField(recording, &RecordingObject::description);
}

MwHandle MwRecGetId(MwHandle recording) {
  SIM_CALL(MwHandle, recording);
  return sim::StringField(recording, &RecordingObject::id);
}

MwHandle MwRecGetParentalRatings(MwHandle recording) {
  SIM_CALL(MwHandle, recording);
  return sim::Answer<RecordingObject>(recording, MwHandle{0},
                                      [&](RecordingObject& r) { return sim::NewList(r.ratings); });
}

MwHandle MwRecGetChannel(MwHandle recording) {
  SIM_CALL(MwHandle, recording);
  return sim::Answer<RecordingObject>(recording, MwHandle{0},
                                      [&](RecordingObject& r) { return sim::Give(r.channel); });
}

void MwRecSetStartPadding(MwHandle recording, uint32_t seconds) {
  SIM_VOID(recording, seconds);
  sim::SetIntField(recording, &RecordingObject::start_padding, static_cast<int32_t>(seconds));
}

void MwRecSetEndPadding(MwHandle recording, uint32_t seconds) {
  SIM_VOID(recording, seconds);
  sim::SetIntField(recording, &RecordingObject::end_padding, static_cast<int32_t>(seconds));
}

void MwRecSetName(MwHandle recording, const MwString* name, uint32_t reserved) {
  SIM_VOID(recording, name, reserved);
  SetText(recording, &RecordingObject::name, name);
}

void MwRecSetDescription(MwHandle recording, const MwString* description, uint32_t reserved) {
  SIM_VOID(recording, description, reserved);
  SetText(recording, &RecordingObject::description, description);
}

}  // extern "C"
