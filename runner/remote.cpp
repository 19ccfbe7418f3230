#include "runner/remote.h"

#include <QGridLayout>
#include <QPushButton>

#include "runner/keys.h"

namespace {

// The buttons, row by row, in a grid of four columns: label, key, colour.
struct Button {
  int row, column;
  const char* label;
  const char* key;
  const char* colour;  // background, or null
};

const Button kButtons[] = {
    {0, 0, "", "VK_RED", "#d02020"},      {0, 1, "", "VK_GREEN", "#20a020"},
    {0, 2, "", "VK_YELLOW", "#d0c020"},   {0, 3, "", "VK_BLUE", "#2040d0"},
    {1, 1, "\u25b2", "VK_UP", nullptr},   {2, 0, "\u25c0", "VK_LEFT", nullptr},
    {2, 1, "OK", "VK_ENTER", nullptr},    {2, 2, "\u25b6", "VK_RIGHT", nullptr},
    {3, 1, "\u25bc", "VK_DOWN", nullptr}, {1, 3, "BACK", "VK_BACK", nullptr},
    {3, 3, "INFO", "VK_INFO", nullptr},   {4, 0, "1", "VK_1", nullptr},
    {4, 1, "2", "VK_2", nullptr},         {4, 2, "3", "VK_3", nullptr},
    {5, 0, "4", "VK_4", nullptr},         {5, 1, "5", "VK_5", nullptr},
    {5, 2, "6", "VK_6", nullptr},         {6, 0, "7", "VK_7", nullptr},
    {6, 1, "8", "VK_8", nullptr},         {6, 2, "9", "VK_9", nullptr},
    {7, 1, "0", "VK_0", nullptr},         {4, 3, "P+", "VK_CHANNEL_UP", nullptr},
    {5, 3, "P-", "VK_CHANNEL_DOWN", nullptr}, {6, 3, "TXT", "VK_TELETEXT", nullptr},
    {8, 0, "\u23ea", "VK_REWIND", nullptr}, {8, 1, "\u23ef", "VK_PLAY_PAUSE", nullptr},
    {8, 2, "\u23f9", "VK_STOP", nullptr}, {8, 3, "\u23e9", "VK_FAST_FWD", nullptr},
};

}  // namespace

Remote::Remote(QWidget* parent) : QWidget(parent) {
  // Fixed sizes: the red button's centre is at (40, 32) in the panel.
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(12, 12, 12, 12);
  grid->setSpacing(8);
  for (const Button& b : kButtons) {
    const RemoteKey* key = FindKey(b.key);
    auto* button = new QPushButton(QString::fromUtf8(b.label), this);
    button->setFixedSize(56, 40);
    button->setFocusPolicy(Qt::NoFocus);  // the keyboard stays with the TV
    button->setToolTip(b.key);
    if (b.colour) button->setStyleSheet(QString("background:%1").arg(b.colour));
    connect(button, &QPushButton::clicked, this, [this, key] { emit pressed(key); });
    grid->addWidget(button, b.row, b.column);
  }
  grid->setRowStretch(9, 1);
  setFixedWidth(12 * 2 + 56 * 4 + 8 * 3);
}
