// NPN_MemAlloc / NPN_MemFree with accounting and fault injection.
#include <malloc.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <unordered_map>
#include <unordered_set>
#include <string>

#include "host/internal.h"

namespace host {
namespace {

struct MemoryState {
  std::mutex mutex;
  struct Block {
    int number;  // which allocation it was, from 1
    uint32_t size;
  };
  std::unordered_map<void*, Block> live;
  // Blocks left over from earlier tests: freeing them later is not an error,
  // but they no longer count as this test's leaks.
  std::unordered_set<void*> forgotten;
  size_t bad_frees = 0;
  int allocations = 0;
  int fail_countdown = 0;
};

MemoryState& State() {
  static MemoryState* state = new MemoryState;  // lives for the whole process
  return *state;
}

}  // namespace

namespace detail {

namespace {
std::atomic<size_t> g_heap{0};
}

void CountChunk(void* p, bool allocated) {
  size_t chunk = malloc_usable_size(p) + sizeof(size_t);
  if (allocated) g_heap += chunk;
  else g_heap -= chunk;
}

void* MemAlloc(uint32_t size) {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  ++s.allocations;
  if (s.fail_countdown > 0 && --s.fail_countdown == 0) return nullptr;
  void* p = malloc(size ? size : 1);
  if (p) {
    s.live[p] = {s.allocations, size};
    CountChunk(p, true);
  }
  return p;
}

void MemFree(void* p) {
  if (!p) return;
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  if (s.live.erase(p) || s.forgotten.erase(p)) {
    CountChunk(p, false);
    free(p);
  } else {
    ++s.bad_frees;  // not ours: leave it alone
  }
}

char* CopyString(const std::string& text) {
  char* p = static_cast<char*>(MemAlloc(static_cast<uint32_t>(text.size() + 1)));
  if (!p) return nullptr;
  memcpy(p, text.data(), text.size());
  p[text.size()] = '\0';
  return p;
}

void ResetMemory() {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  for (const auto& block : s.live) s.forgotten.insert(block.first);
  s.live.clear();
  s.bad_frees = 0;
  s.allocations = 0;
  s.fail_countdown = 0;
}

}  // namespace detail

std::string LiveBlocksReport() {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  std::string out;
  for (const auto& block : s.live) {
    out += "block of allocation " + std::to_string(block.second.number) + ", " +
           std::to_string(block.second.size) + " bytes: \"";
    const char* bytes = static_cast<const char*>(block.first);
    for (uint32_t i = 0; i < block.second.size && i < 32; i++)
      out += bytes[i] >= 32 && bytes[i] < 127 ? bytes[i] : '.';
    out += "\"\n";
  }
  return out;
}

size_t PluginHeap() { return detail::g_heap; }

size_t LiveBlocks() {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.live.size();
}

size_t BadFrees() {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.bad_frees;
}

void FailAllocation(int nth) {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  s.fail_countdown = nth > 0 ? nth : 0;
}

bool AllocationFailureArmed() {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.fail_countdown > 0;
}

int AllocationsSinceReset() {
  MemoryState& s = State();
  std::lock_guard<std::mutex> lock(s.mutex);
  return s.allocations;
}

}  // namespace host
