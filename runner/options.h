// Command-line options of orvane-run.
#ifndef ORVANE_RUNNER_OPTIONS_H
#define ORVANE_RUNNER_OPTIONS_H

#include <QString>
#include <QStringList>

struct Options {
  QStringList targets;     // the pages (files, http URLs, XML AITs) run one after the other
  QString target;          // the one running: a page file, an http URL or an XML AIT file
  bool target_is_ait = false;
  QString junit;           // JUnit XML report written at the end, one test case per page
  bool autostart = false;  // open the current channel's AUTOSTART application (no target)
  bool stay = false;       // an application that destroys itself does not end the run
  bool interactive = false;  // the keyboard and a clickable remote drive the page; no time limit
  bool inspector = false;    // interactive: QtWebKit's Web Inspector beside the TV
  QString receiver;        // receiver description file; empty: the built-in receiver
  QStringList keys;        // key names to press, in order ("VK_RED", "5", "wait:500")
  int key_start_ms = 500;  // after the page has loaded
  int key_interval_ms = 250;
  QString screenshot;      // PNG written when the run ends
  int timeout_ms = 10000;  // 0: no limit
  int clock_rate = -1;     // receiver seconds per second; -1: as the receiver says
  QStringList stop_on;     // end the run when a console message contains one of these
  bool print_text = false;  // print the page's text when the run ends
  QStringList expect_text;  // texts the page must show when the run ends (else exit code 1)
  QStringList expect_console;  // texts some console message must contain (else exit code 1)
  QStringList expect_pixel;  // "X,Y,#RRGGBB": colours the screen must show when the run ends
  QString snapshot_on;  // the screen checked and saved is the one when a console message contains this
  bool result = false;     // the page reports PASS/FAIL/SKIP on the console; that is the exit code
  // Which middleware calls and events are printed: "all", "app" (all but the
  // reading of strings and lists, handle releases and paint rectangles) or "none".
  QString calls = "app";
  QString plugin;          // the plug-in library; empty: this build's libnporvane.so
  int width = 1280, height = 720;
  int webdriver_port = -1;  // serve WebDriver on this port (0: a free one); -1: no
};

// Parses the command line; on a usage error prints it and returns false.
bool ParseOptions(const QStringList& arguments, Options* options, QString* error);
// Makes `target` the one that runs.
void SetTarget(Options* options, const QString& target);

#endif
