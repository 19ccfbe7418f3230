// What a host of the simulator (orvane-run) reads of the receiver: the
// channel it presents, the applications its AIT signals, the files of its
// carousel, and a label for any handle in the call log.
#ifndef ORVANE_SIM_RECEIVER_SIM_H
#define ORVANE_SIM_RECEIVER_SIM_H

#include <cstdint>
#include <string>

#include "middleware/types.h"

namespace sim {

// The channel the receiver presents (0 when it has none).
MwHandle CurrentChannel();
// Its name; "" when there is none.
std::string CurrentChannelName();

// An application a service signals in its AIT.
struct AitEntry {
  int32_t org_id = 0, app_id = 0;
  std::string url;            // absolute (relative ones are taken from the description's folder)
  bool autostart = false;     // control code AUTOSTART (else PRESENT)
  bool broadcast_related = true;
};
// The current channel's AIT entry for "ORG.APP" (hexadecimal, as in
// dvb://current.ait/ORG.APP), or its AUTOSTART application for an empty
// id; false when it signals none.
bool FindAitEntry(const std::string& org_app, AitEntry* out);

// The file for `url` (a dvb:// URL of the current service) in the current
// channel's carousel folder; empty when the URL names another service or no
// carousel, or leaves the folder.
std::string CarouselFile(const std::string& url);

// What a handle names, for a log: `"text"` for a string, `(name)` for a
// channel, "" for anything else.
std::string HandleLabel(MwHandle handle);

}  // namespace sim

#endif
