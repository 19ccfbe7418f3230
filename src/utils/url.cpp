#include "utils/url.h"

#include <cstring>

#include "npapi/browser.h"
#include "utils/convert.h"

int NP_UtilsResolveUrl(NPP instance, MwString* url) {
  uint32_t i = 0;
  while (i < url->length && url->data[i] >= 'a' && url->data[i] <= 'z') i++;
  if (i < url->length && url->data[i] == ':') return 0;

  NPObject* window = nullptr;
  if (NPN_GetValue(instance, NPNVWindowNPObject, &window) != NPERR_NO_ERROR || !window) return 0;
  NPVariant location;
  SetVoid(&location);
  bool got = NPN_GetProperty(instance, window, g_id_location, &location);
  NPN_ReleaseObject(window);
  if (!got || location.type != NPVariantType_Object) {
    if (got) NPN_ReleaseVariantValue(&location);
    return 0;
  }
  int replaced = 0;
  NPVariant href;
  SetVoid(&href);
  if (NPN_GetProperty(instance, location.value.objectValue, g_id_href, &href) &&
      href.type == NPVariantType_String) {
    const char* page = href.value.stringValue.UTF8Characters;
    uint32_t cut = href.value.stringValue.UTF8Length;
    while (cut > 0 && page[cut - 1] != '/') cut--;
    // An address without any "/" gives no directory to resolve against.
    if (cut > 0) {
      char* absolute = static_cast<char*>(NPN_MemAlloc(cut + url->length + 1));
      if (absolute) {
        memcpy(absolute, page, cut);
        if (url->length) memcpy(absolute + cut, url->data, url->length);
        absolute[cut + url->length] = '\0';
        url->data = absolute;
        url->length = cut + url->length;
        replaced = 1;
      }
    }
  }
  NPN_ReleaseVariantValue(&href);
  NPN_ReleaseVariantValue(&location);
  return replaced;
}
