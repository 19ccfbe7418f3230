// The library's NPAPI entry points.
#ifndef ORVANE_PLUGIN_ENTRY_H
#define ORVANE_PLUGIN_ENTRY_H

#include "middleware/types.h"
#include "npapi/export.h"
#include "npapi/npapi.h"

ORV_EXPORT NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
ORV_EXPORT NPError NP_Shutdown(void);
ORV_EXPORT const char* NP_GetMIMEDescription(void);
ORV_EXPORT NPError NP_GetValue(void* future, NPPVariable variable, void* value);
ORV_EXPORT const char* NP_GetPluginVersion(void);

// The event entry points handed to the middleware, in the contract's order.
ORV_EXPORT const MwEventCallbacks g_plugin_callbacks;

// The instance entry points, exported too (the browser takes them from
// NP_Initialize's table).
ORV_EXPORT NPError NPP_New(NPMIMEType type, NPP instance, uint16_t mode, int16_t argc, char* argn[],
                           char* argv[], NPSavedData* saved);
ORV_EXPORT NPError NPP_Destroy(NPP instance, NPSavedData** save);
ORV_EXPORT NPError NPP_SetWindow(NPP instance, NPWindow* window);
ORV_EXPORT NPError NPP_NewStream(NPP instance, NPMIMEType type, NPStream* stream, NPBool seekable,
                                 uint16_t* stype);
ORV_EXPORT NPError NPP_DestroyStream(NPP instance, NPStream* stream, NPReason reason);
ORV_EXPORT void NPP_StreamAsFile(NPP instance, NPStream* stream, const char* fname);
ORV_EXPORT int32_t NPP_WriteReady(NPP instance, NPStream* stream);
ORV_EXPORT int32_t NPP_Write(NPP instance, NPStream* stream, int32_t offset, int32_t len, void* buffer);
ORV_EXPORT void NPP_Print(NPP instance, NPPrint* print);
ORV_EXPORT int16_t NPP_HandleEvent(NPP instance, void* event);
ORV_EXPORT void NPP_URLNotify(NPP instance, const char* url, NPReason reason, void* notify_data);
ORV_EXPORT NPError NPP_GetValue(NPP instance, NPPVariable variable, void* value);
ORV_EXPORT NPError NPP_SetValue(NPP instance, NPNVariable variable, void* value);

#endif
