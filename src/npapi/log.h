// The plug-in's one diagnostic form: "ERROR [function:line] message" on stdout.
#ifndef ORVANE_NPAPI_LOG_H
#define ORVANE_NPAPI_LOG_H

#include <cstdio>

#define ORV_ERROR(function, line, format, ...) \
  (printf("ERROR [%s:%d] " format, function, line, ##__VA_ARGS__), fflush(stdout))

#endif
