// What a host of the simulator (orvane-run) reads of the receiver: the
// channel it presents, the applications its AIT signals, the files of its
// carousel, and a label for any handle in the call log; and what tests
// read and set of it.
#ifndef ORVANE_SIM_RECEIVER_SIM_H
#define ORVANE_SIM_RECEIVER_SIM_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

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

// The receiver's clock (seconds since the epoch, as the guide counts them):
// read, or set (it runs on from there at its rate; recordings follow).
int32_t ReceiverTime();
void SetReceiverTime(int32_t seconds);
// The receiver's network interfaces (handles it keeps).
std::vector<MwHandle> NetworkInterfaces();

// ---- for tests: the receiver's objects and settings ----
// Handles the receiver keeps (no reference is given with them).
std::vector<MwHandle> Channels();  // the line-up, in order
std::vector<MwHandle> ChannelComponents(size_t channel);
std::vector<MwHandle> ChannelProgrammes(size_t channel);
std::vector<MwHandle> RatingSchemes();
void SetKeyGroups(int32_t groups);      // the groups the remote has
void SetOtherKeys(std::vector<int32_t> keys);
void SetFreeMemory(int32_t bytes);
// A new list (one reference, the caller's) that gives a new reference to
// each element it hands out, one that lends them (the elements stay the
// receiver's), and a new list of new strings.
MwHandle NewHandleList(std::vector<MwHandle> items);
MwHandle NewLentList(std::vector<MwHandle> items);
MwHandle NewTextList(std::vector<std::string> strings);

}  // namespace sim

#endif
