// Test controls of the simulated A/V control players.
#ifndef ORVANE_SIM_AVCONTROL_SIM_H
#define ORVANE_SIM_AVCONTROL_SIM_H

#include <cstdint>
#include <string>
#include <vector>

#include "middleware/types.h"

namespace sim {

// What a player holds. Play states: 0 stopped, 1 playing, 2 paused,
// 3 connecting, 4 buffering, 5 finished, 6 error.
//
// A player plays on the simulator's clock: play(speed) goes connecting,
// buffering, playing, each reported a few milliseconds later from the
// simulator's thread; the position moves with the speed (0 pauses, 2 is
// twice as fast, negative speeds rewind); at the end the player loops when
// asked to, moves on to the next queued item, or finishes. Media come from
// the receiver description (sim::MediaAt). With automatic events off
// (sim::SetAutoEvents), play() and stop() only set the state and the
// position stays where it is.
struct AVPlayerState {
  int32_t kind = 0;  // 7 video/mpeg, 8 video/mp4, 9 audio/mpeg, 10 audio/mp4
  std::vector<std::string> playlist;  // the data URL, then what was queued
  int32_t track = 0;                  // index of the current playlist item
  int32_t play_state = 0, error = 0, speed = 0, position = 0, play_time = 0, volume = 100;
  int32_t persist = 0, full_screen = 0, width = 0, height = 0, x = 0, y = 0;
  int32_t cache = 0, loop = 0;
  std::vector<int32_t> active_types;  // component types with a selected component
  size_t selected_objects = 0;        // component script objects selected and not unselected
  std::string title;                  // of the current medium
};
// False when `player` is no player. The position is the one at this moment.
bool AVPlayer(MwHandle player, AVPlayerState* out);
// The players that exist, oldest first.
std::vector<MwHandle> AVPlayers();

// The clip rectangle last given to the video plane; false when it was
// cleared (null) or never set.
bool LastClipRect(MwRect* out);

// Each sets the player's state to match (where the event carries one) and
// raises the event, on the calling thread or a moment later on the
// simulator's thread. String arguments become new middleware strings, null 0.
void RaiseAVPlayStateChange(MwHandle player, int32_t state, int32_t error = 0, bool on_sim_thread = false);
void RaiseAVFullScreenChange(MwHandle player, bool fullScreen, bool on_sim_thread = false);
void RaiseAVPlayPositionChanged(MwHandle player, int32_t position, bool on_sim_thread = false);
void RaiseAVSelectedComponentChanged(MwHandle player, int32_t componentType, bool on_sim_thread = false);
void RaiseAVDRMRightsError(MwHandle player, int32_t errorState, const char* contentId,
                           const char* drmSystemId, const char* rightsIssuerUrl,
                           bool on_sim_thread = false);

}  // namespace sim

#endif
