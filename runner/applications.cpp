#include "runner/applications.h"

#include <QFile>
#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>
#include <QWebFrame>
#include <QWebPage>

#include "runner/log.h"
#include "runner/network.h"
#include "sim/appmgr_sim.h"
#include "sim/receiver_sim.h"

namespace {

bool Readable(const QUrl& url) {
  if (url.isLocalFile()) return QFileInfo(url.toLocalFile()).isFile();
  if (url.scheme() == "dvb") return !CarouselPath(url).isEmpty();
  return url.scheme() == "http" || url.scheme() == "https";  // known once fetched
}

}  // namespace

Applications::Applications(QWebPage* page) : page_(page) {
  sim::ApplicationHooks hooks;
  hooks.launch = [this](MwHandle application, const std::string& url) {
    return Launch(application, QString::fromStdString(url));
  };
  hooks.destroyed = [this](MwHandle application) { Destroyed(application); };
  sim::SetApplicationHooks(hooks);
  // The new application's document replaced the caller's: hand-over done.
  connect(page_->mainFrame(), &QWebFrame::urlChanged, this, [this] { handing_over_ = caller_gone_ = false; });
}

Applications::~Applications() { sim::SetApplicationHooks({}); }

bool Applications::IsAitUrl(const QUrl& url) {
  QString suffix = QFileInfo(url.path()).suffix().toLower();
  return suffix == "xml" || suffix == "ait" || suffix == "aitx";
}

void Applications::ResolveAit(const QUrl& url, std::function<void(const QUrl&)> done) {
  auto named = [url](const QByteArray& xml) {
    QString location = QString::fromStdString(sim::AitApplicationUrl(xml.toStdString()));
    return location.isEmpty() ? QUrl() : url.resolved(QUrl(location));
  };
  if (url.isLocalFile()) {
    QFile file(url.toLocalFile());
    done(file.open(QIODevice::ReadOnly) ? named(file.readAll()) : QUrl());
    return;
  }
  QNetworkReply* reply = page_->networkAccessManager()->get(QNetworkRequest(url));
  connect(reply, &QNetworkReply::finished, this, [reply, named, done] {
    reply->deleteLater();
    done(reply->error() == QNetworkReply::NoError ? named(reply->readAll()) : QUrl());
  });
}

bool Applications::Launch(MwHandle application, const QString& url) {
  QUrl target(url);
  if (!Readable(target)) {
    runlog::Line("run", "application " + url + " cannot be loaded");
    return false;
  }
  runlog::Line("run", QString("application %1 starts: %2").arg(application).arg(url));
  handing_over_ = true;
  // The caller's script is still running: the new document comes after it.
  QTimer::singleShot(0, this, [this, target] {
    if (!IsAitUrl(target)) return Load(target);
    ResolveAit(target, [this, target](const QUrl& named) {
      if (named.isEmpty()) return LoadFailed("the AIT " + target.toString() + " names no application");
      if (!Readable(named)) return LoadFailed("application " + named.toString() + " cannot be loaded");
      Load(named);
    });
  });
  return true;
}

void Applications::Load(const QUrl& url) {
  if (url.scheme() != "http" && url.scheme() != "https") {
    page_->mainFrame()->load(url);
    return;
  }
  // Over http the document must come before the caller is replaced.
  QNetworkReply* reply = page_->networkAccessManager()->get(QNetworkRequest(url));
  connect(reply, &QNetworkReply::finished, this, [this, reply, url] {
    reply->deleteLater();
    int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (reply->error() != QNetworkReply::NoError || status >= 400)
      return LoadFailed(QString("application %1 did not load (%2)").arg(url.toString()).arg(status));
    page_->mainFrame()->load(url);
  });
}

void Applications::LoadFailed(const QString& why) {
  runlog::Line("run", why);
  handing_over_ = false;
  if (caller_gone_) return Unload();  // nobody is left to hear of it
  for (MwHandle manager : sim::AppManagers()) sim::RaiseApplicationLoadError(manager, true, 0);
}

void Applications::Destroyed(MwHandle application) {
  MwHandle running = sim::OwnerApplication(page_->mainFrame()->url().toString().toStdString());
  if (!running || application != running) return;
  if (handing_over_) {
    // The application it started comes in its place.
    runlog::Line("run", "the application destroyed itself: the one it started takes over");
    caller_gone_ = true;
    return;
  }
  QTimer::singleShot(0, this, [this] { Unload(); });
}

void Applications::Unload() {
  caller_gone_ = false;
  runlog::Line("run", "the application destroyed itself: the broadcast shows alone");
  // A receiver stops an application's objects before its document goes:
  // the plug-in elements leave first, so that replacing the document lays
  // out no plug-in of the old one.
  page_->mainFrame()->evaluateJavaScript(
      "Array.prototype.slice.call(document.querySelectorAll('object,embed')).forEach("
      "function (e) { if (e.parentNode) e.parentNode.removeChild(e); });");
  page_->mainFrame()->setHtml("<html><body style='background:transparent'></body></html>", QUrl("about:blank"));
  emit exited();
}
