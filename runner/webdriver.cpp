// The WebDriver endpoint: HTTP on its own threads, the session, navigation
// and the window.
#include "runner/webdriver_impl.h"

#include <QWebFrame>
#include <QWidget>
#include <map>

#include "runner/log.h"
#include "sim/description.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

using namespace webdriver;

namespace webdriver {

// A W3C error, with the HTTP status the error table gives it.
Reply Error(const std::string& error, const std::string& message) {
  static const std::map<std::string, int> kStatus = {
      {"invalid argument", 400},     {"invalid selector", 400},        {"invalid session id", 404},
      {"no such element", 404},      {"stale element reference", 404}, {"unknown command", 404},
      {"no such window", 404},       {"unknown method", 405},          {"javascript error", 500},
      {"script timeout", 500},       {"timeout", 500},                 {"session not created", 500},
      {"unsupported operation", 500}, {"unknown error", 500}};
  auto it = kStatus.find(error);
  return Reply{it == kStatus.end() ? 500 : it->second,
               json{{"error", error}, {"message", message}, {"stacktrace", ""}}};
}

}  // namespace webdriver

WebDriver::WebDriver(const Options& options) : impl_(new Impl) { impl_->options = options; }

WebDriver::~WebDriver() {
  impl_->server.stop();
  if (impl_->thread.joinable()) impl_->thread.join();
}

int WebDriver::Listen(int port) {
  Impl* d = impl_.get();
  auto handle = [d](const httplib::Request& request, httplib::Response& response) {
    std::vector<std::string> parts;
    std::string path = request.path, part;
    for (size_t i = 0; i <= path.size(); i++) {
      if (i == path.size() || path[i] == '/') {
        if (!part.empty()) parts.push_back(httplib::detail::decode_url(part, false));
        part.clear();
      } else {
        part += path[i];
      }
    }
    json body = json::object();
    Reply reply;
    if (!request.body.empty()) body = json::parse(request.body, nullptr, false);
    if (body.is_discarded() || !body.is_object()) {
      reply = Error("invalid argument", "the body is no JSON object");
    } else {
      std::lock_guard<std::mutex> lock(d->mutex);
      reply = d->Dispatch(request.method, parts, body);
    }
    response.status = reply.status;
    response.set_header("Cache-Control", "no-cache");
    response.set_content(json{{"value", reply.value}}.dump(), "application/json; charset=utf-8");
  };
  d->server.Get(".*", handle);
  d->server.Post(".*", handle);
  d->server.Delete(".*", handle);
  int bound = port == 0 ? d->server.bind_to_any_port("127.0.0.1") : (d->server.bind_to_port("127.0.0.1", port) ? port : -1);
  if (bound <= 0) return -1;
  d->thread = std::thread([d] { d->server.listen_after_bind(); });
  return bound;
}

Reply WebDriver::Impl::Dispatch(const std::string& method, const std::vector<std::string>& parts,
                                const json& body) {
  if (parts.size() == 1 && parts[0] == "status" && method == "GET")
    return Ok({{"ready", session == nullptr},
               {"message", session ? "a session is open: orvane-run serves one at a time" : "ready"}});
  if (parts.empty() || parts[0] != "session") return Error("unknown command", "no command " + method + " /" + (parts.empty() ? "" : parts[0]));
  if (parts.size() == 1) {
    if (method != "POST") return Error("unknown method", "/session takes POST");
    return NewSession(body);
  }
  if (!session || parts[1] != session->id) return Error("invalid session id", "no session " + parts[1]);
  if (parts.size() == 2) {
    if (method != "DELETE") return Error("unknown method", "/session/{id} takes DELETE");
    return CloseSession();
  }
  return Command(method, std::vector<std::string>(parts.begin() + 2, parts.end()), body);
}

Reply WebDriver::Impl::NewSession(const json& body) {
  if (session) return Error("session not created", "a session is open: orvane-run serves one at a time");
  json caps = json::object();
  const json& requested = body.contains("capabilities") ? body["capabilities"] : json::object();
  if (requested.contains("alwaysMatch") && requested["alwaysMatch"].is_object()) caps = requested["alwaysMatch"];
  if (requested.contains("firstMatch") && requested["firstMatch"].is_array() && !requested["firstMatch"].empty() &&
      requested["firstMatch"][0].is_object())
    caps.update(requested["firstMatch"][0]);
  if (caps.contains("browserName") && caps["browserName"] != "orvane")
    return Error("session not created", "this remote end is browserName \"orvane\"");
  json mine = caps.value("orvane:options", json::object());
  if (!mine.is_object()) return Error("invalid argument", "orvane:options is no object");
  Options o = options;
  o.timeout_ms = 0;
  o.stay = true;
  o.keys.clear();
  if (mine.contains("clockRate")) o.clock_rate = mine["clockRate"].get<int>();
  if (mine.contains("size")) {
    QStringList wh = QString::fromStdString(mine["size"].get<std::string>()).split('x');
    if (wh.size() != 2) return Error("invalid argument", "size is WIDTHxHEIGHT");
    o.width = wh[0].toInt();
    o.height = wh[1].toInt();
  }
  std::string receiver_error;
  bool loaded = OnGui<bool>([&] {
    sim::Reset();
    json r = mine.value("receiver", json());
    if (r.is_null() && !o.receiver.isEmpty()) r = o.receiver.toStdString();  // the command line's
    if (r.is_string() && !sim::LoadDescription(r.get<std::string>(), &receiver_error)) return false;
    if (r.is_object() && !sim::LoadDescriptionText(r.dump(), &receiver_error)) return false;
    if (o.clock_rate >= 0) sim::SetClockRate(o.clock_rate);
    return true;
  });
  if (!loaded) return Error("session not created", "the receiver description: " + receiver_error);
  auto s = std::make_unique<Session>();
  s->id = "orvane-" + std::to_string(++sessions);
  Session* raw = s.get();
  std::string user_agent = mine.value("userAgent", std::string());
  bool autostart = mine.value("autostart", false);
  std::string start_url;
  OnGui<bool>([&] {
    runlog::Capture(&raw->log);
    runlog::Line("run", QString("webdriver session %1").arg(QString::fromStdString(raw->id)));
    raw->runner = new Runner(o);
    if (!user_agent.empty()) raw->runner->page()->SetUserAgent(QString::fromStdString(user_agent));
    raw->runner->ShowEmpty();
    sim::AitEntry entry;
    if (autostart && sim::FindAitEntry("", &entry)) start_url = entry.url;
    return true;
  });
  session = std::move(s);
  if (autostart) {
    if (start_url.empty()) {
      CloseSession();
      return Error("session not created", "the current channel signals no AUTOSTART application");
    }
    Command("POST", {"url"}, json{{"url", QUrl::fromUserInput(QString::fromStdString(start_url)).toString().toStdString()}});
  }
  json capabilities = {{"browserName", "orvane"},
                       {"browserVersion", "1"},
                       {"platformName", "linux"},
                       {"acceptInsecureCerts", false},
                       {"pageLoadStrategy", "normal"},
                       {"setWindowRect", false},
                       {"timeouts", {{"script", session->script_ms}, {"pageLoad", session->page_load_ms}, {"implicit", 0}}},
                       {"orvane:options", mine}};
  return Ok({{"sessionId", session->id}, {"capabilities", capabilities}});
}

