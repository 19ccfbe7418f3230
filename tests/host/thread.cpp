// The browser's thread: NPN_PluginThreadAsyncCall queues, tests pump.
#include <chrono>
#include <deque>
#include <mutex>
#include <thread>

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
  s.queue.push_back(Queued{npp, func, data});
}

void ResetThread() {
  ThreadState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.queue.clear();
}

}  // namespace detail

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
