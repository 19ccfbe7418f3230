#include "runner/keys.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWebFrame>
#include <QWebView>

namespace {

enum Group { kRed = 0x1, kGreen = 0x2, kYellow = 0x4, kBlue = 0x8, kNavigation = 0x10,
             kVcr = 0x20, kScroll = 0x40, kInfo = 0x80, kNumeric = 0x100, kOther = 0x400 };

const RemoteKey kKeys[] = {
    {"VK_RED", 403, kRed, 0},
    {"VK_GREEN", 404, kGreen, 0},
    {"VK_YELLOW", 405, kYellow, 0},
    {"VK_BLUE", 406, kBlue, 0},
    {"VK_UP", 38, kNavigation, Qt::Key_Up},
    {"VK_DOWN", 40, kNavigation, Qt::Key_Down},
    {"VK_LEFT", 37, kNavigation, Qt::Key_Left},
    {"VK_RIGHT", 39, kNavigation, Qt::Key_Right},
    {"VK_ENTER", 13, kNavigation, Qt::Key_Return},
    {"VK_BACK", 461, kNavigation, 0},
    {"VK_PLAY", 415, kVcr, 0},
    {"VK_PAUSE", 19, kVcr, 0},
    {"VK_PLAY_PAUSE", 402, kVcr, 0},
    {"VK_STOP", 413, kVcr, 0},
    {"VK_FAST_FWD", 417, kVcr, 0},
    {"VK_REWIND", 412, kVcr, 0},
    {"VK_TRACK_NEXT", 425, kVcr, 0},
    {"VK_TRACK_PREV", 424, kVcr, 0},
    {"VK_RECORD", 416, kVcr, 0},
    {"VK_PAGE_UP", 33, kScroll, Qt::Key_PageUp},
    {"VK_PAGE_DOWN", 34, kScroll, Qt::Key_PageDown},
    {"VK_INFO", 457, kInfo, 0},
    {"VK_0", 48, kNumeric, Qt::Key_0},
    {"VK_1", 49, kNumeric, Qt::Key_1},
    {"VK_2", 50, kNumeric, Qt::Key_2},
    {"VK_3", 51, kNumeric, Qt::Key_3},
    {"VK_4", 52, kNumeric, Qt::Key_4},
    {"VK_5", 53, kNumeric, Qt::Key_5},
    {"VK_6", 54, kNumeric, Qt::Key_6},
    {"VK_7", 55, kNumeric, Qt::Key_7},
    {"VK_8", 56, kNumeric, Qt::Key_8},
    {"VK_9", 57, kNumeric, Qt::Key_9},
    {"VK_CHANNEL_UP", 427, kOther, 0},
    {"VK_CHANNEL_DOWN", 428, kOther, 0},
    {"VK_GUIDE", 458, kOther, 0},
    {"VK_TELETEXT", 459, kOther, 0},
    {"VK_SUBTITLE", 460, kOther, 0},
};

}  // namespace

const RemoteKey* FindKey(const QString& name) {
  QString n = name.trimmed().toUpper();
  if (!n.startsWith("VK_")) n = "VK_" + n;
  for (const RemoteKey& k : kKeys)
    if (n == k.name) return &k;
  return nullptr;
}

const RemoteKey* KeyForKeyboard(int qt_key) {
  struct Binding {
    int qt_key;
    const char* name;
  };
  static const Binding kBindings[] = {
      {Qt::Key_Left, "VK_LEFT"},     {Qt::Key_Right, "VK_RIGHT"},  {Qt::Key_Up, "VK_UP"},
      {Qt::Key_Down, "VK_DOWN"},     {Qt::Key_Return, "VK_ENTER"}, {Qt::Key_Enter, "VK_ENTER"},
      {Qt::Key_Backspace, "VK_BACK"}, {Qt::Key_F1, "VK_RED"},      {Qt::Key_F2, "VK_GREEN"},
      {Qt::Key_F3, "VK_YELLOW"},     {Qt::Key_F4, "VK_BLUE"},      {Qt::Key_R, "VK_RED"},
      {Qt::Key_G, "VK_GREEN"},       {Qt::Key_Y, "VK_YELLOW"},     {Qt::Key_B, "VK_BLUE"},
      {Qt::Key_PageUp, "VK_PAGE_UP"}, {Qt::Key_PageDown, "VK_PAGE_DOWN"},
      {Qt::Key_Space, "VK_PLAY_PAUSE"}, {Qt::Key_S, "VK_STOP"},    {Qt::Key_I, "VK_INFO"},
  };
  if (qt_key >= Qt::Key_0 && qt_key <= Qt::Key_9) return FindKey(QString(QChar('0' + (qt_key - Qt::Key_0))));
  for (const Binding& b : kBindings)
    if (b.qt_key == qt_key) return FindKey(b.name);
  return nullptr;
}

QString KeyConstantsScript() {
  QString pairs;
  for (const RemoteKey& k : kKeys) pairs += QString("%1:%2,").arg(k.name).arg(k.code);
  return QString(
             "(function(){var k={%1};"
             "if(!window.KeyEvent)window.KeyEvent={};"
             "for(var n in k){window[n]=k[n];try{window.KeyEvent[n]=k[n];}catch(e){}}})();")
      .arg(pairs);
}

const char* PressKey(QWebView* view, const RemoteKey& key) {
  if (key.qt_key) {
    QString text;
    if (key.qt_key >= Qt::Key_0 && key.qt_key <= Qt::Key_9) text = QChar('0' + (key.qt_key - Qt::Key_0));
    if (key.qt_key == Qt::Key_Return) text = "\r";
    QKeyEvent down(QEvent::KeyPress, key.qt_key, Qt::NoModifier, text);
    QKeyEvent up(QEvent::KeyRelease, key.qt_key, Qt::NoModifier, text);
    QApplication::sendEvent(view, &down);
    QApplication::sendEvent(view, &up);
    return "native";
  }
  // The browser has no key of its own for this code: give the page the
  // events a receiver's browser would raise.
  QString script = QString(
      "(function(c){var t=document.activeElement||document.body||document;"
      "['keydown','keyup'].forEach(function(type){var e;"
      "try{e=document.createEvent('KeyboardEvent');e.initKeyboardEvent(type,true,true,window,'',0,false,false,false,false);"
      "Object.defineProperty(e,'keyCode',{get:function(){return c;}});"
      "Object.defineProperty(e,'which',{get:function(){return c;}});}"
      "catch(x){e=document.createEvent('Event');e.initEvent(type,true,true);e.keyCode=c;e.which=c;}"
      "t.dispatchEvent(e);});})(%1);").arg(key.code);
  view->page()->mainFrame()->evaluateJavaScript(script);
  return "dom";
}
