// Reading and writing an element's style rectangle, the default size, and
// the style script object.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "host/fixture.h"
#include "style/style.h"

namespace {

uint32_t Pack(uint32_t low, uint32_t high) { return (low & 0xffff) | (high << 16); }

class StyleRectTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    page_ = host::NewPage();
    npp_ = host::NewInstance(page_);
    style_ = host::Style(page_);
    g_width = 0;
    g_heigth = 0;
  }
  void TearDown() override {
    g_width = 0;
    g_heigth = 0;
    OrvaneTest::TearDown();
  }
  void SetStyle(const char* name, const char* value) { host::SetStyleValue(page_, name, host::Str(value)); }
  host::Page* page_ = nullptr;
  NPP npp_ = nullptr;
  NPObject* style_ = nullptr;
};

TEST_F(StyleRectTest, WrittenRectangleReadsBack) {
  EXPECT_TRUE(StyleSetRect(npp_, style_, 10, 20, 300, 200));
  EXPECT_EQ("300px", host::StyleValue(page_, "width"));
  int32_t l, t, w, h;
  EXPECT_TRUE(StyleRect(npp_, style_, &l, &t, &w, &h));
  EXPECT_EQ((std::vector<int32_t>{10, 20, 300, 200}), (std::vector<int32_t>{l, t, w, h}));
  EXPECT_EQ(Pack(300, 200), StyleSize(npp_, style_));

  EXPECT_TRUE(StyleSetRect(npp_, style_, -20, 0, 1280, 720));
  EXPECT_EQ(Pack(0xffec, 0), StyleOffset(npp_, style_));
}

TEST_F(StyleRectTest, SizeFallsBackToTheDefaultSize) {
  StyleSetWidth(npp_, style_, 1280);
  StyleSetHeight(npp_, style_, 720);
  EXPECT_EQ(1280u, g_width);
  EXPECT_EQ(720u, g_heigth);
  EXPECT_EQ("", host::StyleValue(page_, "width")) << "the style is not touched";
  EXPECT_EQ(Pack(1280, 720), StyleSize(npp_, style_));

  SetStyle("width", "640px");
  SetStyle("height", "0px");
  EXPECT_EQ(Pack(640, 720), StyleSize(npp_, style_));

  // Without "px" the size and offset reads give 0; the rectangle read does not care.
  SetStyle("width", "480");
  SetStyle("left", "15");
  EXPECT_EQ(Pack(1280, 720), StyleSize(npp_, style_));
  EXPECT_EQ(0u, StyleOffset(npp_, style_));
  int32_t l, t, w, h;
  StyleRect(npp_, style_, &l, &t, &w, &h);
  EXPECT_EQ(480, w);
  EXPECT_EQ(15, l);
}

TEST_F(StyleRectTest, PositionKeywords) {
  const struct {
    const char* text;
    int32_t index;
  } cases[] = {{"relative", 4}, {"", 0}, {"sticky", 0}, {"fixedly", 3}};
  for (const auto& c : cases) {
    SetStyle("position", c.text);
    EXPECT_EQ(c.index, StylePosition(npp_, style_)) << c.text;
  }
  EXPECT_STREQ("inherit", StylePositionString(7)) << "out of range";
}

TEST_F(StyleRectTest, FailedWritesAreLoggedAndTheLoopGoesOn) {
  // The plug-in's own style object takes numbers only, so String writes fail.
  StyleRecord* r = StyleCreate(npp_, "left: 1px");
  ASSERT_NE(nullptr, r);
  testing::internal::CaptureStdout();
  EXPECT_FALSE(StyleSetRect(npp_, r->object, 1, 2, 3, 4));
  EXPECT_EQ(
      "ERROR [StyleSetRect:1207] Setproperty failed for left\n"
      "ERROR [StyleSetRect:1207] Setproperty failed for top\n"
      "ERROR [StyleSetRect:1207] Setproperty failed for width\n"
      "ERROR [StyleSetRect:1207] Setproperty failed for height\n",
      testing::internal::GetCapturedStdout());
  // That object answers every dimension with its left value.
  int32_t l = 9, t = 9, w = 9, h = 9;
  EXPECT_TRUE(StyleRect(npp_, r->object, &l, &t, &w, &h));
  EXPECT_EQ(1, l & t & w & h);
  // Without its record it answers nothing: zeros.
  NPObject* o = r->object;
  StyleDestroy(r);
  EXPECT_FALSE(StyleRect(npp_, o, &l, &t, &w, &h));
  EXPECT_EQ(0, l | t | w | h);
  host::Funcs()->releaseobject(o);
}

TEST_F(StyleRectTest, StyleScriptObject) {
  StyleRecord* r = StyleCreate(npp_, "position: fixed; left: 3px; top: 4px; width: 5px; height: 6px");
  ASSERT_NE(nullptr, r);
  NPObject* o = r->object;
  EXPECT_TRUE(host::Set(npp_, o, "top", host::Int(5)));
  EXPECT_TRUE(host::Set(npp_, o, "left", host::Double(9.8)));
  EXPECT_EQ(5, r->top);
  EXPECT_EQ(9, r->left);
  // Every dimension reads the left value.
  NPVariant v = host::Void();
  EXPECT_TRUE(host::Get(npp_, o, "height", &v));
  EXPECT_EQ(NPVariantType_Int32, v.type);
  EXPECT_EQ(9, v.value.intValue);
  EXPECT_TRUE(host::Get(npp_, o, "position", &v));
  EXPECT_EQ(NPVariantType_Void, v.type);
  EXPECT_FALSE(host::Set(npp_, o, "width", host::Str("7px")));
  EXPECT_EQ(5, r->width);

  // Destroying the record first leaves the object harmless.
  StyleRecord stranger{};
  StyleDestroy(&stranger);
  StyleDestroy(r);
  EXPECT_EQ(0u, host::LiveRecords());
  EXPECT_FALSE(host::Get(npp_, o, "left", &v));
  host::Funcs()->releaseobject(o);
}

}  // namespace
