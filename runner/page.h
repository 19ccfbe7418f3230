// The page class of the runner's browser: prints the page's console
// messages and dialogs, and gives every new document the VK_ key constants.
#ifndef ORVANE_RUNNER_PAGE_H
#define ORVANE_RUNNER_PAGE_H

#include <QWebPage>

class Page : public QWebPage {
  Q_OBJECT
 public:
  explicit Page(QObject* parent);

 signals:
  void consoleMessage(const QString& message);

 protected:
  void javaScriptConsoleMessage(const QString& message, int line, const QString& source) override;
  void javaScriptAlert(QWebFrame* frame, const QString& message) override;
  bool javaScriptConfirm(QWebFrame* frame, const QString& message) override;
  bool shouldInterruptJavaScript() override { return true; }
  QString userAgentForUrl(const QUrl& url) const override;
};

#endif
