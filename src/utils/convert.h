// Conversions between middleware values and script values.
#ifndef ORVANE_UTILS_CONVERT_H
#define ORVANE_UTILS_CONVERT_H

#include "middleware/types.h"
#include "npapi/npapi.h"

// Shared identifiers, interned once by NP_UtilsInit.
extern NPIdentifier g_id_handleEvent;
extern NPIdentifier g_id_location;
extern NPIdentifier g_id_href;
extern NPIdentifier g_id_addEventListener;
extern NPIdentifier g_id_removeEventListener;

void NP_UtilsInit();
// A String copy of `length` bytes (cut at an embedded NUL); Null for 0 bytes or no memory.
void NP_UtilsStringToResult(uint32_t length, const char* characters, NPVariant* result);
// A String from a middleware string, which is released in every case; Null when absent.
void NP_UtilsHbbtvStringToResult(MwHandle string, NPVariant* result);
// A script Array of Int32 values made by the page's own Array constructor.
void NP_UtilsArrayToResult(NPP instance, const int32_t* values, uint32_t count, NPVariant* result);
// An unsigned 32-bit number from an Int32 or Double variant; 0 for any other type.
int NP_UtilsGetU32BIT(const NPVariant* variant, uint32_t* out);
// A script number as a signed 32-bit integer: truncated toward zero,
// saturated at the 32-bit limits, NaN as 0.
int32_t NP_UtilsDoubleToInt32(double value);
// 1 when every character is a decimal digit (the empty text included).
int NP_UtilsStringIsNumeric(const char* text);

// Helpers on script arguments.
inline bool IsString(const NPVariant& v) { return v.type == NPVariantType_String; }
inline bool IsObject(const NPVariant& v) { return v.type == NPVariantType_Object && v.value.objectValue; }
// A script value as a flag: booleans as they are, numbers when non-zero,
// anything else false.
bool ArgFlag(const NPVariant& v);
// The characters of a String argument as an MwString (borrowed).
inline MwString ArgString(const NPVariant& v) {
  return MwString{v.value.stringValue.UTF8Length, v.value.stringValue.UTF8Characters};
}
// The same for any value: the empty text for anything but a String.
inline MwString ArgText(const NPVariant& v) { return IsString(v) ? ArgString(v) : MwString{0, ""}; }
// Argument `i`'s text; empty when it is missing or no String.
inline MwString ArgTextAt(const NPVariant* args, uint32_t count, uint32_t i) {
  return i < count ? ArgText(args[i]) : MwString{0, ""};
}

// A NUL-terminated copy of `length` characters of `data` in a buffer from
// RecordAlloc (free it with RecordFree), also described in *text; null
// when memory is short.
char* RecordTextCopy(const char* data, uint32_t length, MwString* text);
// The same for a String argument's characters; the empty text for any other value.
char* ArgTextCopy(const NPVariant& v, MwString* text);

#endif
