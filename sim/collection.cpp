// The simulated list operations of channel, rating and rating-scheme lists.
#include <memory>
#include <string>

#include "middleware/collection.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;

// The first element of `list` of type T that `match` accepts (no reference
// given); 0 when none.
template <class T, class Match>
MwHandle FindInList(MwHandle list, Match match) {
  auto l = sim::Find<sim::ListObject>(list);
  if (!l) return 0;
  Lock lock(sim::Mutex());
  for (MwHandle h : l->items) {
    auto o = sim::Find<T>(h);
    if (o && match(*o)) return h;
  }
  return 0;
}

std::vector<std::string> SplitCommas(const std::string& text) {
  std::vector<std::string> out;
  size_t start = 0;
  while (start <= text.size()) {
    size_t comma = text.find(',', start);
    if (comma == std::string::npos) comma = text.size();
    if (comma > start) out.push_back(text.substr(start, comma - start));
    start = comma + 1;
  }
  return out;
}

}  // namespace

extern "C" {

MwHandle MwChannelListGetChannel(MwHandle list, const MwString* ccid) {
  SIM_CALL(MwHandle, list, ccid);
  std::string wanted = sim::Text(ccid);
  return sim::Give(FindInList<sim::ChannelObject>(
      list, [&](const sim::ChannelObject& c) { return c.ccid == wanted; }));
}

// A tsid of 0 matches any transport stream.
MwHandle MwChannelListGetChannelByTriplet(MwHandle list, uint32_t onid, uint32_t tsid, uint32_t sid) {
  SIM_CALL(MwHandle, list, onid, tsid, sid);
  return sim::Give(FindInList<sim::ChannelObject>(list, [&](const sim::ChannelObject& c) {
    return static_cast<uint32_t>(c.onid) == onid && static_cast<uint32_t>(c.sid) == sid &&
           (tsid == 0 || static_cast<uint32_t>(c.tsid) == tsid);
  }));
}

// The new rating belongs to the receiver (it lives on until Reset).
void MwRatingListAddRating(MwHandle list, const MwString* scheme, const MwString* name,
                           uint32_t value, uint32_t labels, const MwString* region) {
  SIM_VOID(list, scheme, name, value, labels, region);
  auto l = sim::Find<sim::ListObject>(list);
  if (!l || l->of_strings) return;
  auto r = std::make_shared<sim::RatingObject>();
  r->scheme = sim::Text(scheme);
  r->name = sim::Text(name);
  r->region = sim::Text(region);
  r->value = static_cast<int32_t>(value);
  r->labels = static_cast<int32_t>(labels);
  MwHandle h = sim::Register(r, true);
  Lock lock(sim::Mutex());
  l->items.push_back(h);
}

// A scheme of an existing name is not added again; the list and the
// receiver both gain a new one.
MwHandle MwSchemeListAddScheme(MwHandle list, const MwString* name, const MwString* values) {
  SIM_CALL(MwHandle, list, name, values);
  auto l = sim::Find<sim::ListObject>(list);
  std::string wanted = sim::Text(name);
  if (!l || l->of_strings || wanted.empty()) return 0;
  if (FindInList<sim::SchemeObject>(list, [&](const sim::SchemeObject& s) { return s.name == wanted; }))
    return 0;
  auto s = std::make_shared<sim::SchemeObject>();
  s->name = wanted;
  s->values = SplitCommas(sim::Text(values));
  MwHandle h = sim::Register(s, true);
  Lock lock(sim::Mutex());
  l->items.push_back(h);
  sim::Rx().schemes.push_back(h);
  return sim::Give(h);
}

MwHandle MwSchemeListGetScheme(MwHandle list, const MwString* name) {
  SIM_CALL(MwHandle, list, name);
  std::string wanted = sim::Text(name);
  return sim::Give(FindInList<sim::SchemeObject>(
      list, [&](const sim::SchemeObject& s) { return s.name == wanted; }));
}

}  // extern "C"
