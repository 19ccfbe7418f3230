// Library entry points: the plug-in table, names, MIME description, callbacks.
#include <gtest/gtest.h>

#include <cstring>

#include "host/fixture.h"
#include "plugin/entry.h"
#include "sim/sim.h"

namespace {

using EntryTest = OrvaneTest;

TEST_F(EntryTest, InitializeFillsTheInstanceEntryPointsAndRegistersCallbacks) {
  EXPECT_EQ(&g_plugin_callbacks, sim::Callbacks());
  EXPECT_EQ(NPP_New, plugin_funcs_.newp);
  EXPECT_EQ(NPP_Destroy, plugin_funcs_.destroy);
  EXPECT_EQ(NPP_GetValue, plugin_funcs_.getvalue);
  EXPECT_EQ(NPP_SetValue, plugin_funcs_.setvalue);
  EXPECT_EQ(NPP_URLNotify, plugin_funcs_.urlnotify);
  EXPECT_EQ(sizeof(NPPluginFuncs), plugin_funcs_.size);  // left as the browser set it

  NPPluginFuncs small = {};
  small.size = 59;
  EXPECT_EQ(NPERR_INVALID_FUNCTABLE_ERROR, NP_Initialize(host::Funcs(), &small));
  EXPECT_EQ(nullptr, small.newp);
  NPPluginFuncs enough = {};
  enough.size = 60;
  EXPECT_EQ(NPERR_NO_ERROR, NP_Initialize(host::Funcs(), &enough));
  EXPECT_EQ(NPP_New, enough.newp);
  EXPECT_EQ(nullptr, enough.gotfocus);
  // Registered again on every initialisation; nothing torn down in between.
  EXPECT_EQ(3u, sim::CountCalls("MwRegisterEventCallbacks"));
  EXPECT_EQ(NPERR_NO_ERROR, NP_Shutdown());
}

TEST_F(EntryTest, NamesVersionAndMimeDescription) {
  const char* value = nullptr;
  EXPECT_EQ(NPERR_NO_ERROR, NP_GetValue(nullptr, NPPVpluginNameString, &value));
  EXPECT_STREQ("Orvane HbbTV Plug-in", value);
  EXPECT_EQ(NPERR_NO_ERROR, NP_GetValue(nullptr, NPPVpluginDescriptionString, &value));
  EXPECT_STREQ("Orvane HbbTV Plug-in Javascript extensions", value);
  value = "untouched";
  EXPECT_EQ(NPERR_INVALID_PARAM, NP_GetValue(nullptr, NPPVpluginWindowBool, &value));
  EXPECT_STREQ("untouched", value);
  EXPECT_STREQ("1.0.0.0", NP_GetPluginVersion());

  std::string mime = NP_GetMIMEDescription();
  EXPECT_EQ(0u, mime.find("application/vnd.dvb.ait+xml:aitx:XmlAit;application/oipfApplicationManager:bsc:"));
  EXPECT_NE(std::string::npos, mime.find(";video/mpeg4:bsc:VideoMP4;"));
  EXPECT_EQ(mime.size() - strlen("application/oipfDrmAgent"), mime.rfind(";application/oipfDrmAgent") + 1);
}

TEST_F(EntryTest, TrivialInstanceEntryPoints) {
  NPP npp = NewPlugin("application/oipfdrmagent");
  EXPECT_EQ(0, plugin_funcs_.event(npp, nullptr));
  EXPECT_EQ(NPERR_GENERIC_ERROR, plugin_funcs_.setvalue(npp, NPNVWindowNPObject, nullptr));
  plugin_funcs_.print(npp, nullptr);
  plugin_funcs_.asfile(npp, nullptr, "file");
}

}  // namespace
