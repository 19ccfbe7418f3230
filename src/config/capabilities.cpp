#include "config/capabilities.h"

#include "frame/events.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/config.h"
#include "utils/convert.h"

namespace {

RecordList g_capabilities;

// The capability description as a Document made by the page's own
// DOMParser from the middleware's XML text.
bool XmlDocument(CapabilitiesRecord* r, NPVariant* result) {
  NPObject* window = nullptr;
  if (NPN_GetValue(r->instance, NPNVWindowNPObject, &window) != NPERR_NO_ERROR || !window) return false;
  NPString script = {"new DOMParser();", 16};
  NPVariant parser;
  SetVoid(&parser);
  bool ok = NPN_Evaluate(r->instance, window, &script, &parser) && IsObject(parser);
  if (ok) {
    NPVariant args[2];
    NP_UtilsHbbtvStringToResult(MwCapabilitiesGetXml(r->handle), &args[0]);
    args[1].type = NPVariantType_String;
    args[1].value.stringValue = NPString{"text/xml", 8};
    ok = NPN_Invoke(r->instance, parser.value.objectValue, NPN_GetStringIdentifier("parseFromString"),
                    args, 2, result);
    NP_UtilsReleaseArguments(args, 1);  // the text; "text/xml" is ours
  }
  NPN_ReleaseVariantValue(&parser);
  NPN_ReleaseObject(window);
  return ok;
}

// hasCapability(profileName): with any other number of arguments the call
// succeeds with no result.
bool HasCapability(CapabilitiesRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 1) return true;
  MwString name = ArgText(args[0]);
  SetBool(result, MwCapabilitiesHasCapability(r->handle, &name) != 0);
  return true;
}

using R = CapabilitiesRecord;
using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("xmlCapabilities", XmlDocument),
    Row::Get("extraSDVideoDecodes", IntOf<R, MwCapabilitiesGetExtraSDVideoDecodes>),
    Row::Get("extraHDVideoDecodes", IntOf<R, MwCapabilitiesGetExtraHDVideoDecodes>),
    Row::Call("hasCapability", HasCapability),
};

// The middleware's capabilities go with the object. Reads need them.
struct Capabilities : HandleWithObjectKind<Capabilities, CapabilitiesRecord> {
  ORV_KIND(kMembers, g_capabilities)
  static Gate Check(const R* r, Access access) {
    return access == Access::kGet ? NeedHandle(r) : r ? Gate::kGo : Gate::kFail;
  }
};

}  // namespace

extern const InstanceKind kCapabilitiesKind = ScriptObjectKind<CapabilityCreate, CapabilityDestroy>(
    "application/oipfcapabilities", kKindCapabilities, &g_capabilities);

CapabilitiesRecord* CapabilityCreate(NPP instance) {
  return OpenInstance<Capabilities>(instance, kKindCapabilities, MwCapabilitiesOpen);
}

// The handle goes first; a record that is not on the list then stays allocated.
void CapabilityDestroy(CapabilitiesRecord* r) {
  if (!r) return;
  if (r->handle) {
    MwObjectRelease(r->handle);
    g_capabilities.SetHandle(r, 0);
  }
  DestroyInstance(g_capabilities, r);
}
