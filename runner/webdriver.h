// orvane-run --webdriver PORT: a W3C WebDriver remote end on 127.0.0.1, so
// that WebDriver clients (Selenium, WebdriverIO) drive HbbTV applications
// on the simulated receiver. One session at a time, each with a fresh
// receiver and a window of its own; vendor endpoints under
// /session/{id}/orvane/ put the receiver under the test's control. HTTP is
// served on threads of its own; everything that touches the browser runs on
// the GUI thread.
#ifndef ORVANE_RUNNER_WEBDRIVER_H
#define ORVANE_RUNNER_WEBDRIVER_H

#include <memory>

#include "runner/options.h"

class WebDriver {
 public:
  explicit WebDriver(const Options& options);
  ~WebDriver();
  // Binds 127.0.0.1:port (0: a free port) and starts serving; the port, or
  // -1 when it cannot be bound.
  int Listen(int port);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

#endif
