#include "runner/options.h"

#include <QColor>
#include <QCommandLineParser>
#include <QFileInfo>
#include <QUrl>

bool ParseOptions(const QStringList& arguments, Options* o, QString* error) {
  QCommandLineParser p;
  p.setApplicationDescription(
      "Runs an HbbTV application in QtWebKit with the Orvane plug-in and the receiver simulator\n"
      "as its middleware, printing every middleware call, event and console message.");
  p.addHelpOption();
  p.addPositionalArgument("application", "An HTML page, an http://127.0.0.1 URL or an XML AIT file (.xml, .ait, .aitx);\n"
                                         "several run one after the other, each on a fresh receiver; none with --autostart.",
                          "application...");
  QCommandLineOption junit("junit", "Write a JUnit XML report: one test case per page, with its result, duration "
                                    "and, for a failure, its log.", "file");
  QCommandLineOption autostart("autostart", "Start the current channel's AUTOSTART application from the receiver's AIT, "
                                            "as a TV does when it tunes.");
  QCommandLineOption interactive("interactive", "A TV window on the desktop with a clickable remote beside it; the "
                                                "keyboard is the remote (arrows, Enter = OK, Backspace = BACK, digits, "
                                                "F1-F4 or R G Y B = the colour keys, Space = PLAY_PAUSE, S = STOP, "
                                                "I = INFO, Page Up/Down). No time limit unless --timeout; implies --stay.");
  QCommandLineOption inspector("inspector", "With --interactive: QtWebKit's Web Inspector on the page (DOM, console, "
                                            "script debugger) beside the TV window.");
  QCommandLineOption webdriver("webdriver", "Serve the W3C WebDriver protocol on 127.0.0.1:PORT (0: a free port, "
                                            "printed) for WebDriver clients; no application is given. See the README.",
                               "port");
  QCommandLineOption stay("stay", "When the application destroys itself, the broadcast shows alone and the run goes "
                                  "on (by default the run ends there).");
  QCommandLineOption receiver({"r", "receiver"}, "Receiver description (JSON); default: the built-in receiver.", "file");
  QCommandLineOption keys({"k", "keys"}, "Keys to press, comma-separated: VK_RED, VK_LEFT, 0-9, VK_ENTER, wait:MS ...", "list");
  QCommandLineOption key_start("key-start", "Milliseconds after the page loaded before the first key (500).", "ms");
  QCommandLineOption key_interval("key-interval", "Milliseconds between keys (250).", "ms");
  QCommandLineOption screenshot({"s", "screenshot"}, "PNG file of the screen written when the run ends.", "file");
  QCommandLineOption clock_rate("clock-rate", "Run the receiver's clock at this many seconds per second (0: it stands still).", "rate");
  QCommandLineOption timeout({"t", "timeout"}, "End the run after this many seconds (10; 0: never).", "seconds");
  QCommandLineOption stop_on("stop-on", "End the run when a console message contains this text (repeatable).", "text");
  QCommandLineOption result("result", "The page reports on the console a line beginning PASS, FAIL or SKIP; the run ends "
                                      "there, and its exit code is 0 for PASS, 1 for FAIL, 77 for SKIP, 2 when none came "
                                      "in time.");
  QCommandLineOption print_text("print-text", "Print the text the page shows when the run ends.");
  QCommandLineOption expect_text("expect-text", "The page must show this text when the run ends, or the exit code "
                                               "is 1 (repeatable).", "text");
  QCommandLineOption expect_console("expect-console", "Some console message must contain this text, or the exit "
                                                     "code is 1 (repeatable).", "text");
  QCommandLineOption expect_pixel("expect-pixel", "The screen must show this colour at X,Y when the run ends "
                                                 "(within 8 per channel), or the exit code is 1 (repeatable).",
                                  "X,Y,#RRGGBB");
  QCommandLineOption snapshot_on("snapshot-on", "The screen that --expect-pixel checks and --screenshot saves is "
                                               "the one when a console message first contains this text, not the "
                                               "last.", "text");
  QCommandLineOption calls("calls", "Middleware calls and events printed: all, app (all but string and list reading, "
                                    "handle releases and paint rectangles; the default) or none.", "which");
  QCommandLineOption plugin("plugin", "The plug-in library (default: libnporvane.so of this build).", "file");
  QCommandLineOption size("size", "Screen size WxH (1280x720).", "size");
  p.addOptions({interactive, inspector, webdriver, junit, autostart, stay, receiver, clock_rate, keys, key_start, key_interval, screenshot, timeout, stop_on, result, print_text, expect_text, expect_console, expect_pixel, snapshot_on, calls, plugin, size});
  if (!p.parse(arguments)) {
    *error = p.errorText();
    return false;
  }
  if (p.isSet("help")) p.showHelp(0);
  o->autostart = p.isSet(autostart);
  o->interactive = p.isSet(interactive);
  o->inspector = p.isSet(inspector);
  if (o->inspector && !o->interactive) {
    *error = "--inspector goes with --interactive";
    return false;
  }
  o->stay = p.isSet(stay) || o->interactive;
  if (o->interactive) o->timeout_ms = 0;
  o->junit = p.value(junit);
  o->targets = p.positionalArguments();
  if (p.isSet(webdriver)) {
    bool number = false;
    o->webdriver_port = p.value(webdriver).toInt(&number);
    if (!number || o->webdriver_port < 0 || o->webdriver_port > 65535) {
      *error = "--webdriver takes a port number (0: a free one)";
      return false;
    }
    if (!o->targets.isEmpty() || o->autostart) {
      *error = "--webdriver takes no application: a session navigates to it";
      return false;
    }
  }
  // With --webdriver the rest of the command line (receiver, size, plug-in)
  // is the sessions' default.
  if (o->webdriver_port < 0 && (o->autostart ? !o->targets.isEmpty() : o->targets.isEmpty())) {
    *error = o->autostart ? "--autostart takes no application" : "give an application (see --help)";
    return false;
  }
  SetTarget(o, o->targets.isEmpty() || o->autostart ? QString() : o->targets.first());
  o->receiver = p.value(receiver);
  for (const QString& k : p.values(keys))
    for (const QString& one : k.split(',', Qt::SkipEmptyParts)) o->keys << one.trimmed();
  bool ok = true;
  auto number = [&](const QCommandLineOption& opt, int scale, int* out) {
    if (!p.isSet(opt)) return;
    bool good = false;
    double v = p.value(opt).toDouble(&good);
    if (!good || v < 0) ok = false; else *out = static_cast<int>(v * scale);
  };
  number(key_start, 1, &o->key_start_ms);
  number(key_interval, 1, &o->key_interval_ms);
  number(timeout, 1000, &o->timeout_ms);
  number(clock_rate, 1, &o->clock_rate);
  if (!ok) {
    *error = "a time option is not a non-negative number";
    return false;
  }
  o->screenshot = p.value(screenshot);
  o->stop_on = p.values(stop_on);
  o->result = p.isSet(result);
  o->print_text = p.isSet(print_text);
  o->expect_text = p.values(expect_text);
  o->expect_pixel = p.values(expect_pixel);
  o->expect_console = p.values(expect_console);
  o->snapshot_on = p.value(snapshot_on);
  for (const QString& e : o->expect_pixel) {
    QStringList f = e.split(',');
    if (f.size() != 3 || !QColor::isValidColor(f[2])) {
      *error = "--expect-pixel takes X,Y,#RRGGBB";
      return false;
    }
  }
  if (p.isSet(calls)) o->calls = p.value(calls);
  if (o->calls != "all" && o->calls != "app" && o->calls != "none") {
    *error = "--calls takes all, app or none";
    return false;
  }
  o->plugin = p.value(plugin);
  if (p.isSet(size)) {
    QStringList wh = p.value(size).split('x');
    if (wh.size() != 2 || wh[0].toInt() <= 0 || wh[1].toInt() <= 0) {
      *error = "--size takes WxH, e.g. 1280x720";
      return false;
    }
    o->width = wh[0].toInt();
    o->height = wh[1].toInt();
  }
  return true;
}

void SetTarget(Options* o, const QString& target) {
  o->target = target;
  QString suffix = QFileInfo(QUrl(target).path()).suffix().toLower();
  o->target_is_ait = suffix == "xml" || suffix == "ait" || suffix == "aitx";
}
