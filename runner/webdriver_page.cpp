// The WebDriver commands on the page: scripts, finding elements, what an
// element reads and does, and screenshots.
#include "runner/webdriver_impl.h"

#include <QBuffer>
#include <QImage>
#include <QWebFrame>

using namespace webdriver;

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

Reply WebDriver::Impl::ElementCommand(const std::string& element, const Args& rest, const json& body) {
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
  return FromOutcome(Run(script));
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
