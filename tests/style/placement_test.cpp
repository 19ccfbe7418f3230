// Where the plug-in's element lies: the offsetParent walks over a page's
// element chain, and the failures to reach the element or its style.
#include <gtest/gtest.h>

#include <string>

#include "host/fixture.h"
#include "style/style.h"

namespace {

using host::ElementBox;
using host::PageSpec;

uint32_t Pack(uint32_t low, uint32_t high) { return (low & 0xffff) | (high << 16); }

class PlacementTest : public OrvaneTest {
 protected:
  NPP Page(const PageSpec& spec) {
    page_ = host::NewPage(spec);
    return host::NewInstance(page_);
  }
  // ScreenRectForPlugin's "x y w h".
  static std::string Rect(NPP npp) {
    int32_t x = -1, y = -1, w = -1, h = -1;
    ScreenRectForPlugin(npp, &x, &y, &w, &h);
    return std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(w) + " " + std::to_string(h);
  }
  host::Page* page_ = nullptr;
};

ElementBox Box(NPVariant left, NPVariant top, NPVariant width, NPVariant height, int parent = -1) {
  ElementBox b;
  b.offsets = {{"offsetLeft", left}, {"offsetTop", top}, {"offsetWidth", width}, {"offsetHeight", height}};
  b.parent = parent;
  return b;
}

TEST_F(PlacementTest, OffsetsAddUpAlongTheChainWhateverTheirType) {
  PageSpec spec;
  spec.elements = {
      Box(host::Int(10), host::Int(20), host::Int(0), host::Int(720), 1),
      Box(host::Double(100.9), host::Str("30px"), host::Int(1280), host::Int(500), 2),
      Box(host::Bool(true), host::Str("-5"), host::Str(""), host::Null()),
  };
  NPP npp = Page(spec);
  EXPECT_EQ(Pack(10 + 100 + 1, 20 + 30 - 5), ScreenOffsetForPlugin(npp));

  // The element's own size here; the size walk fills the zero width from its parent.
  EXPECT_EQ("111 45 0 720", Rect(npp));
  EXPECT_EQ(Pack(1280, 720), SizeForPlugin(npp));
}

TEST_F(PlacementTest, AnElementOnItsOwn) {
  PageSpec spec;
  spec.elements = {Box(host::Int(-20), host::Str("7.5px"), host::Int(70000), host::Int(70000))};
  NPP npp = Page(spec);
  EXPECT_EQ(Pack(0xffec, 7), ScreenOffsetForPlugin(npp));
  // x and width sign-extended from 16 bits; the height keeps all 32 bits.
  EXPECT_EQ("-20 7 " + std::to_string(static_cast<int16_t>(70000 & 0xffff)) + " 70000", Rect(npp));

  // Offsets that cannot be read count as 0; the size walk ends at the top.
  spec.elements = {ElementBox{}};
  npp = Page(spec);
  EXPECT_EQ(0u, ScreenOffsetForPlugin(npp));
  EXPECT_EQ(0u, SizeForPlugin(npp));
}

TEST_F(PlacementTest, ZeroSizesComeFromTheNearestAncestorThatHasThem) {
  PageSpec spec;
  spec.elements = {
      Box(host::Int(0), host::Int(0), host::Int(0), host::Int(0), 1),
      Box(host::Int(0), host::Int(0), host::Int(0), host::Int(300), 2),
      Box(host::Int(0), host::Int(0), host::Int(640), host::Int(480)),
  };
  NPP npp = Page(spec);
  EXPECT_EQ(Pack(640, 300), SizeForPlugin(npp));
  host::SetOffset(page_, 0, "offsetWidth", host::Int(320));
  EXPECT_EQ(Pack(320, 300), SizeForPlugin(npp));
}

TEST_F(PlacementTest, UnreachableElementIsLoggedAndGivesZeros) {
  PageSpec spec;
  spec.elements = {Box(host::Int(5), host::Int(6), host::Int(7), host::Int(8))};
  spec.element_available = false;
  NPP npp = Page(spec);
  testing::internal::CaptureStdout();
  EXPECT_EQ(0u, ScreenOffsetForPlugin(npp));
  EXPECT_EQ(0u, SizeForPlugin(npp));
  const std::string rect = Rect(npp);
  EXPECT_EQ(nullptr, StyleObjectForPlugin(npp));
  std::string out = testing::internal::GetCapturedStdout();
  EXPECT_EQ("0 0 0 0", rect);
  const std::string err = std::to_string(NPERR_GENERIC_ERROR);
  EXPECT_EQ("ERROR [ScreenOffsetForPlugin:1055] getvalue failed err=" + err + "\n" +
                "ERROR [SizeForPlugin:1084] getvalue failed err=" + err + "\n" +
                "ERROR [ScreenRectForPlugin:1126] getvalue failed err=" + err + "\n" +
                "ERROR [StyleObjectForPlugin:1024] getvalue failed err=" + err + "\n",
            out);
}

TEST_F(PlacementTest, StyleObjectOfTheElement) {
  PageSpec spec;
  NPP npp = Page(spec);
  NPObject* style = StyleObjectForPlugin(npp);
  EXPECT_EQ(host::Style(page_), style);
  // The caller holds one reference and gives it back; the page stays balanced.
  host::Funcs()->releaseobject(style);

  spec.style_available = false;
  npp = Page(spec);
  testing::internal::CaptureStdout();
  EXPECT_EQ(nullptr, StyleObjectForPlugin(npp));
  EXPECT_EQ("ERROR [StyleObjectForPlugin:1018] getproperty failed\n", testing::internal::GetCapturedStdout());
}

}  // namespace
