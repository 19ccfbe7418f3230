// The simulated parental control: the receiver's rating schemes and the
// getters of schemes and ratings.
#include <memory>
#include <string>

#include "middleware/parental.h"
#include "sim/core.h"
#include "sim/receiver.h"

namespace {

struct ParentalControlObject : sim::Object {
  const char* Type() const override { return "parental-control"; }
};

using Lock = std::lock_guard<std::recursive_mutex>;

// Value `index` of a scheme's `values` or `icons` as a new string, 0 when out of range.
MwHandle SchemeText(MwHandle scheme, uint32_t index, bool icon) {
  auto s = sim::Find<sim::SchemeObject>(scheme);
  if (!s) return 0;
  Lock lock(sim::Mutex());
  const std::vector<std::string>& texts = icon ? s->icons : s->values;
  return index < texts.size() ? sim::NewStringHandleOrNull(texts[index]) : 0;
}

}  // namespace

extern "C" {

MwHandle MwParentalControlOpen(void) {
  SIM_CALL(MwHandle);
  return sim::Register(std::make_shared<ParentalControlObject>(), false);
}

MwHandle MwParentalGetRatingSchemes(MwHandle parentalControl) {
  SIM_CALL(MwHandle, parentalControl);
  if (!sim::Find<ParentalControlObject>(parentalControl)) return 0;
  Lock lock(sim::Mutex());
  return sim::NewList(sim::Rx().schemes);
}

MwHandle MwRatingSchemeGetName(MwHandle scheme) {
  SIM_CALL(MwHandle, scheme);
  auto s = sim::Find<sim::SchemeObject>(scheme);
  if (!s) return 0;
  Lock lock(sim::Mutex());
  return sim::NewStringHandleOrNull(s->name);
}

int32_t MwRatingSchemeGetLength(MwHandle scheme) {
  SIM_CALL(int32_t, scheme);
  auto s = sim::Find<sim::SchemeObject>(scheme);
  if (!s) return 0;
  Lock lock(sim::Mutex());
  return static_cast<int32_t>(s->values.size());
}

MwHandle MwRatingSchemeGetThreshold(MwHandle scheme) {
  SIM_CALL(MwHandle, scheme);
  auto s = sim::Find<sim::SchemeObject>(scheme);
  if (!s) return 0;
  Lock lock(sim::Mutex());
  return sim::Give(s->threshold);
}

int32_t MwRatingSchemeIndexOf(MwHandle scheme, const MwString* name) {
  SIM_CALL(int32_t, scheme, name);
  auto s = sim::Find<sim::SchemeObject>(scheme);
  if (!s || !name) return -1;
  std::string wanted = sim::Text(name);
  Lock lock(sim::Mutex());
  for (size_t i = 0; i < s->values.size(); i++)
    if (s->values[i] == wanted) return static_cast<int32_t>(i);
  return -1;
}

MwHandle MwRatingSchemeItem(MwHandle scheme, uint32_t index) {
  SIM_CALL(MwHandle, scheme, index);
  return SchemeText(scheme, index, false);
}

MwHandle MwRatingSchemeIconUrl(MwHandle scheme, uint32_t index) {
  SIM_CALL(MwHandle, scheme, index);
  return SchemeText(scheme, index, true);
}

MwHandle MwRatingGetName(MwHandle rating) {
  SIM_CALL(MwHandle, rating);
  auto r = sim::Find<sim::RatingObject>(rating);
  if (!r) return 0;
  Lock lock(sim::Mutex());
  return sim::NewStringHandleOrNull(r->name);
}

MwHandle MwRatingGetScheme(MwHandle rating) {
  SIM_CALL(MwHandle, rating);
  auto r = sim::Find<sim::RatingObject>(rating);
  if (!r) return 0;
  Lock lock(sim::Mutex());
  return sim::NewStringHandleOrNull(r->scheme);
}

int32_t MwRatingGetValue(MwHandle rating) {
  SIM_CALL(int32_t, rating);
  auto r = sim::Find<sim::RatingObject>(rating);
  if (!r) return 0;
  Lock lock(sim::Mutex());
  return r->value;
}

int32_t MwRatingGetLabels(MwHandle rating) {
  SIM_CALL(int32_t, rating);
  auto r = sim::Find<sim::RatingObject>(rating);
  if (!r) return 0;
  Lock lock(sim::Mutex());
  return r->labels;
}

MwHandle MwRatingGetRegion(MwHandle rating) {
  SIM_CALL(MwHandle, rating);
  auto r = sim::Find<sim::RatingObject>(rating);
  if (!r) return 0;
  Lock lock(sim::Mutex());
  return sim::NewStringHandleOrNull(r->region);
}

}  // extern "C"
