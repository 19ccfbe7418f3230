// The page side of the WebDriver endpoint: scripts evaluated in the page
// that keep the session's element references, carry arguments and results
// across as JSON and report the W3C error of a failure.
#ifndef ORVANE_RUNNER_WEBDRIVER_SCRIPT_H
#define ORVANE_RUNNER_WEBDRIVER_SCRIPT_H

#include <string>

#include <nlohmann/json.hpp>

class QWebFrame;

namespace webdriver {

constexpr const char* kElementKey = "element-6066-11e4-a52e-4f735466cecf";

// What a script in the page gave: its value, or the W3C error and message.
struct Outcome {
  bool ok = false;
  nlohmann::json value;
  std::string error, message;
};

// Evaluates `body` (statements that set `v`) in the page's main frame,
// with the helpers `__orvane.inn(json)` (element references to elements)
// and `__orvane.el(ref)`; `v` comes back through `__orvane.out`, elements
// as references. A throw {orvane: 'W3C error', message} gives that error,
// any other throw a javascript error. Call on the GUI thread.
Outcome Evaluate(QWebFrame* frame, const std::string& body);

// A JSON text as a script literal.
std::string Literal(const nlohmann::json& value);

}  // namespace webdriver

#endif
