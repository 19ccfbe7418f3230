// The runner's output: one timestamped line per middleware call, event,
// console message, key and run step. Safe from any thread.
#ifndef ORVANE_RUNNER_LOG_H
#define ORVANE_RUNNER_LOG_H

#include <QString>
#include <QStringList>

#include "sim/sim.h"

namespace runlog {

void Start();  // time zero
// "what" is a short column tag: "call", "event", "console", "key", "run", ...
void Line(const char* what, const QString& text);
// A middleware call or event as the simulator reports it.
void Call(const sim::Call& call);
// Every line from now on is also appended to `lines` (null: no longer).
void Capture(QStringList* lines);
// A copy of the lines captured so far (safe while lines come).
QStringList Captured();

}  // namespace runlog

#endif
