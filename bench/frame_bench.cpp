// The frame's costs, each against a baseline measured in the same run:
// property reads and method calls against the direct middleware call, event
// delivery against a bare NPN_PluginThreadAsyncCall round trip, the oldest
// and the newest of many live objects of a kind, and NPP_New + NPP_Destroy
// beside many live instances. Memory per live object is orvane-memory's.
// The browser is the tests' fake browser; the middleware is the simulator.
#include <benchmark/benchmark.h>

#include <chrono>
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

// Instances each in a document of its own, or all in one.
struct Page {
  explicit Page(bool one_document = false) : document(one_document ? host::NewPage() : nullptr) {}
  host::Page* document;
  std::vector<NPP> instances;
  NPP Open(const char* mime) {
    NPP npp = host::NewInstance(document ? document : host::NewPage());
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
// Each pairs the page's call with the middleware call it makes: blocks of
// the two alternate within one run, each block timed, so that both see the
// same machine (a shared machine's drift would otherwise weigh on one side
// only). Reported per call, with the ratio of each repetition.

template <class Direct, class Plugin>
void Paired(benchmark::State& state, Direct direct, Plugin plugin) {
  using Clock = std::chrono::steady_clock;
  constexpr int kBlock = 256;
  double direct_ns = 0, plugin_ns = 0;
  for (auto _ : state) {
    Clock::time_point t0 = Clock::now();
    for (int i = 0; i < kBlock; i++) direct();
    Clock::time_point t1 = Clock::now();
    for (int i = 0; i < kBlock; i++) plugin();
    Clock::time_point t2 = Clock::now();
    direct_ns += std::chrono::duration<double, std::nano>(t1 - t0).count();
    plugin_ns += std::chrono::duration<double, std::nano>(t2 - t1).count();
    sim::ClearCalls();
  }
  double calls = static_cast<double>(state.iterations()) * kBlock;
  state.counters["direct_ns"] = direct_ns / calls;
  state.counters["plugin_ns"] = plugin_ns / calls;
  state.counters["ratio"] = plugin_ns / direct_ns;
}

NPVariant Call(NPObject* o, NPIdentifier id, const NPVariant* args, uint32_t count) {
  NPVariant result;
  result.type = NPVariantType_Void;
  o->_class->invoke(o, id, args, count, &result);
  return result;
}

void BM_ChannelOnid(benchmark::State& state) {
  Page page;
  MwHandle handle = FirstChannel(BroadcastHandle(page.Open("video/broadcast")));
  NPObject* channel = ChannelCreate(g_npp, sim::Ref(handle));
  NPIdentifier onid = host::Id("onid");
  Paired(state, [&] { benchmark::DoNotOptimize(MwChannelGetOnid(handle)); },
         [&] { benchmark::DoNotOptimize(Read(channel, onid)); });
  host::Funcs()->releaseobject(channel);
  MwObjectRelease(handle);
}

void BM_BroadcastStop(benchmark::State& state) {
  Page page;
  NPP npp = page.Open("video/broadcast");
  MwHandle broadcast = BroadcastHandle(npp);
  NPObject* video = Page::Scriptable(npp);
  NPIdentifier stop = host::Id("stop");
  Paired(state, [&] { MwBroadcastStop(broadcast); }, [&] { Call(video, stop, nullptr, 0); });
}

// ---- the A/V control: playPosition and play() against the middleware ------------------

MwHandle PlayerHandle(NPP npp) { return BroadcastHandle(npp); }  // the same record head

void BM_PlayPosition(benchmark::State& state) {
  Page page;
  NPP npp = page.Open("video/mp4");
  MwHandle handle = PlayerHandle(npp);
  NPObject* player = Page::Scriptable(npp);
  NPIdentifier id = host::Id("playPosition");
  Paired(state, [&] { benchmark::DoNotOptimize(MwAVGetPlayPosition(handle)); },
         [&] { benchmark::DoNotOptimize(Read(player, id)); });
}

void BM_Play(benchmark::State& state) {
  Page page;
  NPP npp = page.Open("video/mp4");
  MwHandle handle = PlayerHandle(npp);
  NPObject* player = Page::Scriptable(npp);
  NPIdentifier play = host::Id("play");
  NPVariant speed;
  speed.type = NPVariantType_Int32;
  speed.value.intValue = 1;
  Paired(state, [&] { benchmark::DoNotOptimize(MwAVPlay(handle, 1)); },
         [&] { benchmark::DoNotOptimize(Call(player, play, &speed, 1)); });
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

// ---- NPP_New and NPP_Destroy with many live instances ------------------------------

// One video/broadcast instance made and destroyed, with `state.range(0)`
// others live in the same document.
void BM_BroadcastNewDestroy(benchmark::State& state) {
  Page page(true);
  for (int64_t i = 0; i < state.range(0); i++) page.Open("video/broadcast");
  NPP npp = host::NewInstance(page.document);
  char type[] = "video/broadcast";
  for (auto _ : state) {
    g_plugin.newp(type, npp, 1, 0, nullptr, nullptr, nullptr);
    NPObject* o = Page::Scriptable(npp);
    g_plugin.destroy(npp, nullptr);
    if (o) host::Funcs()->releaseobject(o);
    if ((state.iterations() & 255) == 0) sim::ClearCalls();
  }
  host::InstanceDestroyed(npp);
}

BENCHMARK(BM_ChannelOnid);
BENCHMARK(BM_BroadcastStop);
BENCHMARK(BM_PlayPosition);
BENCHMARK(BM_Play);
BENCHMARK(BM_OldestPlayerRead)->Arg(1)->Arg(1000);
BENCHMARK(BM_NewestPlayerRead)->Arg(1)->Arg(1000);
BENCHMARK(BM_GuideSearch)->Arg(1000)->Arg(10000)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BareAsyncCallRoundTrip);
BENCHMARK(BM_BroadcastEvents)->Arg(1)->Arg(10000);
BENCHMARK(BM_OldestChannelRead)->Arg(1)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_NewestChannelRead)->Arg(1)->Arg(100)->Arg(1000)->Arg(10000);
BENCHMARK(BM_OldestBroadcastRead)->Arg(1)->Arg(1000)->Arg(10000);
BENCHMARK(BM_NewestBroadcastRead)->Arg(1)->Arg(1000)->Arg(10000);
BENCHMARK(BM_BroadcastNewDestroy)->Arg(1)->Arg(1000)->Arg(10000);

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
      for (const char* counter : {"direct_ns", "plugin_ns", "ratio"}) {
        auto c = run.counters.find(counter);
        if (c != run.counters.end()) paired[name][counter] = c->second.value;
      }
    }
    ConsoleReporter::ReportRuns(runs);
  }
  std::map<std::string, double> times, rates;
  std::map<std::string, std::map<std::string, double>> paired;  // the paired counters
};

