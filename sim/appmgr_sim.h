// Test controls of the simulated application manager: the managers the
// plug-in made, the applications it asked about or started, and the
// manager's two events.
#ifndef ORVANE_SIM_APPMGR_SIM_H
#define ORVANE_SIM_APPMGR_SIM_H

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "middleware/types.h"

namespace sim {

// Live application managers (including the parsers of AIT instances), oldest first.
std::vector<MwHandle> AppManagers();
// The newest live application manager, 0 when there is none.
MwHandle LastAppManager();
bool IsAppManager(MwHandle handle);

// Raise AppMgr_onLowMemory / AppMgr_onApplicationLoadError for `manager`, from
// the caller's thread or (on_sim_thread) from the simulator's thread after
// `delay_ms`.
void RaiseLowMemory(MwHandle manager, bool on_sim_thread = false, int delay_ms = 0);
void RaiseApplicationLoadError(MwHandle manager, bool on_sim_thread = false, int delay_ms = 0);

// The URL of the application an XML AIT names (URL base and location),
// empty when it names none.
std::string AitApplicationUrl(const std::string& xml);

// The receiver presents no channel from now on (until Reset).
void PresentNothing();

// What the simulator knows of one application.
struct ApplicationState {
  bool known = false;     // the handle names an application
  std::string url;        // the owner page's URL, or the URL it was started with
  bool visible = false;   // after MwApplicationShow, until MwApplicationHide
  bool destroyed = false;  // after MwApplicationDestroy
  MwHandle parent = 0;    // the application that started it (0: none or unknown)
  bool child = false;     // started as a child
  int32_t keys = 0;       // key groups granted through its keyset
  bool keys_asked = false;  // its keyset was set at least once (0 then grants no key)
};
ApplicationState Application(MwHandle application);
// The owner application of pages at `url`, 0 when never asked about.
MwHandle OwnerApplication(const std::string& url);

// What starts and stops applications on the screen (orvane-run's browser).
// `launch` gets a new application and the URL of its document (an AIT
// entry's for dvb://current.ait/ORG.APP) and answers whether it can be
// loaded; when it cannot, createApplication gives no application and the
// application managers raise their load error. `destroyed` hears of every
// application destroyed. Called on the thread of the plug-in's call.
struct ApplicationHooks {
  std::function<bool(MwHandle application, const std::string& url)> launch;
  std::function<void(MwHandle application)> destroyed;
};
void SetApplicationHooks(ApplicationHooks hooks);

}  // namespace sim

#endif
