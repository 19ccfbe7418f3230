// Allocation of the plug-in's own records (handle-list records, buffers that
// stay on the plug-in's side). They come from the C allocator.
#ifndef ORVANE_UTILS_RECORD_ALLOC_H
#define ORVANE_UTILS_RECORD_ALLOC_H

#include <cstddef>

void* RecordAlloc(size_t size);  // malloc; null on failure
void RecordFree(void* p);        // free; null is ignored

// A zeroed record of type T (a plain struct), or null.
template <class T>
T* RecordNew() {
  T* r = static_cast<T*>(RecordAlloc(sizeof(T)));
  if (r) *r = T();
  return r;
}

#endif
