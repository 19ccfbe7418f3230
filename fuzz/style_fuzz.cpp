// The inline style parser and the placement walks over arbitrary style
// texts and offset chains.
#include <cstdint>
#include <cstdlib>
#include <string>

#include "fuzz/start.h"
#include "host/host.h"
#include "style/style.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  StartPlugin();
  std::string text(reinterpret_cast<const char*>(data), size);
  // Two bytes shape the element chain the placement walks.
  host::PageSpec spec;
  spec.elements.resize(1 + (size ? data[0] % 3 : 0));
  for (size_t i = 0; i < spec.elements.size(); i++) {
    int32_t v = size > i + 1 ? static_cast<int8_t>(data[i + 1]) * 97 : 0;
    spec.elements[i].offsets = {{"offsetLeft", host::Int(v)}, {"offsetTop", host::Double(v / 3.0)},
                                {"offsetWidth", host::Str(text.c_str())}};
    spec.elements[i].parent = i + 1 < spec.elements.size() ? static_cast<int>(i + 1) : -1;
  }
  NPP npp = host::NewInstance(host::NewPage(spec));
  if (StyleRecord* r = StyleCreate(npp, text.c_str())) {
    NPObject* object = r->object;  // the creator's reference
    StyleDestroy(r);
    host::Funcs()->releaseobject(object);
  }
  ScreenOffsetForPlugin(npp);
  SizeForPlugin(npp);
  int32_t x, y, w, h;
  ScreenRectForPlugin(npp, &x, &y, &w, &h);
  host::UnloadPages();
  CheckAccounting();
  return 0;
}
