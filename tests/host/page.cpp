// Pages: window, location, document, the plug-in's element with its
// offsetParent chain and styles; NPN_GetValue/SetValue/GetURL* on them.
#include <algorithm>
#include <memory>
#include <unordered_set>

#include "host/internal.h"

namespace host {

struct Page {
  PageSpec spec;
  detail::HostObject* window = nullptr;
  detail::HostObject* location = nullptr;
  detail::HostObject* document = nullptr;
  std::vector<detail::HostObject*> elements;
  std::vector<detail::HostObject*> styles;
  std::vector<std::unique_ptr<NPP_t>> instances;
};

namespace detail {
namespace {

struct PageState {
  std::vector<std::unique_ptr<Page>> pages;
  std::unordered_set<const Page*> live;  // the same pages, found at once
  std::vector<UrlRequest> url_requests;
  std::vector<SetValueCall> set_values;
  std::vector<std::string> exceptions;
  bool fail_next_geturlnotify = false;
};

PageState& State() {
  static auto* state = new PageState;
  return *state;
}

bool IsPage(Page* page) {
  return State().live.count(page) != 0;
}

HostObject* PageObject(const std::string& kind) {
  HostObject* h = NewHostObject(kind);
  h->page_object = true;
  h->baseline = 1;  // the page's own reference
  return h;
}

// A getter answering a retained object held by the page.
Getter ObjectGetter(HostObject* o) {
  return [o](NPVariant* result) {
    if (o->dead) return false;
    RetainObject(o);
    *result = Obj(o);
    return true;
  };
}

Getter StringGetter(const std::string& text) {
  return [text](NPVariant* result) { return Give(HoldString(text), result); };
}

Getter NullGetter() {
  return [](NPVariant* result) {
    *result = Null();
    return true;
  };
}

HostObject* At(const std::vector<HostObject*>& list, int index) {
  if (index < 0 || static_cast<size_t>(index) >= list.size()) return nullptr;
  return list[static_cast<size_t>(index)];
}

}  // namespace

NPError GetValue(NPP npp, NPNVariable var, void* value) {
  Page* page = PageOf(npp);
  if (!page) return NPERR_INVALID_INSTANCE_ERROR;
  if (!value) return NPERR_INVALID_PARAM;
  NPObject* answer = nullptr;
  switch (var) {
    case NPNVWindowNPObject:
      answer = page->window;
      break;
    case NPNVPluginElementNPObject:
      if (!page->spec.element_available) return NPERR_GENERIC_ERROR;
      answer = At(page->elements, 0);
      break;
    default:
      return NPERR_INVALID_PARAM;
  }
  if (!answer || !Known(answer)) return NPERR_GENERIC_ERROR;
  *static_cast<NPObject**>(value) = RetainObject(answer);
  return NPERR_NO_ERROR;
}

NPError SetValue(NPP npp, NPPVariable var, void* value) {
  State().set_values.push_back(SetValueCall{npp, var, value});
  return NPERR_NO_ERROR;
}

NPError GetURL(NPP npp, const char* url, const char* target) {
  State().url_requests.push_back(
      UrlRequest{npp, url ? url : "", target ? target : "", false, nullptr});
  return NPERR_NO_ERROR;
}

NPError GetURLNotify(NPP npp, const char* url, const char* target, void* data) {
  if (State().fail_next_geturlnotify) {
    State().fail_next_geturlnotify = false;
    return NPERR_GENERIC_ERROR;
  }
  State().url_requests.push_back(
      UrlRequest{npp, url ? url : "", target ? target : "", true, data});
  return NPERR_NO_ERROR;
}

void SetException(NPObject*, const NPUTF8* message) {
  State().exceptions.push_back(message ? message : "");
}

void ResetPages() {
  PageState& s = State();
  s.live.clear();
  s.pages.clear();  // the objects themselves go with ResetHostObjects
  s.url_requests.clear();
  s.set_values.clear();
  s.exceptions.clear();
  s.fail_next_geturlnotify = false;
}

}  // namespace detail

using detail::HostObject;

Page* NewPage(const PageSpec& spec) {
  auto page = std::make_unique<Page>();
  page->spec = spec;
  if (page->spec.elements.empty()) page->spec.elements.push_back(ElementBox{});
  Page* p = page.get();

  p->location = detail::PageObject("location");
  p->location->getters[Id("href")] = detail::StringGetter(spec.href);

  p->document = detail::PageObject("document");
  p->document->getters[Id("URL")] = detail::StringGetter(spec.href);

  p->window = detail::PageObject("window");
  p->window->getters[Id("location")] = detail::ObjectGetter(p->location);
  p->window->getters[Id("document")] = detail::ObjectGetter(p->document);
  p->window->methods[Id("Array")] = [](const NPVariant*, uint32_t, NPVariant* result) {
    *result = Obj(detail::NewArray());
    return true;
  };

  const size_t count = p->spec.elements.size();
  for (size_t i = 0; i < count; ++i) {
    HostObject* style = detail::PageObject("style");
    style->missing = detail::Missing::kEmptyString;
    style->strings_only = true;
    p->styles.push_back(style);

    HostObject* element = detail::PageObject("element");
    element->missing = detail::Missing::kFail;
    for (const auto& offset : p->spec.elements[i].offsets)
      element->bag[Id(offset.first.c_str())] = detail::Hold(offset.second);
    element->getters[Id("id")] =
        detail::StringGetter(i == 0 ? "plugin" : "element" + std::to_string(i));
    element->getters[Id("nodeName")] = detail::StringGetter(i == 0 ? "OBJECT" : "DIV");
    element->getters[Id("parentNode")] = detail::NullGetter();
    p->elements.push_back(element);
  }
  for (size_t i = 0; i < count; ++i) {
    HostObject* element = p->elements[i];
    HostObject* parent = detail::At(p->elements, p->spec.elements[i].parent);
    element->getters[Id("offsetParent")] =
        parent ? detail::ObjectGetter(parent) : detail::NullGetter();
    HostObject* style = p->styles[i];
    element->getters[Id("style")] = [p, style](NPVariant* result) {
      if (!p->spec.style_available || style->dead) return false;
      detail::RetainObject(style);
      *result = Obj(style);
      return true;
    };
  }
  detail::State().live.insert(p);
  detail::State().pages.push_back(std::move(page));
  return p;
}

NPP NewInstance(Page* page) {
  if (!page || !detail::IsPage(page)) return nullptr;
  auto npp = std::make_unique<NPP_t>();
  npp->pdata = nullptr;
  npp->ndata = page;
  page->instances.push_back(std::move(npp));
  return page->instances.back().get();
}

Page* PageOf(NPP instance) {
  if (!instance || !instance->ndata) return nullptr;
  Page* page = static_cast<Page*>(instance->ndata);
  return detail::IsPage(page) ? page : nullptr;
}

NPObject* Window(Page* page) { return page ? page->window : nullptr; }
NPObject* Document(Page* page) { return page ? page->document : nullptr; }
NPObject* Element(Page* page, int index) {
  return page ? detail::At(page->elements, index) : nullptr;
}
NPObject* Style(Page* page, int index) { return page ? detail::At(page->styles, index) : nullptr; }

std::string StyleValue(Page* page, const char* name, int index) {
  HostObject* style = page ? detail::At(page->styles, index) : nullptr;
  if (!style || !name) return std::string();
  auto it = style->bag.find(Id(name));
  return it == style->bag.end() ? std::string() : it->second.s;
}

void SetStyleValue(Page* page, const char* name, const NPVariant& v, int index) {
  HostObject* style = page ? detail::At(page->styles, index) : nullptr;
  if (!style || !name) return;
  style->bag[Id(name)] = detail::HoldString(detail::Text(v));
}

void OnElementRead(Page* page, const char* name, std::function<void()> action, int index) {
  HostObject* element = page ? detail::At(page->elements, index) : nullptr;
  if (!element || !name) return;
  NPIdentifier id = Id(name);
  element->getters[id] = [element, id, action](NPVariant* result) {
    element->getters.erase(id);  // once; `action` and this getter go with the erase
    std::function<void()> run = action;
    run();
    *result = Int(0);
    return true;
  };
}

void SetOffset(Page* page, int index, const char* name, const NPVariant& v) {
  HostObject* element = page ? detail::At(page->elements, index) : nullptr;
  if (!element || !name) return;
  if (v.type == NPVariantType_Void) {
    element->bag.erase(Id(name));  // the read fails again
    return;
  }
  element->bag[Id(name)] = detail::Hold(v);
}

NPVariant WindowProperty(Page* page, const char* name) {
  if (!page || !name) return Void();
  auto it = page->window->bag.find(Id(name));
  return it == page->window->bag.end() ? Void() : detail::View(it->second);
}

const std::vector<UrlRequest>& UrlRequests() { return detail::State().url_requests; }
void FailNextGetUrlNotify() { detail::State().fail_next_geturlnotify = true; }
const std::vector<SetValueCall>& SetValues() { return detail::State().set_values; }
const std::vector<std::string>& Exceptions() { return detail::State().exceptions; }

}  // namespace host
