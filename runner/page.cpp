#include "runner/page.h"

#include <QFileInfo>
#include <QNetworkReply>
#include <QNetworkRequest>
#include <QUrl>
#include <QWebFrame>
#include <QWebSecurityOrigin>
#include <QWebSettings>

#include "runner/keys.h"
#include "runner/log.h"
#include "runner/page_scripts.h"

Page::Page(QObject* parent) : QWebPage(parent) {
  QWebSettings* s = settings();
  s->setAttribute(QWebSettings::PluginsEnabled, true);
  s->setAttribute(QWebSettings::JavascriptEnabled, true);
  s->setAttribute(QWebSettings::LocalContentCanAccessRemoteUrls, true);
  s->setAttribute(QWebSettings::LocalContentCanAccessFileUrls, true);
  s->setAttribute(QWebSettings::DeveloperExtrasEnabled, false);
  // Like a receiver's browser, draw nothing for the plug-in elements that
  // show no video (an application manager shows the page beneath it, not a
  // black box). They keep their place and size and work as before; video
  // and audio elements stay opaque, and the screen makes windows of them
  // onto the video plane.
  const QByteArray sheet =
      "object:not([type^='video/']):not([type^='audio/']):not([type^='VIDEO/']):not([type^='AUDIO/']),"
      "embed:not([type^='video/']):not([type^='audio/']):not([type^='VIDEO/']):not([type^='AUDIO/'])"
      "{visibility:hidden !important}"
      // The engine paints a windowless plug-in through an X pixmap of the
      // element's size, which X refuses beyond its limits (and the engine
      // then crashes on the missing picture); no TV screen comes near them.
      "object,embed{max-width:8192px !important;max-height:8192px !important}";
  s->setUserStyleSheetUrl(QUrl("data:text/css;charset=utf-8;base64," + sheet.toBase64()));
  setForwardUnsupportedContent(true);
  connect(this, &QWebPage::unsupportedContent, this, &Page::OpenAsXhtml);
  // Each new document of the main frame gets the receiver's key constants,
  // console and object factory before its own scripts run.
  connect(mainFrame(), &QWebFrame::javaScriptWindowObjectCleared, this, [this] {
    mainFrame()->evaluateJavaScript(KeyConstantsScript() + ConsoleScript() + ObjectFactoryScript() + CollectionIndexScript());
    // The service's carousel is the application's own, over http too (the
    // engine refuses other schemes across origins).
    mainFrame()->securityOrigin().addAccessWhitelistEntry("dvb", "", QWebSecurityOrigin::AllowSubdomains);
  });
}

namespace {

// The types of documents a receiver opens as XHTML, by Content-Type or, for
// files, by name.
bool IsTvDocument(QNetworkReply* reply) {
  QString type = reply->header(QNetworkRequest::ContentTypeHeader).toString().section(';', 0, 0).trimmed().toLower();
  if (type == "application/vnd.hbbtv.xhtml+xml" || type == "application/ce-html+xml" ||
      type == "application/xhtml+xml")
    return true;
  QString suffix = QFileInfo(reply->url().path()).suffix().toLower();
  return reply->url().isLocalFile() && (suffix == "hbbtv" || suffix == "cehtml" || suffix == "xhtml");
}

}  // namespace

void Page::OpenAsXhtml(QNetworkReply* reply) {
  if (!IsTvDocument(reply)) {
    runlog::Line("run", "cannot show " + reply->url().toString() + " (" +
                            reply->header(QNetworkRequest::ContentTypeHeader).toString() + ")");
    reply->abort();
    reply->deleteLater();
    return;
  }
  QWebFrame* frame = qobject_cast<QWebFrame*>(reply->request().originatingObject());
  if (!frame) frame = mainFrame();
  reopened_++;
  auto open = [reply, frame] {
    QByteArray document = reply->readAll();
    QUrl url = reply->url();
    reply->deleteLater();
    frame->setContent(document, "application/xhtml+xml", url);
  };
  if (reply->isFinished()) open();
  else connect(reply, &QNetworkReply::finished, frame, open);
}

void Page::javaScriptConsoleMessage(const QString& message, int line, const QString& source) {
  QString where = source.isEmpty() ? QString() : QString("  (%1:%2)").arg(QFileInfo(source).fileName()).arg(line);
  runlog::Line("console", message + where);
  emit consoleMessage(message);
}

void Page::javaScriptAlert(QWebFrame*, const QString& message) {
  runlog::Line("alert", message);
  emit consoleMessage(message);
}

bool Page::javaScriptConfirm(QWebFrame*, const QString& message) {
  runlog::Line("confirm", message + "  (answered yes)");
  return true;
}

QString Page::userAgentForUrl(const QUrl& url) const {
  if (!user_agent_.isEmpty()) return user_agent_;
  // Applications look for the HbbTV token to tell a receiver from a PC browser.
  return QWebPage::userAgentForUrl(url) + " HbbTV/1.5.1 (+DRM;Orvane;ORV-1;1.0.0;;) Orvane/1.0";
}
