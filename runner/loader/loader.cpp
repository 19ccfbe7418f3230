// The runner's plug-in loader: what QtWebKit loads from the runner's plug-in
// directory. It opens the real libnporvane.so (path in ORVANE_PLUGIN) and
// hands the browser the plug-in's own entry points, with one adaptation:
// QtWebKit registers a MIME entry only when it has a description field, so
// an entry given without extension and description ("application/oipfDrmAgent"
// at the end of the list) would never reach the plug-in. A receiver's browser
// registers that type; the loader completes such entries with empty fields
// ("type::") so that QtWebKit does too. Everything else is the plug-in's.
#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "npapi/npapi.h"

namespace {

void* Real() {
  static void* lib = [] {
    const char* path = getenv("ORVANE_PLUGIN");
    void* h = path ? dlopen(path, RTLD_LAZY | RTLD_LOCAL) : nullptr;
    if (!h) fprintf(stderr, "orvane loader: cannot open the plug-in %s: %s\n", path ? path : "(ORVANE_PLUGIN unset)", dlerror());
    return h;
  }();
  return lib;
}

template <class F>
F Entry(const char* name) {
  void* lib = Real();
  return lib ? reinterpret_cast<F>(dlsym(lib, name)) : nullptr;
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
  auto f = Entry<NPError (*)(NPNetscapeFuncs*, NPPluginFuncs*)>("NP_Initialize");
  return f ? f(browser, plugin) : static_cast<NPError>(NPERR_MODULE_LOAD_FAILED_ERROR);
}

__attribute__((visibility("default"))) NPError NP_Shutdown() {
  auto f = Entry<NPError (*)()>("NP_Shutdown");
  return f ? f() : static_cast<NPError>(NPERR_NO_ERROR);
}

__attribute__((visibility("default"))) const char* NP_GetMIMEDescription() {
  static std::string description;
  auto f = Entry<const char* (*)()>("NP_GetMIMEDescription");
  if (!f) return "";
  description = Completed(f());
  return description.c_str();
}

__attribute__((visibility("default"))) NPError NP_GetValue(void* future, NPPVariable variable, void* value) {
  auto f = Entry<NPError (*)(void*, NPPVariable, void*)>("NP_GetValue");
  return f ? f(future, variable, value) : static_cast<NPError>(NPERR_GENERIC_ERROR);
}

__attribute__((visibility("default"))) const char* NP_GetPluginVersion() {
  auto f = Entry<const char* (*)()>("NP_GetPluginVersion");
  return f ? f() : "";
}

}  // extern "C"
