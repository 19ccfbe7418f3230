// orvane-run: runs an HbbTV application in QtWebKit with the Orvane plug-in
// loaded and the receiver simulator, linked into this process, as the
// middleware the plug-in calls.
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QTimer>
#include <QVector>
#include <QXmlStreamWriter>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <string>
#include <unistd.h>


#include "runner/log.h"
#include "runner/options.h"
#include "runner/real_media.h"
#include "runner/runner.h"
#include "runner/video_plane.h"
#include "runner/watchdog.h"
#include "runner/webdriver.h"
#include "sim/description.h"
#include "sim/media_sim.h"
#include "sim/sim.h"

namespace {

// The plumbing of reading strings and lists, giving handles back and
// painting (each paint of the page gives the middleware a rectangle).
bool Plumbing(const std::string& op) {
  return op == "MwStringGetSize" || op == "MwStringIsValid" || op == "MwStringCopyTo" ||
         op == "MwListGetCount" || op == "MwListGetItem" || op == "MwObjectRelease" ||
         op == "MwVideoSetPaintRect";
}

struct PageResult {
  QString name;  // the page as given
  int code = 0;
  QString why;
  double seconds = 0;
  QStringList log;
};

// The pages one after the other, each on a fresh receiver in a window of
// its own, all in one run of the event loop (the browser engine's timers
// do not survive leaving it); the loop ends after the last.
class Sequence : public QObject {
 public:
  Sequence(const Options& options, QStringList targets, Watchdog* watchdog)
      : options_(options), targets_(std::move(targets)), watchdog_(watchdog) {}
  const QVector<PageResult>& Results() const { return results_; }
  // The page's script has held the browser's thread past its time limit (on
  // the watchdog's thread; the browser's is stuck in the script): the page
  // failed.
  void Hung() {
    if (results_.isEmpty()) return;
    QString why = QString("the page's script did not return within the time limit of %1 s")
                      .arg(options_.timeout_ms / 1000.0);
    runlog::Line("run", why);
    Record(1, why);
  }
  void Next() {
    watchdog_->Arm(0);
    if (targets_.isEmpty()) return QApplication::exit(0);
    if (!options_.autostart) SetTarget(&options_, targets_.first());
    targets_.removeFirst();
    results_ << PageResult();
    PageResult& result = results_.last();
    result.name = options_.autostart ? QString("AUTOSTART application") : options_.target;
    runlog::Capture(&result.log);
    clock_.start();
    sim::Reset();
    if (!options_.receiver.isEmpty()) sim::LoadDescription(options_.receiver.toStdString(), nullptr);
    runlog::Line("run", options_.receiver.isEmpty() ? "receiver: built-in" : "receiver " + options_.receiver);
    if (options_.clock_rate >= 0) sim::SetClockRate(options_.clock_rate);
    Runner* runner = new Runner(options_);
    watchdog_->Arm(options_.timeout_ms);
    connect(runner, &Runner::finished, this, [this, runner](int code) { Done(runner, code); });
    if (!runner->Start()) Done(runner, 3);
  }

 private:
  // The page's result; its log is complete.
  void Record(int code, const QString& why) {
    PageResult& result = results_.last();
    result.code = code;
    result.why = why;
    result.seconds = clock_.nsecsElapsed() / 1e9;
    runlog::Capture(nullptr);
  }
  void Done(Runner* runner, int code) {
    Record(code, runner->Why());
    runner->deleteLater();
    QTimer::singleShot(0, this, [this] { Next(); });
  }
  Options options_;
  QStringList targets_;
  Watchdog* watchdog_;
  QVector<PageResult> results_;
  QElapsedTimer clock_;
};

// The exit code of a run: one page's own, or the first failure's of several.
int ExitCode(const QVector<PageResult>& results) {
  int code = 0;
  for (const PageResult& r : results)
    if (r.code != 0 && r.code != 77 && code == 0) code = r.code;
  if (results.size() == 1) code = results[0].code;
  return code;
}

// JUnit XML: one test case per page; exit codes 0 pass, 77 skipped, others fail.
bool WriteJUnit(const QString& path, const QVector<PageResult>& results) {
  QFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate)) return false;
  int failures = 0, skipped = 0;
  double total = 0;
  for (const PageResult& r : results) {
    failures += r.code != 0 && r.code != 77;
    skipped += r.code == 77;
    total += r.seconds;
  }
  QXmlStreamWriter xml(&file);
  xml.setAutoFormatting(true);
  xml.writeStartDocument();
  xml.writeStartElement("testsuites");
  xml.writeStartElement("testsuite");
  xml.writeAttribute("name", "orvane-run");
  xml.writeAttribute("tests", QString::number(results.size()));
  xml.writeAttribute("failures", QString::number(failures));
  xml.writeAttribute("errors", "0");
  xml.writeAttribute("skipped", QString::number(skipped));
  xml.writeAttribute("time", QString::number(total, 'f', 3));
  for (const PageResult& r : results) {
    xml.writeStartElement("testcase");
    xml.writeAttribute("classname", "orvane-run");
    xml.writeAttribute("name", r.name);
    xml.writeAttribute("time", QString::number(r.seconds, 'f', 3));
    QString message = QString("exit code %1: %2").arg(r.code).arg(r.why);
    if (r.code == 77) {
      xml.writeStartElement("skipped");
      xml.writeAttribute("message", r.why);
      xml.writeEndElement();
    } else if (r.code != 0) {
      xml.writeStartElement("failure");
      xml.writeAttribute("message", message);
      xml.writeCharacters(r.log.join('\n'));
      xml.writeEndElement();
    }
    xml.writeTextElement("system-out", r.log.join('\n'));
    xml.writeEndElement();
  }
  xml.writeEndElement();
  xml.writeEndElement();
  xml.writeEndDocument();
  return file.error() == QFile::NoError;
}

}  // namespace

