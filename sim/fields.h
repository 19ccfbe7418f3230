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
  return Answer<T>(handle, MwHandle{0}, [field](T& o) { return NewStringHandleOrNull(o.*field); });
}

template <class T>
int32_t IntField(MwHandle handle, int32_t T::*field, int32_t fallback = 0) {
  return Answer<T>(handle, fallback, [field](T& o) { return o.*field; });
}

template <class T>
void SetIntField(MwHandle handle, int32_t T::*field, int32_t value) {
  Update<T>(handle, [field, value](T& o) { o.*field = value; });
}

// The field as a new list of middleware strings, 0 when it holds none.
template <class T>
MwHandle StringListField(MwHandle handle, std::vector<std::string> T::*field) {
  return Answer<T>(handle, MwHandle{0}, [field](T& o) {
    const std::vector<std::string>& strings = o.*field;
    return strings.empty() ? MwHandle{0} : NewStringList(strings);
  });
}

}  // namespace sim

#endif
