// The WebDriver endpoint's inside: a command's reply, the session, and the
// running of work on the GUI thread, shared by the files of the endpoint
// (sessions and navigation; scripts and elements; keys and the receiver).
#ifndef ORVANE_RUNNER_WEBDRIVER_IMPL_H
#define ORVANE_RUNNER_WEBDRIVER_IMPL_H

#include <httplib.h>

#include <QApplication>
#include <QStringList>
#include <chrono>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "runner/options.h"
#include "runner/page.h"
#include "runner/runner.h"
#include "runner/webdriver.h"
#include "runner/webdriver_script.h"

namespace webdriver {

using nlohmann::json;

struct Reply {
  int status = 200;
  json value;
};

inline Reply Ok(json value = nullptr) { return Reply{200, std::move(value)}; }

// A W3C error, with the HTTP status the error table gives it.
Reply Error(const std::string& error, const std::string& message);

inline Reply FromOutcome(const Outcome& o) { return o.ok ? Ok(o.value) : Error(o.error, o.message); }

// Runs `fn` on the GUI thread and waits for its result.
template <class T, class F>
T OnGui(F fn) {
  T result{};
  QMetaObject::invokeMethod(qApp, [&] { result = fn(); }, Qt::BlockingQueuedConnection);
  return result;
}

// Runs `fn` on the GUI thread: the command's empty success.
template <class F>
Reply Done(F fn) {
  OnGui<bool>([&] {
    fn();
    return true;
  });
  return Ok();
}

inline void Sleep(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

// Polls `done` (on the GUI thread) every 20 ms for up to `ms`; false on timeout.
template <class F>
bool WaitFor(int ms, F done) {
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(ms);
  while (!OnGui<bool>(done)) {
    if (std::chrono::steady_clock::now() >= end) return false;
    Sleep(20);
  }
  return true;
}

// ---- the session -------------------------------------------------------------

struct Session {
  std::string id;
  Runner* runner = nullptr;  // GUI thread
  QStringList log;           // every line of the runner's log since the session began
  int script_ms = 30000, page_load_ms = 300000, implicit_ms = 0;
  int next_async = 0;
};

}  // namespace webdriver

struct WebDriver::Impl {
  using Reply = webdriver::Reply;
  using json = webdriver::json;
  using Args = std::vector<std::string>;

  Options options;
  httplib::Server server;
  std::thread thread;
  std::mutex mutex;  // one command at a time
  std::unique_ptr<webdriver::Session> session;
  int sessions = 0;

  Reply Dispatch(const std::string& method, const Args& parts, const json& body);
  Reply NewSession(const json& body);
  Reply CloseSession();
  Reply Command(const std::string& method, const Args& rest, const json& body);
  Reply Execute(const json& body, bool async);
  Reply Find(const json& body, const std::string& from, bool many);
  Reply ElementCommand(const std::string& element, const Args& rest, const json& body);
  Reply Actions(const json& body);
  Reply Vendor(const std::string& method, const std::string& what, const json& body);
  Reply Screenshot(const std::string& element);
  // A script in the session's page (see webdriver::Evaluate).
  webdriver::Outcome Run(const std::string& body) {
    return webdriver::OnGui<webdriver::Outcome>(
        [&] { return webdriver::Evaluate(session->runner->page()->mainFrame(), body); });
  }
};

#endif
