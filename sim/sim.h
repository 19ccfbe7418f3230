// The receiver simulator: controls for tests and hosts.
//
// The simulator implements the whole middleware contract (src/middleware/)
// over an in-memory receiver. Handles name reference-counted objects; every
// call is logged; any operation's result can be forced; events are fired
// through the table the plug-in registered, from the caller's thread or from
// the simulator's own thread.
#ifndef ORVANE_SIM_SIM_H
#define ORVANE_SIM_SIM_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "middleware/types.h"

namespace sim {

// A fresh default receiver: objects, log, forced results and pending events
// are dropped. Registered event callbacks are kept (the plug-in registers
// them once per process).
void Reset();

// ---- ownership checks --------------------------------------------------------
// References handed out (returned handles, handles passed in events) that the
// plug-in has not given back with MwObjectRelease.
size_t HeldHandles();
std::string HeldHandlesReport();  // one line per held handle: type and count
// MwObjectRelease of an unknown handle or of one with no reference left.
size_t ReleaseErrors();
// Strict ownership: such a release prints what it released and aborts the
// process at once (the unit suites run so). Also on when the environment
// sets ORVANE_SIM_STRICT (to anything but 0).
void SetStrictOwnership(bool on);
// Runs `raise` under the simulator's lock when the plug-in holds `handle`
// (false, nothing run, when it does not): an event raised so cannot cross
// the plug-in's release of the object it names.
bool RaiseWhileHeld(MwHandle handle, const std::function<void()>& raise);

// ---- call log -------------------------------------------------------------------
struct Call {
  std::string op;                 // "MwBroadcastSetChannel", or "event:Broadcast_onPlayStateChange"
  std::vector<std::string> args;  // each argument as text; MwString as its characters, null as "null"
};
std::vector<Call> Calls();
std::vector<Call> CallsTo(const std::string& op);
size_t CountCalls(const std::string& op);
void ClearCalls();
// Called (on the calling thread) after each logged call or event, e.g. to print it.
void SetCallObserver(std::function<void(const Call&)> observer);

// ---- forcing results ----------------------------------------------------------
// Makes `op` return `value` from now on (for handle results 0 is "none").
void Force(const std::string& op, int64_t value);
// Makes a string-returning `op` return a new middleware string with `text`,
// or 0 when text is null.
void ForceString(const std::string& op, const char* text);
void Unforce(const std::string& op);

// ---- handles for tests ------------------------------------------------------------
// A new middleware string reference (counts as held until released).
MwHandle NewString(const std::string& text);
// A middleware string that reports itself as not holding a text.
MwHandle NewInvalidString();
// One more reference to an existing handle, e.g. to pass it in an event.
MwHandle Ref(MwHandle handle);
// Type name of the object behind a handle ("" when unknown).
std::string TypeOf(MwHandle handle);
// Outstanding references to one handle.
int RefsOf(MwHandle handle);

// ---- events -----------------------------------------------------------------------
// The table the plug-in registered (null before NP_Initialize).
const MwEventCallbacks* Callbacks();
// Runs fn on the simulator's own thread, after `delay_ms`.
void OnSimThread(std::function<void()> fn, int delay_ms = 0);
// Waits until the simulator's thread has run everything scheduled so far
// that is due within `horizon_ms` from now.
void WaitIdle(int horizon_ms = 1000);
// Runs the receiver's clock at `rate` receiver seconds per real second from
// now (0: it stands still, as it does by default).
void SetClockRate(int32_t rate);
// Receiver behaviour over time (channel changes raising events, ...): on by
// default; tests that drive events by hand turn it off.
void SetAutoEvents(bool on);
bool AutoEvents();

}  // namespace sim

#endif
