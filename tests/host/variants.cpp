// Variant helpers, and the values the host keeps on its own side.
#include <cmath>
#include <cstdio>
#include <utility>

#include "host/internal.h"

namespace host {
namespace detail {

Held::Held(Held&& other) noexcept
    : type(other.type), b(other.b), i(other.i), d(other.d), s(std::move(other.s)), o(other.o) {
  other.type = NPVariantType_Void;
  other.o = nullptr;
}

Held& Held::operator=(Held&& other) noexcept {
  if (this != &other) {
    Held old(std::move(*this));  // drops the previous object reference
    type = other.type;
    b = other.b;
    i = other.i;
    d = other.d;
    s = std::move(other.s);
    o = other.o;
    other.type = NPVariantType_Void;
    other.o = nullptr;
  }
  return *this;
}

Held::~Held() {
  if (type == NPVariantType_Object && o) {
    NPObject* obj = o;
    o = nullptr;
    DropHostRef(obj);
  }
}

Held Hold(const NPVariant& v) {
  Held h;
  h.type = v.type;
  switch (v.type) {
    case NPVariantType_Bool: h.b = v.value.boolValue; break;
    case NPVariantType_Int32: h.i = v.value.intValue; break;
    case NPVariantType_Double: h.d = v.value.doubleValue; break;
    case NPVariantType_String:
      if (v.value.stringValue.UTF8Characters)
        h.s.assign(v.value.stringValue.UTF8Characters, v.value.stringValue.UTF8Length);
      break;
    case NPVariantType_Object:
      h.o = v.value.objectValue;
      if (h.o) AddHostRef(h.o);
      else h.type = NPVariantType_Null;
      break;
    default: break;
  }
  return h;
}

Held HoldString(const std::string& s) {
  Held h;
  h.type = NPVariantType_String;
  h.s = s;
  return h;
}

bool Give(const Held& h, NPVariant* out) {
  *out = View(h);
  if (h.type == NPVariantType_String) {
    char* chars = CopyString(h.s);
    if (!chars) {
      *out = Void();
      return false;
    }
    out->value.stringValue.UTF8Characters = chars;
  } else if (h.type == NPVariantType_Object) {
    RetainObject(h.o);
  }
  return true;
}

NPVariant View(const Held& h) {
  NPVariant v = Void();
  v.type = h.type;
  switch (h.type) {
    case NPVariantType_Bool: v.value.boolValue = h.b; break;
    case NPVariantType_Int32: v.value.intValue = h.i; break;
    case NPVariantType_Double: v.value.doubleValue = h.d; break;
    case NPVariantType_String:
      v.value.stringValue.UTF8Characters = h.s.c_str();
      v.value.stringValue.UTF8Length = static_cast<uint32_t>(h.s.size());
      break;
    case NPVariantType_Object: v.value.objectValue = h.o; break;
    default: break;
  }
  return v;
}

std::string Text(const NPVariant& v) {
  switch (v.type) {
    case NPVariantType_Null: return "null";
    case NPVariantType_Bool: return v.value.boolValue ? "true" : "false";
    case NPVariantType_Int32: return std::to_string(v.value.intValue);
    case NPVariantType_Double: {
      double d = v.value.doubleValue;
      if (std::isfinite(d) && d == std::floor(d) && std::fabs(d) < 1e15)
        return std::to_string(static_cast<long long>(d));
      char buf[32];
      snprintf(buf, sizeof buf, "%.17g", d);
      return buf;
    }
    case NPVariantType_String: return AsString(v);
    case NPVariantType_Object: return "[object]";
    default: return "undefined";
  }
}

}  // namespace detail

NPVariant Void() {
  NPVariant v;
  v.type = NPVariantType_Void;
  v.value.objectValue = nullptr;
  return v;
}

NPVariant Null() {
  NPVariant v = Void();
  v.type = NPVariantType_Null;
  return v;
}

NPVariant Bool(bool b) {
  NPVariant v = Void();
  v.type = NPVariantType_Bool;
  v.value.boolValue = b;
  return v;
}

NPVariant Int(int32_t i) {
  NPVariant v = Void();
  v.type = NPVariantType_Int32;
  v.value.intValue = i;
  return v;
}

NPVariant Double(double d) {
  NPVariant v = Void();
  v.type = NPVariantType_Double;
  v.value.doubleValue = d;
  return v;
}

NPVariant Str(const char* s) {
  NPVariant v = Void();
  v.type = NPVariantType_String;
  v.value.stringValue.UTF8Characters = s ? s : "";
  v.value.stringValue.UTF8Length = s ? static_cast<uint32_t>(std::char_traits<char>::length(s)) : 0;
  return v;
}

NPVariant Obj(NPObject* o) {
  NPVariant v = Void();
  v.type = NPVariantType_Object;
  v.value.objectValue = o;
  return v;
}

std::string AsString(const NPVariant& v) {
  if (v.type != NPVariantType_String || !v.value.stringValue.UTF8Characters) return std::string();
  return std::string(v.value.stringValue.UTF8Characters, v.value.stringValue.UTF8Length);
}

void Release(NPVariant* v) { detail::ReleaseVariantValue(v); }

}  // namespace host
