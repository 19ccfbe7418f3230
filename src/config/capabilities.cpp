#include "config/capabilities.h"

#include "frame/events.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/config.h"
#include "utils/convert.h"

namespace {

RecordList g_capabilities;

enum Property { kXmlCapabilities, kExtraSD, kExtraHD };
const char* const kPropertyNames[] = {"xmlCapabilities", "extraSDVideoDecodes", "extraHDVideoDecodes"};
const char* const kMethodNames[] = {"hasCapability"};

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

// The middleware's capabilities go with the object.
struct Capabilities : HandleWithObjectKind<Capabilities, CapabilitiesRecord> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  ORV_METHOD_TABLE(kMethodNames)
  static RecordList& List() { return g_capabilities; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    CapabilitiesRecord* r = Find(object);
    if (!r || !r->handle) return false;
    switch (Properties().Find(id)) {
      case kXmlCapabilities: return XmlDocument(r, result);
      case kExtraSD: SetInt(result, MwCapabilitiesGetExtraSDVideoDecodes(r->handle)); return true;
      case kExtraHD: SetInt(result, MwCapabilitiesGetExtraHDVideoDecodes(r->handle)); return true;
      default: return false;
    }
  }

  // hasCapability(profileName): with any other number of arguments the
  // call succeeds with no result.
  static bool Invoke(NPObject* object, NPIdentifier id, const NPVariant* args, uint32_t count,
                     NPVariant* result) {
    CapabilitiesRecord* r = Find(object);
    if (!r || Methods().Find(id) != 0) return false;
    if (count != 1) return true;
    MwString name = IsString(args[0]) ? ArgString(args[0]) : MwString{0, ""};
    SetBool(result, MwCapabilitiesHasCapability(r->handle, &name) != 0);
    return true;
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
