#include "runner/watchdog.h"

#include <chrono>

namespace {

// How long past the time limit, and how long without a beat, before a page
// counts as hung: a page busy for a moment at its limit is not.
constexpr int64_t kGraceMs = 2000;

int64_t NowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch()).count();
}

}  // namespace

Watchdog::Watchdog(std::function<void()> hung) : hung_(std::move(hung)) {
  beat_ = NowMs();
  thread_ = std::thread([this] { Watch(); });
}

Watchdog::~Watchdog() {
  stop_ = true;
  thread_.join();
}

void Watchdog::Beat() { beat_ = NowMs(); }

void Watchdog::Arm(int timeout_ms) {
  Beat();
  deadline_ = timeout_ms > 0 ? NowMs() + timeout_ms : 0;
}

void Watchdog::Watch() {
  while (!stop_) {
    std::this_thread::sleep_for(std::chrono::milliseconds(200));
    int64_t now = NowMs(), deadline = deadline_;
    if (deadline && now > deadline + kGraceMs && now - beat_ > kGraceMs) {
      hung_();
      return;
    }
  }
}
