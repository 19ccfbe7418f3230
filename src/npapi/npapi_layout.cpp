// The NPAPI layouts browsers rely on, checked at compile time on every
// target the plug-in is built for (LP64 and ILP32 alike).
#include <cstddef>

#include "npapi/npapi.h"

namespace {

constexpr size_t kPtr = sizeof(void*);
constexpr size_t kTableBase = kPtr == 8 ? 8 : 4;  // size and version, then pointers

static_assert(sizeof(NPIdentifier) == kPtr, "identifiers are pointers");
static_assert(offsetof(NPP_t, ndata) == kPtr, "NPP: pdata, ndata");
static_assert(sizeof(NPObject) == (kPtr == 8 ? 16 : 8), "NPObject: class, reference count");
static_assert(offsetof(NPString, UTF8Length) == kPtr, "NPString: characters, length");
static_assert(sizeof(NPRect) == 8, "NPRect: four 16-bit values");
static_assert(offsetof(NPWindow, clipRect) == kPtr + 16, "NPWindow: window, x, y, width, height");
static_assert(offsetof(NPStream, end) == 3 * kPtr, "NPStream: pdata, ndata, url, end");
static_assert(sizeof(NPClass) == kPtr * 13, "NPClass: version and twelve operations");
static_assert(offsetof(NPNetscapeFuncs, geturl) == kTableBase, "browser table slots");
static_assert(offsetof(NPNetscapeFuncs, memalloc) == kTableBase + 8 * kPtr, "browser table slots");
static_assert(offsetof(NPNetscapeFuncs, getstringidentifier) == kTableBase + 21 * kPtr,
              "browser table slots");
static_assert(offsetof(NPNetscapeFuncs, releasevariantvalue) == kTableBase + 38 * kPtr,
              "browser table slots");
static_assert(offsetof(NPNetscapeFuncs, pluginthreadasynccall) == kTableBase + 43 * kPtr,
              "browser table slots");
static_assert(offsetof(NPPluginFuncs, newp) == kTableBase, "plug-in table slots");
static_assert(offsetof(NPPluginFuncs, javaClass) == kTableBase + 11 * kPtr, "plug-in table slots");
static_assert(offsetof(NPPluginFuncs, setvalue) == kTableBase + 13 * kPtr, "plug-in table slots");
// The part of the plug-in table the plug-in fills ends at 60 bytes on ILP32.
static_assert(kPtr != 4 || offsetof(NPPluginFuncs, setvalue) + kPtr == 60, "ILP32 table size");

}  // namespace
