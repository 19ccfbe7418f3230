#include "utils/record_alloc.h"

#include <cstdlib>

void* RecordAlloc(size_t size) { return malloc(size); }
void RecordFree(void* p) { free(p); }
