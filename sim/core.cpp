#include "sim/core.h"

#include <atomic>
#include <cstring>
#include <chrono>
#include <condition_variable>
#include <map>
#include <queue>
#include <unordered_map>
#include <thread>

#include "middleware/collection.h"
#include "sim/receiver.h"

namespace sim {
namespace {

bool StrictFromEnvironment() {
  const char* v = getenv("ORVANE_SIM_STRICT");
  return v && *v && strcmp(v, "0") != 0;
}

struct Entry {
  std::shared_ptr<Object> object;
  bool persistent = false;
  int refs = 0;  // references handed out and not given back
};

struct State {
  std::unordered_map<MwHandle, Entry> objects;
  MwHandle next_handle = 0x100;  // never reused, not even across resets
  size_t release_errors = 0;
  bool strict = StrictFromEnvironment();
  std::vector<Call> calls;
  std::map<std::string, int64_t> forced;
  std::map<std::string, std::pair<bool, std::string>> forced_strings;  // op -> (non-null, text)
  std::function<void(const Call&)> observer;
  const MwEventCallbacks* callbacks = nullptr;
  bool auto_events = true;
};

State& S() {
  static State* s = new State;  // lives for the process (the sim thread may outlive statics)
  return *s;
}

// ---- the simulator's own thread ----
class Worker {
 public:
  void Post(std::function<void()> fn, int delay_ms) {
    std::unique_lock<std::mutex> lock(mu_);
    if (!thread_.joinable()) thread_ = std::thread([this] { Run(); });
    auto due = Clock::now() + std::chrono::milliseconds(delay_ms);
    tasks_.push(Task{due, seq_++, std::move(fn)});
    cv_.notify_all();
  }
  void WaitIdle(int horizon_ms) {
    std::unique_lock<std::mutex> lock(mu_);
    auto limit = Clock::now() + std::chrono::milliseconds(horizon_ms);
    idle_.wait(lock, [&] { return !running_ && (tasks_.empty() || tasks_.top().due > limit); });
  }
  void Clear() {
    std::unique_lock<std::mutex> lock(mu_);
    while (!tasks_.empty()) tasks_.pop();
    idle_.wait(lock, [&] { return !running_; });
  }
  ~Worker() {
    {
      std::lock_guard<std::mutex> lock(mu_);
      stop_ = true;
      cv_.notify_all();
    }
    if (thread_.joinable()) thread_.join();
  }

 private:
  using Clock = std::chrono::steady_clock;
  struct Task {
    Clock::time_point due;
    uint64_t seq;
    std::function<void()> fn;
    bool operator<(const Task& o) const { return due != o.due ? due > o.due : seq > o.seq; }
  };
  void Run() {
    std::unique_lock<std::mutex> lock(mu_);
    while (!stop_) {
      if (tasks_.empty()) {
        idle_.notify_all();
        cv_.wait(lock);
        continue;
      }
      const Clock::time_point due = tasks_.top().due;  // the queue may change while waiting
      if (due > Clock::now()) {
        idle_.notify_all();
        cv_.wait_until(lock, due);
        continue;
      }
      std::function<void()> fn = tasks_.top().fn;
      tasks_.pop();
      running_ = true;
      lock.unlock();
      fn();
      lock.lock();
      running_ = false;
      idle_.notify_all();
    }
  }
  std::mutex mu_;
  std::condition_variable cv_, idle_;
  std::priority_queue<Task> tasks_;
  uint64_t seq_ = 0;
  bool running_ = false;
  bool stop_ = false;
  std::thread thread_;
};

Worker& TheWorker() {
  static Worker worker;
  return worker;
}

}  // namespace

std::recursive_mutex& Mutex() {
  static std::recursive_mutex* mu = new std::recursive_mutex;
  return *mu;
}

// ---- registry ----
MwHandle Register(std::shared_ptr<Object> object, bool persistent) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  MwHandle h = S().next_handle++;
  Entry& e = S().objects[h];
  e.object = std::move(object);
  e.persistent = persistent;
  e.refs = persistent ? 0 : 1;
  return h;
}

MwHandle Give(MwHandle handle) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = S().objects.find(handle);
  if (it == S().objects.end()) return 0;
  it->second.refs++;
  return handle;
}

