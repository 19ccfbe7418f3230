// The browser's thread: NPN_PluginThreadAsyncCall queues, tests pump.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <deque>
#include <mutex>
#include <unordered_set>
#include <thread>
#include <cstring>

#include "host/internal.h"

namespace host {
namespace {

struct Queued {
  NPP npp;
  void (*func)(void*);
  void* data;
};

struct ThreadState {
  std::mutex mutex;
  std::deque<Queued> queue;
  std::unordered_set<NPP> destroyed;  // instances the browser stopped
  bool drop_destroyed = true;     // their calls are dropped, as browsers do
  std::vector<std::string> off_thread;  // NPN calls made off the browser's thread
  std::atomic<std::thread::id> browser_thread{std::this_thread::get_id()};
};

ThreadState& State() {
  static auto* state = new ThreadState;  // plug-in threads may still post at exit
  return *state;
}

}  // namespace

namespace detail {

void PluginThreadAsyncCall(NPP npp, void (*func)(void*), void* data) {
  if (!func) return;
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (s.drop_destroyed && s.destroyed.count(npp)) return;  // no such instance any more
  s.queue.push_back(Queued{npp, func, data});
}

void ResetThread() {
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.queue.clear();
  s.destroyed.clear();
  s.drop_destroyed = true;
  s.off_thread.clear();
  s.browser_thread = std::this_thread::get_id();
}

void NoteCall(const char* name) {
  ThreadState& s = State();
  if (std::this_thread::get_id() == s.browser_thread.load()) return;
  static const char* const kAnyThread[] = {"memalloc", "memfree", "pluginthreadasynccall"};
  for (const char* allowed : kAnyThread)
    if (!strcmp(name, allowed)) return;
  std::lock_guard<std::mutex> lock(s.mutex);
  s.off_thread.push_back(name);
}

}  // namespace detail

void InstanceDestroyed(NPP npp) {
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.destroyed.insert(npp);
  if (!s.drop_destroyed) return;
  s.queue.erase(std::remove_if(s.queue.begin(), s.queue.end(),
                               [npp](const Queued& q) { return q.npp == npp; }),
                s.queue.end());
}

void DropCallsOfDestroyedInstances(bool on) {
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.drop_destroyed = on;
}

std::vector<std::string> OffThreadCalls() {
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.off_thread;
}

size_t Pending() {
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.queue.size();
}

size_t Pump() {
  ThreadState& s = State();
  size_t ran = 0;
  for (;;) {
    Queued next{};
    {
      std::lock_guard<std::mutex> lock(s.mutex);
      if (s.queue.empty()) return ran;
      next = s.queue.front();
      s.queue.pop_front();
    }
    next.func(next.data);
    ++ran;
  }
}

size_t PumpQueued() {
  ThreadState& s = State();
  std::deque<Queued> now;
  {
    std::lock_guard<std::mutex> lock(s.mutex);
    now.swap(s.queue);
  }
  for (const Queued& q : now) q.func(q.data);
  return now.size();
}

bool PumpUntil(const std::function<bool()>& done, int timeout_ms) {
  auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
  for (;;) {
    Pump();
    if (done()) return true;
    if (std::chrono::steady_clock::now() >= deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
}

}  // namespace host
