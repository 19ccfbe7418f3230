// Making page-relative URLs absolute against the page's own address.
#ifndef ORVANE_UTILS_URL_H
#define ORVANE_UTILS_URL_H

#include "middleware/types.h"
#include "npapi/npapi.h"

// Returns 1 when `url` was replaced by a new NPN_MemAlloc'ed, NUL-terminated
// absolute URL (the caller frees it with NPN_MemFree), 0 when left as it was:
// a URL that starts with lower-case letters and ":" counts as absolute.
int NP_UtilsResolveUrl(NPP instance, MwString* url);

#endif
