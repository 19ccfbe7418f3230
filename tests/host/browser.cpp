// The browser table, Reset, and the page-side calls into objects.
#include "host/internal.h"

namespace host {
namespace {

const char* UserAgent(NPP) { return "Mozilla/5.0 (X11; Linux) OrvaneTestHost/1.0"; }
void Status(NPP, const char*) {}
uint32_t MemFlush(uint32_t) { return 0; }
void ReloadPlugins(NPBool) {}
void InvalidateRect(NPP, NPRect*) {}
void InvalidateRegion(NPP, void*) {}
void ForceRedraw(NPP) {}
void PushPopupsEnabledState(NPP, NPBool) {}
void PopPopupsEnabledState(NPP) {}

NPNetscapeFuncs MakeFuncs() {
  NPNetscapeFuncs f = {};
  f.size = sizeof(NPNetscapeFuncs);
  f.version = 27;
  f.geturl = detail::GetURL;
  f.status = Status;
  f.uagent = UserAgent;
  f.memalloc = detail::MemAlloc;
  f.memfree = detail::MemFree;
  f.memflush = MemFlush;
  f.reloadplugins = ReloadPlugins;
  f.geturlnotify = detail::GetURLNotify;
  f.getvalue = detail::GetValue;
  f.setvalue = detail::SetValue;
  f.invalidaterect = InvalidateRect;
  f.invalidateregion = InvalidateRegion;
  f.forceredraw = ForceRedraw;
  f.getstringidentifier = detail::GetStringIdentifier;
  f.getstringidentifiers = detail::GetStringIdentifiers;
  f.getintidentifier = detail::GetIntIdentifier;
  f.identifierisstring = detail::IdentifierIsString;
  f.utf8fromidentifier = detail::UTF8FromIdentifier;
  f.intfromidentifier = detail::IntFromIdentifier;
  f.createobject = detail::CreateObject;
  f.retainobject = detail::RetainObject;
  f.releaseobject = detail::ReleaseObject;
  f.invoke = detail::Invoke;
  f.invokeDefault = detail::InvokeDefault;
  f.evaluate = detail::Evaluate;
  f.getproperty = detail::GetProperty;
  f.setproperty = detail::SetProperty;
  f.removeproperty = detail::RemoveProperty;
  f.hasproperty = detail::HasProperty;
  f.hasmethod = detail::HasMethod;
  f.releasevariantvalue = detail::ReleaseVariantValue;
  f.setexception = detail::SetException;
  f.pushpopupsenabledstate = PushPopupsEnabledState;
  f.poppopupsenabledstate = PopPopupsEnabledState;
  f.enumerate = detail::Enumerate;
  f.pluginthreadasynccall = detail::PluginThreadAsyncCall;
  f.construct = detail::Construct;
  return f;
}

}  // namespace

NPNetscapeFuncs* Funcs() {
  static NPNetscapeFuncs funcs = MakeFuncs();
  return &funcs;
}

void Reset() {
  // Queued calls are dropped, not run: they belong to the previous test.
  detail::ResetThread();
  // References the host keeps go first; they may release plug-in objects,
  // whose deallocation frees blocks that must still count as this test's.
  detail::ResetFunctions();
  detail::ResetHostObjects();
  detail::ResetPages();
  detail::ResetMemory();
  detail::ResetRecords();
  detail::ResetObjects();
}

void UnloadPages() {
  detail::ResetFunctions();
  detail::DropAllValues();
}

bool Get(NPP npp, NPObject* o, const char* name, NPVariant* result) {
  return detail::GetProperty(npp, o, Id(name), result);
}

bool Set(NPP npp, NPObject* o, const char* name, const NPVariant& value) {
  return detail::SetProperty(npp, o, Id(name), &value);
}

bool Invoke(NPP npp, NPObject* o, const char* method, std::vector<NPVariant> args,
            NPVariant* result) {
  return detail::Invoke(npp, o, Id(method), args.data(), static_cast<uint32_t>(args.size()),
                        result);
}

bool GetIndex(NPP npp, NPObject* o, int32_t index, NPVariant* result) {
  return detail::GetProperty(npp, o, IntId(index), result);
}

}  // namespace host
