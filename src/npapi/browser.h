// Calls into the browser. Every NPN_ call goes through the table the browser
// gave NP_Initialize, kept in `browser_funcs` for the life of the process.
#ifndef ORVANE_NPAPI_BROWSER_H
#define ORVANE_NPAPI_BROWSER_H

#include "npapi/export.h"
#include "npapi/npapi.h"

ORV_EXPORT NPNetscapeFuncs* browser_funcs;

inline void* NPN_MemAlloc(uint32_t size) { return browser_funcs->memalloc(size); }
inline void NPN_MemFree(void* p) { browser_funcs->memfree(p); }
inline NPIdentifier NPN_GetStringIdentifier(const NPUTF8* name) {
  return browser_funcs->getstringidentifier(name);
}
inline bool NPN_IdentifierIsString(NPIdentifier id) { return browser_funcs->identifierisstring(id); }
inline NPUTF8* NPN_UTF8FromIdentifier(NPIdentifier id) { return browser_funcs->utf8fromidentifier(id); }
inline int32_t NPN_IntFromIdentifier(NPIdentifier id) { return browser_funcs->intfromidentifier(id); }
inline NPObject* NPN_CreateObject(NPP npp, NPClass* c) { return browser_funcs->createobject(npp, c); }
inline NPObject* NPN_RetainObject(NPObject* o) { return browser_funcs->retainobject(o); }
inline void NPN_ReleaseObject(NPObject* o) { browser_funcs->releaseobject(o); }
inline bool NPN_Invoke(NPP npp, NPObject* o, NPIdentifier m, const NPVariant* args, uint32_t n,
                       NPVariant* result) {
  return browser_funcs->invoke(npp, o, m, args, n, result);
}
inline bool NPN_InvokeDefault(NPP npp, NPObject* o, const NPVariant* args, uint32_t n,
                              NPVariant* result) {
  return browser_funcs->invokeDefault(npp, o, args, n, result);
}
inline bool NPN_Evaluate(NPP npp, NPObject* o, NPString* script, NPVariant* result) {
  return browser_funcs->evaluate(npp, o, script, result);
}
inline bool NPN_GetProperty(NPP npp, NPObject* o, NPIdentifier p, NPVariant* result) {
  return browser_funcs->getproperty(npp, o, p, result);
}
inline bool NPN_SetProperty(NPP npp, NPObject* o, NPIdentifier p, const NPVariant* value) {
  return browser_funcs->setproperty(npp, o, p, value);
}
inline bool NPN_HasMethod(NPP npp, NPObject* o, NPIdentifier m) {
  return browser_funcs->hasmethod(npp, o, m);
}
inline void NPN_ReleaseVariantValue(NPVariant* v) { browser_funcs->releasevariantvalue(v); }
inline NPError NPN_GetValue(NPP npp, NPNVariable var, void* value) {
  return browser_funcs->getvalue(npp, var, value);
}
inline NPError NPN_SetValue(NPP npp, NPPVariable var, void* value) {
  return browser_funcs->setvalue(npp, var, value);
}
inline NPError NPN_GetURL(NPP npp, const char* url, const char* target) {
  return browser_funcs->geturl(npp, url, target);
}
inline NPError NPN_GetURLNotify(NPP npp, const char* url, const char* target, void* data) {
  return browser_funcs->geturlnotify(npp, url, target, data);
}
inline void NPN_PluginThreadAsyncCall(NPP npp, void (*fn)(void*), void* data) {
  browser_funcs->pluginthreadasynccall(npp, fn, data);
}

// Variant builders (no allocation).
inline void SetVoid(NPVariant* v) { v->type = NPVariantType_Void; v->value.objectValue = nullptr; }
inline void SetNull(NPVariant* v) { v->type = NPVariantType_Null; v->value.objectValue = nullptr; }
inline void SetBool(NPVariant* v, bool b) { v->type = NPVariantType_Bool; v->value.boolValue = b; }
inline void SetInt(NPVariant* v, int32_t i) { v->type = NPVariantType_Int32; v->value.intValue = i; }
inline void SetDouble(NPVariant* v, double d) { v->type = NPVariantType_Double; v->value.doubleValue = d; }
inline void SetObject(NPVariant* v, NPObject* o) { v->type = NPVariantType_Object; v->value.objectValue = o; }
// An Object variant for `o`, or Null when o is null.
inline void SetObjectOrNull(NPVariant* v, NPObject* o) { if (o) SetObject(v, o); else SetNull(v); }

#endif
