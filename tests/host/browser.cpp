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

// Every call notes its thread.
NPNetscapeFuncs MakeFuncs() {
  NPNetscapeFuncs f = {};
  f.size = sizeof(NPNetscapeFuncs);
  f.version = 27;
  f.geturl = [](auto... a) { detail::NoteCall("geturl"); return detail::GetURL(a...); };
  f.status = [](auto... a) { detail::NoteCall("status"); return Status(a...); };
  f.uagent = [](auto... a) { detail::NoteCall("uagent"); return UserAgent(a...); };
  f.memalloc = [](auto... a) { detail::NoteCall("memalloc"); return detail::MemAlloc(a...); };
  f.memfree = [](auto... a) { detail::NoteCall("memfree"); return detail::MemFree(a...); };
  f.memflush = [](auto... a) { detail::NoteCall("memflush"); return MemFlush(a...); };
  f.reloadplugins = [](auto... a) { detail::NoteCall("reloadplugins"); return ReloadPlugins(a...); };
  f.geturlnotify = [](auto... a) { detail::NoteCall("geturlnotify"); return detail::GetURLNotify(a...); };
  f.getvalue = [](auto... a) { detail::NoteCall("getvalue"); return detail::GetValue(a...); };
  f.setvalue = [](auto... a) { detail::NoteCall("setvalue"); return detail::SetValue(a...); };
  f.invalidaterect = [](auto... a) { detail::NoteCall("invalidaterect"); return InvalidateRect(a...); };
  f.invalidateregion = [](auto... a) { detail::NoteCall("invalidateregion"); return InvalidateRegion(a...); };
  f.forceredraw = [](auto... a) { detail::NoteCall("forceredraw"); return ForceRedraw(a...); };
  f.getstringidentifier = [](auto... a) { detail::NoteCall("getstringidentifier"); return detail::GetStringIdentifier(a...); };
  f.getstringidentifiers = [](auto... a) { detail::NoteCall("getstringidentifiers"); return detail::GetStringIdentifiers(a...); };
  f.getintidentifier = [](auto... a) { detail::NoteCall("getintidentifier"); return detail::GetIntIdentifier(a...); };
  f.identifierisstring = [](auto... a) { detail::NoteCall("identifierisstring"); return detail::IdentifierIsString(a...); };
  f.utf8fromidentifier = [](auto... a) { detail::NoteCall("utf8fromidentifier"); return detail::UTF8FromIdentifier(a...); };
  f.intfromidentifier = [](auto... a) { detail::NoteCall("intfromidentifier"); return detail::IntFromIdentifier(a...); };
  f.createobject = [](auto... a) { detail::NoteCall("createobject"); return detail::CreateObject(a...); };
  f.retainobject = [](auto... a) { detail::NoteCall("retainobject"); return detail::RetainObject(a...); };
  f.releaseobject = [](auto... a) { detail::NoteCall("releaseobject"); return detail::ReleaseObject(a...); };
  f.invoke = [](auto... a) { detail::NoteCall("invoke"); return detail::Invoke(a...); };
  f.invokeDefault = [](auto... a) { detail::NoteCall("invokeDefault"); return detail::InvokeDefault(a...); };
  f.evaluate = [](auto... a) { detail::NoteCall("evaluate"); return detail::Evaluate(a...); };
  f.getproperty = [](auto... a) { detail::NoteCall("getproperty"); return detail::GetProperty(a...); };
  f.setproperty = [](auto... a) { detail::NoteCall("setproperty"); return detail::SetProperty(a...); };
  f.removeproperty = [](auto... a) { detail::NoteCall("removeproperty"); return detail::RemoveProperty(a...); };
  f.hasproperty = [](auto... a) { detail::NoteCall("hasproperty"); return detail::HasProperty(a...); };
  f.hasmethod = [](auto... a) { detail::NoteCall("hasmethod"); return detail::HasMethod(a...); };
  f.releasevariantvalue = [](auto... a) { detail::NoteCall("releasevariantvalue"); return detail::ReleaseVariantValue(a...); };
  f.setexception = [](auto... a) { detail::NoteCall("setexception"); return detail::SetException(a...); };
  f.pushpopupsenabledstate = [](auto... a) { detail::NoteCall("pushpopupsenabledstate"); return PushPopupsEnabledState(a...); };
  f.poppopupsenabledstate = [](auto... a) { detail::NoteCall("poppopupsenabledstate"); return PopPopupsEnabledState(a...); };
  f.enumerate = [](auto... a) { detail::NoteCall("enumerate"); return detail::Enumerate(a...); };
  f.pluginthreadasynccall = [](auto... a) { detail::NoteCall("pluginthreadasynccall"); return detail::PluginThreadAsyncCall(a...); };
  f.construct = [](auto... a) { detail::NoteCall("construct"); return detail::Construct(a...); };
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
