// The runner's output: one timestamped line per middleware call, event,
// console message, key and run step. Safe from any thread.
#ifndef ORVANE_RUNNER_LOG_H
#define ORVANE_RUNNER_LOG_H

#include <QString>

#include "sim/sim.h"

namespace runlog {

void Start();  // time zero
// "what" is a short column tag: "call", "event", "console", "key", "run", ...
void Line(const char* what, const QString& text);
// A middleware call or event as the simulator reports it.
void Call(const sim::Call& call);

}  // namespace runlog

#endif
