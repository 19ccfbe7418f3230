// The page class of the runner's browser: prints the page's console
// messages and dialogs, gives every new document the receiver's scripts
// (key constants, console, object factory) and opens the document types of
// HbbTV and CE-HTML, which the engine does not know, as the XHTML they are.
#ifndef ORVANE_RUNNER_PAGE_H
#define ORVANE_RUNNER_PAGE_H

#include <QWebPage>

class QNetworkReply;

class Page : public QWebPage {
  Q_OBJECT
 public:
  explicit Page(QObject* parent);
  // The user agent the browser sends (with the HbbTV token).
  QString UserAgent() const { return userAgentForUrl(QUrl()); }
  // Another user agent for every request from now on (empty: the HbbTV one).
  void SetUserAgent(const QString& agent) { user_agent_ = agent; }

  // Whether a failed load is one the engine gave up on for its type, with
  // the document opened as XHTML in its place (each is reported once).
  bool TakeReopened() {
    if (reopened_ == 0) return false;
    reopened_--;
    return true;
  }

 signals:
  void consoleMessage(const QString& message);

 protected:
  void javaScriptConsoleMessage(const QString& message, int line, const QString& source) override;
  void javaScriptAlert(QWebFrame* frame, const QString& message) override;
  bool javaScriptConfirm(QWebFrame* frame, const QString& message) override;
  bool shouldInterruptJavaScript() override { return true; }
  QString userAgentForUrl(const QUrl& url) const override;

 private:
  void OpenAsXhtml(QNetworkReply* reply);
  int reopened_ = 0;
  QString user_agent_;
};

#endif