Reply WebDriver::Impl::CloseSession() {
  std::string id = session->id;
  Session* s = session.get();
  OnGui<bool>([s] {
    delete s->runner;  // the window, the page and its plug-in instances go
    s->runner = nullptr;
    return true;
  });
  Sleep(100);  // the plug-in's last queued calls run
  OnGui<bool>([&id] {
    QApplication::processEvents();
    int windows = 0;
    for (QWidget* w : QApplication::topLevelWidgets()) windows += w->isVisible();
    runlog::Line("run", QString("webdriver session %1 closed: %2 windows open, %3 middleware references held, "
                                "%4 released wrongly")
                            .arg(QString::fromStdString(id)).arg(windows).arg(sim::HeldHandles())
                            .arg(sim::ReleaseErrors()));
    runlog::Capture(nullptr);
    return true;
  });
  session.reset();
  return Ok();
}

Reply WebDriver::Impl::Command(const std::string& method, const std::vector<std::string>& rest, const json& body) {
  const std::string& what = rest[0];
  Runner* runner = session->runner;
  if (what == "timeouts") {
    if (method == "GET")
      return Ok({{"script", session->script_ms}, {"pageLoad", session->page_load_ms}, {"implicit", session->implicit_ms}});
    for (const char* key : {"script", "pageLoad", "implicit"})
      if (body.contains(key) && !body[key].is_number_integer()) return Error("invalid argument", std::string(key) + " is no integer");
    session->script_ms = body.value("script", session->script_ms);
    session->page_load_ms = body.value("pageLoad", session->page_load_ms);
    session->implicit_ms = body.value("implicit", session->implicit_ms);
    return Ok();
  }
  if (what == "url" && method == "POST") {
    if (!body.contains("url") || !body["url"].is_string()) return Error("invalid argument", "url is no string");
    QUrl url = QUrl::fromUserInput(QString::fromStdString(body["url"].get<std::string>()));
    OnGui<bool>([&] {
      runner->Navigate(url);
      return true;
    });
    if (!WaitFor(session->page_load_ms, [runner] { return !runner->Loading(); }))
      return Error("timeout", "the page did not load in time");
    return Ok();
  }
  if (what == "url" || what == "title" || what == "source") {
    if (method != "GET") return Error("unknown method", what + " takes GET");
    return Ok(OnGui<std::string>([&] {
      QWebFrame* f = runner->page()->mainFrame();
      QString s = what == "url" ? f->url().toString() : what == "title" ? f->title() : f->toHtml();
      return s.toStdString();
    }));
  }
  if (what == "back" || what == "forward" || what == "refresh") {
    OnGui<bool>([&] {
      if (what == "back") runner->page()->triggerAction(QWebPage::Back);
      if (what == "forward") runner->page()->triggerAction(QWebPage::Forward);
      if (what == "refresh") runner->page()->triggerAction(QWebPage::Reload);
      return true;
    });
    Sleep(50);
    WaitFor(session->page_load_ms, [runner] { return !runner->Loading(); });
    return Ok();
  }
  if (what == "window") {
    if (rest.size() == 2 && rest[1] == "handles") return Ok(json::array({"orvane-window"}));
    if (rest.size() == 2 && rest[1] == "rect")
      return Ok({{"x", 0}, {"y", 0}, {"width", options.width}, {"height", options.height}});
    return Ok("orvane-window");
  }
  if (what == "execute" && rest.size() == 2 && (rest[1] == "sync" || rest[1] == "async")) return Execute(body, rest[1] == "async");
  if ((what == "element" || what == "elements") && rest.size() == 1 && method == "POST")
    return Find(body, std::string(), what == "elements");
  if (what == "element" && rest.size() >= 3)
    return ElementCommand(rest[1], std::vector<std::string>(rest.begin() + 2, rest.end()), body);
  if (what == "actions") return method == "DELETE" ? Ok() : Actions(body);
  if (what == "screenshot") return Screenshot(std::string());
  if (what == "orvane" && rest.size() == 2) return Vendor(method, rest[1], body);
  return Error("unknown command", "no command " + method + " " + what);
}
