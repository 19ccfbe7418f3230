// What a plug-in library that stands in front of another does: it opens the
// other (its path in an environment variable) and hands the browser's calls
// on to that library's entry points.
#ifndef ORVANE_RUNNER_LOADER_FORWARD_H
#define ORVANE_RUNNER_LOADER_FORWARD_H

#include <dlfcn.h>

#include <cstdio>
#include <cstdlib>

#include "npapi/npapi.h"

namespace forward {

// The library whose path the environment variable `variable` holds, or null
// (said on stderr, as `who`).
inline void* Open(const char* variable, const char* who) {
  const char* path = getenv(variable);
  void* lib = path ? dlopen(path, RTLD_LAZY | RTLD_LOCAL) : nullptr;
  if (!lib) fprintf(stderr, "%s: cannot open %s (%s): %s\n", who, path ? path : "nothing", variable, dlerror());
  return lib;
}

template <class F>
F Entry(void* lib, const char* name) {
  return lib ? reinterpret_cast<F>(dlsym(lib, name)) : nullptr;
}

inline NPError Initialize(void* lib, NPNetscapeFuncs* browser, NPPluginFuncs* plugin) {
  auto f = Entry<NPError (*)(NPNetscapeFuncs*, NPPluginFuncs*)>(lib, "NP_Initialize");
  return f ? f(browser, plugin) : static_cast<NPError>(NPERR_MODULE_LOAD_FAILED_ERROR);
}

inline NPError Shutdown(void* lib) {
  auto f = Entry<NPError (*)()>(lib, "NP_Shutdown");
  return f ? f() : static_cast<NPError>(NPERR_NO_ERROR);
}

inline const char* MimeDescription(void* lib) {
  auto f = Entry<const char* (*)()>(lib, "NP_GetMIMEDescription");
  return f ? f() : "";
}

inline NPError GetValue(void* lib, void* future, NPPVariable variable, void* value) {
  auto f = Entry<NPError (*)(void*, NPPVariable, void*)>(lib, "NP_GetValue");
  return f ? f(future, variable, value) : static_cast<NPError>(NPERR_GENERIC_ERROR);
}

inline const char* Version(void* lib) {
  auto f = Entry<const char* (*)()>(lib, "NP_GetPluginVersion");
  return f ? f() : "";
}

}  // namespace forward

#endif
