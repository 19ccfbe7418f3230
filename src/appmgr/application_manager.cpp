#include "appmgr/application_manager.h"

#include "appmgr/application.h"
#include "appmgr/debug.h"
#include "frame/events.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/appmgr.h"
#include "utils/convert.h"

namespace {

RecordList g_managers;

enum Event : uint32_t { kLowMemory = 1, kApplicationLoadError = 2 };
const EventProperty kEvents[] = {{"onLowMemory", kLowMemory},
                                 {"onApplicationLoadError", kApplicationLoadError}};
// A missing or non-String type counts as the empty one; an empty property
// reads as a failed read with Null.
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kEmpty, EmptyRead::kNull);

// The Application object of the application owning `document`, found by the
// document's URL as it reads (not resolved); Null when there is none.
// Any number of arguments but one gives undefined, not null.
bool GetOwnerApplication(AppMgrRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 1) return true;
  const NPVariant& document = args[0];
  NPVariant url;
  SetVoid(&url);
  if (IsObject(document))
    NPN_GetProperty(r->instance, document.value.objectValue, NPN_GetStringIdentifier("URL"), &url);
  MwString text = ArgText(url);
  MwHandle application = MwAppMgrGetOwnerApplication(r->handle, &text);
  SetObjectOrNull(result, application ? ApplicationCreateApp(r->instance, application) : nullptr);
  NPN_ReleaseVariantValue(&url);
  return true;
}

using Row = Member<AppMgrRecord>;
const Row kMembers[] = {
    Row::EventSlots(),  // onLowMemory, onApplicationLoadError
    Row::Call("getOwnerApplication", GetOwnerApplication),
    Row::ListenerMethods(),
};

struct ApplicationManager : InstanceKindBase<ApplicationManager, AppMgrRecord> {
  ORV_KIND_WITH_EVENTS(kMembers, kEventTable, g_managers)
  // An object whose record is gone reads as untouched and ignores writes;
  // calls need the middleware's manager.
  static Gate Check(const AppMgrRecord* r, Access access) {
    if (access == Access::kCall) return NeedHandle(r);
    return r ? Gate::kGo : Gate::kSucceed;
  }
};

// The page gets the inert window.debug object with the manager. Our
// references to the window and to the debug object go once the property
// holds it.
void PlaceDebugObject(NPP instance) {
  NPObject* debug = DebugCreate(instance);
  if (!debug) return;
  NPObject* window = nullptr;
  if (NPN_GetValue(instance, NPNVWindowNPObject, &window) == NPERR_NO_ERROR && window) {
    NPVariant value;
    SetObject(&value, debug);
    NPN_SetProperty(instance, window, NPN_GetStringIdentifier("debug"), &value);
    NPN_ReleaseObject(window);
  }
  NPN_ReleaseObject(debug);
}

AppMgrRecord* CreateWithDebugObject(NPP instance) {
  PlaceDebugObject(instance);
  return ApplicationManagerCreate(instance);
}

void DeliverLowMemory(ObjectRecord* target, PendingEvent*) {
  if (target) DeliverToListeners(target, kLowMemory, nullptr, 0);
}

// The event does not name the application that failed: listeners get an
// inert Application object with handle 0.
void DeliverLoadError(ObjectRecord* target, PendingEvent*) {
  if (!target) return;
  NPVariant arg;
  SetObjectOrNull(&arg, ApplicationCreateApp(target->instance, 0));
  DeliverToListeners(target, kApplicationLoadError, &arg, 1);
}

}  // namespace

extern const InstanceKind kApplicationManagerKind =
    ScriptObjectKind<CreateWithDebugObject, ApplicationManagerDestroy>(
        "application/oipfapplicationmanager", kKindApplicationManager, &g_managers);

AppMgrRecord* ApplicationManagerCreate(NPP instance) {
  return OpenInstance<ApplicationManager>(instance, kKindApplicationManager, MwAppManagerCreate);
}

void ApplicationManagerDestroy(AppMgrRecord* r) {
  // A record that is not on the list is simply freed.
  if (r && !DestroyInstance(g_managers, r)) FrameFreeRecord(r);
}

void AppMgr_onLowMemory(MwHandle manager) {
  PostEvent(EventFor(g_managers, DeliverLowMemory, manager, kLowMemory));
}

void AppMgr_onApplicationLoadError(MwHandle manager) {
  PostEvent(EventFor(g_managers, DeliverLoadError, manager, kApplicationLoadError));
}
