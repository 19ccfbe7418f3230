// The script surface under hostile pages: an input is a sequence of page
// actions (make and destroy instances of any type, read, write and call any
// name of any object with any values, let objects go) interleaved with
// middleware events of every entry point. The fake browser's accounting is
// the oracle: a leaked block, object, record or middleware reference, an
// over-release or a call on a dead object aborts the run.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "frame/record.h"
#include "fuzz/start.h"
#include "host/host.h"
#include "sim/sim.h"

namespace {

const char* const kMimes[] = {
    "application/oipfapplicationmanager", "application/oipfconfiguration", "video/broadcast",
    "application/oipfparentalcontrolmanager", "video/mpeg", "video/mp4", "video/mpeg4", "audio/mpeg",
    "audio/mp4", "application/oipfsearchmanager", "application/oipfcapabilities",
    "application/vnd.dvb.ait+xml", "application/oipfrecordingscheduler", "application/oipfdrmagent",
    "text/html"};
const char* const kNames[] = {
    "currentChannel", "getChannelConfig", "channelList", "item", "length", "name", "programmes",
    "setChannel", "bindToCurrentChannel", "nextChannel", "addEventListener", "removeEventListener",
    "onPlayStateChange", "onChannelChangeSucceeded", "addStreamEventListener", "removeStreamEventListener",
    "getOwnerApplication", "privateData", "keyset", "setValue", "createApplication", "destroyApplication",
    "onLowMemory", "sendDRMMessage", "onDRMMessageResult", "play", "stop", "seek", "queue", "data",
    "setFullScreen", "getComponents", "selectComponent", "onPlayPositionChanged", "configuration",
    "localSystem", "networkInterfaces", "onPvrStatusChange", "xmlCapabilities", "hasCapability",
    "parentalRatingSchemes", "threshold", "indexOf", "iconUrl", "record", "recordAt", "recordings",
    "remove", "createProgrammeObject", "createSearch", "createQuery", "setQuery", "result",
    "getResults", "abort", "and", "not", "findProgrammesFromStream", "addChannelConstraint",
    "onMetadataSearch", "parentalRatings", "recording", "getSIDescriptors", "width", "height",
    "getChannelByTriplet", "addParentalRatingScheme", "totalSize", "0", "7", "handleEvent", "x"};
const char* const kStrings[] = {"", "dvb://1.2.3", "PlayStateChange", "Play", "ccid:dvbt.1", "news",
                                "Programme.name", "http://a/b.mp4", "events.xml", "x\x01y"};

// ORVANE_FUZZ_TRACE=1 prints each action of a run (to replay a finding).
bool Tracing() {
  static const bool on = getenv("ORVANE_FUZZ_TRACE") != nullptr;
  return on;
}
#define TRACE(...) \
  do {                                    \
    if (Tracing()) fprintf(stderr, __VA_ARGS__); \
  } while (0)

struct Input {
  const uint8_t* p;
  size_t n;
  uint8_t Byte() {
    if (!n) return 0;
    n--;
    return *p++;
  }
  int32_t Int() { return static_cast<int32_t>(Byte() | Byte() << 8 | Byte() << 16 | Byte() << 24); }
  template <size_t N>
  const char* Pick(const char* const (&table)[N]) { return table[Byte() % N]; }
};

struct Page {
  std::vector<NPP> instances;
  std::vector<NPObject*> objects;    // references the page holds
  std::vector<NPVariant> values;     // values it got back and still holds
  NPPluginFuncs plugin;
  NPP spare;  // the page's own instance, for calls when no element is left
};

NPVariant Value(Input& in, Page& page) {
  switch (in.Byte() % 8) {
    case 0: return host::Void();
    case 1: return host::Null();
    case 2: return host::Bool(in.Byte() & 1);
    case 3: return host::Int(in.Int());
    case 4: return host::Double(static_cast<double>(in.Int()) / 7.0);
    case 5: return host::Str(in.Pick(kStrings));
    default:
      if (page.objects.empty()) return host::Null();
      return host::Obj(page.objects[in.Byte() % page.objects.size()]);
  }
}

void Keep(Page& page, const NPVariant& v) {
  if (v.type == NPVariantType_Object) page.objects.push_back(host::Funcs()->retainobject(v.value.objectValue));
  page.values.push_back(v);
}

MwHandle Target(Input& in, Page& page) {
  if (page.instances.empty() || (in.Byte() & 3) == 0) return static_cast<MwHandle>(in.Byte());
  NPP npp = page.instances[in.Byte() % page.instances.size()];
  auto* r = static_cast<ObjectRecord*>(npp->pdata);
  return r ? r->handle : 0;
}

MwHandle Text(Input& in) { return (in.Byte() & 3) ? sim::NewString(in.Pick(kStrings)) : 0; }

void Event(Input& in, Page& page) {
  const MwEventCallbacks* cb = sim::Callbacks();
  MwHandle h = Target(in, page);
  int32_t n = in.Int();
  uint8_t which = in.Byte() % 16;
  TRACE("event %u to %u (n %d)\n", which, h, n);
  switch (which) {
    case 0: cb->AppMgr_onLowMemory(h); break;
    case 1: cb->AppMgr_onApplicationLoadError(h); break;
    case 2: cb->SearchManager_onMetadataSearch(h, 0, n); break;
    case 3: cb->AVControl_onPlayStateChange(h); break;
    case 4: cb->AVControl_onDRMRightsError(h, n, Text(in), Text(in), Text(in)); break;
    case 5: cb->Broadcast_onChannelChangeSucceeded(h, Text(in)); break;
    case 6: cb->Broadcast_onChannelChangeError(h, Text(in), n); break;
    case 7: cb->Broadcast_onPlayStateChange(h, n & 3, n >> 8); break;
    case 8: cb->Broadcast_onParentalRatingChange(h, Text(in), static_cast<MwHandle>(n), Text(in), 1); break;
    case 9: {
      std::string data(in.Byte() % 16, 'd');
      MwStreamEvent e = {3, "now", static_cast<uint32_t>(data.size()), data.data(), 0, nullptr,
                         static_cast<uint32_t>(n & 1)};
      cb->Broadcast_onStreamEvent(h, 25 + (in.Byte() & 3), &e);
      break;
    }
    case 10: cb->Broadcast_onRecordingEvent(h, n & 7, 0, Text(in)); break;
    case 11: cb->Broadcast_onDRMRightsError(h, n, Text(in), Text(in), Text(in)); break;
    case 12: cb->LocalSystem_onPvrStatusChange(h, n); break;
    case 13: cb->NetworkInterface_onNetworkStatusChange(h, n); break;
    default: {
      // The strings of a DRM event for an agent the plug-in does not hold
      // stay the middleware's: given back here, as a middleware would.
      MwHandle a = Text(in), b = Text(in);
      if (which == 14)
        cb->DrmAgent_onDRMMessageResult(h, a, b, n);
      else
        cb->DrmAgent_onDRMSystemMessage(h, a, b);
      if (sim::TypeOf(h) != "drm-agent" || sim::RefsOf(h) == 0)
        for (MwHandle text : {a, b})
          if (text) MwObjectRelease(text);
      break;
    }
  }
}

void Act(Input& in, Page& page) {
  NPObject* o = page.objects.empty() ? nullptr : page.objects[in.Byte() % page.objects.size()];
  NPP npp = page.instances.empty() ? page.spare : page.instances[in.Byte() % page.instances.size()];
  uint8_t action = in.Byte() % 10;
  TRACE("action %u on object %p of instance %p\n", action, static_cast<void*>(o), static_cast<void*>(npp));
  switch (action) {
    case 0: {  // a new element
      NPP made = host::NewInstance(host::NewPage());
      std::string type = in.Pick(kMimes);
      std::vector<std::string> names = {"data", "width", "loop", "cache", "style"};
      std::vector<std::string> values = {in.Pick(kStrings), std::to_string(in.Int()), "infinite", "true",
                                         "left:10px; width:20px"};
      std::vector<char*> argn, argv;
      int16_t argc = static_cast<int16_t>(in.Byte() % 6);
      for (int16_t i = 0; i < argc; i++) {
        argn.push_back(&names[static_cast<size_t>(i)][0]);
        argv.push_back(&values[static_cast<size_t>(i)][0]);
      }
      TRACE("  new %s with %d attributes\n", type.c_str(), argc);
      if (page.plugin.newp(&type[0], made, 1, argc, argn.data(), argv.data(), nullptr) != NPERR_NO_ERROR) break;
      page.instances.push_back(made);
      NPObject* scriptable = nullptr;
      if (page.plugin.getvalue(made, NPPVpluginScriptableNPObject, &scriptable) == NPERR_NO_ERROR && scriptable)
        page.objects.push_back(scriptable);  // the browser's reference
      break;
    }
    case 1:  // an element removed
      if (npp != page.spare) {
        page.plugin.destroy(npp, nullptr);
        host::InstanceDestroyed(npp);
        for (size_t i = 0; i < page.instances.size(); i++)
          if (page.instances[i] == npp) page.instances.erase(page.instances.begin() + static_cast<long>(i));
      }
      break;
    case 2:
    case 3: {
      if (!o) break;
      NPVariant v = host::Void();
      const char* name = in.Pick(kNames);
      TRACE("  get %s\n", name);
      if (host::Get(npp, o, name, &v)) Keep(page, v);
      break;
    }
    case 4: {
      if (!o) break;
      const char* name = in.Pick(kNames);
      TRACE("  set %s\n", name);
      host::Set(npp, o, name, Value(in, page));
      break;
    }
    case 5:
    case 6: {
      if (!o) break;
      std::vector<NPVariant> args;
      for (int i = in.Byte() % 5; i > 0; i--) args.push_back(Value(in, page));
      NPVariant v = host::Void();
      const char* name = in.Pick(kNames);
      TRACE("  call %s with %zu arguments\n", name, args.size());
      if (host::Invoke(npp, o, name, args, &v)) Keep(page, v);
      break;
    }
    case 7:  // the page lets an object go
      if (o) {
        size_t i = in.Byte() % page.objects.size();
        host::Funcs()->releaseobject(page.objects[i]);
        page.objects.erase(page.objects.begin() + static_cast<long>(i));
      }
      break;
    case 8: Event(in, page); break;
    default: host::Pump(); break;
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  Page page{};
  page.plugin = StartPlugin();
  sim::SetAutoEvents(false);
  page.spare = host::NewInstance(host::NewPage());
  Input in{data, size};
  for (int steps = 0; in.n && steps < 200; steps++) Act(in, page);
  // The page goes.
  for (NPP npp : page.instances) {
    page.plugin.destroy(npp, nullptr);
    host::InstanceDestroyed(npp);
  }
  for (NPVariant& v : page.values) host::Release(&v);
  for (NPObject* o : page.objects) host::Funcs()->releaseobject(o);
  host::Pump();
  host::UnloadPages();
  host::Pump();
  CheckAccounting();
  return 0;
}
