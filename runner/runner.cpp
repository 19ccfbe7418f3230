#include "runner/runner.h"

#include <QApplication>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QImage>
#include <QKeyEvent>
#include <QTimer>
#include <QWebFrame>
#include <QWebInspector>
#include <QWebSettings>

#include "runner/applications.h"
#include "runner/keys.h"
#include "runner/log.h"
#include "runner/network.h"
#include "runner/page.h"
#include "runner/real_media.h"
#include "runner/remote.h"
#include "runner/screen.h"
#include "runner/video_plane.h"
#include "sim/appmgr_sim.h"
#include "sim/receiver_sim.h"
#include "sim/sim.h"

Runner::Runner(const Options& options) : options_(options) {
  plane_ = new VideoPlane(options.width, options.height);
  view_ = new Screen(plane_, options.width, options.height);
  view_->setWindowTitle("Orvane");
  if (options.interactive) {
    window_ = new QWidget;
    window_->setWindowTitle("Orvane");
    auto* row = new QHBoxLayout(window_);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    row->addWidget(view_, 0, Qt::AlignTop);
    auto* remote = new Remote(window_);
    row->addWidget(remote);
    connect(remote, &Remote::pressed, this, [this](const RemoteKey* key) { Deliver(*key, "remote"); });
    window_->installEventFilter(this);
  }
  view_->installEventFilter(this);
  page_ = new Page(view_);
  page_->setNetworkAccessManager(new Network(page_));
  if (RealMedia* media = RealMedia::Current()) media->SetUserAgent(page_->UserAgent());
  view_->setPage(page_);
  applications_ = new Applications(page_);
  connect(applications_, &Applications::exited, this, [this] {
    if (!options_.stay) Finish(options_.result ? 2 : 0, "the application exited");
  });
  // The page is the graphics plane: transparent wherever it draws nothing,
  // so that the video plane shows through.
  QPalette palette = view_->palette();
  palette.setBrush(QPalette::Base, Qt::transparent);
  page_->setPalette(palette);
  page_->mainFrame()->setScrollBarPolicy(Qt::Horizontal, Qt::ScrollBarAlwaysOff);
  page_->mainFrame()->setScrollBarPolicy(Qt::Vertical, Qt::ScrollBarAlwaysOff);
  if (window_ && options.inspector) {
    // QtWebKit's Web Inspector on the page (DOM, console, script debugger),
    // beside the TV and the remote.
    page_->settings()->setAttribute(QWebSettings::DeveloperExtrasEnabled, true);
    auto* inspector = new QWebInspector(window_);
    inspector->setPage(page_);
    inspector->setMinimumSize(640, options.height);
    window_->layout()->addWidget(inspector);
    runlog::Line("run", "web inspector beside the TV");
  }
  connect(page_, &QWebPage::loadFinished, this, &Runner::OnLoadFinished);
  connect(page_, &Page::consoleMessage, this, &Runner::OnConsole);
  connect(page_->mainFrame(), &QWebFrame::urlChanged, this, [](const QUrl& url) {
    runlog::Line("run", "document " + url.toString());
    if (RealMedia* media = RealMedia::Current()) media->SetBase(url);  // relative media URLs
  });
}

Runner::~Runner() {
  delete applications_;
  if (window_) delete window_;  // with the view in it
  else delete view_;
  delete plane_;
}

bool Runner::eventFilter(QObject* watched, QEvent* event) {
  QObject* top = window_ ? static_cast<QObject*>(window_) : view_;
  if (watched == top && event->type() == QEvent::Close) {
    // A page that was to report and was closed first gave no result.
    Finish(options_.result ? 2 : 0, "the window was closed");
    return false;
  }
  bool key_event = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
  // The keys the runner itself gives the page are not spontaneous.
  if (!window_ || watched != view_ || !key_event || !event->spontaneous()) return false;
  const RemoteKey* key = KeyForKeyboard(static_cast<QKeyEvent*>(event)->key());
  if (key && event->type() == QEvent::KeyPress && !static_cast<QKeyEvent*>(event)->isAutoRepeat())
    Deliver(*key, "keyboard");
  return true;  // the remote has no other keys
}

void Runner::Deliver(const RemoteKey& key, const char* from) {
  if (finished_) return;
  if (!KeyAllowed(key)) {
    runlog::Line("key", QString("%1 (%2) from the %3 not delivered: not in the application's keyset")
                            .arg(key.name).arg(key.code).arg(from));
    return;
  }
  runlog::Line("key", QString("%1 (%2) from the %3").arg(key.name).arg(key.code).arg(from));
  PressKey(view_, key);
}