// The median of the repetitions' ratios of a paired run, with its times.
void PairedRatio(const Collector& c, const char* what, const std::string& name) {
  auto p = c.paired.find(name);
  if (p == c.paired.end()) return;
  const std::map<std::string, double>& v = p->second;
  printf("  %-58s %6.2fx  (%.1f ns / %.1f ns)\n", what, v.at("ratio"), v.at("plugin_ns"), v.at("direct_ns"));
}

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
  PairedRatio(collector, "channel onid read / direct middleware call", "BM_ChannelOnid");
  PairedRatio(collector, "broadcast stop() call / direct middleware call", "BM_BroadcastStop");
  PairedRatio(collector, "A/V playPosition read / direct middleware call", "BM_PlayPosition");
  PairedRatio(collector, "A/V play(1) call / direct middleware call", "BM_Play");
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
  for (const char* n : {"1000", "10000"})
    Ratio(collector, (std::string("NPP_New + NPP_Destroy, ") + n + " / 1 live video/broadcast").c_str(),
          std::string("BM_BroadcastNewDestroy/") + n, "BM_BroadcastNewDestroy/1");
  Ratio(collector, "guide search, 10,000 / 1,000 programmes (linear: about 10)",
        "BM_GuideSearch/10000", "BM_GuideSearch/1000");
  auto big = collector.times.find("BM_GuideSearch/10000");
  if (big != collector.times.end())
    printf("  %-58s %8.2f ms\n", "search of 10,000 programmes, first page of 20", big->second / 1e6);
  benchmark::Shutdown();
  return 0;
}
