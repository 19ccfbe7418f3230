#include "config/status_object.h"

const char* const kStatusMethodNames[2] = {"addEventListener", "removeEventListener"};
