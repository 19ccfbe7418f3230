// The frame's costs, each against a baseline measured in the same run:
// property reads and method calls against the direct middleware call, event
// delivery against a bare NPN_PluginThreadAsyncCall round trip, the oldest
// and the newest of many live objects of a kind, and memory per live object.
// The browser is the tests' fake browser; the middleware is the simulator.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

#include "host/host.h"
#include "middleware/avcontrol.h"
#include "middleware/broadcast.h"
#include "middleware/collection.h"
#include "sim/description.h"
#include "sim/sim.h"

extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
extern "C" NPObject* ChannelCreate(NPP instance, MwHandle channel);

namespace {

NPPluginFuncs g_plugin;
NPP g_npp;

// A listener that does nothing, so that delivery is what is measured.
NPClass g_listener_class;
bool Ignore(NPObject*, const NPVariant*, uint32_t, NPVariant*) { return true; }

void Start() {
  host::Reset();
  sim::Reset();
  sim::SetAutoEvents(false);
  g_plugin = NPPluginFuncs();
  g_plugin.size = sizeof(NPPluginFuncs);
  NP_Initialize(host::Funcs(), &g_plugin);
  g_npp = host::NewInstance(host::NewPage());
  g_listener_class.structVersion = NP_CLASS_STRUCT_VERSION;
  g_listener_class.invokeDefault = Ignore;
}

MwHandle FirstChannel(MwHandle broadcast) {
  MwHandle config = MwBroadcastGetChannelConfig(broadcast);
  MwHandle list = MwChannelConfigGetChannelList(config);
  MwHandle channel = MwListGetItem(list, 0);
  MwObjectRelease(list);
  MwObjectRelease(config);
  return channel;
}

struct Page {
  std::vector<NPP> instances;
  NPP Open(const char* mime) {
    NPP npp = host::NewInstance(host::NewPage());
    char type[64];
    snprintf(type, sizeof type, "%s", mime);
    g_plugin.newp(type, npp, 1, 0, nullptr, nullptr, nullptr);
    instances.push_back(npp);
    return npp;
  }
  static NPObject* Scriptable(NPP npp) {
    NPObject* o = nullptr;
    g_plugin.getvalue(npp, NPPVpluginScriptableNPObject, &o);
    return o;
  }
  ~Page() {
    for (NPP npp : instances) {
      NPObject* o = Scriptable(npp);
      g_plugin.destroy(npp, nullptr);
      host::InstanceDestroyed(npp);
      if (o) host::Funcs()->releaseobject(o);
    }
    host::Pump();
  }
};

MwHandle BroadcastHandle(NPP npp) {
  // The record's fourth word: the middleware handle.
  struct Head { void* next; NPP instance; NPObject* object; MwHandle handle; };
  return static_cast<Head*>(npp->pdata)->handle;
}

int64_t Read(NPObject* o, NPIdentifier id) {
  NPVariant v;
  v.type = NPVariantType_Void;
  o->_class->getProperty(o, id, &v);
  return v.value.intValue;
}

// ---- property read and method call against the middleware call -------------------

void BM_DirectChannelOnid(benchmark::State& state) {
  Page page;
  MwHandle channel = FirstChannel(BroadcastHandle(page.Open("video/broadcast")));
  for (auto _ : state) {
    benchmark::DoNotOptimize(MwChannelGetOnid(channel));
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
  MwObjectRelease(channel);
}

void BM_ChannelOnidRead(benchmark::State& state) {
  Page page;
  NPObject* channel = ChannelCreate(g_npp, FirstChannel(BroadcastHandle(page.Open("video/broadcast"))));
  NPIdentifier onid = host::Id("onid");
  for (auto _ : state) {
    benchmark::DoNotOptimize(Read(channel, onid));
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
  host::Funcs()->releaseobject(channel);
}

void BM_DirectBroadcastStop(benchmark::State& state) {
  Page page;
  MwHandle broadcast = BroadcastHandle(page.Open("video/broadcast"));
  for (auto _ : state) {
    MwBroadcastStop(broadcast);
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
}

void BM_BroadcastStopCall(benchmark::State& state) {
  Page page;
  NPObject* video = Page::Scriptable(page.Open("video/broadcast"));
  NPIdentifier stop = host::Id("stop");
  for (auto _ : state) {
    NPVariant result;
    result.type = NPVariantType_Void;
    video->_class->invoke(video, stop, nullptr, 0, &result);
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
}

// ---- the A/V control: playPosition and play() against the middleware ------------------

MwHandle PlayerHandle(NPP npp) { return BroadcastHandle(npp); }  // the same record head

void BM_DirectPlayPosition(benchmark::State& state) {
  Page page;
  MwHandle player = PlayerHandle(page.Open("video/mp4"));
  for (auto _ : state) {
    benchmark::DoNotOptimize(MwAVGetPlayPosition(player));
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
}

void BM_PlayPositionRead(benchmark::State& state) {
  Page page;
  NPObject* player = Page::Scriptable(page.Open("video/mp4"));
  NPIdentifier id = host::Id("playPosition");
  for (auto _ : state) {
    benchmark::DoNotOptimize(Read(player, id));
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
}

void BM_DirectPlay(benchmark::State& state) {
  Page page;
  MwHandle player = PlayerHandle(page.Open("video/mp4"));
  for (auto _ : state) {
    benchmark::DoNotOptimize(MwAVPlay(player, 1));
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
}

void BM_PlayCall(benchmark::State& state) {
  Page page;
  NPObject* player = Page::Scriptable(page.Open("video/mp4"));
  NPIdentifier play = host::Id("play");
  NPVariant speed;
  speed.type = NPVariantType_Int32;
  speed.value.intValue = 1;
  for (auto _ : state) {
    NPVariant result;
    result.type = NPVariantType_Void;
    player->_class->invoke(player, play, &speed, 1, &result);
    if ((state.iterations() & 1023) == 0) sim::ClearCalls();
  }
}

void PlayersRead(benchmark::State& state, bool oldest) {
  Page page;
  for (int64_t i = 0; i < state.range(0); i++) page.Open("video/mp4");
  NPObject* target = Page::Scriptable(oldest ? page.instances.front() : page.instances.back());
  NPIdentifier id = host::Id("COMPONENT_TYPE_AUDIO");
  for (auto _ : state) benchmark::DoNotOptimize(Read(target, id));
}
void BM_OldestPlayerRead(benchmark::State& state) { PlayersRead(state, true); }
void BM_NewestPlayerRead(benchmark::State& state) { PlayersRead(state, false); }

// ---- a guide search: createSearch, a "contains" title query, first page of 20 ----

// A guide of `programmes` programmes over 10 channels, every fifth a news.
void LoadGuide(int64_t programmes) {
  std::string d = "{\"channels\": [";
  for (int c = 0; c < 10; c++)
    d += std::string(c ? "," : "") + "{\"name\": \"Guide " + std::to_string(c) +
         "\", \"schedule\": {\"count\": " + std::to_string(programmes / 10) +
         ", \"titles\": [\"News\", \"Film\", \"Quiz\", \"Sport\", \"Drama\"]}}";
  sim::LoadDescriptionText(d + "]}", nullptr);
}

void GuideSearch(benchmark::State& state) {
  Page page;
  NPObject* manager = Page::Scriptable(page.Open("application/oipfsearchmanager"));
  NPVariant search = host::Void(), query = host::Void(), result = host::Void(), ok = host::Void();
  host::Invoke(g_npp, manager, "createSearch", {host::Int(1)}, &search);
  host::Invoke(g_npp, search.value.objectValue, "createQuery",
               {host::Str("Programme.name"), host::Int(6), host::Str("news")}, &query);
  host::Invoke(g_npp, search.value.objectValue, "setQuery", {query}, &ok);
  host::Get(g_npp, search.value.objectValue, "result", &result);
  for (auto _ : state) {
    host::Invoke(g_npp, result.value.objectValue, "getResults", {host::Int(0), host::Int(20)}, &ok);
    if ((state.iterations() & 255) == 0) sim::ClearCalls();
  }
  for (NPVariant* v : {&result, &query, &search}) host::Release(v);
}

void BM_GuideSearch(benchmark::State& state) {
  LoadGuide(state.range(0));
  GuideSearch(state);
  sim::LoadDescriptionText("{}", nullptr);  // the built-in receiver again
  host::Pump();
}

// ---- events against the bare async-call round trip ---------------------------------

constexpr int kBatch = 64;

void Nothing(void*) {}

void BM_BareAsyncCallRoundTrip(benchmark::State& state) {
  for (auto _ : state) {
    for (int i = 0; i < kBatch; i++) host::Funcs()->pluginthreadasynccall(g_npp, Nothing, nullptr);
    host::Pump();
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
}

// Broadcast position events, each to one listener, with `state.range(0)`
// video/broadcast instances live (the newest gets them).
void BM_BroadcastEvents(benchmark::State& state) {
  Page page;
  NPP npp = nullptr;
  for (int64_t i = 0; i < state.range(0); i++) npp = page.Open("video/broadcast");
  NPObject* video = Page::Scriptable(npp);
  NPObject* listener = host::Funcs()->createobject(g_npp, &g_listener_class);
  NPVariant value;
  value.type = NPVariantType_Object;
  value.value.objectValue = listener;
  video->_class->setProperty(video, host::Id("onPlayPositionChanged"), &value);
  MwHandle handle = BroadcastHandle(npp);
  const MwEventCallbacks* cb = sim::Callbacks();
  for (auto _ : state) {
    for (int i = 0; i < kBatch; i++) cb->Broadcast_onPlayPositionChanged(handle, i);
    host::Pump();
  }
  state.SetItemsProcessed(state.iterations() * kBatch);
  host::Funcs()->releaseobject(listener);
}

// ---- the oldest and the newest of many live objects ---------------------------------

void ChannelsRead(benchmark::State& state, bool oldest) {
  std::vector<NPObject*> channels;
  for (int64_t i = 0; i < state.range(0); i++)
    channels.push_back(ChannelCreate(g_npp, sim::NewString("channel")));
  NPObject* target = oldest ? channels.front() : channels.back();
  NPIdentifier id = host::Id("TYPE_TV");
  for (auto _ : state) benchmark::DoNotOptimize(Read(target, id));
  for (NPObject* o : channels) host::Funcs()->releaseobject(o);
}
void BM_OldestChannelRead(benchmark::State& state) { ChannelsRead(state, true); }
void BM_NewestChannelRead(benchmark::State& state) { ChannelsRead(state, false); }

void BroadcastsRead(benchmark::State& state, bool oldest) {
  Page page;
  for (int64_t i = 0; i < state.range(0); i++) page.Open("video/broadcast");
  NPObject* target = Page::Scriptable(oldest ? page.instances.front() : page.instances.back());
  NPIdentifier id = host::Id("COMPONENT_TYPE_AUDIO");
  for (auto _ : state) benchmark::DoNotOptimize(Read(target, id));
}
void BM_OldestBroadcastRead(benchmark::State& state) { BroadcastsRead(state, true); }
void BM_NewestBroadcastRead(benchmark::State& state) { BroadcastsRead(state, false); }

// ---- memory --------------------------------------------------------------------------

void BM_MemoryPerChannel(benchmark::State& state) {
  constexpr int kObjects = 10000;
  std::vector<MwHandle> handles;
  for (int i = 0; i < kObjects; i++) handles.push_back(sim::NewString("channel"));
  for (auto _ : state) {
    std::vector<NPObject*> channels;
    channels.reserve(kObjects);
    size_t before = mallinfo2().uordblks;
    for (MwHandle h : handles) channels.push_back(ChannelCreate(g_npp, sim::Ref(h)));
    size_t after = mallinfo2().uordblks;
    state.counters["bytes_per_object"] = static_cast<double>(after - before) / kObjects;
    for (NPObject* o : channels) host::Funcs()->releaseobject(o);
  }
  for (MwHandle h : handles) MwObjectRelease(h);
}

BENCHMARK(BM_DirectChannelOnid);
BENCHMARK(BM_ChannelOnidRead);
BENCHMARK(BM_DirectBroadcastStop);
BENCHMARK(BM_BroadcastStopCall);
BENCHMARK(BM_DirectPlayPosition);
BENCHMARK(BM_PlayPositionRead);
BENCHMARK(BM_DirectPlay);
BENCHMARK(BM_PlayCall);
BENCHMARK(BM_OldestPlayerRead)->Arg(1)->Arg(1000);
BENCHMARK(BM_NewestPlayerRead)->Arg(1)->Arg(1000);
BENCHMARK(BM_GuideSearch)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BareAsyncCallRoundTrip);
BENCHMARK(BM_BroadcastEvents)->Arg(1)->Arg(10000);
BENCHMARK(BM_OldestChannelRead)->Arg(1)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_NewestChannelRead)->Arg(1)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_OldestBroadcastRead)->Arg(1)->Arg(1000)->Arg(10000);
BENCHMARK(BM_NewestBroadcastRead)->Arg(1)->Arg(1000)->Arg(10000);
BENCHMARK(BM_MemoryPerChannel)->Iterations(1);

// Keeps each run's time per iteration and rate, to print the ratios.
class Collector : public benchmark::ConsoleReporter {
 public:
  // With repetitions, the median of each benchmark is kept.
  void ReportRuns(const std::vector<Run>& runs) override {
    for (const Run& run : runs) {
      if (run.run_type == Run::RT_Aggregate && run.aggregate_name != "median") continue;
      std::string name = run.run_type == Run::RT_Aggregate ? run.run_name.str() : run.benchmark_name();
      times[name] =  // in ns whatever the run's unit
          run.GetAdjustedRealTime() * 1e9 / benchmark::GetTimeUnitMultiplier(run.time_unit);
      auto items = run.counters.find("items_per_second");
      if (items != run.counters.end()) rates[name] = items->second.value;
      auto bytes = run.counters.find("bytes_per_object");
      if (bytes != run.counters.end()) memory = bytes->second.value;
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times, rates;
  double memory = 0;
};

void Ratio(const Collector& c, const char* what, const std::string& a, const std::string& b) {
  auto x = c.times.find(a), y = c.times.find(b);
  if (x == c.times.end() || y == c.times.end()) return;
  printf("  %-58s %6.2fx  (%.1f ns / %.1f ns)\n", what, x->second / y->second, x->second, y->second);
}

void Rate(const Collector& c, const char* what, const std::string& a, const std::string& b) {
  auto x = c.rates.find(a), y = c.rates.find(b);
  if (x == c.rates.end() || y == c.rates.end()) return;
  printf("  %-58s %6.2fx  (%.2f M/s against %.2f M/s)\n", what, x->second / y->second,
         x->second / 1e6, y->second / 1e6);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  Start();
  Collector collector;
  benchmark::RunSpecifiedBenchmarks(&collector);
  printf("\nRatios (measured in this run):\n");
  Ratio(collector, "channel onid read / direct middleware call", "BM_ChannelOnidRead",
        "BM_DirectChannelOnid");
  Ratio(collector, "broadcast stop() call / direct middleware call", "BM_BroadcastStopCall",
        "BM_DirectBroadcastStop");
  Ratio(collector, "A/V playPosition read / direct middleware call", "BM_PlayPositionRead",
        "BM_DirectPlayPosition");
  Ratio(collector, "A/V play(1) call / direct middleware call", "BM_PlayCall", "BM_DirectPlay");
  Ratio(collector, "oldest / newest of 1000 live A/V players", "BM_OldestPlayerRead/1000",
        "BM_NewestPlayerRead/1000");
  Rate(collector, "broadcast events, 1 instance / bare async-call round trip",
       "BM_BroadcastEvents/1", "BM_BareAsyncCallRoundTrip");
  Rate(collector, "broadcast events, 10000 instances / bare async-call round trip",
       "BM_BroadcastEvents/10000", "BM_BareAsyncCallRoundTrip");
  for (const char* n : {"1", "100", "1000", "10000"})
    Ratio(collector, (std::string("oldest / newest of ") + n + " live channels").c_str(),
          std::string("BM_OldestChannelRead/") + n, std::string("BM_NewestChannelRead/") + n);
  for (const char* n : {"1", "1000", "10000"})
    Ratio(collector, (std::string("oldest / newest of ") + n + " video/broadcast instances").c_str(),
          std::string("BM_OldestBroadcastRead/") + n, std::string("BM_NewestBroadcastRead/") + n);
  Ratio(collector, "guide search, 10,000 / 1,000 programmes (linear: about 10)",
        "BM_GuideSearch/10000", "BM_GuideSearch/1000");
  auto big = collector.times.find("BM_GuideSearch/10000");
  if (big != collector.times.end())
    printf("  %-58s %8.2f ms\n", "search of 10,000 programmes, first page of 20", big->second / 1e6);
  printf("  %-58s %6.0f bytes (browser's object and bookkeeping included)\n",
         "heap per live channel object", collector.memory);
  benchmark::Shutdown();
  return 0;
}
