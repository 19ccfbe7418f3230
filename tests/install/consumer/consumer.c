/* A middleware's build against an installed Orvane: it uses the contract
   headers and the simulator library, loads the installed plug-in the way a
   browser does and asks it for its MIME types and a DRM agent's handle. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>

#include <middleware/middleware.h>

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  void* plugin = dlopen(argv[1], RTLD_NOW);
  if (!plugin) {
    fprintf(stderr, "%s\n", dlerror());
    return 1;
  }
  const char* (*mime)(void) = (const char* (*)(void))dlsym(plugin, "NP_GetMIMEDescription");
  if (!mime || !strstr(mime(), "video/broadcast")) return 1;
  MwHandle agent = MwDrmAgentCreate(NULL); /* the simulator answers as the middleware */
  printf("plug-in loaded; middleware handle %u\n", (unsigned)agent);
  MwObjectRelease(agent);
  return agent ? 0 : 1;
}
