// The browser's network: what QtWebKit fetches, plus the current service's
// object carousel: dvb:// URLs of the service are files (or directories,
// answered with a listing) of the folder the receiver description names for
// it; any other dvb:// URL is not found (404).
#ifndef ORVANE_RUNNER_NETWORK_H
#define ORVANE_RUNNER_NETWORK_H

#include <QNetworkAccessManager>
#include <QString>
#include <QUrl>

// The carousel file or directory of a dvb:// URL of the current service,
// empty for none.
QString CarouselPath(const QUrl& url);

class Network : public QNetworkAccessManager {
  Q_OBJECT
 public:
  explicit Network(QObject* parent) : QNetworkAccessManager(parent) {}

 protected:
  QNetworkReply* createRequest(Operation op, const QNetworkRequest& request, QIODevice* data) override;
};

#endif