int main(int argc, char** argv) {
  QStringList arguments;
  for (int i = 0; i < argc; i++) arguments << QString::fromLocal8Bit(argv[i]);
  // The help (printed by the parser, which exits) names the program through
  // an application object: asked for help, one exists first.
  QStringList help_flags = {"-h", "--help", "-?", "--help-all"};
  std::unique_ptr<QCoreApplication> for_help;
  for (const QString& flag : help_flags)
    if (arguments.contains(flag) && !for_help) for_help = std::make_unique<QCoreApplication>(argc, argv);
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

  std::string why;
  sim::Reset();
  if (!options.receiver.isEmpty() && !sim::LoadDescription(options.receiver.toStdString(), &why)) {
    fprintf(stderr, "orvane-run: %s: %s\n", options.receiver.toLocal8Bit().constData(), why.c_str());
    return 3;
  }
  runlog::Start();
  QApplication app(argc, argv);
  app.setQuitOnLastWindowClosed(false);  // one page's window goes before the next comes
  RealMedia media;
  sim::SetMediaEngine(RealMedia::Available() ? &media : nullptr);
  const QString calls = options.calls;
  sim::SetCallObserver([calls](const sim::Call& call) {
    if (calls == "all" || (calls == "app" && !Plumbing(call.op))) runlog::Call(call);
    VideoPlane::Observe(call);
  });
  if (options.webdriver_port >= 0) {
    // Sessions come and go until the process is stopped.
    WebDriver driver(options);
    int port = driver.Listen(options.webdriver_port);
    if (port < 0) {
      fprintf(stderr, "orvane-run: cannot serve WebDriver on 127.0.0.1:%d\n", options.webdriver_port);
      _exit(3);
    }
    printf("orvane-run: WebDriver on http://127.0.0.1:%d\n", port);
    fflush(stdout);
    app.exec();
    _exit(0);
  }
  Sequence* sequence = nullptr;
  // A runaway script: the run ends there, its report written, without
  // waiting for the browser's thread.
  Watchdog watchdog([&sequence, &options] {
    sequence->Hung();
    const QVector<PageResult>& results = sequence->Results();
    if (!options.junit.isEmpty()) WriteJUnit(options.junit, results);
    fflush(stdout);
    _exit(ExitCode(results));
  });
  QTimer beat;
  QObject::connect(&beat, &QTimer::timeout, [&watchdog] { watchdog.Beat(); });
  beat.start(100);
  Sequence pages(options, options.autostart ? QStringList{QString()} : options.targets, &watchdog);
  sequence = &pages;
  QTimer::singleShot(0, &pages, [&pages] { pages.Next(); });
  app.exec();
  const QVector<PageResult>& results = pages.Results();
  sim::SetCallObserver(nullptr);
  sim::SetMediaEngine(nullptr);
  int code = ExitCode(results);
  if (!options.junit.isEmpty() && !WriteJUnit(options.junit, results)) {
    fprintf(stderr, "orvane-run: cannot write %s\n", options.junit.toLocal8Bit().constData());
    if (code == 0) code = 3;
  }
  fflush(stdout);
  // The browser does not shut plug-ins down at exit; leave without running
  // static destructors under the simulator's thread.
  _exit(code);
}
