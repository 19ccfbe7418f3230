// A page whose script never returns holds the browser's thread, and with it
// every timer of the run, the time limit's too. The watchdog, on a thread of
// its own, sees the browser's thread stop beating past the page's time limit
// and calls `hung` there, which ends the run.
#ifndef ORVANE_RUNNER_WATCHDOG_H
#define ORVANE_RUNNER_WATCHDOG_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <thread>

class Watchdog {
 public:
  // `hung` runs on the watchdog's thread, at most once, and must not return
  // (it ends the process).
  explicit Watchdog(std::function<void()> hung);
  ~Watchdog();
  // From the browser's thread, often (every 100 ms).
  void Beat();
  // A page starts with `timeout_ms` to run (0: no limit, nothing is watched).
  void Arm(int timeout_ms);

 private:
  void Watch();
  std::function<void()> hung_;
  std::atomic<int64_t> beat_{0};
  std::atomic<int64_t> deadline_{0};  // 0: not armed
  std::atomic<bool> stop_{false};
  std::thread thread_;
};

#endif
