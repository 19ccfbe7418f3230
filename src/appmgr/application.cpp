#include "appmgr/application.h"

#include "appmgr/private_data.h"
#include "frame/frame.h"
#include "middleware/appmgr.h"
#include "utils/convert.h"
#include "utils/url.h"

namespace {

RecordList g_applications;

// Starts the application at `uri` (made absolute against the page) from
// application `r`; the result is its new Application object or null.
bool CreateApplication(ObjectRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count < 2) return false;
  MwString url = ArgText(args[0]);
  int resolved = NP_UtilsResolveUrl(r->instance, &url);
  // Called with the own handle even when it is 0.
  MwHandle created = MwApplicationCreateApplication(r->handle, &url, ArgFlag(args[1]) ? 1 : 0);
  if (resolved) NPN_MemFree(const_cast<char*>(url.data));
  SetObjectOrNull(result, created ? ApplicationCreateApp(r->instance, created) : nullptr);
  return true;
}

bool Show(ObjectRecord* r, const NPVariant*, uint32_t, NPVariant*) {
  if (r->handle) MwApplicationShow(r->handle);
  return true;
}

bool Hide(ObjectRecord* r, const NPVariant*, uint32_t, NPVariant*) {
  if (r->handle) MwApplicationHide(r->handle);
  return true;
}

// The handle is not released afterwards: a destroyed application's object
// is inert and its deallocation releases nothing.
bool DestroyApplication(ObjectRecord* r, const NPVariant*, uint32_t, NPVariant*) {
  if (r->handle) {
    MwApplicationDestroy(r->handle);
    g_applications.SetHandle(r, 0);
  }
  return true;
}

// Asked even for handle 0 (the inert application of a load error).
bool PrivateData(ObjectRecord* r, NPVariant* result) {
  MwHandle data = MwApplicationGetPrivateData(r->handle);
  SetObjectOrNull(result, data ? ApplicationPrivDataCreate(r->instance, data) : nullptr);
  return true;
}

using Row = Member<ObjectRecord>;
const Row kMembers[] = {
    Row::Get("privateData", PrivateData),
    Row::Call("show", Show),
    Row::Call("hide", Hide),
    Row::Call("createApplication", CreateApplication),
    Row::Call("destroyApplication", DestroyApplication),
};

struct Application : HandedOutKind<Application> {
  ORV_KIND(kMembers, g_applications)
};

}  // namespace

NPObject* ApplicationCreateApp(NPP instance, MwHandle application) {
  return NewHandedOut<Application>(instance, application, kReleaseOnFailure);
}

NPClass* ApplicationGetClass(void) { return ScriptClass<Application>::Class(); }
