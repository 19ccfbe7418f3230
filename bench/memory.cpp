// Memory per live object: the heap the plug-in holds for each of many live
// objects of one sort (NPN blocks, records and index shares together), in
// the C allocator's chunks, against the chunk of a bare NPObject. Counted,
// not timed, so it also runs on ARM under qemu. The browser is the tests'
// fake browser, whose own bookkeeping is not counted.
#include <malloc.h>

#include <cstdio>
#include <string>
#include <vector>

#include "host/host.h"
#include "middleware/types.h"
#include "sim/sim.h"

extern "C" NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin);
extern "C" NPObject* ChannelCreate(NPP instance, MwHandle channel);
extern "C" NPObject* ProgrammeCreate(NPP instance, MwHandle programme);

namespace {

NPPluginFuncs g_plugin;
NPP g_npp;

// Heap per object while `count` objects made by `make` live; `drop` lets
// them go afterwards.
template <class Make, class Drop>
double PerObject(int count, Make make, Drop drop) {
  std::vector<NPObject*> objects;
  objects.reserve(count);
  size_t before = host::PluginHeap();
  for (int i = 0; i < count; i++) objects.push_back(make(i));
  double bytes = static_cast<double>(host::PluginHeap() - before) / count;
  for (NPObject* o : objects) drop(o);
  host::Pump();
  return bytes;
}

void Release(NPObject* o) {
  if (o) host::Funcs()->releaseobject(o);
}

// Handed-out objects of one kind over `count` fresh handles, which they take over.
double HandedOut(int count, NPObject* (*create)(NPP, MwHandle)) {
  std::vector<MwHandle> handles;
  for (int i = 0; i < count; i++) handles.push_back(sim::NewString("object"));
  return PerObject(count, [&](int i) { return create(g_npp, handles[i]); }, Release);
}

double BroadcastInstances(int count) {
  std::vector<NPP> instances;
  char type[] = "video/broadcast";
  double bytes = PerObject(
      count,
      [&](int) {
        NPP npp = host::NewInstance(host::NewPage());
        g_plugin.newp(type, npp, 1, 0, nullptr, nullptr, nullptr);
        instances.push_back(npp);
        NPObject* o = nullptr;
        g_plugin.getvalue(npp, NPPVpluginScriptableNPObject, &o);
        return o;
      },
      [](NPObject*) {});
  for (NPP npp : instances) {
    NPObject* o = nullptr;
    g_plugin.getvalue(npp, NPPVpluginScriptableNPObject, &o);
    g_plugin.destroy(npp, nullptr);
    host::InstanceDestroyed(npp);
    Release(o);
  }
  return bytes;
}

// addEventListener on one video/broadcast object, each with its own function.
double ListenerRegistrations(int count) {
  NPP npp = host::NewInstance(host::NewPage());
  char type[] = "video/broadcast";
  g_plugin.newp(type, npp, 1, 0, nullptr, nullptr, nullptr);
  NPObject* video = nullptr;
  g_plugin.getvalue(npp, NPPVpluginScriptableNPObject, &video);
  std::vector<NPObject*> functions;
  for (int i = 0; i < count; i++) functions.push_back(host::NewFunction("listener"));
  NPVariant ignored = host::Void();
  double bytes = PerObject(
      count,
      [&](int i) {
        host::Invoke(npp, video, "addEventListener",
                     {host::Str("PlayStateChange"), host::Obj(functions[i])}, &ignored);
        return nullptr;
      },
      [](NPObject*) {});
  g_plugin.destroy(npp, nullptr);
  host::InstanceDestroyed(npp);
  Release(video);
  for (NPObject* f : functions) Release(f);
  host::Pump();
  return bytes;
}

}  // namespace

int main() {
  host::Reset();
  sim::Reset();
  sim::SetAutoEvents(false);
  g_plugin.size = sizeof(NPPluginFuncs);
  NP_Initialize(host::Funcs(), &g_plugin);
  g_npp = host::NewInstance(host::NewPage());

  void* bare = malloc(sizeof(NPObject));
  double bare_chunk = static_cast<double>(malloc_usable_size(bare) + sizeof(size_t));
  free(bare);

  struct Figure {
    const char* what;
    double bytes;
  };
  const Figure figures[] = {
      {"channel (10,000 live)", HandedOut(10000, ChannelCreate)},
      {"programme (10,000 live)", HandedOut(10000, ProgrammeCreate)},
      {"video/broadcast instance (1,000 live)", BroadcastInstances(1000)},
      {"listener registration (1,000 on one object)", ListenerRegistrations(1000)},
  };
  printf("Heap per live object (%zu-bit; a bare NPObject's chunk is %.0f bytes):\n",
         sizeof(void*) * 8, bare_chunk);
  for (const Figure& f : figures)
    printf("  %-46s %8.1f bytes  %5.2fx a bare NPObject\n", f.what, f.bytes, f.bytes / bare_chunk);
  size_t left = host::LiveBlocks() + host::LiveRecords();
  if (left) printf("  (%zu blocks and records still live at the end)\n", left);
  return left ? 1 : 0;
}
