#include "appmgr/application.h"

#include "appmgr/private_data.h"
#include "frame/frame.h"
#include "middleware/appmgr.h"
#include "utils/convert.h"
#include "utils/url.h"

namespace {

RecordList g_applications;

enum Method { kShow, kHide, kCreateApplication, kDestroyApplication };

const char* const kPropertyNames[] = {"privateData"};
const char* const kMethodNames[] = {"show", "hide", "createApplication", "destroyApplication"};

// Starts the application at `uri` (made absolute against the page) from
// application `r`; the result is its new Application object or null.
void CreateApplication(ObjectRecord* r, const NPVariant& uri, bool child, NPVariant* result) {
  MwString url = IsString(uri) ? ArgString(uri) : MwString{0, ""};
  int resolved = NP_UtilsResolveUrl(r->instance, &url);
  // Called with the own handle even when it is 0.
  MwHandle created = MwApplicationCreateApplication(r->handle, &url, child ? 1 : 0);
  if (resolved) NPN_MemFree(const_cast<char*>(url.data));
  SetObjectOrNull(result, created ? ApplicationCreateApp(r->instance, created) : nullptr);
}

struct Application : HandedOutKind<Application> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)

  static RecordList& List() { return g_applications; }

  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r) return false;
    switch (Methods().Find(id)) {
      case kShow:
        if (r->handle) MwApplicationShow(r->handle);
        return true;
      case kHide:
        if (r->handle) MwApplicationHide(r->handle);
        return true;
      case kCreateApplication:
        if (count < 2) return false;
        CreateApplication(r, args[0], ArgFlag(args[1]), result);
        return true;
      case kDestroyApplication:
        // The handle is not released afterwards: a destroyed application's
        // object is inert and its deallocation releases nothing.
        if (r->handle) {
          MwApplicationDestroy(r->handle);
          g_applications.SetHandle(r, 0);
        }
        return true;
      default:
        return false;
    }
  }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    ObjectRecord* r = Find(object);
    if (!r || Properties().Find(id) != 0) return false;
    // Asked even for handle 0 (the inert application of a load error).
    MwHandle data = MwApplicationGetPrivateData(r->handle);
    SetObjectOrNull(result, data ? ApplicationPrivDataCreate(r->instance, data) : nullptr);
    return true;
  }
};

}  // namespace

NPObject* ApplicationCreateApp(NPP instance, MwHandle application) {
  return NewHandedOut<Application>(instance, application, kReleaseOnFailure);
}

NPClass* ApplicationGetClass(void) { return ScriptClass<Application>::Class(); }
