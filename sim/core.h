// Simulator internals shared by the implementations of the middleware
// operations: the handle registry, the call log, forced results, events.
#ifndef ORVANE_SIM_CORE_H
#define ORVANE_SIM_CORE_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <mutex>
#include <string>
#include <type_traits>
#include <vector>

#include "middleware/types.h"
#include "sim/sim.h"

namespace sim {

// Every simulator object that a handle can name.
struct Object {
  virtual ~Object() = default;
  virtual const char* Type() const = 0;
};

std::recursive_mutex& Mutex();

// Registers an object. A persistent object (part of the receiver: channels,
// programmes...) lives on when no reference is out and the result carries no
// reference. A transient one (strings, lists, instances made for the caller)
// is returned with one reference and goes away with its last release.
MwHandle Register(std::shared_ptr<Object> object, bool persistent);
// One more reference handed out to the plug-in; 0 stays 0.
MwHandle Give(MwHandle handle);
// For the handles the plug-in holds at most once (programmes, searches,
// preferences): a new reference when the plug-in holds none, else the
// handle is only lent for the call. 0 for an unknown handle.
MwHandle GiveUnlessHeld(MwHandle handle);
std::shared_ptr<Object> Lookup(MwHandle handle);
template <class T>
std::shared_ptr<T> Find(MwHandle handle) {
  return std::dynamic_pointer_cast<T>(Lookup(handle));
}
// Under the simulator's lock: `answer(object)` for the T that `handle`
// names, `none` when it names no T.
template <class T, class R, class F>
R Answer(MwHandle handle, R none, F answer) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  std::shared_ptr<T> object = Find<T>(handle);
  return object ? static_cast<R>(answer(*object)) : none;
}
// Under the lock: `change(object)` for the T that `handle` names; false
// when it names none.
template <class T, class F>
bool Update(MwHandle handle, F change) {
  std::lock_guard<std::recursive_mutex> lock(Mutex());
  std::shared_ptr<T> object = Find<T>(handle);
  if (object) change(*object);
  return object != nullptr;
}
// The handle of a registered object (0 when it is not registered).
MwHandle HandleOf(const Object* object);

// ---- middleware strings ----
struct StringObject : Object {
  std::string text;
  bool valid = true;
  const char* Type() const override { return "string"; }
};
MwHandle NewStringHandle(const std::string& text);  // one reference
MwHandle NewStringHandleOrNull(const std::string& text);  // 0 for ""
std::string Text(const MwString* s);  // "" for null

// ---- lists ----
// How a list's elements are handed out by MwListGetItem.
enum class Lending {
  kGive,           // a new reference on each read
  kGiveUnlessHeld, // as GiveUnlessHeld (programmes)
  kKeep,           // lent: the elements stay the middleware's (counted-only lists)
};
struct ListObject : Object {
  std::vector<MwHandle> items;       // element handles
  Lending lending = Lending::kGive;
  std::vector<std::string> strings;  // elements of a string list
  bool of_strings = false;
  const char* Type() const override { return "list"; }
  int32_t Count() const { return static_cast<int32_t>(of_strings ? strings.size() : items.size()); }
};
MwHandle NewList(std::vector<MwHandle> items, Lending lending = Lending::kGive);  // one reference
MwHandle NewStringList(std::vector<std::string> strings);

// ---- call log ----
std::string ArgText(int32_t v);
std::string ArgText(uint32_t v);
std::string ArgText(int64_t v);
std::string ArgText(double v);
std::string ArgText(const MwString* s);
std::string ArgText(const void* p);
std::string ArgText(const char* s);
inline std::string ArgText(uint8_t v) { return ArgText(static_cast<uint32_t>(v)); }
inline std::string ArgText(int16_t v) { return ArgText(static_cast<int32_t>(v)); }
inline std::string ArgText(float v) { return ArgText(static_cast<double>(v)); }
inline std::string ArgText(MwString* s) { return ArgText(static_cast<const MwString*>(s)); }
inline std::string ArgText(const MwRect* r) {
  if (!r) return "null";
  char b[64];
  snprintf(b, sizeof b, "[%d,%d,%d,%d]", r->left, r->top, r->right, r->bottom);
  return b;
}
void Log(const char* op, std::vector<std::string> args);
template <class... A>
void LogCall(const char* op, const A&... a) {
  Log(op, {ArgText(a)...});
}
// True when a result is forced for `op`; *value is then the result.
bool Forced(const char* op, int64_t* value);

// Logs the call and returns early with a forced result, if any.
#define SIM_CALL(Ret, ...)                                                    \
  do {                                                                        \
    ::sim::LogCall(__func__, ##__VA_ARGS__);                                  \
    int64_t forced_;                                                          \
    if (::sim::Forced(__func__, &forced_)) return static_cast<Ret>(forced_);  \
  } while (0)
#define SIM_VOID(...) ::sim::LogCall(__func__, ##__VA_ARGS__)

// ---- events ----
// Calls an entry of the plug-in's table (if registered and present) after
// logging it as "event:<name>".
template <class Member, class... A>
void Emit(const char* name, Member member, A... args) {
  const MwEventCallbacks* cb = Callbacks();
  Log((std::string("event:") + name).c_str(), {ArgText(args)...});
  if (cb && cb->*member) (cb->*member)(args...);
}
#define SIM_EMIT(entry, ...) ::sim::Emit(#entry, &MwEventCallbacks::entry, ##__VA_ARGS__)

// Called by Reset so that each subsystem can drop its runtime state.
void ResetSubsystems();

}  // namespace sim

#endif
