// The simulated remote control: key names, their HbbTV key codes and key
// groups, the VK_ constants a receiver's browser defines for pages, and
// delivery of a key press to the page.
#ifndef ORVANE_RUNNER_KEYS_H
#define ORVANE_RUNNER_KEYS_H

#include <QString>

class QWebView;

struct RemoteKey {
  const char* name;  // "VK_RED"
  int code;          // the key code the page sees (403)
  int group;         // keyset group mask (RED 0x1 ... OTHER 0x400)
  int qt_key;        // the Qt key whose key events the browser maps to `code`; 0: none
};

// The key for a name: "VK_RED", "RED", "red", "5" or "VK_5"; null when unknown.
const RemoteKey* FindKey(const QString& name);
// The remote's key for a key of the PC keyboard in interactive use: arrows,
// Enter (OK), Backspace (BACK), digits, F1-F4 and R G Y B (the colour keys),
// Page Up/Down, Space (PLAY_PAUSE), S (STOP), I (INFO); null for any other.
const RemoteKey* KeyForKeyboard(int qt_key);
// Script that defines VK_* and KeyEvent.VK_* in the page, as a receiver's browser does.
QString KeyConstantsScript();
// Presses and releases `key` in the page: a native key event where the browser
// maps one to the HbbTV code, a keydown/keyup DOM event with that code otherwise.
// Returns how it was delivered ("native" or "dom").
const char* PressKey(QWebView* view, const RemoteKey& key);

#endif
