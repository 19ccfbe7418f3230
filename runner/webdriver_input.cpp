// The WebDriver commands that act as the viewer and the receiver: key
// actions as remote keys, and the vendor endpoints under orvane/.
#include "runner/webdriver_impl.h"

#include "runner/keys.h"
#include "runner/log.h"
#include "sim/appmgr_sim.h"
#include "sim/broadcast_sim.h"
#include "sim/config_sim.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

using namespace webdriver;

namespace {

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

}  // namespace

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
    // Any of: a rate, a time to set (seconds since the epoch), seconds to advance.
    for (const char* key : {"rate", "set", "advance"})
      if (body.contains(key) && !body[key].is_number_integer()) return Error("invalid argument", std::string(key) + " is no integer");
    int32_t rate = body.value("rate", -1), set = body.value("set", -1), advance = body.value("advance", 0);
    int32_t now = OnGui<int32_t>([&] {
      if (set >= 0) sim::SetReceiverTime(set);
      if (advance) sim::SetReceiverTime(sim::ReceiverTime() + advance);
      if (rate >= 0) sim::SetClockRate(rate);
      return sim::ReceiverTime();
    });
    return Ok({{"time", now}});
  }
  if (what == "parental-rating") {
    // The present programme's rating changes (to `name` and `value` when given)
    // and every broadcast object hears it.
    bool blocked = body.value("blocked", false);
    std::string name = body.value("name", std::string());
    int32_t value = body.value("value", -1);
    bool rated = OnGui<bool>([&] {
      if (value >= 0 && !sim::SetPresentRating(name.empty() ? std::to_string(value) : name, value)) return false;
      for (MwHandle b : sim::BroadcastInstances()) sim::RaiseParentalRatingChange(b, "content", nullptr, blocked);
      return true;
    });
    return rated ? Ok() : Error("invalid argument", "the receiver presents no programme");
  }
  if (what == "network-status") {
    if (!body.contains("status") || !body["status"].is_number_integer()) return Error("invalid argument", "status is no integer");
    int status = body["status"];
    size_t index = body.value("interface", 0);
    bool raised = OnGui<bool>([&] {
      std::vector<MwHandle> interfaces = sim::NetworkInterfaces();
      if (index >= interfaces.size()) return false;
      sim::RaiseNetworkStatusChange(interfaces[index], status);
      return true;
    });
    return raised ? Ok() : Error("invalid argument", "no such network interface");
  }
  if (what == "pvr-status") {
    if (!body.contains("status") || !body["status"].is_number_integer()) return Error("invalid argument", "status is no integer");
    int status = body["status"];
    return Done([status] { sim::RaisePvrStatusChange(status); });
  }
  return Error("unknown command", "no vendor command orvane/" + what);
}
