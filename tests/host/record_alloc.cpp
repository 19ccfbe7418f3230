// The plug-in's record allocator as the unit tests link it: malloc underneath,
// with a count of live records and a way to make one allocation fail.
#include "utils/record_alloc.h"

#include <cstdlib>
#include <mutex>
#include <unordered_set>

#include "host/internal.h"

namespace {

struct RecordState {
  std::mutex mutex;
  std::unordered_set<void*> live;
  std::unordered_set<void*> forgotten;  // left over from earlier tests
  size_t bad_frees = 0;
  int fail_countdown = 0;
};

RecordState& State() {
  static RecordState* state = new RecordState;  // records may be freed at exit
  return *state;
}

}  // namespace

void* RecordAlloc(size_t size) {
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (s.fail_countdown > 0 && --s.fail_countdown == 0) return nullptr;
  void* p = malloc(size ? size : 1);
  if (p) {
    s.live.insert(p);
    host::detail::CountChunk(p, true);
  }
  return p;
}

void RecordFree(void* p) {
  if (!p) return;
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (s.live.erase(p) || s.forgotten.erase(p)) {
    host::detail::CountChunk(p, false);
    free(p);
    return;
  }
  // A second free of a record, or a pointer that never was one: in a receiver
  // this corrupts the heap. Left alone here, and counted.
  ++s.bad_frees;
}

namespace host {

void FailRecordAllocation(int nth) {
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.fail_countdown = nth > 0 ? nth : 0;
}

bool RecordFailureArmed() {
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.fail_countdown > 0;
}

size_t LiveRecords() {
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.live.size();
}

size_t BadRecordFrees() {
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.bad_frees;
}

namespace detail {

void ResetRecords() {
  RecordState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.forgotten.insert(s.live.begin(), s.live.end());
  s.live.clear();
  s.bad_frees = 0;
  s.fail_countdown = 0;
}

}  // namespace detail
}  // namespace host
