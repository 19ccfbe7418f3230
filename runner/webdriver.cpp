#include "runner/webdriver.h"

#include <httplib.h>

#include <QApplication>
#include <QBuffer>
#include <QImage>
#include <QWidget>
#include <QWebFrame>
#include <chrono>
#include <cstdio>
#include <mutex>
#include <thread>

#include "runner/keys.h"
#include "runner/log.h"
#include "runner/page.h"
#include "runner/runner.h"
#include "runner/webdriver_script.h"
#include "sim/appmgr_sim.h"
#include "sim/broadcast_sim.h"
#include "sim/config_sim.h"
#include "sim/description.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

using nlohmann::json;
using webdriver::kElementKey;
using webdriver::Literal;
using webdriver::Outcome;

namespace {

struct Reply {
  int status = 200;
  json value;
};

Reply Ok(json value = nullptr) { return Reply{200, std::move(value)}; }

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

Reply FromOutcome(const Outcome& o) { return o.ok ? Ok(o.value) : Error(o.error, o.message); }

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

void Sleep(int ms) { std::this_thread::sleep_for(std::chrono::milliseconds(ms)); }

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

// A WebDriver key (a character, or a code point of the W3C key table) as
// a remote key: arrows, Enter and Return as OK, Backspace and Escape as
// BACK, F1-F4 as the colour keys, and the keyboard's keys of --interactive.
const RemoteKey* RemoteKeyFor(const std::string& value) {
  QString key = QString::fromStdString(value);
  if (key.size() != 1) return nullptr;
  ushort c = key[0].unicode();
  switch (c) {
    case 0xE012: return KeyForKeyboard(Qt::Key_Left);
    case 0xE013: return KeyForKeyboard(Qt::Key_Up);
    case 0xE014: return KeyForKeyboard(Qt::Key_Right);
    case 0xE015: return KeyForKeyboard(Qt::Key_Down);
    case 0xE006:
    case 0xE007: return KeyForKeyboard(Qt::Key_Return);
    case 0xE003:
    case 0xE00C: return FindKey("VK_BACK");
    case 0xE031: return FindKey("VK_RED");
    case 0xE032: return FindKey("VK_GREEN");
    case 0xE033: return FindKey("VK_YELLOW");
    case 0xE034: return FindKey("VK_BLUE");
    case 0xE00D: return KeyForKeyboard(Qt::Key_Space);
    case 0xE00E: return KeyForKeyboard(Qt::Key_PageUp);
    case 0xE00F: return KeyForKeyboard(Qt::Key_PageDown);
    default: break;
  }
  if (c < 0x80) return KeyForKeyboard(QChar(c).toUpper().unicode());
  return nullptr;
}

// ---- the session -------------------------------------------------------------

struct Session {
  std::string id;
  Runner* runner = nullptr;  // GUI thread
  QStringList log;           // every line of the runner's log since the session began
  int script_ms = 30000, page_load_ms = 300000, implicit_ms = 0;
  int next_async = 0;
};

}  // namespace

struct WebDriver::Impl {
  Options options;
  httplib::Server server;
  std::thread thread;
  std::mutex mutex;  // one command at a time
  std::unique_ptr<Session> session;
  int sessions = 0;

  Reply Dispatch(const std::string& method, const std::vector<std::string>& parts, const json& body);
  Reply NewSession(const json& body);
  Reply CloseSession();
  Reply Command(const std::string& method, const std::vector<std::string>& rest, const json& body);
  Reply Execute(const json& body, bool async);
  Reply Find(const json& body, const std::string& from, bool many);
  Reply ElementCommand(const std::string& method, const std::string& element, const std::vector<std::string>& rest,
                       const json& body);
  Reply Actions(const json& body);
  Reply Vendor(const std::string& method, const std::string& what, const json& body);
  Reply Screenshot(const std::string& element);
  Outcome Run(const std::string& body) {
    return OnGui<Outcome>([&] { return webdriver::Evaluate(session->runner->page()->mainFrame(), body); });
  }
};

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
    return ElementCommand(method, rest[1], std::vector<std::string>(rest.begin() + 2, rest.end()), body);
  if (what == "actions") return method == "DELETE" ? Ok() : Actions(body);
  if (what == "screenshot") return Screenshot(std::string());
  if (what == "orvane" && rest.size() == 2) return Vendor(method, rest[1], body);
  return Error("unknown command", "no command " + method + " " + what);
}

Reply WebDriver::Impl::Execute(const json& body, bool async) {
  if (!body.contains("script") || !body["script"].is_string()) return Error("invalid argument", "script is no string");
  json args = body.value("args", json::array());
  if (!args.is_array()) return Error("invalid argument", "args is no array");
  std::string call = "new Function(" + Literal(body["script"]) + ").apply(window, a)";
  if (!async) return FromOutcome(Run("var a = __orvane.inn(" + Literal(args) + "); v = " + call));
  int id = ++session->next_async;
  std::string slot = "__orvane.async[" + std::to_string(id) + "]";
  Outcome started = Run("var a = __orvane.inn(" + Literal(args) + "); a.push(function (r) { " + slot +
                        " = {value: r}; }); " + call);
  if (!started.ok) return FromOutcome(started);
  Outcome done;
  bool in_time = WaitFor(session->script_ms, [&] {
    done = webdriver::Evaluate(session->runner->page()->mainFrame(),
                               "if (!" + slot + ") __orvane.fail('pending', ''); v = " + slot + ".value");
    return done.ok || done.error != "pending";
  });
  if (!in_time) return Error("script timeout", "the script did not call back in time");
  return FromOutcome(done);
}

