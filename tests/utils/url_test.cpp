// Resolution of page-relative URLs.
#include <gtest/gtest.h>

#include "host/fixture.h"
#include "npapi/browser.h"
#include "utils/url.h"

namespace {

class UrlTest : public OrvaneTest {
 protected:
  // The resolved text, or "=" + the input when it was left alone.
  std::string Resolve(const std::string& href, const std::string& url) {
    host::PageSpec spec;
    spec.href = href;
    NPP npp = host::NewInstance(host::NewPage(spec));
    MwString s{static_cast<uint32_t>(url.size()), url.data()};
    if (!NP_UtilsResolveUrl(npp, &s)) return "=" + std::string(s.data, s.length);
    std::string out(s.data, s.length);
    EXPECT_EQ('\0', s.data[s.length]);
    NPN_MemFree(const_cast<char*>(s.data));
    return out;
  }
};

TEST_F(UrlTest, SchemesOfLowerCaseLettersAreAbsolute) {
  EXPECT_EQ("=dvb://1.2.3/stream", Resolve("http://h/apps/index.html", "dvb://1.2.3/stream"));
  EXPECT_EQ("=http://other/x", Resolve("http://h/apps/index.html", "http://other/x"));
  EXPECT_EQ("=:odd", Resolve("http://h/apps/index.html", ":odd"));
  // Upper case, digits or "+" are not scanned, so these are relative.
  EXPECT_EQ("http://h/apps/HTTP://x", Resolve("http://h/apps/index.html", "HTTP://x"));
  EXPECT_EQ("http://h/apps/svc+x:y", Resolve("http://h/apps/index.html", "svc+x:y"));
}

TEST_F(UrlTest, RelativeUrlsJoinThePageDirectory) {
  EXPECT_EQ("http://h/apps/next.html", Resolve("http://h/apps/index.html", "next.html"));
  EXPECT_EQ("http://h/apps//root.html", Resolve("http://h/apps/index.html", "/root.html"));
  EXPECT_EQ("http://h/apps/x.html", Resolve("http://h/apps/", "x.html"));
  EXPECT_EQ("http://h/a?u=/b/x.html", Resolve("http://h/a?u=/b/c", "x.html"));
  EXPECT_EQ("http://h/apps/", Resolve("http://h/apps/index.html", ""));
  // No "/" in the page address: nothing to resolve against.
  EXPECT_EQ("=x.html", Resolve("about:blank", "x.html"));
}

TEST_F(UrlTest, FailuresLeaveTheUrlAlone) {
  host::FailAllocation(2);  // the first is the href copy the browser returns
  EXPECT_EQ("=next.html", Resolve("http://h/apps/index.html", "next.html"));
}

}  // namespace
