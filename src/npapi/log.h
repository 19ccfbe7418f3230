// The plug-in's one diagnostic form: "ERROR [function:code] message" on stdout.
// The function names and numbers are fixed codes that receivers' log
// filters know (NPP_New 412, StyleSetRect 1207, ...), not this source's
// lines: they stay as they are when the code moves.
#ifndef ORVANE_NPAPI_LOG_H
#define ORVANE_NPAPI_LOG_H

#include <cstdio>

#define ORV_ERROR(function, line, format, ...) \
  (printf("ERROR [%s:%d] " format, function, line, ##__VA_ARGS__), fflush(stdout))

#endif
