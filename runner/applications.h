// Applications starting and stopping on the screen, as a receiver runs
// them: createApplication() loads the new application's document in place
// of the caller's (a URL, an XML AIT, or dvb://current.ait/ORG.APP resolved
// by the receiver), once it is known to load; one that cannot be loaded
// raises the application managers' load error instead. An application that
// destroys itself is unloaded, leaving the broadcast alone on the screen;
// one that destroys itself after starting another hands over to it.
#ifndef ORVANE_RUNNER_APPLICATIONS_H
#define ORVANE_RUNNER_APPLICATIONS_H

#include <QObject>
#include <QUrl>

#include "middleware/types.h"

class QWebPage;

class Applications : public QObject {
  Q_OBJECT
 public:
  // Hooks into the receiver for `page`'s main frame; unhooks when deleted.
  explicit Applications(QWebPage* page);
  ~Applications() override;
  // The document an XML AIT at `url` names (a file or http); calls back
  // with an empty URL when it names none or cannot be read.
  void ResolveAit(const QUrl& url, std::function<void(const QUrl&)> done);
  static bool IsAitUrl(const QUrl& url);

 signals:
  // The running application destroyed itself and has been unloaded.
  void exited();

 private:
  bool Launch(MwHandle application, const QString& url);  // on the plug-in's call
  void Load(const QUrl& url);   // after the caller's script has returned
  void Destroyed(MwHandle application);
  void LoadFailed(const QString& why);
  void Unload();  // the running application is gone: the broadcast shows alone
  QWebPage* page_;
  // From a createApplication() until the new document replaces the caller's
  // (or fails to load): the caller destroying itself then hands over.
  bool handing_over_ = false;
  bool caller_gone_ = false;
};

#endif
