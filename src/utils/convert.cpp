#include "utils/convert.h"

#include "utils/record_alloc.h"

#include <cmath>
#include <cstring>

#include "middleware/types.h"
#include "npapi/browser.h"

NPIdentifier g_id_handleEvent;
NPIdentifier g_id_location;
NPIdentifier g_id_href;
NPIdentifier g_id_addEventListener;
NPIdentifier g_id_removeEventListener;

void NP_UtilsInit() {
  g_id_handleEvent = NPN_GetStringIdentifier("handleEvent");
  g_id_location = NPN_GetStringIdentifier("location");
  g_id_href = NPN_GetStringIdentifier("href");
  g_id_addEventListener = NPN_GetStringIdentifier("addEventListener");
  g_id_removeEventListener = NPN_GetStringIdentifier("removeEventListener");
}

void NP_UtilsStringToResult(uint32_t length, const char* characters, NPVariant* result) {
  SetNull(result);
  if (length == 0) return;  // an empty text is reported as Null
  char* copy = static_cast<char*>(NPN_MemAlloc(length + 1));
  if (!copy) return;
  memcpy(copy, characters, length);
  copy[length] = '\0';
  result->type = NPVariantType_String;
  result->value.stringValue.UTF8Characters = copy;
  result->value.stringValue.UTF8Length = static_cast<uint32_t>(strlen(copy));
}

void NP_UtilsHbbtvStringToResult(MwHandle string, NPVariant* result) {
  SetNull(result);
  if (!string) return;
  uint32_t size = MwStringGetSize(string);
  if (MwStringIsValid(string) && size > 0) {
    char* text = static_cast<char*>(NPN_MemAlloc(size));
    if (text) {
      MwStringCopyTo(string, text);
      text[size - 1] = '\0';
      result->type = NPVariantType_String;
      result->value.stringValue.UTF8Characters = text;
      result->value.stringValue.UTF8Length = size - 1;
    }
  }
  MwObjectRelease(string);
}

void NP_UtilsArrayToResult(NPP instance, const int32_t* values, uint32_t count, NPVariant* result) {
  NPObject* window = nullptr;
  if (NPN_GetValue(instance, NPNVWindowNPObject, &window) != NPERR_NO_ERROR || !window) return;
  NPVariant array;
  SetVoid(&array);
  bool made = NPN_Invoke(instance, window, NPN_GetStringIdentifier("Array"), nullptr, 0, &array);
  NPN_ReleaseObject(window);
  if (!made || array.type != NPVariantType_Object) {
    NPN_ReleaseVariantValue(&array);
    return;
  }
  NPIdentifier push = NPN_GetStringIdentifier("push");
  for (uint32_t i = 0; i < count; i++) {
    NPVariant arg, pushed;
    SetInt(&arg, values[i]);
    SetVoid(&pushed);
    NPN_Invoke(instance, array.value.objectValue, push, &arg, 1, &pushed);
    NPN_ReleaseVariantValue(&pushed);
  }
  *result = array;
}

int NP_UtilsGetU32BIT(const NPVariant* variant, uint32_t* out) {
  if (variant->type == NPVariantType_Int32) {
    *out = static_cast<uint32_t>(variant->value.intValue);
    return 1;
  }
  if (variant->type == NPVariantType_Double) {
    double d = variant->value.doubleValue;
    if (!(d > 0)) *out = 0;  // negatives and NaN
    else if (d >= 4294967295.0) *out = 4294967295u;
    else *out = static_cast<uint32_t>(d);
    return 1;
  }
  return 0;
}

int32_t NP_UtilsDoubleToInt32(double value) {
  if (!(value == value)) return 0;
  if (value >= 2147483647.0) return INT32_MAX;
  if (value <= -2147483648.0) return INT32_MIN;
  return static_cast<int32_t>(value);
}

int NP_UtilsStringIsNumeric(const char* text) {
  for (; *text; text++)
    if (*text < '0' || *text > '9') return 0;
  return 1;
}

bool ArgFlag(const NPVariant& v) {
  switch (v.type) {
    case NPVariantType_Bool: return v.value.boolValue;
    case NPVariantType_Int32: return v.value.intValue != 0;
    case NPVariantType_Double: return v.value.doubleValue != 0;
    default: return false;
  }
}

char* RecordTextCopy(const char* data, uint32_t length, MwString* text) {
  char* copy = static_cast<char*>(RecordAlloc(length + 1));
  if (!copy) return nullptr;
  if (length) memcpy(copy, data, length);
  copy[length] = '\0';
  *text = MwString{length, copy};
  return copy;
}

char* ArgTextCopy(const NPVariant& v, MwString* text) {
  MwString s = ArgText(v);
  return RecordTextCopy(s.data, s.length, text);
}
