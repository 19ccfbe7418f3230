// Getters shared by the simulated operations that read one field of an
// object behind a handle. Each holds sim::Mutex() while reading and answers
// the fallback (0, or no string) for a handle of another type.
#ifndef ORVANE_SIM_FIELDS_H
#define ORVANE_SIM_FIELDS_H

#include <mutex>
#include <string>
#include <vector>

#include "sim/core.h"

namespace sim {

// The field as a new middleware string, 0 when empty.
template <class T>
MwHandle StringField(MwHandle handle, std::string T::*field) {
  auto o = Find<T>(handle);
  if (!o) return 0;
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return NewStringHandleOrNull((*o).*field);
}

template <class T>
int32_t IntField(MwHandle handle, int32_t T::*field, int32_t fallback = 0) {
  auto o = Find<T>(handle);
  if (!o) return fallback;
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  return (*o).*field;
}

template <class T>
void SetIntField(MwHandle handle, int32_t T::*field, int32_t value) {
  auto o = Find<T>(handle);
  if (!o) return;
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  (*o).*field = value;
}

// The field as a new list of middleware strings, 0 when it holds none.
template <class T>
MwHandle StringListField(MwHandle handle, std::vector<std::string> T::*field) {
  auto o = Find<T>(handle);
  if (!o) return 0;
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  const std::vector<std::string>& strings = (*o).*field;
  return strings.empty() ? 0 : NewStringList(strings);
}

}  // namespace sim

#endif
