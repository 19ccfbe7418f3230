// Asks an X window to close, as a window manager's close button does (a
// WM_DELETE_WINDOW client message). Usage: close_window WINDOW-ID
#include <X11/Xlib.h>

#include <cstdio>
#include <cstdlib>

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: close_window WINDOW-ID\n");
    return 2;
  }
  Display* display = XOpenDisplay(nullptr);
  if (!display) {
    fprintf(stderr, "close_window: no X display\n");
    return 1;
  }
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = static_cast<Window>(strtoul(argv[1], nullptr, 0));
  event.xclient.message_type = XInternAtom(display, "WM_PROTOCOLS", False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(XInternAtom(display, "WM_DELETE_WINDOW", False));
  event.xclient.data.l[1] = CurrentTime;
  Status sent = XSendEvent(display, event.xclient.window, False, NoEventMask, &event);
  XCloseDisplay(display);  // flushes the request
  return sent ? 0 : 1;
}
