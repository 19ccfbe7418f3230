// One run: the screen (video plane with the browser above it), the
// application to open, the scripted remote-control keys, the stop
// conditions, the screenshot and the exit code.
#ifndef ORVANE_RUNNER_RUNNER_H
#define ORVANE_RUNNER_RUNNER_H

#include <QImage>
#include <QObject>
#include <QUrl>

#include "runner/options.h"

class Applications;
class Page;
class QWidget;
class Screen;
class VideoPlane;
struct RemoteKey;

class Runner : public QObject {
  Q_OBJECT
 public:
  explicit Runner(const Options& options);
  ~Runner() override;
  // Opens the application; false (with the reason printed) when it cannot.
  bool Start();
  // Why the run ended (after it did).
  const QString& Why() const { return why_; }

  // Driven from outside (WebDriver): the window with nothing loaded yet,
  // a document to load, whether a load is under way, the page, the screen
  // as it is, and a remote key pressed through the application's keyset.
  void ShowEmpty();
  void Navigate(const QUrl& url);
  bool Loading() const { return loading_; }
  Page* page() const { return page_; }
  QImage Picture() const;
  void PressRemoteKey(const RemoteKey& key) { Deliver(key, "webdriver"); }

 signals:
  // The run has ended, its window is gone; `code` is its exit code.
  void finished(int code);
 private:
  void OnLoadFinished(bool ok);
  void OnConsole(const QString& message);
  void NextKey();
  bool KeyAllowed(const RemoteKey& key);
  // A remote key pressed (by the script of keys, the keyboard or the
  // on-screen remote), given to the page if its keyset lets it through.
  void Deliver(const RemoteKey& key, const char* from);
  bool eventFilter(QObject* watched, QEvent* event) override;
  void Finish(int code, const QString& why);
  QUrl TargetUrl() const;

  Options options_;
  VideoPlane* plane_ = nullptr;
  Screen* view_ = nullptr;
  QWidget* window_ = nullptr;  // interactive use: the TV and the remote beside it
  Page* page_ = nullptr;
  Applications* applications_ = nullptr;
  bool bootstrap_ = false;   // the AIT page is showing, the application is yet to come
  bool keys_started_ = false;
  int next_key_ = 0;
  bool finished_ = false;
  bool loading_ = false;
  QString why_;
  QStringList console_seen_;
  QImage snapshot_;  // taken at --snapshot-on  // the expected console texts that came
};

#endif
