// The simulated application manager and XML AIT parser. The parser collects
// the AIT document and, once it holds an application's URL base and
// location, asks the browser to open that application. Every manager made is
// remembered, so that tests can raise its events.
#include <memory>
#include <string>
#include <vector>

#include "middleware/appmgr.h"
#include "sim/appmgr_sim.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

struct AppManagerObject : sim::Object {
  std::string document;
  std::string start_url;
  const char* Type() const override { return "application-manager"; }
};

std::vector<MwHandle> g_managers;  // every manager made since Reset, oldest first
sim::ResetHook g_reset([] { g_managers.clear(); });

std::string Element(const std::string& xml, const std::string& name) {
  // Tags may carry a namespace prefix: <mhp:URLBase>.
  size_t open = std::string::npos;
  for (size_t at = xml.find(name + ">"); at != std::string::npos; at = xml.find(name + ">", at + 1)) {
    size_t lt = xml.rfind('<', at);
    if (lt != std::string::npos && xml[lt + 1] != '/') {
      open = at + name.size() + 1;
      break;
    }
  }
  if (open == std::string::npos) return "";
  size_t close = xml.find("</", open);
  if (close == std::string::npos) return "";
  std::string text = xml.substr(open, close - open);
  size_t b = text.find_first_not_of(" \t\r\n"), e = text.find_last_not_of(" \t\r\n");
  return b == std::string::npos ? "" : text.substr(b, e - b + 1);
}

}  // namespace

namespace sim {

std::shared_ptr<Object> NewAppManagerObject() { return std::make_shared<AppManagerObject>(); }

std::string AitApplicationUrl(const std::string& xml) {
  std::string base = Element(xml, "URLBase"), location = Element(xml, "applicationLocation");
  return base.empty() || location.empty() ? "" : base + location;
}

bool IsAppManager(MwHandle handle) { return Find<AppManagerObject>(handle) != nullptr; }

std::vector<MwHandle> AppManagers() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  std::vector<MwHandle> live;
  for (MwHandle h : g_managers)
    if (IsAppManager(h)) live.push_back(h);
  return live;
}

MwHandle LastAppManager() {
  std::vector<MwHandle> live = AppManagers();
  return live.empty() ? 0 : live.back();
}

}  // namespace sim

extern "C" {

MwHandle MwAppManagerCreate(void* context) {
  SIM_CALL(MwHandle, context);
  MwHandle manager = sim::Register(sim::NewAppManagerObject(), false);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  g_managers.push_back(manager);
  return manager;
}

void MwAitParserWrite(MwHandle parser, const void* bytes, int32_t length, MwAitOutcome* outcome) {
  SIM_VOID(parser, length, outcome ? outcome->url : nullptr);
  auto p = sim::Find<AppManagerObject>(parser);
  if (!p || !bytes || length <= 0 || !outcome) return;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  p->document.append(static_cast<const char*>(bytes), static_cast<size_t>(length));
  std::string url = sim::AitApplicationUrl(p->document);
  if (url.empty() || !p->start_url.empty()) return;
  p->start_url = url;
  outcome->navigate = 1;
  outcome->url = p->start_url.c_str();
}

}  // extern "C"