Reply WebDriver::Impl::Find(const json& body, const std::string& from, bool many) {
  if (!body.contains("using") || !body["using"].is_string() || !body.contains("value") || !body["value"].is_string())
    return Error("invalid argument", "using and value are strings");
  std::string using_ = body["using"], value = body["value"];
  std::string root = from.empty() ? "document" : "__orvane.el(" + Literal(json{{kElementKey, from}}) + ")";
  std::string query;
  if (using_ == "css selector") {
    query = "try { v = Array.prototype.slice.call(" + root + ".querySelectorAll(" + Literal(value) +
            ")); } catch (e) { __orvane.fail('invalid selector', String(e)); }";
  } else if (using_ == "xpath") {
    query = "try { var s = document.evaluate(" + Literal(value) + ", " + root +
            ", null, XPathResult.ORDERED_NODE_SNAPSHOT_TYPE, null); v = []; for (var i = 0; i < s.snapshotLength; i++) "
            "if (s.snapshotItem(i) instanceof Element) v.push(s.snapshotItem(i)); } catch (e) { "
            "__orvane.fail('invalid selector', String(e)); }";
  } else if (using_ == "tag name") {
    query = "v = Array.prototype.slice.call(" + root + ".getElementsByTagName(" + Literal(value) + "));";
  } else if (using_ == "link text" || using_ == "partial link text") {
    query = "v = Array.prototype.filter.call(" + root + ".getElementsByTagName('a'), function (a) { var t = a.innerText.trim(); return " +
            (using_ == "link text" ? "t === " + Literal(value) : "t.indexOf(" + Literal(value) + ") >= 0") + "; });";
  } else {
    return Error("invalid argument", "no locator strategy " + using_);
  }
  Outcome found;
  auto end = std::chrono::steady_clock::now() + std::chrono::milliseconds(session->implicit_ms);
  for (;;) {
    found = Run(query);
    if (!found.ok || !found.value.empty() || std::chrono::steady_clock::now() >= end) break;
    Sleep(50);
  }
  if (!found.ok) return FromOutcome(found);
  if (many) return Ok(found.value);
  if (found.value.empty()) return Error("no such element", "no element for " + using_ + " " + value);
  return Ok(found.value[0]);
}

Reply WebDriver::Impl::ElementCommand(const std::string& method, const std::string& element,
                                      const std::vector<std::string>& rest, const json& body) {
  std::string e = "__orvane.el(" + Literal(json{{kElementKey, element}}) + ")";
  const std::string& what = rest[0];
  std::string name = rest.size() > 1 ? rest[1] : std::string();
  if (what == "element" || what == "elements") return Find(body, element, what == "elements");
  if (what == "screenshot") return Screenshot(element);
  std::string script;
  if (what == "text") script = "v = " + e + ".innerText";
  else if (what == "attribute") script = "v = " + e + ".getAttribute(" + Literal(name) + ")";
  else if (what == "property") script = "v = " + e + "[" + Literal(name) + "]";
  else if (what == "css") script = "v = getComputedStyle(" + e + ").getPropertyValue(" + Literal(name) + ")";
  else if (what == "name") script = "v = " + e + ".tagName.toLowerCase()";
  else if (what == "enabled") script = "v = !" + e + ".disabled";
  else if (what == "selected") script = "var x = " + e + "; v = !!(x.checked || x.selected)";
  else if (what == "displayed")
    script = "var x = " + e + ", s = getComputedStyle(x); v = s.display !== 'none' && s.visibility !== 'hidden' && "
             "(x.offsetWidth > 0 || x.offsetHeight > 0)";
  else if (what == "rect")
    script = "var r = " + e + ".getBoundingClientRect(); v = {x: r.left + pageXOffset, y: r.top + pageYOffset, "
             "width: r.width, height: r.height}";
  else if (what == "click")
    script = "var x = " + e + ", ev = document.createEvent('MouseEvents'); ev.initMouseEvent('click', true, true, window, "
             "1, 0, 0, 0, 0, false, false, false, false, 0, null); x.dispatchEvent(ev)";
  else if (what == "clear")
    script = "var x = " + e + "; x.value = ''; x.dispatchEvent(new Event('input', {bubbles: true})); "
             "x.dispatchEvent(new Event('change', {bubbles: true}))";
  else if (what == "value") {
    if (!body.contains("text") || !body["text"].is_string()) return Error("invalid argument", "text is no string");
    script = "var x = " + e + "; x.focus(); x.value += " + Literal(body["text"]) +
             "; x.dispatchEvent(new Event('input', {bubbles: true}))";
  } else {
    return Error("unknown command", "no element command " + what);
  }
  (void)method;
  return FromOutcome(Run(script));
}