MwHandle GiveUnlessHeld(MwHandle handle) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = S().objects.find(handle);
  if (it == S().objects.end()) return 0;
  if (it->second.refs == 0) it->second.refs = 1;
  return handle;
}

std::shared_ptr<Object> Lookup(MwHandle handle) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = S().objects.find(handle);
  return it == S().objects.end() ? nullptr : it->second.object;
}

MwHandle HandleOf(const Object* object) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  for (auto& [h, e] : S().objects)
    if (e.object.get() == object) return h;
  return 0;
}

// ---- strings and lists ----
MwHandle NewStringHandle(const std::string& text) {
  auto s = std::make_shared<StringObject>();
  s->text = text;
  return Register(s, false);
}

MwHandle NewStringHandleOrNull(const std::string& text) {
  return text.empty() ? 0 : NewStringHandle(text);
}

std::string Text(const MwString* s) {
  if (!s || !s->data) return "";
  return std::string(s->data, s->length);
}

MwHandle NewList(std::vector<MwHandle> items, Lending lending) {
  auto l = std::make_shared<ListObject>();
  l->items = std::move(items);
  l->lending = lending;
  return Register(l, false);
}

MwHandle NewStringList(std::vector<std::string> strings) {
  auto l = std::make_shared<ListObject>();
  l->strings = std::move(strings);
  l->of_strings = true;
  return Register(l, false);
}

// ---- call log ----
std::string ArgText(int32_t v) { return std::to_string(v); }
std::string ArgText(uint32_t v) { return std::to_string(v); }
std::string ArgText(int64_t v) { return std::to_string(v); }
std::string ArgText(double v) {
  char b[32];
  snprintf(b, sizeof b, "%g", v);
  return b;
}
std::string ArgText(const MwString* s) {
  if (!s) return "null";
  if (!s->data) return "\"\"";
  return std::string(s->data, s->length);
}
std::string ArgText(const void* p) { return p ? "ptr" : "null"; }
std::string ArgText(const char* s) { return s ? s : "null"; }

void Log(const char* op, std::vector<std::string> args) {
  Call c{op, std::move(args)};
  std::function<void(const Call&)> observer;
  {
    std::lock_guard<std::recursive_mutex> lock(Mutex());
    S().calls.push_back(c);
    observer = S().observer;
  }
  if (observer) observer(c);
}

bool Forced(const char* op, int64_t* value) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto s = S().forced_strings.find(op);
  if (s != S().forced_strings.end()) {
    *value = s->second.first ? NewStringHandle(s->second.second) : 0;
    return true;
  }
  auto it = S().forced.find(op);
  if (it == S().forced.end()) return false;
  *value = it->second;
  return true;
}

// ---- public controls ----
void Reset() {
  TheWorker().Clear();
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  State& s = S();
  s.objects.clear();
  s.release_errors = 0;
  s.calls.clear();
  s.forced.clear();
  s.forced_strings.clear();
  s.auto_events = true;
  ResetSubsystems();
  LoadDefaultReceiver();
}

size_t HeldHandles() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  size_t n = 0;
  for (auto& [h, e] : S().objects) n += static_cast<size_t>(e.refs);
  return n;
}

std::string HeldHandlesReport() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  std::map<MwHandle, const Entry*> held;  // in handle order
  for (auto& [h, e] : S().objects)
    if (e.refs > 0) held[h] = &e;
  std::string out;
  for (auto& [h, e] : held) out += std::to_string(h) + " " + e->object->Type() + " x" + std::to_string(e->refs) + "\n";
  return out;
}

size_t ReleaseErrors() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return S().release_errors;
}

std::vector<Call> Calls() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return S().calls;
}

std::vector<Call> CallsTo(const std::string& op) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  std::vector<Call> out;
  for (auto& c : S().calls)
    if (c.op == op) out.push_back(c);
  return out;
}

size_t CountCalls(const std::string& op) { return CallsTo(op).size(); }

void ClearCalls() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().calls.clear();
}

void SetCallObserver(std::function<void(const Call&)> observer) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().observer = std::move(observer);
}

void Force(const std::string& op, int64_t value) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().forced_strings.erase(op);
  S().forced[op] = value;
}

