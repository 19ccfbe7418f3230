// Under AddressSanitizer: QtWebKit opens NPAPI plug-ins with RTLD_DEEPBIND,
// which the sanitizer's runtime refuses (it stops the process). The runner
// then exports a dlopen of its own, which the browser's and the loader's
// calls find first, and opens without that flag: the plug-in's symbols bind
// as any library's do.
#if defined(__SANITIZE_ADDRESS__)
#include <dlfcn.h>

extern "C" __attribute__((visibility("default"))) void* dlopen(const char* file, int mode) {
  using Open = void* (*)(const char*, int);
  static Open next = reinterpret_cast<Open>(dlsym(RTLD_NEXT, "dlopen"));
  return next(file, mode & ~RTLD_DEEPBIND);
}
#endif
