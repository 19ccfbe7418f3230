// Video placement from the page layout, and paint clamping.
#include <gtest/gtest.h>

#include "broadcast/broadcast_fixture.h"

namespace {

// The part of an X11 GraphicsExpose event the plug-in reads.
struct Expose {
  int type;
  unsigned long serial;
  int send_event;
  void* display;
  unsigned long drawable;
  int x, y, width, height;
};

class BroadcastWindowTest : public BroadcastTest {
 protected:
  void Expose(int x, int y, int width, int height) {
    struct Expose e = {13, 0, 0, nullptr, 0, x, y, width, height};
    plugin_funcs_.event(npp_, &e);
  }
  std::string Painted() {
    MwRect r;
    if (!sim::LastPaintRect(&r)) return "none";
    return std::to_string(r.left) + "," + std::to_string(r.top) + "," + std::to_string(r.right) +
           "," + std::to_string(r.bottom);
  }
  void PlayState(int32_t state) {
    sim::Callbacks()->Broadcast_onPlayStateChange(handle_, state, -1);
    host::Pump();
  }
};

TEST_F(BroadcastWindowTest, RectangleIsSentOnlyWhenItChanges) {
  SetWindow(320, 180, NPRect{0, 0, 180, 320});
  SetWindow(320, 180, NPRect{0, 0, 180, 320});
  auto sent = sim::CallsTo("MwBroadcastSetVideoRect");
  ASSERT_EQ(1u, sent.size());
  EXPECT_EQ((std::vector<std::string>{std::to_string(handle_), "110", "70", "320", "180"}), sent[0].args);

  host::SetOffset(page_, 1, "offsetTop", host::Int(-30));  // the container moves up
  SetWindow(320, 180, NPRect{0, 0, 180, 320});
  sent = sim::CallsTo("MwBroadcastSetVideoRect");
  ASSERT_EQ(2u, sent.size());
  EXPECT_EQ("-10", sent[1].args[2]);

  Call("setFullScreen", {host::Bool(true)});
  SetWindow(1280, 720, NPRect{0, 0, 720, 1280});
  EXPECT_EQ(2u, sim::CallsTo("MwBroadcastSetVideoRect").size()) << "full screen: nothing sent";
  PlayState(2);
  Expose(0, 0, 1280, 720);
  EXPECT_EQ("0,0,1280,720", Painted()) << "full screen paints from the origin";
}

// NPP_SetWindow may come while the browser tears the document down: the
// element is read only from the browser's queue, once for several windows,
// and never for an instance destroyed before the queue ran, whether the
// browser drops its queued calls or runs them.
TEST_F(BroadcastWindowTest, PlacementRunsFromTheQueueOnceForSeveralWindows) {
  SetWindow(320, 180, NPRect{0, 0, 180, 320}, false);
  SetWindow(320, 180, NPRect{0, 0, 180, 320}, false);
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastSetVideoRect")) << "nothing inside NPP_SetWindow";
  EXPECT_EQ(1u, host::Pending()) << "one placement queued for both windows";
  host::Pump();
  EXPECT_EQ(1u, sim::CountCalls("MwBroadcastSetVideoRect"));
}

TEST_F(BroadcastWindowTest, NoPlacementForAnInstanceDestroyedBeforeTheQueueRan) {
  for (bool dropped : {true, false}) {
    SCOPED_TRACE(dropped ? "the browser drops the queued call" : "the browser runs it anyway");
    TearDown();
    SetUp();
    host::DropCallsOfDestroyedInstances(dropped);
    SetWindow(320, 180, NPRect{0, 0, 180, 320}, false);
    DestroyPlugin(npp_);
    host::Pump();
    EXPECT_EQ(0u, sim::CountCalls("MwBroadcastSetVideoRect"));
    host::DropCallsOfDestroyedInstances(true);
  }
}

// Reading the element's offsets lays the document out, which may destroy
// the instance there and then: the placement stops, and the record goes
// when it returns.
TEST_F(BroadcastWindowTest, AnInstanceTheLayoutDestroysDuringItsPlacementIsLeftAlone) {
  host::OnElementRead(page_, "offsetLeft", [this] { DestroyPlugin(npp_); });
  SetWindow(320, 180, NPRect{0, 0, 180, 320});
  EXPECT_EQ(1u, sim::CountCalls("MwObjectRelease")) << "destroyed";
  EXPECT_EQ(0u, sim::CountCalls("MwBroadcastSetVideoRect")) << "nothing placed after the destroy";
  EXPECT_EQ(0u, host::LiveRecords());
}

TEST_F(BroadcastWindowTest, PaintIsScaledClampedAndGatedByThePlayState) {
  // The browser's window is twice the element's size: positions scale.
  SetWindow(640, 360, NPRect{20, 10, 100, 200});
  Expose(0, 0, 50, 50);
  EXPECT_EQ("none", Painted()) << "no video before connecting";

  PlayState(1);
  Expose(0, 0, 500, 500);  // at (220, 140); clip (230, 160)-(420, 240)
  EXPECT_EQ("230,160,420,240", Painted());
  Expose(20, 30, 50, 50);
  EXPECT_EQ("240,170,290,220", Painted()) << "inside the clip: unchanged";

  PlayState(3);
  Expose(0, 0, 10, 10);
  EXPECT_EQ("240,170,290,220", Painted()) << "stopped: not painted";
  PlayState(2);
  Expose(0, 0, 10, 10);
  EXPECT_EQ("230,160,230,150", Painted());

  DestroyPlugin(npp_);
  EXPECT_EQ("none", Painted()) << "painting stops with the object";
}

}  // namespace
