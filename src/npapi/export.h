// Marks the names the library exports: the NPAPI entry points and the
// functions and globals the middleware calls. Everything else is hidden.
#ifndef ORVANE_NPAPI_EXPORT_H
#define ORVANE_NPAPI_EXPORT_H

#define ORV_EXPORT extern "C" __attribute__((visibility("default")))

#endif
