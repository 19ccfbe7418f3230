// Instance creation from arbitrary MIME types and attribute arrays, and AIT
// documents streamed in arbitrary chunks through the stream entry points.
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "fuzz/start.h"
#include "host/host.h"
#include "sim/sim.h"

namespace {

const char* const kMimes[] = {"application/vnd.dvb.ait+xml", "video/broadcast", "video/mp4",
                              "audio/mp4", "audio/mpeg", "application/oipfdrmagent", "VIDEO/MP4", ""};

// Splits the input at NUL bytes into the words the run is made of.
std::vector<std::string> Words(const uint8_t* data, size_t size) {
  std::vector<std::string> words(1);
  for (size_t i = 0; i < size; i++) {
    if (data[i] == 0) words.emplace_back();
    else words.back().push_back(static_cast<char>(data[i]));
  }
  return words;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  NPPluginFuncs plugin = StartPlugin();
  sim::SetAutoEvents(false);
  std::vector<std::string> words = Words(data, size);
  // The type: one of the known spellings, or the first word itself.
  std::string type = size && data[0] < 16 ? kMimes[data[0] % 8] : words[0];
  // Then name, value pairs of attributes, until a word "--"; then AIT chunks.
  std::vector<char*> argn, argv;
  size_t i = 1;
  for (; i + 1 < words.size() && words[i] != "--" && argn.size() < 16; i += 2) {
    argn.push_back(&words[i][0]);
    argv.push_back(&words[i + 1][0]);
  }
  NPP npp = host::NewInstance(host::NewPage());
  if (plugin.newp(&type[0], npp, 1, static_cast<int16_t>(argn.size()), argn.data(), argv.data(), nullptr) ==
      NPERR_NO_ERROR) {
    NPObject* scriptable = nullptr;
    plugin.getvalue(npp, NPPVpluginScriptableNPObject, &scriptable);
    NPStream stream{};
    stream.url = "http://apps.example/ait.xml";
    uint16_t stype = NP_NORMAL;
    if (plugin.newstream(npp, &type[0], &stream, 0, &stype) == NPERR_NO_ERROR) {
      for (; i < words.size(); i++) {
        plugin.writeready(npp, &stream);
        plugin.write(npp, &stream, 0, static_cast<int32_t>(words[i].size()), &words[i][0]);
      }
      plugin.destroystream(npp, &stream, NPRES_DONE);
    }
    NPWindow window{};
    window.width = 640;
    window.height = 360;
    plugin.setwindow(npp, &window);
    plugin.destroy(npp, nullptr);
    host::InstanceDestroyed(npp);
    if (scriptable) host::Funcs()->releaseobject(scriptable);
  }
  host::Pump();
  host::UnloadPages();
  CheckAccounting();
  return 0;
}
