#include "runner/network.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QMimeDatabase>
#include <QNetworkReply>
#include <QTimer>

#include "runner/log.h"
#include "sim/receiver_sim.h"

namespace {

// A finished answer from memory, as an http server gives it: 200 with the
// object's bytes (or a directory's listing), or 404 with a short page.
class CarouselReply : public QNetworkReply {
 public:
  CarouselReply(const QNetworkRequest& request, const QByteArray& bytes, const QString& type, bool found)
      : bytes_(bytes) {
    setRequest(request);
    // The engine takes status codes only from http answers: the reply is
    // given as one from the carousel's own http spelling.
    QUrl answered = request.url();
    answered.setScheme("http");
    answered.setHost("carousel." + request.url().host() + ".dvb");
    setUrl(answered);
    setOperation(QNetworkAccessManager::GetOperation);
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
    // A receiver answers an application's request of its carousel as a
    // server would: 200 with the object, 404 for none.
    setAttribute(QNetworkRequest::HttpStatusCodeAttribute, found ? 200 : 404);
    setAttribute(QNetworkRequest::HttpReasonPhraseAttribute, found ? "OK" : "Not Found");
    if (found) {
      setHeader(QNetworkRequest::ContentTypeHeader, type);
      setHeader(QNetworkRequest::ContentLengthHeader, bytes_.size());
    } else {
      setError(ContentNotFoundError, "not in the service's carousel");
      bytes_ = "Not Found\n";  // with a body, the engine keeps the 404 rather than a network error
    }
    // Signals only once the caller has connected to them.
    QTimer::singleShot(0, this, [this, found] {
      emit metaDataChanged();
      emit readyRead();
      if (!found) emit errorOccurred(ContentNotFoundError);
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
    if (!path.isEmpty() && QFileInfo::exists(path)) return path;
  }
  return QString();
}

namespace {

// A carousel directory as a receiver lists it: one entry a line, in name
// order, directories with a trailing slash.
QByteArray Listing(const QString& directory) {
  QByteArray out;
  for (const QFileInfo& entry :
       QDir(directory).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name))
    out += entry.fileName().toUtf8() + (entry.isDir() ? "/" : "") + "\n";
  return out;
}

}  // namespace

QNetworkReply* Network::createRequest(Operation op, const QNetworkRequest& request, QIODevice* data) {
  if (request.url().scheme() != "dvb") return QNetworkAccessManager::createRequest(op, request, data);
  QString path = CarouselPath(request.url());
  bool directory = !path.isEmpty() && QFileInfo(path).isDir();
  QFile file(path);
  bool found = directory || (!path.isEmpty() && file.open(QIODevice::ReadOnly));
  QByteArray bytes = directory ? Listing(path) : found ? file.readAll() : QByteArray();
  QString type = directory ? "text/plain" : QMimeDatabase().mimeTypeForFile(path).name();
  runlog::Line("run", QString("carousel %1: %2").arg(request.url().toString(), found ? path : "not found"));
  return new CarouselReply(request, bytes, type, found);
}
