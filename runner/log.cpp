#include "runner/log.h"

#include <QElapsedTimer>
#include <QStringList>
#include <cstdio>
#include <mutex>

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

}  // namespace

void Start() { Clock().start(); }

void Line(const char* what, const QString& text) {
  double t = Clock().isValid() ? Clock().nsecsElapsed() / 1e9 : 0.0;
  QByteArray bytes = text.toUtf8();
  std::lock_guard<std::mutex> lock(Out());
  fprintf(stdout, "[%8.3f] %-7s %s\n", t, what, bytes.constData());
  fflush(stdout);
}

void Call(const sim::Call& call) {
  QString op = QString::fromStdString(call.op);
  const char* what = "call";
  if (op.startsWith("event:")) {
    what = "event";
    op = op.mid(6);
  }
  QStringList args;
  // One line per call: texts that hold line breaks (an AIT, a stream-event
  // description) are shown with them escaped.
  for (const std::string& a : call.args)
    args << QString::fromStdString(a).replace('\r', "").replace('\n', "\\n");
  Line(what, op + "(" + args.join(", ") + ")");
}

}  // namespace runlog
