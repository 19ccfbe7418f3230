// Script functions the page hands to the plug-in, and the calls they receive.
#include <deque>
#include <map>

#include "host/internal.h"

namespace host {
namespace detail {
namespace {

struct FunctionState {
  std::map<NPObject*, std::vector<Call>> calls;
  std::vector<std::pair<std::string, Call>> order;
  std::deque<std::string> texts;      // characters of recorded string arguments (stable)
  std::vector<NPObject*> references;  // objects the records keep
};

FunctionState& State() {
  static auto* state = new FunctionState;
  return *state;
}

void Record(HostObject* f, const NPVariant* args, uint32_t n) {
  FunctionState& s = State();
  Call call;
  for (uint32_t i = 0; i < n; ++i) {
    NPVariant v = args[i];
    call.text.push_back(AsString(v));
    if (v.type == NPVariantType_String) {
      s.texts.push_back(AsString(v));
      v.value.stringValue.UTF8Characters = s.texts.back().c_str();
    } else if (v.type == NPVariantType_Object && v.value.objectValue) {
      if (Known(v.value.objectValue)) {
        AddHostRef(v.value.objectValue);
        s.references.push_back(v.value.objectValue);
      } else {
        CountReferenceError();
        v = Null();
      }
    }
    call.args.push_back(v);
  }
  s.calls[f].push_back(call);
  s.order.emplace_back(f->name, call);
}

}  // namespace

void ResetFunctions() {
  FunctionState& s = State();
  std::vector<NPObject*> references;
  references.swap(s.references);
  for (NPObject* o : references) DropHostRef(o);
  s.calls.clear();
  s.order.clear();
  s.texts.clear();
}

}  // namespace detail

NPObject* NewFunction(const std::string& name, bool handle_event) {
  detail::HostObject* f = detail::NewHostObject("function");
  f->name = name;
  detail::Method record = [f](const NPVariant* args, uint32_t n, NPVariant* result) {
    detail::Record(f, args, n);
    *result = Void();
    return true;
  };
  if (handle_event) f->methods[Id("handleEvent")] = record;
  else f->call = record;
  return f;
}

const std::vector<Call>& Calls(NPObject* function) {
  static const std::vector<Call> none;
  auto it = detail::State().calls.find(function);
  return it == detail::State().calls.end() ? none : it->second;
}

const std::vector<std::pair<std::string, Call>>& CallOrder() { return detail::State().order; }

}  // namespace host
