// The clickable remote control beside the TV window in interactive use.
#ifndef ORVANE_RUNNER_REMOTE_H
#define ORVANE_RUNNER_REMOTE_H

#include <QWidget>

struct RemoteKey;

class Remote : public QWidget {
  Q_OBJECT
 public:
  explicit Remote(QWidget* parent);

 signals:
  void pressed(const RemoteKey* key);
};

#endif