QUrl Runner::TargetUrl() const {
  QUrl url(options_.target);
  if (url.scheme() == "http" || url.scheme() == "https" || url.scheme() == "file") return url;
  return QUrl::fromLocalFile(QFileInfo(options_.target).absoluteFilePath());
}

bool Runner::Start() {
  if (options_.autostart) {
    sim::AitEntry entry;
    if (!sim::FindAitEntry("", &entry)) {
      why_ = "the current channel signals no AUTOSTART application";
      runlog::Line("run", why_);
      return false;
    }
    SetTarget(&options_, QString::fromStdString(entry.url));
    runlog::Line("run", QString("AUTOSTART application %1.%2").arg(entry.org_id, 0, 16).arg(entry.app_id, 0, 16));
  }
  QUrl url = TargetUrl();
  if (url.isLocalFile() && !QFileInfo(url.toLocalFile()).isFile()) {
    why_ = "no such file: " + url.toLocalFile();
    runlog::Line("run", why_);
    return false;
  }
  for (const QString& k : options_.keys) {
    if (!k.startsWith("wait:") && !FindKey(k)) {
      why_ = "unknown key: " + k;
      runlog::Line("run", why_);
      return false;
    }
  }
  if (window_) {
    window_->show();
    view_->setFocus();
  } else {
    view_->show();
  }
  if (options_.timeout_ms > 0)
    QTimer::singleShot(options_.timeout_ms, this, [this] {
      Finish(options_.result ? 2 : 0, QString("time limit of %1 s reached").arg(options_.timeout_ms / 1000.0));
    });
  if (options_.target_is_ait) {
    // A receiver hands a signalled AIT to the plug-in's AIT object, whose
    // parser starts the application that the AIT names.
    bootstrap_ = true;
    runlog::Line("run", "AIT " + url.toString());
    QString html = QString(
        "<!DOCTYPE html><html><head><title>AIT</title></head><body style='background:transparent'>"
        "<object type='application/vnd.dvb.ait+xml' data='%1' style='position:absolute;width:1px;height:1px'>"
        "</object></body></html>").arg(url.toString().toHtmlEscaped());
    page_->mainFrame()->setHtml(html, url);
  } else {
    runlog::Line("run", "open " + url.toString());
    page_->mainFrame()->load(url);
  }
  return true;
}

void Runner::ShowEmpty() {
  if (window_) window_->show();
  else view_->show();
}

void Runner::Navigate(const QUrl& url) {
  runlog::Line("run", "open " + url.toString());
  loading_ = true;
  page_->mainFrame()->load(url);
}

QImage Runner::Picture() const { return view_->Picture(); }

void Runner::OnLoadFinished(bool ok) {
  QUrl url = page_->mainFrame()->url();
  if (bootstrap_ && page_->mainFrame()->toHtml().contains("application/vnd.dvb.ait+xml") &&
      url == TargetUrl()) {
    runlog::Line("run", ok ? "AIT page loaded, waiting for the application" : "AIT page failed to load");
    return;
  }
  if (!ok && page_->TakeReopened()) return;  // the document comes again, as XHTML
  loading_ = false;
  if (!ok) {
    runlog::Line("run", "failed to load " + url.toString());
    if (!keys_started_) Finish(3, "the application did not load");
    return;
  }
  runlog::Line("run", "loaded " + url.toString());
  if (keys_started_) return;
  keys_started_ = true;
  if (!options_.keys.isEmpty()) QTimer::singleShot(options_.key_start_ms, this, &Runner::NextKey);
}

bool Runner::KeyAllowed(const RemoteKey& key) {
  // A receiver gives an application only the keys of the groups its keyset
  // holds, once it has set it (to 0: no key at all).
  MwHandle app = sim::OwnerApplication(page_->mainFrame()->url().toString().toStdString());
  if (!app) return true;
  sim::ApplicationState state = sim::Application(app);
  return !state.keys_asked || (state.keys & key.group) != 0;
}

void Runner::NextKey() {
  if (finished_ || next_key_ >= options_.keys.size()) return;
  QString name = options_.keys[next_key_++];
  int delay = options_.key_interval_ms;
  if (name.startsWith("wait:")) {
    delay = name.mid(5).toInt();
  } else {
    Deliver(*FindKey(name), "script");
  }
  QTimer::singleShot(delay, this, &Runner::NextKey);
}

