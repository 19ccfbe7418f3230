// Test controls of the simulated broadcast video instances.
#ifndef ORVANE_SIM_BROADCAST_SIM_H
#define ORVANE_SIM_BROADCAST_SIM_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "middleware/types.h"

namespace sim {

// What a broadcast instance holds. Play states: 0 unrealized, 1 connecting,
// 2 presenting, 3 stopped.
struct BroadcastState {
  int32_t play_state = 0;
  int32_t full_screen = 0;
  bool bound = false;  // bound to the receiver's channel (bind, setChannel, next/prev)
  int32_t x = 0, y = 0, width = 0, height = 0;  // last video rectangle
  int32_t recording_state = 0;
  std::string data;
  std::vector<std::pair<std::string, uint32_t>> stream_events;  // (event name, listener kind)
  std::vector<int32_t> selected_types;  // component types selected by type and not unselected
  size_t selected_components = 0;       // components selected by handle and not unselected
};
// False when `broadcast` is no broadcast instance.
bool Broadcast(MwHandle broadcast, BroadcastState* out);
// The broadcast instances made since Reset and not released, oldest first.
std::vector<MwHandle> BroadcastInstances();
// The viewer tunes the receiver to channel `index` of the line-up (as with
// the remote's P+ and P- when no application takes them): the receiver
// presents it and every broadcast object bound to the presented channel
// follows (connecting, the change succeeded, presenting). False, with
// nothing changed, for an index beyond the line-up.
bool ViewerTune(size_t index);
// The rectangle last given to MwVideoSetPaintRect; false when it was
// cleared (null) or never set.
bool LastPaintRect(MwRect* out);

// Fires the stream event `name` now, on the calling thread, to every
// registration for that name of every broadcast instance.
void FireStreamEvent(const std::string& name, const std::string& data, const std::string& text,
                     int32_t status = 1);
// The rating of the present programme of the receiver's current channel: a
// rating the receiver keeps (no reference is given), 0 when it has none.
MwHandle CurrentRating();
// Gives that rating another name and value (the age of the dvb-si scheme;
// a programme without a rating gets one); false when nothing is presented.
bool SetPresentRating(const std::string& name, int32_t value);
// Raise the rating events with CurrentRating() (borrowed, as the receiver
// does), new strings for the content and DRM system ids (null: 0), on the
// calling thread.
void RaiseParentalRatingChange(MwHandle broadcast, const char* contentId, const char* drmSystemId,
                               bool blocked);
void RaiseParentalRatingError(MwHandle broadcast, const char* contentId, const char* drmSystemId);

}  // namespace sim

#endif
