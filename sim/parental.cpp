// The simulated parental control: the receiver's rating schemes and the
// getters of schemes and ratings.
#include <memory>
#include <string>

#include "middleware/parental.h"
#include "sim/core.h"
#include "sim/fields.h"
#include "sim/receiver.h"

namespace {

struct ParentalControlObject : sim::Object {
  const char* Type() const override { return "parental-control"; }
};

using Lock = std::lock_guard<std::recursive_mutex>;

// Value `index` of a scheme's `values` or `icons` as a new string, 0 when out of range.
MwHandle SchemeText(MwHandle scheme, uint32_t index, std::vector<std::string> sim::SchemeObject::*texts) {
  return sim::Answer<sim::SchemeObject>(scheme, MwHandle{0}, [&](sim::SchemeObject& o) {
    return index < (o.*texts).size() ? sim::NewStringHandleOrNull((o.*texts)[index]) : MwHandle{0};
  });
}

}  // namespace

extern "C" {

MwHandle MwParentalControlOpen(void) {
  SIM_CALL(MwHandle);
  return sim::Register(std::make_shared<ParentalControlObject>(), false);
}

MwHandle MwParentalGetRatingSchemes(MwHandle parentalControl) {
  SIM_CALL(MwHandle, parentalControl);
  return sim::Answer<ParentalControlObject>(parentalControl, MwHandle{0}, [&](ParentalControlObject&) {
    return sim::NewList(sim::Rx().schemes);
  });
}

MwHandle MwRatingSchemeGetName(MwHandle scheme) {
  SIM_CALL(MwHandle, scheme);
  return sim::StringField(scheme, &sim::SchemeObject::name);
}

int32_t MwRatingSchemeGetLength(MwHandle scheme) {
  SIM_CALL(int32_t, scheme);
  return sim::Answer<sim::SchemeObject>(scheme, int32_t{0},
                                        [](sim::SchemeObject& o) { return static_cast<int32_t>(o.values.size()); });
}

MwHandle MwRatingSchemeGetThreshold(MwHandle scheme) {
  SIM_CALL(MwHandle, scheme);
  return sim::Answer<sim::SchemeObject>(scheme, MwHandle{0}, [](sim::SchemeObject& o) { return sim::Give(o.threshold); });
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
  return SchemeText(scheme, index, &sim::SchemeObject::values);
}

MwHandle MwRatingSchemeIconUrl(MwHandle scheme, uint32_t index) {
  SIM_CALL(MwHandle, scheme, index);
  return SchemeText(scheme, index, &sim::SchemeObject::icons);
}

MwHandle MwRatingGetName(MwHandle rating) {
  SIM_CALL(MwHandle, rating);
  return sim::StringField(rating, &sim::RatingObject::name);
}

MwHandle MwRatingGetScheme(MwHandle rating) {
  SIM_CALL(MwHandle, rating);
  return sim::StringField(rating, &sim::RatingObject::scheme);
}

int32_t MwRatingGetValue(MwHandle rating) {
  SIM_CALL(int32_t, rating);
  return sim::IntField(rating, &sim::RatingObject::value);
}

int32_t MwRatingGetLabels(MwHandle rating) {
  SIM_CALL(int32_t, rating);
  return sim::IntField(rating, &sim::RatingObject::labels);
}

MwHandle MwRatingGetRegion(MwHandle rating) {
  SIM_CALL(MwHandle, rating);
  return sim::StringField(rating, &sim::RatingObject::region);
}

}  // extern "C"
