/* A process that knows nothing of Orvane: it loads the plug-in as a browser
   does. Only a preloaded simulator (LD_PRELOAD=libnporvane-sim.so) lets the
   plug-in's middleware symbols resolve; it prints the device id of the
   receiver that ORVANE_RECEIVER describes. */
#include <dlfcn.h>
#include <stdint.h>
#include <stdio.h>

typedef uint32_t Handle;

int main(int argc, char** argv) {
  if (argc < 2 || !dlopen(argv[1], RTLD_NOW)) {
    fprintf(stderr, "the plug-in does not load: %s\n", dlerror());
    return 1;
  }
  Handle (*open)(void*) = (Handle (*)(void*))dlsym(RTLD_DEFAULT, "MwConfigurationOpen");
  Handle (*local)(Handle) = (Handle (*)(Handle))dlsym(RTLD_DEFAULT, "MwConfigGetLocalSystem");
  Handle (*device)(Handle) = (Handle (*)(Handle))dlsym(RTLD_DEFAULT, "MwLocalSystemGetDeviceId");
  void (*copy)(Handle, char*) = (void (*)(Handle, char*))dlsym(RTLD_DEFAULT, "MwStringCopyTo");
  if (!open || !local || !device || !copy) return 1;
  char text[128] = "";
  copy(device(local(open(NULL))), text);
  printf("%s\n", text);
  return 0;
}
