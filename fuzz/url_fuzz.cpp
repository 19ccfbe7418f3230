// URL resolution of arbitrary URLs against arbitrary page addresses.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

#include "fuzz/start.h"
#include "host/host.h"
#include "npapi/browser.h"
#include "utils/url.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  StartPlugin();
  // The input is "page address \n url"; the url's bytes are not terminated.
  const char* split = static_cast<const char*>(memchr(data, '\n', size));
  size_t href_length = split ? static_cast<size_t>(split - reinterpret_cast<const char*>(data)) : size / 2;
  host::PageSpec spec;
  spec.href.assign(reinterpret_cast<const char*>(data), href_length);
  NPP npp = host::NewInstance(host::NewPage(spec));
  size_t rest = size - href_length - (split ? 1 : 0);
  char* url = static_cast<char*>(malloc(rest ? rest : 1));
  memcpy(url, data + size - rest, rest);
  MwString record{static_cast<uint32_t>(rest), url};
  if (NP_UtilsResolveUrl(npp, &record)) NPN_MemFree(const_cast<char*>(record.data));
  free(url);
  host::UnloadPages();
  CheckAccounting();
  return 0;
}
