// X errors in the browser's own requests (QtWebKit's windowless painting
// asks for a pixmap as wide as the element, and X refuses one wider than
// 32,767 pixels) must not end the run. Whoever installs an Xlib error
// handler in this process (the toolkit the engine starts for plug-ins
// installs one that exits) gets the runner's instead: it logs the error and
// goes on, as a receiver's browser does.
#include <QString>

#include "runner/log.h"

// Xlib's macros (CursorShape, None, ...) collide with Qt's names: it comes last.
#include <X11/Xlib.h>
#include <dlfcn.h>

namespace {

int Logged(Display* display, XErrorEvent* error) {
  char name[128] = "";
  XGetErrorText(display, error->error_code, name, sizeof name);
  runlog::Line("run", QString("X error %1 (%2) in request %3.%4, ignored")
                          .arg(error->error_code).arg(name).arg(error->request_code).arg(error->minor_code));
  return 0;
}

XErrorHandler g_requested = nullptr;  // what the last caller asked for, handed back as the previous one

}  // namespace

extern "C" __attribute__((visibility("default"))) XErrorHandler XSetErrorHandler(XErrorHandler handler) {
  using Set = XErrorHandler (*)(XErrorHandler);
  static Set real = reinterpret_cast<Set>(dlsym(RTLD_NEXT, "XSetErrorHandler"));
  XErrorHandler previous = g_requested;
  g_requested = handler;
  if (real) real(Logged);
  return previous;
}
