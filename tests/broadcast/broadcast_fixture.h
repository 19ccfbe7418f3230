// A page with one embedded video/broadcast object inside a positioned
// container, and helpers to script it.
#ifndef ORVANE_TESTS_BROADCAST_BROADCAST_FIXTURE_H
#define ORVANE_TESTS_BROADCAST_BROADCAST_FIXTURE_H

#include <string>
#include <vector>

#include "host/fixture.h"
#include "host/internal.h"
#include "sim/broadcast_sim.h"
#include "sim/sim.h"

class BroadcastTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    // The element sits at (10, 20) inside a container at (100, 50).
    host::PageSpec spec;
    spec.elements.resize(2);
    spec.elements[0].offsets = {{"offsetLeft", host::Int(10)}, {"offsetTop", host::Int(20)},
                                {"offsetWidth", host::Int(320)}, {"offsetHeight", host::Int(180)}};
    spec.elements[0].parent = 1;
    spec.elements[1].offsets = {{"offsetLeft", host::Int(100)}, {"offsetTop", host::Int(50)},
                                {"offsetWidth", host::Int(1280)}, {"offsetHeight", host::Int(720)}};
    npp_ = NewPlugin("video/broadcast",
                     {{"style", "position:absolute; left:110px; top:70px; width:320px; height:180px;"}},
                     spec);
    ASSERT_EQ(NPERR_NO_ERROR, last_error_);
    page_ = host::PageOf(npp_);
    video_ = Scriptable(npp_);
    ASSERT_NE(nullptr, video_);
    auto instances = sim::BroadcastInstances();
    ASSERT_EQ(1u, instances.size());
    handle_ = instances.back();
  }

  // The objects the page's functions were called with go before the leak checks.
  void TearDown() override {
    host::detail::ResetFunctions();
    OrvaneTest::TearDown();
  }

  // A method call; the receiver's reactions to it (events from the
  // simulator's thread) have all happened when it returns, and wait in the
  // browser's queue until the test pumps.
  bool Call(const char* method, std::vector<NPVariant> args = {}, NPVariant* result = nullptr) {
    NPVariant ignored = host::Void();
    bool ok = host::Invoke(npp_, video_, method, args, result ? result : &ignored);
    sim::WaitIdle();
    return ok;
  }
  // A property read; `ok` receives the getProperty result.
  NPVariant Get(const char* name, bool* ok = nullptr) {
    NPVariant v = host::Void();
    bool got = host::Get(npp_, video_, name, &v);
    if (ok) *ok = got;
    return v;
  }
  std::string Text(NPObject* o, const char* name) {
    NPVariant v = host::Void();
    host::Get(npp_, o, name, &v);
    std::string s = host::AsString(v);
    host::Release(&v);
    return s;
  }
  // Lets the simulator's thread finish its events, then runs the browser's thread.
  size_t Settle() {
    sim::WaitIdle();
    return host::Pump();
  }
  // NPP_SetWindow with the browser's window (kept, as a browser keeps it),
  // then the browser's queue runs: the placement comes from there.
  void SetWindow(uint32_t width, uint32_t height, NPRect clip, bool pump = true) {
    window_ = NPWindow();
    window_.width = width;
    window_.height = height;
    window_.clipRect = clip;
    plugin_funcs_.setwindow(npp_, &window_);
    if (pump) host::Pump();
  }
  NPWindow window_ = {};
  std::string StyleRect() {
    return host::StyleValue(page_, "left") + " " + host::StyleValue(page_, "top") + " " +
           host::StyleValue(page_, "width") + " " + host::StyleValue(page_, "height");
  }

  NPP npp_ = nullptr;
  host::Page* page_ = nullptr;
  NPObject* video_ = nullptr;
  MwHandle handle_ = 0;
};

#endif