void ForceString(const std::string& op, const char* text) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().forced.erase(op);
  S().forced_strings[op] = {text != nullptr, text ? text : ""};
}

void Unforce(const std::string& op) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().forced.erase(op);
  S().forced_strings.erase(op);
}

MwHandle NewString(const std::string& text) { return NewStringHandle(text); }

MwHandle NewInvalidString() {
  auto s = std::make_shared<StringObject>();
  s->valid = false;
  return Register(s, false);
}

MwHandle Ref(MwHandle handle) { return Give(handle); }

std::string TypeOf(MwHandle handle) {
  auto o = Lookup(handle);
  return o ? o->Type() : "";
}

bool RaiseWhileHeld(MwHandle handle, const std::function<void()>& raise) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = S().objects.find(handle);
  if (it == S().objects.end() || it->second.refs <= 0) return false;
  raise();
  return true;
}

void SetStrictOwnership(bool on) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().strict = on;
}

int RefsOf(MwHandle handle) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = S().objects.find(handle);
  return it == S().objects.end() ? 0 : it->second.refs;
}

const MwEventCallbacks* Callbacks() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return S().callbacks;
}

void OnSimThread(std::function<void()> fn, int delay_ms) { TheWorker().Post(std::move(fn), delay_ms); }
void WaitIdle(int horizon_ms) { TheWorker().WaitIdle(horizon_ms); }

void SetAutoEvents(bool on) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().auto_events = on;
}

bool AutoEvents() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return S().auto_events;
}

namespace detail {
void ReleaseHandle(MwHandle handle) {
  std::shared_ptr<Object> dying;  // destroyed outside the lock
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = S().objects.find(handle);
  if (it == S().objects.end() || it->second.refs <= 0) {
    S().release_errors++;
    if (S().strict) {
      fprintf(stderr, "orvane-sim: MwObjectRelease(%u): %s\n", handle,
              it == S().objects.end() ? "no such handle (never handed out, or already gone)"
                                      : "the plug-in holds no reference to it");
      abort();
    }
    return;
  }
  if (--it->second.refs == 0 && !it->second.persistent) {
    dying = it->second.object;
    S().objects.erase(it);
  }
}
void SetCallbacks(const MwEventCallbacks* cb) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  S().callbacks = cb;
}
}  // namespace detail

}  // namespace sim

// ---- the generic part of the contract ----
extern "C" {

void MwObjectRelease(MwHandle handle) {
  SIM_VOID(handle);
  sim::detail::ReleaseHandle(handle);
}

void MwRegisterEventCallbacks(const MwEventCallbacks* callbacks) {
  SIM_VOID(static_cast<const void*>(callbacks));
  sim::detail::SetCallbacks(callbacks);
}

uint32_t MwStringGetSize(MwHandle string) {
  SIM_CALL(uint32_t, string);
  auto s = sim::Find<sim::StringObject>(string);
  return s ? static_cast<uint32_t>(s->text.size() + 1) : 0;
}

int32_t MwStringIsValid(MwHandle string) {
  SIM_CALL(int32_t, string);
  auto s = sim::Find<sim::StringObject>(string);
  return s && s->valid ? 1 : 0;
}

void MwStringCopyTo(MwHandle string, char* buffer) {
  SIM_VOID(string, static_cast<const void*>(buffer));
  auto s = sim::Find<sim::StringObject>(string);
  if (s && buffer) memcpy(buffer, s->text.c_str(), s->text.size() + 1);
}

int32_t MwListGetCount(MwHandle list) {
  SIM_CALL(int32_t, list);
  auto l = sim::Find<sim::ListObject>(list);
  return l ? l->Count() : 0;
}

MwHandle MwListGetItem(MwHandle list, uint32_t index) {
  SIM_CALL(MwHandle, list, index);
  auto l = sim::Find<sim::ListObject>(list);
  if (!l || index >= static_cast<uint32_t>(l->Count())) return 0;
  if (l->of_strings) return sim::NewStringHandle(l->strings[index]);
  switch (l->lending) {
    case sim::Lending::kGive: return sim::Give(l->items[index]);
    case sim::Lending::kGiveUnlessHeld: return sim::GiveUnlessHeld(l->items[index]);
    case sim::Lending::kKeep: return l->items[index];
  }
  return 0;
}

}  // extern "C"
