// The simulated application model: owner applications of pages (one per
// URL, part of the receiver), applications started by applications, their
// private data and keysets. A keyset grants only the key groups the
// receiver's remote has, and remembers the grant per application.
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "middleware/appmgr.h"
#include "sim/appmgr_sim.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

struct ApplicationObject : sim::Object {
  std::string url;
  bool visible = false;
  bool destroyed = false;
  MwHandle parent = 0;
  bool child = false;
  int32_t keys = 0;  // key groups granted
  bool keys_asked = false;  // its keyset was set at least once
  const char* Type() const override { return "application"; }
};

struct PrivateDataObject : sim::Object {
  std::shared_ptr<ApplicationObject> application;
  const char* Type() const override { return "private-data"; }
};

struct KeysetObject : sim::Object {
  std::shared_ptr<ApplicationObject> application;
  std::vector<int32_t> other_keys;  // handed out until the next read
  const char* Type() const override { return "keyset"; }
};

std::map<std::string, MwHandle> g_owners;  // page URL -> persistent owner application
sim::ApplicationHooks g_hooks;               // kept over Reset: they belong to the host
sim::ResetHook g_reset([] { g_owners.clear(); });

std::shared_ptr<ApplicationObject> App(MwHandle h) { return sim::Find<ApplicationObject>(h); }
std::shared_ptr<PrivateDataObject> PrivateData(MwHandle h) { return sim::Find<PrivateDataObject>(h); }
std::shared_ptr<KeysetObject> Keyset(MwHandle h) { return sim::Find<KeysetObject>(h); }

}  // namespace

namespace sim {
namespace detail {
void ReleaseHandle(MwHandle handle);  // core.cpp: gives back one reference, unlogged
}  // namespace detail

void RaiseLowMemory(MwHandle manager, bool on_sim_thread, int delay_ms) {
  if (!on_sim_thread) {
    SIM_EMIT(AppMgr_onLowMemory, manager);
    return;
  }
  OnSimThread([manager] { SIM_EMIT(AppMgr_onLowMemory, manager); }, delay_ms);
}

void RaiseApplicationLoadError(MwHandle manager, bool on_sim_thread, int delay_ms) {
  if (!on_sim_thread) {
    SIM_EMIT(AppMgr_onApplicationLoadError, manager);
    return;
  }
  OnSimThread([manager] { SIM_EMIT(AppMgr_onApplicationLoadError, manager); }, delay_ms);
}

void SetApplicationHooks(ApplicationHooks hooks) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  g_hooks = std::move(hooks);
}

void PresentNothing() {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  Rx().current = Rx().channels.size();
}

ApplicationState Application(MwHandle application) {
  ApplicationState state;
  auto a = App(application);
  if (!a) return state;
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  state.known = true;
  state.url = a->url;
  state.visible = a->visible;
  state.destroyed = a->destroyed;
  state.parent = a->parent;
  state.child = a->child;
  state.keys = a->keys;
  state.keys_asked = a->keys_asked;
  return state;
}

MwHandle OwnerApplication(const std::string& url) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  auto it = g_owners.find(url);
  return it == g_owners.end() ? 0 : it->second;
}

}  // namespace sim

extern "C" {

MwHandle MwAppMgrGetOwnerApplication(MwHandle manager, const MwString* url) {
  SIM_CALL(MwHandle, manager, url);
  std::string page = sim::Text(url);
  if (page.empty() || !sim::IsAppManager(manager)) return 0;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  MwHandle& owner = g_owners[page];
  if (!owner) {
    auto a = std::make_shared<ApplicationObject>();
    a->url = page;
    owner = sim::Register(a, true);
  }
  return sim::Give(owner);
}

void MwApplicationShow(MwHandle application) {
  SIM_VOID(application);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  if (auto a = App(application)) a->visible = true;
}

void MwApplicationHide(MwHandle application) {
  SIM_VOID(application);
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  if (auto a = App(application)) a->visible = false;
}

}  // extern "C"

