// The inline style parser behind StyleCreate, on well-formed and malformed
// texts.
#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>

#include "host/fixture.h"
#include "style/style.h"

namespace {

class StyleParserTest : public OrvaneTest {
 protected:
  void SetUp() override {
    OrvaneTest::SetUp();
    npp_ = host::NewInstance(host::NewPage());
  }
  // "position left top width height" as parsed.
  std::string Parse(const char* text) {
    StyleRecord* r = StyleCreate(npp_, text);
    EXPECT_NE(nullptr, r);
    if (!r) return "none";
    EXPECT_EQ(npp_, r->instance);
    std::string p;
    for (int32_t v : {r->position, r->left, r->top, r->width, r->height}) p += (p.empty() ? "" : " ") + std::to_string(v);
    host::Funcs()->releaseobject(r->object);  // frees the record too
    return p;
  }
  NPP npp_ = nullptr;
};

TEST_F(StyleParserTest, WellFormedDeclarations) {
  const struct {
    const char* text;
    const char* want;
  } cases[] = {
      {"position: absolute; left: 10px; top: -5px; width: 320px; height: 240px;", "2 10 -5 320 240"},
      {"position:relative;left:1;top:2;width:3;height:4", "4 1 2 3 4"},
      {" \n\tposition\t:\n fixed ;\ttop :\t12px ;\n", "3 0 12 0 0"},
      // Without "position" the index is 0.
      {"left: 5px; top: 6px;", "0 5 6 0 0"},
      // The keyword is matched as a prefix; an unknown one is 0.
      {"position: absolutely; left: 3px", "2 3 0 0 0"},
      {"position: sticky; left: 3px", "0 3 0 0 0"},
      // Recognised keys whose values are not kept do not disturb the others.
      {"marginLeft: 7px; paddingLeft: 8px; borderLeftWidth: 1px; float: left; verticalAlign: top; "
       "outlineWidth: 2px; left: 9px; top: 4px",
       "0 9 4 0 0"},
      // Unknown keys are skipped to the next ";".
      {"color: red; z-index: 3; background: url(x.png); width: 50px", "0 0 0 50 0"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.want, Parse(c.text)) << c.text;
}

TEST_F(StyleParserTest, NoTextMeansStatic) { EXPECT_EQ("1 0 0 0 0", Parse(nullptr)); }

TEST_F(StyleParserTest, MalformedDeclarations) {
  const struct {
    const char* text;
    const char* want;
  } cases[] = {
      // Missing values.
      {"left:px; top: -; width:; height:p", "0 0 0 0 0"},
      // Missing colon: the declaration is dropped, the next one is read.
      {"left 5px; top: 4px", "0 0 4 0 0"},
      {"position absolute; width: 8px", "0 0 0 8 0"},
      // Negative sizes are not numbers here; the rest of the value goes.
      {"width: -5px; height: -1; left: 2px", "0 2 0 0 0"},
      // Trailing garbage after a value, doubled semicolons, lone semicolons.
      {"left: 10em 4px; ;; top: 3px;;", "0 10 3 0 0"},
      // Ends in the middle of a declaration.
      {"left: 12p", "0 12 0 0 0"},
      {"position: rel", "0 0 0 0 0"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.want, Parse(c.text)) << c.text;
}

TEST_F(StyleParserTest, VeryLongTextsAreReadToTheirEndOnly) {
  // Exactly sized heap copies, so that a read past the terminator is caught
  // by the address sanitizer builds.
  auto parse_copy = [this](const std::string& s) {
    std::unique_ptr<char[]> copy(new char[s.size() + 1]);
    memcpy(copy.get(), s.c_str(), s.size() + 1);
    return Parse(copy.get());
  };
  EXPECT_EQ("0 0 0 0 0", parse_copy(std::string(100000, 'q')));
  std::string many;
  for (int i = 0; i < 5000; i++) many += "left: " + std::to_string(i) + "px; ";
  many += "top: 77px";
  EXPECT_EQ("0 4999 77 0 0", parse_copy(many));
  parse_copy("width: " + std::string(5000, '9'));  // the value wraps; only the reading matters
  for (const char* tail : {"left: -", "position: abs", "width", "top:"}) parse_copy(tail);
}

TEST_F(StyleParserTest, RecordAllocationFailureGivesNull) {
  host::FailRecordAllocation(1);
  EXPECT_EQ(nullptr, StyleCreate(npp_, "left: 1px"));
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, StyleCreate(npp_, "left: 1px"));
}

}  // namespace
