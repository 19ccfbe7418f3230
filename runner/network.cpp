#include "runner/network.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QMimeDatabase>
#include <QNetworkReply>
#include <QTimer>

#include "runner/log.h"
#include "sim/receiver.h"

namespace {

// A finished answer from memory: the file's bytes, or an error.
class CarouselReply : public QNetworkReply {
 public:
  CarouselReply(const QNetworkRequest& request, const QByteArray& bytes, const QString& type, bool found)
      : bytes_(bytes) {
    setRequest(request);
    setUrl(request.url());
    setOperation(QNetworkAccessManager::GetOperation);
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    if (found) {
      setHeader(QNetworkRequest::ContentTypeHeader, type);
      setHeader(QNetworkRequest::ContentLengthHeader, bytes_.size());
    } else {
      setError(ContentNotFoundError, "not in the service's carousel");
    }
    // Signals only once the caller has connected to them.
    QTimer::singleShot(0, this, [this, found] {
      emit metaDataChanged();
      if (found) {
        emit readyRead();
      } else {
        emit errorOccurred(ContentNotFoundError);
      }
      setFinished(true);
      emit finished();
    });
  }
  void abort() override {}
  qint64 bytesAvailable() const override { return bytes_.size() - offset_ + QNetworkReply::bytesAvailable(); }
  bool isSequential() const override { return true; }

 protected:
  qint64 readData(char* out, qint64 max) override {
    qint64 n = qMin(max, static_cast<qint64>(bytes_.size()) - offset_);
    if (n <= 0) return -1;
    memcpy(out, bytes_.constData() + offset_, static_cast<size_t>(n));
    offset_ += n;
    return n;
  }

 private:
  QByteArray bytes_;
  qint64 offset_ = 0;
};

}  // namespace

// The URL has been through QUrl, which reads an all-digit ONID.TSID.SID as
// a short IPv4 address ("1.2.3" becomes "1.2.0.3"): the three-part
// spelling is tried as well.
QString CarouselPath(const QUrl& url) {
  QStringList spellings{url.toString()};
  QStringList parts = url.host().split('.');
  if (parts.size() == 4 && QRegularExpression("^[0-9.]+$").match(url.host()).hasMatch()) {
    QString three = QString("%1.%2.%3").arg(parts[0], parts[1]).arg(parts[2].toInt() * 256 + parts[3].toInt());
    spellings << url.toString().replace(url.host(), three);
  }
  for (const QString& spelling : spellings) {
    QString path = QString::fromStdString(sim::CarouselFile(spelling.toStdString()));
    if (!path.isEmpty() && QFileInfo(path).isFile()) return path;
  }
  return QString();
}

QNetworkReply* Network::createRequest(Operation op, const QNetworkRequest& request, QIODevice* data) {
  if (request.url().scheme() != "dvb") return QNetworkAccessManager::createRequest(op, request, data);
  QString path = CarouselPath(request.url());
  QFile file(path);
  bool found = !path.isEmpty() && file.open(QIODevice::ReadOnly);
  QByteArray bytes = found ? file.readAll() : QByteArray();
  runlog::Line("run", QString("carousel %1: %2").arg(request.url().toString(), found ? path : "not found"));
  return new CarouselReply(request, bytes, QMimeDatabase().mimeTypeForFile(path).name(), found);
}