Reply WebDriver::Impl::Actions(const json& body) {
  if (!body.contains("actions") || !body["actions"].is_array()) return Error("invalid argument", "actions is no array");
  for (const json& source : body["actions"]) {
    if (!source.is_object() || !source.contains("actions") || !source["actions"].is_array())
      return Error("invalid argument", "an input source has no actions");
    std::string type = source.value("type", std::string());
    for (const json& action : source["actions"]) {
      std::string kind = action.value("type", std::string());
      // Clients send a pointer source of pauses beside the keys.
      if (type != "key" && type != "none" && kind != "pause")
        return Error("unsupported operation", "only key actions reach a TV: use the element commands to click");
      if (kind == "pause") {
        Sleep(action.value("duration", 0));
      } else if (kind == "keyDown") {
        std::string value = action.value("value", std::string());
        const RemoteKey* key = RemoteKeyFor(value);
        if (!key) return Error("invalid argument", "no remote key for " + value);
        Runner* runner = session->runner;
        OnGui<bool>([runner, key] {
          runner->PressRemoteKey(*key);
          return true;
        });
      } else if (kind != "keyUp") {
        return Error("invalid argument", "no key action " + kind);
      }
    }
  }
  return Ok();
}

Reply WebDriver::Impl::Screenshot(const std::string& element) {
  QRect crop;
  if (!element.empty()) {
    Outcome rect = Run("var r = __orvane.el(" + Literal(json{{kElementKey, element}}) +
                       ").getBoundingClientRect(); v = [r.left, r.top, r.width, r.height]");
    if (!rect.ok) return FromOutcome(rect);
    crop = QRect(rect.value[0].get<double>(), rect.value[1].get<double>(), rect.value[2].get<double>(),
                 rect.value[3].get<double>());
  }
  Runner* runner = session->runner;
  std::string png = OnGui<std::string>([runner, crop] {
    QImage picture = runner->Picture();
    if (!crop.isNull()) picture = picture.copy(crop);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes.toBase64().toStdString();
  });
  return Ok(png);
}

Reply WebDriver::Impl::Vendor(const std::string& method, const std::string& what, const json& body) {
  if (what == "log") {
    if (method != "GET") return Error("unknown method", "orvane/log takes GET");
    json lines = json::array();
    for (const QString& line : runlog::Captured()) lines.push_back(line.toStdString());
    return Ok(lines);
  }
  if (method != "POST") return Error("unknown method", "orvane/" + what + " takes POST");
  Runner* runner = session->runner;
  if (what == "key") {
    const RemoteKey* key = FindKey(QString::fromStdString(body.value("key", std::string())));
    if (!key) return Error("invalid argument", "no remote key " + body.value("key", std::string()));
    return Done([runner, key] { runner->PressRemoteKey(*key); });
  }
  if (what == "stream-event") {
    if (!body.contains("name") || !body["name"].is_string()) return Error("invalid argument", "name is no string");
    std::string name = body["name"], data = body.value("data", std::string()), text = body.value("text", std::string());
    int status = body.value("status", 1);
    return Done([&] {
      runlog::Line("run", QString("webdriver: stream event %1").arg(QString::fromStdString(name)));
      sim::FireStreamEvent(name, data, text, status);
    });
  }
  if (what == "tune") {
    // By position in the line-up (from 0) or by name.
    long index = -1;
    if (body.contains("index") && body["index"].is_number_integer()) index = body["index"].get<long>();
    std::string name = body.value("name", std::string());
    bool tuned = OnGui<bool>([&] {
      std::vector<MwHandle> channels = sim::Channels();
      for (size_t i = 0; index < 0 && i < channels.size(); i++)
        if (sim::HandleLabel(channels[i]) == "(" + name + ")") index = static_cast<long>(i);
      if (index < 0 || !sim::ViewerTune(static_cast<size_t>(index))) return false;
      runlog::Line("run", QString("webdriver: the viewer tunes to %1").arg(QString::fromStdString(sim::CurrentChannelName())));
      return true;
    });
    return tuned ? Ok() : Error("invalid argument", "no such channel in the line-up");
  }
  if (what == "low-memory") {
    return Done([] { sim::RaiseLowMemory(sim::LastAppManager()); });
  }
  if (what == "clock") {
    if (!body.contains("rate") || !body["rate"].is_number_integer()) return Error("invalid argument", "rate is no integer");
    int rate = body["rate"];
    return Done([rate] { sim::SetClockRate(rate); });
  }
  if (what == "parental-rating") {
    bool blocked = body.value("blocked", false);
    return Done([blocked] {
      for (MwHandle b : sim::BroadcastInstances()) sim::RaiseParentalRatingChange(b, "content", nullptr, blocked);
    });
  }
  if (what == "pvr-status") {
    if (!body.contains("status") || !body["status"].is_number_integer()) return Error("invalid argument", "status is no integer");
    int status = body["status"];
    return Done([status] { sim::RaisePvrStatusChange(status); });
  }
  return Error("unknown command", "no vendor command orvane/" + what);
}