namespace {

// Every application manager raises its load error.
void LoadFailed() {
  for (MwHandle manager : sim::AppManagers()) sim::RaiseApplicationLoadError(manager, true, 0);
}

// The entry's URL with what followed ORG.APP: a query joins the entry's own
// ("?a=1" and "?b=2" give "?a=1&b=2"), a fragment replaces the entry's, a
// path is added to it.
std::string Merged(const std::string& entry, const std::string& rest) {
  if (rest.empty() || rest[0] == '/') return entry + rest;
  size_t hash = entry.find('#');
  std::string base = entry.substr(0, hash), fragment = hash == std::string::npos ? "" : entry.substr(hash);
  size_t rest_hash = rest.find('#');
  std::string query = rest.substr(0, rest_hash);  // "" or "?b=2"
  if (rest_hash != std::string::npos) fragment = rest.substr(rest_hash);
  if (query.size() > 1) base += (base.find('?') == std::string::npos ? "?" : "&") + query.substr(1);
  return base + fragment;
}

// An application of the current service's AIT by its dvb://current.ait/ORG.APP
// URL (the rest of the URL is added to the entry's); other URLs stand.
bool Resolve(std::string* url) {
  const std::string prefix = "dvb://current.ait/";
  if (url->compare(0, prefix.size(), prefix) != 0) return true;
  size_t end = url->find_first_of("/?#", prefix.size());
  std::string id = url->substr(prefix.size(), end == std::string::npos ? std::string::npos : end - prefix.size());
  sim::AitEntry entry;
  if (id.empty() || !sim::FindAitEntry(id, &entry)) return false;
  *url = Merged(entry.url, end == std::string::npos ? "" : url->substr(end));
  return true;
}

}  // namespace

extern "C" {

MwHandle MwApplicationCreateApplication(MwHandle application, const MwString* url,
                                        uint8_t createChild) {
  SIM_CALL(MwHandle, application, url, createChild);
  std::string where = sim::Text(url);
  if (where.empty()) return 0;
  if (!Resolve(&where)) {
    LoadFailed();  // the service signals no such application
    return 0;
  }
  auto a = std::make_shared<ApplicationObject>();
  a->url = where;  // copied: the caller frees its buffer after the call
  a->parent = App(application) ? application : 0;
  a->child = createChild != 0;
  MwHandle created = sim::Register(a, false);
  std::function<bool(MwHandle, const std::string&)> launch;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    launch = g_hooks.launch;
  }
  if (launch && !launch(created, where)) {
    sim::detail::ReleaseHandle(created);
    LoadFailed();
    return 0;
  }
  return created;
}

// The caller's handle is no longer used afterwards: its reference is taken
// back here.
void MwApplicationDestroy(MwHandle application) {
  SIM_VOID(application);
  auto a = App(application);
  if (!a) return;
  std::function<void(MwHandle)> destroyed;
  {
    std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
    a->destroyed = true;
    a->visible = false;
    destroyed = g_hooks.destroyed;
  }
  if (destroyed) destroyed(application);
  sim::detail::ReleaseHandle(application);
}

MwHandle MwApplicationGetPrivateData(MwHandle application) {
  SIM_CALL(MwHandle, application);
  auto a = App(application);
  if (!a) return 0;
  auto p = std::make_shared<PrivateDataObject>();
  p->application = a;
  return sim::Register(p, false);
}

MwHandle MwPrivateDataGetKeyset(MwHandle privateData) {
  SIM_CALL(MwHandle, privateData);
  auto p = PrivateData(privateData);
  if (!p) return 0;
  auto k = std::make_shared<KeysetObject>();
  k->application = p->application;
  return sim::Register(k, false);
}

MwHandle MwPrivateDataGetCurrentChannel(MwHandle privateData) {
  SIM_CALL(MwHandle, privateData);
  if (!PrivateData(privateData)) return 0;
  return sim::Give(sim::CurrentChannel());
}

int32_t MwPrivateDataGetFreeMem(MwHandle privateData) {
  SIM_CALL(int32_t, privateData);
  if (!PrivateData(privateData)) return 0;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  return sim::Rx().free_memory;
}

int32_t MwKeysetGetValue(MwHandle keyset) {
  SIM_CALL(int32_t, keyset);
  auto k = Keyset(keyset);
  if (!k) return 0;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  return k->application->keys;
}

int32_t MwKeysetGetMaximumValue(MwHandle keyset) {
  SIM_CALL(int32_t, keyset);
  if (!Keyset(keyset)) return 0;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  return sim::Rx().key_groups;
}

uint32_t MwKeysetGetOtherKeys(MwHandle keyset, const int32_t** keys) {
  SIM_CALL(uint32_t, keyset, static_cast<const void*>(keys));
  auto k = Keyset(keyset);
  if (keys) *keys = nullptr;
  if (!k || !keys) return 0;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  k->other_keys = sim::Rx().other_keys;
  *keys = k->other_keys.data();
  return static_cast<uint32_t>(k->other_keys.size());
}

int32_t MwKeysetSetValue(MwHandle keyset, int32_t mask) {
  SIM_CALL(int32_t, keyset, mask);
  auto k = Keyset(keyset);
  if (!k) return 0;
  std::lock_guard<std::recursive_mutex> lock(sim::Mutex());
  k->application->keys = mask & sim::Rx().key_groups;
  k->application->keys_asked = true;
  return k->application->keys;
}

}  // extern "C"
