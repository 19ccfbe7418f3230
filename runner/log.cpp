#include "runner/log.h"

#include <QElapsedTimer>
#include <QStringList>
#include <cstdio>
#include <mutex>

#include "sim/sim.h"
#include "sim/receiver_sim.h"

namespace runlog {
namespace {

QElapsedTimer& Clock() {
  static QElapsedTimer clock;
  return clock;
}

std::mutex& Out() {
  static std::mutex mu;
  return mu;
}

// What an event's handle argument names, for the strings and channels that
// events carry: `288 "msg-1"`, `263 (Orvane Two)`. Handles start at 256, so
// the small numbers events also carry (states, errors) are left alone.
QString Annotated(const std::string& arg) {
  QString text = QString::fromStdString(arg);
  bool number = false;
  unsigned long handle = text.toULong(&number);
  if (!number || handle < 256) return text;
  std::string label = sim::HandleLabel(static_cast<MwHandle>(handle));
  return label.empty() ? text : text + " " + QString::fromStdString(label);
}

QStringList* g_capture = nullptr;  // under Out()

}  // namespace

void Start() { Clock().start(); }

void Capture(QStringList* lines) {
  std::lock_guard<std::mutex> lock(Out());
  g_capture = lines;
}

QStringList Captured() {
  std::lock_guard<std::mutex> lock(Out());
  return g_capture ? *g_capture : QStringList();
}

void Line(const char* what, const QString& text) {
  double t = Clock().isValid() ? Clock().nsecsElapsed() / 1e9 : 0.0;
  QByteArray bytes = text.toUtf8();
  std::lock_guard<std::mutex> lock(Out());
  fprintf(stdout, "[%8.3f] %-7s %s\n", t, what, bytes.constData());
  fflush(stdout);
  if (g_capture) *g_capture << QString::asprintf("[%8.3f] %-7s ", t, what) + text;
}

void Call(const sim::Call& call) {
  QString op = QString::fromStdString(call.op);
  const char* what = "call";
  bool event = op.startsWith("event:");
  if (event) {
    what = "event";
    op = op.mid(6);
  }
  QStringList args;
  // One line per call: texts that hold line breaks (an AIT, a stream-event
  // description) are shown with them escaped.
  for (const std::string& a : call.args)
    args << (event ? Annotated(a) : QString::fromStdString(a)).replace('\r', "").replace('\n', "\\n");
  Line(what, op + "(" + args.join(", ") + ")");
}

}  // namespace runlog
