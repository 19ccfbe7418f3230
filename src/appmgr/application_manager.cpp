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
enum Property { kOnLowMemory, kOnApplicationLoadError };
enum Method { kGetOwnerApplication };  // then addEventListener, removeEventListener

const char* const kPropertyNames[] = {"onLowMemory", "onApplicationLoadError"};
const char* const kMethodNames[] = {"getOwnerApplication", "addEventListener",
                                    "removeEventListener"};
const EventProperty kEvents[] = {{"onLowMemory", kLowMemory},
                                 {"onApplicationLoadError", kApplicationLoadError}};
// A missing or non-String type counts as the empty one; an empty property
// reads as a failed read with Null.
const EventTable kEventTable = ORV_EVENT_TABLE(kEvents, TypeRule::kEmpty, EmptyRead::kNull);

// The Application object of the application owning `document`, found by the
// document's URL as it reads (not resolved); Null when there is none.
void GetOwnerApplication(AppMgrRecord* r, const NPVariant& document, NPVariant* result) {
  NPVariant url;
  SetVoid(&url);
  if (IsObject(document))
    NPN_GetProperty(r->instance, document.value.objectValue, NPN_GetStringIdentifier("URL"), &url);
  MwString text = IsString(url) ? ArgString(url) : MwString{0, ""};
  MwHandle application = MwAppMgrGetOwnerApplication(r->handle, &text);
  SetObjectOrNull(result, application ? ApplicationCreateApp(r->instance, application) : nullptr);
  NPN_ReleaseVariantValue(&url);
}

struct ApplicationManager : InstanceKindBase<ApplicationManager, AppMgrRecord> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_managers; }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    AppMgrRecord* r = Find(object);
    if (!r || !r->handle) return false;
    bool ok;
    if (ListenerCall(r, kEventTable, id, args, count, &ok)) return ok;
    // getOwnerApplication: any other number of arguments gives undefined, not null.
    if (Methods().Find(id) != kGetOwnerApplication) return false;
    if (count == 1) GetOwnerApplication(r, args[0], result);
    return true;
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    AppMgrRecord* r = Find(object);
    if (!r) return true;  // an object whose record is gone reads as untouched
    int slot = Properties().Find(id);
    if (slot < 0) return false;
    return ReadListenerProperty(r, kEventTable, slot, result);
  }

  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    AppMgrRecord* r = Find(object);
    if (!r) return true;  // ignored
    int slot = Properties().Find(id);
    if (slot < 0) return false;
    WriteListenerSlot(r, kEventTable, slot, value);
    return true;
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
