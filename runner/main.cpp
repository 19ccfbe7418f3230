// orvane-run: runs an HbbTV application in QtWebKit with the Orvane plug-in
// loaded and the receiver simulator, linked into this process, as the
// middleware the plug-in calls.
#include <QApplication>
#include <QFileInfo>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>

#include "runner/log.h"
#include "runner/options.h"
#include "runner/runner.h"
#include "runner/video_plane.h"
#include "sim/description.h"
#include "sim/sim.h"

namespace {

// The plumbing of reading strings and lists, giving handles back and
// painting (each paint of the page gives the middleware a rectangle).
bool Plumbing(const std::string& op) {
  return op == "MwStringGetSize" || op == "MwStringIsValid" || op == "MwStringCopyTo" ||
         op == "MwListGetCount" || op == "MwListGetItem" || op == "MwObjectRelease" ||
         op == "MwVideoSetPaintRect";
}

}  // namespace

int main(int argc, char** argv) {
  QStringList arguments;
  for (int i = 0; i < argc; i++) arguments << QString::fromLocal8Bit(argv[i]);
  Options options;
  QString error;
  if (!ParseOptions(arguments, &options, &error)) {
    fprintf(stderr, "orvane-run: %s\n", error.toLocal8Bit().constData());
    return 3;
  }
  // The browser finds plug-ins through this variable: it finds the runner's
  // loader only, which opens the plug-in named by ORVANE_PLUGIN.
  QString plugin = options.plugin.isEmpty() ? QString(ORVANE_PLUGIN_FILE) : options.plugin;
  if (!QFileInfo(plugin).isFile()) {
    fprintf(stderr, "orvane-run: no plug-in at %s\n", plugin.toLocal8Bit().constData());
    return 3;
  }
  setenv("ORVANE_PLUGIN", QFileInfo(plugin).absoluteFilePath().toLocal8Bit().constData(), 1);
  setenv("QTWEBKIT_PLUGIN_PATH", ORVANE_LOADER_DIR, 1);
  unsetenv("MOZ_PLUGIN_PATH");
  if (!getenv("QT_QPA_PLATFORM")) setenv("QT_QPA_PLATFORM", "xcb", 1);
  if (!getenv("DISPLAY") && qgetenv("QT_QPA_PLATFORM") == "xcb") {
    fprintf(stderr, "orvane-run: no X display; run it under xvfb-run -a\n");
    return 3;
  }

  runlog::Start();
  sim::Reset();
  if (!options.receiver.isEmpty()) {
    std::string why;
    if (!sim::LoadDescription(options.receiver.toStdString(), &why)) {
      fprintf(stderr, "orvane-run: %s: %s\n", options.receiver.toLocal8Bit().constData(), why.c_str());
      return 3;
    }
    runlog::Line("run", "receiver " + options.receiver);
  } else {
    runlog::Line("run", "receiver: built-in");
  }
  if (options.clock_rate >= 0) sim::SetClockRate(options.clock_rate);

  QApplication app(argc, argv);
  Runner runner(options);
  const QString calls = options.calls;
  sim::SetCallObserver([calls](const sim::Call& call) {
    if (calls == "all" || (calls == "app" && !Plumbing(call.op))) runlog::Call(call);
    VideoPlane::Observe(call);
  });
  if (!runner.Start()) return 3;
  int code = app.exec();
  sim::SetCallObserver(nullptr);
  fflush(stdout);
  // The browser does not shut plug-ins down at exit; leave without running
  // static destructors under the simulator's thread.
  _exit(code);
}