void Runner::OnConsole(const QString& message) {
  if (!options_.snapshot_on.isEmpty() && snapshot_.isNull() && message.contains(options_.snapshot_on) && view_) {
    snapshot_ = view_->Picture();
    runlog::Line("run", "snapshot of the screen");
  }
  for (const QString& text : options_.expect_console)
    if (message.contains(text) && !console_seen_.contains(text)) console_seen_ << text;
  if (options_.result) {
    if (message.startsWith("PASS")) return Finish(0, "the page passed");
    if (message.startsWith("FAIL")) return Finish(1, "the page failed");
    if (message.startsWith("SKIP")) return Finish(77, "the page skipped its test");
  }
  for (const QString& text : options_.stop_on)
    if (message.contains(text)) return Finish(0, "stop text \"" + text + "\" seen");
}

namespace {

// "X,Y,#RRGGBB": whether the picture shows that colour there (within 8 per
// channel, for the scaling of fonts and gradients); says what it saw if not.
bool PixelShows(const QImage& shot, const QString& expected) {
  QStringList f = expected.split(',');
  QPoint at(f[0].toInt(), f[1].toInt());
  QColor want(f[2]);
  QColor seen = shot.rect().contains(at) ? shot.pixelColor(at) : QColor();
  bool ok = seen.isValid() && qAbs(seen.red() - want.red()) <= 8 && qAbs(seen.green() - want.green()) <= 8 &&
            qAbs(seen.blue() - want.blue()) <= 8;
  if (!ok)
    runlog::Line("run", QString("the screen shows %1 at %2,%3, not %4")
                            .arg(seen.isValid() ? seen.name() : "nothing").arg(at.x()).arg(at.y()).arg(want.name()));
  return ok;
}

}  // namespace

void Runner::Finish(int code, const QString& why) {
  if (finished_) return;
  finished_ = true;
  why_ = why;
  runlog::Line("run", why);
  // Let pending paints and queued events land before the picture is taken.
  QTimer::singleShot(50, this, [this, code]() mutable {
    QString text = page_->mainFrame()->toPlainText();
    if (options_.print_text)
      for (const QString& line : text.split('\n'))
        if (!line.trimmed().isEmpty()) runlog::Line("text", line.trimmed());
    for (const QString& expected : options_.expect_text) {
      if (text.contains(expected)) continue;
      runlog::Line("run", "the page does not show \"" + expected + "\"");
      if (code == 0) code = 1;
    }
    for (const QString& expected : options_.expect_console) {
      if (console_seen_.contains(expected)) continue;
      runlog::Line("run", "no console message contains \"" + expected + "\"");
      if (code == 0) code = 1;
    }
    QImage shot = snapshot_.isNull() ? view_->Picture() : snapshot_;
    for (const QString& expected : options_.expect_pixel) {
      if (PixelShows(shot, expected)) continue;
      if (code == 0) code = 1;
    }
    if (!options_.screenshot.isEmpty()) {
      bool saved = shot.save(options_.screenshot, "PNG");
      runlog::Line("run", (saved ? "screenshot " : "could not write screenshot ") + options_.screenshot);
      if (!saved && code == 0) code = 3;
    }
    // Tear the page down so that the plug-in's instances are destroyed, and
    // report what the application left held in the middleware.
    delete applications_;
    applications_ = nullptr;
    if (window_) delete window_;
    else delete view_;
    window_ = nullptr;
    view_ = nullptr;
    delete plane_;
    plane_ = nullptr;
    sim::WaitIdle(0);
    size_t held = sim::HeldHandles(), errors = sim::ReleaseErrors();
    // A run that checks anything fails when the middleware was left holding
    // references or was given one back too often, whatever the page said.
    bool checked = options_.result || !options_.junit.isEmpty() || !options_.expect_text.isEmpty() ||
                   !options_.expect_console.isEmpty() || !options_.expect_pixel.isEmpty();
    if (checked && (held || errors) && (code == 0 || code == 77)) {
      code = 1;
      why_ = "the middleware was left with references held or released wrongly";
    }
    runlog::Line("run", QString("end: %1 middleware reference(s) still held, %2 release error(s); exit code %3")
                            .arg(held).arg(errors).arg(code));
    emit finished(code);
  });
}
