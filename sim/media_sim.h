// Real playback behind the simulated A/V control players. A host (orvane-run)
// may install an engine that plays some URLs for real (local files, a local
// http server); players whose medium it takes keep the receiver's model
// (playlist, queue, loop, full screen, events) and take play states,
// duration, position, end and errors from the engine. Without an engine,
// or for URLs it leaves, players play the simulated media.
#ifndef ORVANE_SIM_MEDIA_SIM_H
#define ORVANE_SIM_MEDIA_SIM_H

#include <cstdint>
#include <string>
#include <vector>

#include "middleware/types.h"

namespace sim {

// Called with the simulator's lock held: an engine answers at once and
// reports back only later, from its own thread or timers.
class MediaEngine {
 public:
  virtual ~MediaEngine() = default;
  // Whether the engine plays `url` (as the page gave it).
  virtual bool Plays(const std::string& url) = 0;
  // Loads `url` for `player`, stopped at its start (any earlier medium of
  // the player goes).
  virtual void Open(MwHandle player, const std::string& url, bool video) = 0;
  // Plays at `speed` (0 pauses; negative rewinds).
  virtual void Play(MwHandle player, int32_t speed) = 0;
  virtual void Seek(MwHandle player, int32_t ms) = 0;
  // Stopped, back at the start.
  virtual void Stop(MwHandle player) = 0;
  virtual void Close(MwHandle player) = 0;
  // The position now in ms, -1 when not known.
  virtual int32_t Position(MwHandle player) = 0;
  virtual void SetVolume(MwHandle player, int32_t volume) = 0;
};

// Installs the engine (null: none). Players that exist keep their media.
void SetMediaEngine(MediaEngine* engine);

// What the engine learns, from any thread; reports for players that are gone
// or no longer play that medium are ignored.
void MediaDuration(MwHandle player, int32_t ms);
// The medium's tracks: video streams, and the languages of its audio and
// subtitle streams ("" when untagged).
void MediaTracks(MwHandle player, int32_t video, const std::vector<std::string>& audio,
                 const std::vector<std::string>& subtitles);
void MediaBuffering(MwHandle player);
void MediaReady(MwHandle player);  // the first frames flow: playing (or paused at speed 0)
void MediaEnded(MwHandle player);
void MediaFailed(MwHandle player, int32_t error);  // the A/V control's error number

}  // namespace sim

#endif
