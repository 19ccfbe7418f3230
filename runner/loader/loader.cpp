// The runner's plug-in loader: what QtWebKit loads from the runner's plug-in
// directory. It opens the real libnporvane.so (path in ORVANE_PLUGIN) and
// hands the browser the plug-in's own entry points, with one adaptation:
// QtWebKit registers a MIME entry only when it has a description field, so
// an entry given without extension and description ("application/oipfDrmAgent"
// at the end of the list) would never reach the plug-in. A receiver's browser
// registers that type; the loader completes such entries with empty fields
// ("type::") so that QtWebKit does too. Everything else is the plug-in's.
#include <string>

#include "runner/loader/forward.h"

namespace {

void* Real() {
  static void* lib = forward::Open("ORVANE_PLUGIN", "orvane loader");
  return lib;
}

std::string Completed(const char* description) {
  std::string in = description ? description : "", out;
  size_t start = 0;
  while (start <= in.size()) {
    size_t end = in.find(';', start);
    if (end == std::string::npos) end = in.size();
    std::string entry = in.substr(start, end - start);
    if (!entry.empty() && entry.find(':') == std::string::npos) entry += "::";
    if (!out.empty()) out += ';';
    out += entry;
    start = end + 1;
  }
  return out;
}

}  // namespace

extern "C" {

__attribute__((visibility("default"))) NPError NP_Initialize(NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
  return forward::Initialize(Real(), browser, plugin);
}

__attribute__((visibility("default"))) NPError NP_Shutdown() { return forward::Shutdown(Real()); }

__attribute__((visibility("default"))) const char* NP_GetMIMEDescription() {
  static std::string description;
  description = Completed(forward::MimeDescription(Real()));
  return description.c_str();
}

__attribute__((visibility("default"))) NPError NP_GetValue(void* future, NPPVariable variable, void* value) {
  return forward::GetValue(Real(), future, variable, value);
}

__attribute__((visibility("default"))) const char* NP_GetPluginVersion() { return forward::Version(Real()); }

}  // extern "C"
