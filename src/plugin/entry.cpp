#include "plugin/entry.h"

#include "npapi/browser.h"
#include "plugin/init.h"
#include "utils/convert.h"

NPNetscapeFuncs* browser_funcs = nullptr;

namespace {
const char kMimeDescription[] =
    "application/vnd.dvb.ait+xml:aitx:XmlAit;"
    "application/oipfApplicationManager:bsc:ApplicationManager;"
    "application/oipfConfiguration:bsc:Configuration;"
    "application/oipfCapabilities:bsc:OipfCapabilities;"
    "application/oipfSearchManager:bsc:SearchManager;"
    "application/oipfParentalControlManager:bsc:ParentalControlManager;"
    "video/broadcast:bsc:VideoBroadcast;"
    "video/mpeg:bsc:VideoMpeg;"
    "video/mp4:bsc:VideoMP4;"
    "video/mpeg4:bsc:VideoMP4;"
    "audio/mpeg:bsc:AudioMpeg;"
    "audio/mp4:bsc:AudioMP4;"
    "application/oipfRecordingScheduler:bsc:OipfRecordingScheduler;"
    "application/oipfDrmAgent";
constexpr uint16_t kFilledPluginTableSize = 60;
}  // namespace

NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
  browser_funcs = browser;
  NP_UtilsInit();
  InitialiseBroadcast();
  MwRegisterEventCallbacks(&g_plugin_callbacks);
  if (!plugin || plugin->size < kFilledPluginTableSize) return NPERR_INVALID_FUNCTABLE_ERROR;
  plugin->newp = NPP_New;
  plugin->destroy = NPP_Destroy;
  plugin->setwindow = NPP_SetWindow;
  plugin->newstream = NPP_NewStream;
  plugin->destroystream = NPP_DestroyStream;
  plugin->asfile = NPP_StreamAsFile;
  plugin->writeready = NPP_WriteReady;
  plugin->write = NPP_Write;
  plugin->print = NPP_Print;
  plugin->event = NPP_HandleEvent;
  plugin->urlnotify = NPP_URLNotify;
  plugin->getvalue = NPP_GetValue;
  plugin->setvalue = NPP_SetValue;
  return NPERR_NO_ERROR;
}

// Nothing is torn down: identifiers, lists and middleware state live on.
NPError NP_Shutdown(void) { return NPERR_NO_ERROR; }

const char* NP_GetMIMEDescription(void) { return kMimeDescription; }

NPError NP_GetValue(void*, NPPVariable variable, void* value) {
  switch (variable) {
    case NPPVpluginNameString:
      *static_cast<const char**>(value) = "Orvane HbbTV Plug-in";
      return NPERR_NO_ERROR;
    case NPPVpluginDescriptionString:
      *static_cast<const char**>(value) = "Orvane HbbTV Plug-in Javascript extensions";
      return NPERR_NO_ERROR;
    default:
      return NPERR_INVALID_PARAM;
  }
}

const char* NP_GetPluginVersion(void) { return "1.0.0.0"; }

extern "C" {
int16_t NPP_HandleEvent(NPP instance, void* event);
NPError NPP_SetValue(NPP, NPNVariable, void*) { return NPERR_GENERIC_ERROR; }
void NPP_StreamAsFile(NPP, NPStream*, const char*) {}
void NPP_Print(NPP, NPPrint*) {}
}
