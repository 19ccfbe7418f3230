#include "runner/webdriver_script.h"

#include <QString>
#include <QVariant>
#include <QWebFrame>

namespace webdriver {

namespace {

// Defined once per document: the element references (indices into a list
// the document keeps) and the conversions of arguments and results.
const char kHelpers[] = R"JS(
(function () {
  if (window.__orvane) return;
  var K = 'element-6066-11e4-a52e-4f735466cecf';
  var elements = [];
  function fail(error, message) { throw {orvane: error, message: message}; }
  function ref(e) {
    var i = elements.indexOf(e);
    if (i < 0) { elements.push(e); i = elements.length - 1; }
    var r = {}; r[K] = String(i); return r;
  }
  function el(r) {
    var e = elements[+r[K]];
    if (!e) fail('no such element', 'no element ' + r[K] + ' in this document');
    if (!document.documentElement.contains(e)) fail('stale element reference', 'element ' + r[K] + ' left the document');
    return e;
  }
  function inn(v) {
    if (!v || typeof v !== 'object') return v;
    if (v[K] !== undefined) return el(v);
    if (Array.isArray(v)) return v.map(inn);
    var o = {}; for (var k in v) o[k] = inn(v[k]); return o;
  }
  function out(v, depth) {
    depth = depth || 0;
    if (depth > 16) fail('javascript error', 'the result nests too deep (a cycle?)');
    if (v === undefined || v === null) return null;
    // Before the function test: a plug-in's element is callable.
    if (v instanceof Element) return ref(v);
    if (typeof v === 'function') return {};
    if (typeof v !== 'object') return v;
    if (Array.isArray(v) || v instanceof NodeList || v instanceof HTMLCollection) {
      var a = []; for (var i = 0; i < v.length; i++) a.push(out(v[i], depth + 1)); return a;
    }
    var o = {};
    for (var k in v) { try { o[k] = out(v[k], depth + 1); } catch (e) { if (e && e.orvane) throw e; } }
    return o;
  }
  window.__orvane = {ref: ref, el: el, inn: inn, out: out, fail: fail, async: {}};
})();
)JS";

}  // namespace

std::string Literal(const nlohmann::json& value) {
  // JSON is a script literal, but for two line separators that JSON allows
  // in strings and script does not.
  std::string text = value.dump();
  std::string out;
  for (size_t i = 0; i < text.size(); i++) {
    if (text.compare(i, 3, "\xe2\x80\xa8") == 0 || text.compare(i, 3, "\xe2\x80\xa9") == 0) {
      out += text[i + 2] == '\xa8' ? "\\u2028" : "\\u2029";
      i += 2;
    } else {
      out += text[i];
    }
  }
  return out;
}

Outcome Evaluate(QWebFrame* frame, const std::string& body) {
  frame->evaluateJavaScript(QString::fromUtf8(kHelpers));
  std::string script =
      "JSON.stringify((function () { try { var v; " + body +
      "; return {ok: true, value: __orvane.out(v)}; } catch (e) { return {ok: false, error: (e && e.orvane) || "
      "'javascript error', message: (e && e.message) || String(e)}; } })())";
  QVariant result = frame->evaluateJavaScript(QString::fromStdString(script));
  Outcome outcome;
  nlohmann::json reply = nlohmann::json::parse(result.toString().toStdString(), nullptr, false);
  if (!reply.is_object()) {
    outcome.error = "javascript error";
    outcome.message = "the script gave no result";
    return outcome;
  }
  outcome.ok = reply.value("ok", false);
  if (outcome.ok) {
    outcome.value = reply.value("value", nlohmann::json());
  } else {
    outcome.error = reply.value("error", std::string("javascript error"));
    outcome.message = reply.value("message", std::string());
  }
  return outcome;
}

}  // namespace webdriver
