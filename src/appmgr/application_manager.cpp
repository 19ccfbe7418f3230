#include "appmgr/application_manager.h"

#include <cstring>

#include "appmgr/application.h"
#include "middleware/appmgr.h"
#include "plugin/debug.h"
#include "plugin/frame.h"
#include "plugin/instance_kind.h"
#include "utils/convert.h"
#include "utils/listeners.h"
#include "utils/record_alloc.h"

namespace {

ObjectRecord* g_managers = nullptr;

enum Event : uint32_t { kLowMemory = 1, kApplicationLoadError = 2 };
enum Property { kOnLowMemory, kOnApplicationLoadError };
enum Method { kGetOwnerApplication, kAddEventListener, kRemoveEventListener };

const char* const kPropertyNames[] = {"onLowMemory", "onApplicationLoadError"};
const char* const kMethodNames[] = {"getOwnerApplication", "addEventListener",
                                    "removeEventListener"};

AppMgrRecord* Find(NPObject* object) {
  return static_cast<AppMgrRecord*>(FindByObject(g_managers, object));
}

const NPVariant* Arg(const NPVariant* args, uint32_t count, uint32_t i) {
  static const NPVariant kVoid = {NPVariantType_Void, {}};
  return i < count ? &args[i] : &kVoid;
}

// Any prefix of `name` matches, the empty type included: a lenient
// comparison kept as the page has always seen it.
bool TypeMatches(const MwString& type, const char* name) {
  return strncmp(type.data, name, type.length) == 0;
}

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

struct ApplicationManager : KindDefaults<ApplicationManager> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)

  // The record outlives its object until the instance goes.
  static void Deallocate(NPObject* object) {
    if (AppMgrRecord* r = Find(object)) r->object = nullptr;
  }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    AppMgrRecord* r = Find(object);
    if (!r || !r->handle) return false;
    switch (Methods().Find(id)) {
      case kGetOwnerApplication:
        // Any other number of arguments gives undefined, not null.
        if (count == 1) GetOwnerApplication(r, args[0], result);
        return true;
      case kAddEventListener: {
        const NPVariant* type = Arg(args, count, 0);
        MwString name = IsString(*type) ? ArgString(*type) : MwString{0, ""};
        // Separate from the onXxx registrations of the same events.
        if (TypeMatches(name, "LowMemory"))
          NP_UtilsAddEventListener(r, Arg(args, count, 1), kLowMemory);
        else if (TypeMatches(name, "ApplicationLoadError"))
          NP_UtilsAddEventListener(r, Arg(args, count, 1), kApplicationLoadError);
        return true;
      }
      case kRemoveEventListener:
        NP_UtilsRemoveFirstArgumentListener(r, args, count);
        return true;
      default:
        return false;
    }
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    AppMgrRecord* r = Find(object);
    if (!r) return true;  // an object whose record is gone reads as untouched
    NPObject* listener;
    switch (Properties().Find(id)) {
      case kOnLowMemory: listener = r->on_low_memory; break;
      case kOnApplicationLoadError: listener = r->on_load_error; break;
      default: return false;
    }
    if (!listener) {
      SetNull(result);
      return false;
    }
    return NP_UtilsListenerToResult(listener, result);
  }

  static bool SetProperty(NPObject* object, NPIdentifier id, const NPVariant* value) {
    AppMgrRecord* r = Find(object);
    if (!r) return true;  // ignored
    switch (Properties().Find(id)) {
      case kOnLowMemory:
        NP_UtilsReplaceListener(r, &r->on_low_memory, value, kLowMemory);
        return true;
      case kOnApplicationLoadError:
        NP_UtilsReplaceListener(r, &r->on_load_error, value, kApplicationLoadError);
        return true;
      default:
        return false;
    }
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

ObjectRecord* CreateInstance(NPP instance, const ElementAttributes&) {
  PlaceDebugObject(instance);
  return ApplicationManagerCreate(instance);
}

void DestroyInstance(ObjectRecord* r) { ApplicationManagerDestroy(static_cast<AppMgrRecord*>(r)); }

}  // namespace

extern const InstanceKind kApplicationManagerKind = {
    "application/oipfapplicationmanager", kKindApplicationManager, CreateInstance, DestroyInstance,
    nullptr, nullptr, false, false, nullptr, nullptr,
};

AppMgrRecord* ApplicationManagerCreate(NPP instance) {
  // Interned again on every call; harmless, the browser keeps one identifier per name.
  ApplicationManager::Properties().Intern(true);
  ApplicationManager::Methods().Intern(true);
  AppMgrRecord* r = NewInstanceRecord<AppMgrRecord, ApplicationManager>(instance, kKindApplicationManager);
  if (!r) return nullptr;
  r->handle = MwAppManagerCreate(r->object);
  PushFront<ObjectRecord>(&g_managers, r);
  return r;
}

void ApplicationManagerDestroy(AppMgrRecord* r) {
  if (!r) return;
  // A record that is not on the list is simply freed.
  if (Unlink<ObjectRecord>(&g_managers, r)) {
    if (r->handle) {
      MwObjectRelease(r->handle);
      r->handle = 0;
    }
    NP_UtilsFreeAllEventListeners(r);
  }
  RecordFree(r);
}

void AppMgr_onLowMemory(MwHandle manager) {
  // The dispatch finds the manager itself.
  NP_UtilsAsyncCallback(&g_managers, manager, kLowMemory, nullptr, 0);
}

// The event does not name the application that failed: listeners get an
// inert Application object with handle 0.
void AppMgr_onApplicationLoadError(MwHandle manager) {
  ObjectRecord* r = FindByHandle(g_managers, manager);
  if (!r) return;
  NPVariant* args = NP_UtilsNewArguments(1);
  if (!args) return;
  SetObjectOrNull(&args[0], ApplicationCreateApp(r->instance, 0));
  NP_UtilsAsyncCallback(&g_managers, manager, kApplicationLoadError, args, 1);
}
