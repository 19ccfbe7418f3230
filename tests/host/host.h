// The fake browser: an NPNetscapeFuncs implementation for tests.
//
// It accounts every NPN_MemAlloc block, every object and every reference,
// keeps identifiers for the life of the process (as browsers do), models the
// page objects that the plug-in reads (window, location, document, the
// plug-in's element with its offsetParent chain and style, DOMParser,
// Array), and queues NPN_PluginThreadAsyncCall until a test pumps the
// browser's thread.
#ifndef ORVANE_TESTS_HOST_HOST_H
#define ORVANE_TESTS_HOST_HOST_H

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "npapi/npapi.h"

namespace host {

// ---- the browser table -----------------------------------------------------
NPNetscapeFuncs* Funcs();  // filled once; size and version set as a browser does
void Reset();              // drops pages, queued calls, records; identifiers stay
// What unloading the pages does before the leak checks: the page's functions
// forget the arguments they were called with, and the values the plug-in
// stored on page objects (window.debug, style properties) are let go.
void UnloadPages();

// ---- memory ----------------------------------------------------------------
size_t LiveBlocks();               // NPN_MemAlloc blocks not yet freed
std::string LiveBlocksReport();    // one line each: allocation number, size, first bytes
size_t BadFrees();                 // NPN_MemFree of a pointer that is not a live block
void FailAllocation(int nth);      // the nth NPN_MemAlloc from now returns null (1 = next); 0 disarms
int AllocationsSinceReset();       // number of NPN_MemAlloc calls (successful or not)
void FailRecordAllocation(int nth); // the nth plug-in record allocation (malloc) from now fails
// True while a failure set up above has not happened yet.
bool AllocationFailureArmed();
bool RecordFailureArmed();
size_t LiveRecords();              // plug-in records allocated and not freed
// The heap the plug-in holds now through NPN_MemAlloc and its record
// allocator, counted in the C allocator's chunks (header word included).
size_t PluginHeap();
size_t BadRecordFrees();           // record frees of a pointer that is not a live record

// ---- the accounting at the end of a test -------------------------------------
// Every count that a clean end leaves at 0: blocks, bad frees, plug-in
// objects, reference errors, host objects, page object balance, records,
// middleware handles held and released wrongly, NPN calls off the thread.
struct Count {
  const char* what;  // what a count above 0 means
  size_t value;
};
std::vector<Count> Accounting();
// The counts that are not 0, one line each, with the held handles, blocks and
// off-thread calls named; "" when everything is clean.
std::string AccountingReport();

// ---- objects ---------------------------------------------------------------
// Objects made since Reset by NPN_CreateObject with a class other than the
// host's own, still referenced by something besides the host's own records.
size_t LivePluginObjects();
// Releases of an object whose count is already 0, or of an unknown object;
// retains of unknown objects; NPN_* calls made on an unknown object.
size_t ReferenceErrors();
// Host objects (arrays, parser documents, functions...) made during the test
// that still hold references, not counting the long-lived page objects.
// References the host keeps itself (stored property values, recorded call
// arguments) and the test's own reference to each NewFunction do not count.
size_t LiveTransientHostObjects();
// Page objects (window, location, document, element chain, style) whose
// reference count is not back at the value it had when the page was made.
size_t UnbalancedPageObjects();
uint32_t RefCount(NPObject* o);

// ---- identifiers -----------------------------------------------------------
NPIdentifier Id(const char* name);  // same as NPN_GetStringIdentifier
NPIdentifier IntId(int32_t value);  // same as NPN_GetIntIdentifier

// ---- variants --------------------------------------------------------------
NPVariant Void();
NPVariant Null();
NPVariant Bool(bool b);
NPVariant Int(int32_t i);
NPVariant Double(double d);
NPVariant Str(const char* s);       // characters not owned (as a browser passes arguments)
NPVariant Obj(NPObject* o);         // no retain
std::string AsString(const NPVariant& v);  // String content ("" for other types)
void Release(NPVariant* v);         // NPN_ReleaseVariantValue

// ---- script functions the page hands to the plug-in -------------------------
struct Call {
  std::vector<NPVariant> args;  // deep copies: strings as std::string in `text`, objects retained
  std::vector<std::string> text;  // text[i] = AsString(args[i]) at call time
};
// A plain function (called through InvokeDefault), or, with handle_event, an
// object whose "handleEvent" method is called instead. Owned by the test:
// release it with NPN_ReleaseObject (Release(Obj(f))) or let Reset drop it.
NPObject* NewFunction(const std::string& name, bool handle_event = false);
const std::vector<Call>& Calls(NPObject* function);
// Every listener call in the order it happened: (function name, call).
const std::vector<std::pair<std::string, Call>>& CallOrder();

// ---- pages -----------------------------------------------------------------
struct ElementBox {
  // Values answered for offsetLeft/Top/Width/Height; a missing entry makes the
  // property read fail. `parent` is the offsetParent (-1: none, the read gives Null).
  std::map<std::string, NPVariant> offsets;
  int parent = -1;
};
struct PageSpec {
  std::string href = "http://apps.example/app/index.html";
  // elements[0] is the plug-in's element; others form its offsetParent chain.
  std::vector<ElementBox> elements = {ElementBox{}};
  bool element_available = true;  // NPN_GetValue(NPNVPluginElementNPObject) fails when false
  bool style_available = true;    // element "style" read fails when false
};
struct Page;
Page* NewPage(const PageSpec& spec = PageSpec());
NPP NewInstance(Page* page);  // an NPP_t whose ndata refers to the page
Page* PageOf(NPP instance);
NPObject* Window(Page* page);
NPObject* Document(Page* page);   // has "URL" = href
NPObject* Element(Page* page, int index = 0);
NPObject* Style(Page* page, int index = 0);  // the element's style (property bag, strings)
// Style property as the page sees it ("" when unset).
std::string StyleValue(Page* page, const char* name, int index = 0);
void SetStyleValue(Page* page, const char* name, const NPVariant& v, int index = 0);
void SetOffset(Page* page, int index, const char* name, const NPVariant& v);
// The next read of the element's property `name` runs `action` first (the
// browser laying the document out, say) and then reads as 0.
void OnElementRead(Page* page, const char* name, std::function<void()> action, int index = 0);
// Property of the window as the plug-in set it ("debug", ...); Void if unset.
NPVariant WindowProperty(Page* page, const char* name);
// Properties and calls of host objects made by the host (arrays etc.).
std::vector<int32_t> ArrayValues(NPObject* array);    // elements of a host Array
std::string ParsedText(NPObject* document);           // text given to parseFromString
const std::vector<std::string>& ParsedTexts();        // every parseFromString text since Reset

// ---- calls into the plug-in from the page ----------------------------------
bool Get(NPP npp, NPObject* o, const char* name, NPVariant* result);
bool Set(NPP npp, NPObject* o, const char* name, const NPVariant& value);
bool Invoke(NPP npp, NPObject* o, const char* method, std::vector<NPVariant> args, NPVariant* result);
bool GetIndex(NPP npp, NPObject* o, int32_t index, NPVariant* result);

// ---- browser requests made by the plug-in ------------------------------------
struct UrlRequest {
  NPP instance;
  std::string url;
  std::string target;  // "" when null
  bool notify;
  void* notify_data;
};
const std::vector<UrlRequest>& UrlRequests();
void FailNextGetUrlNotify();  // the next NPN_GetURLNotify returns NPERR_GENERIC_ERROR
struct SetValueCall { NPP instance; NPPVariable variable; void* value; };
const std::vector<SetValueCall>& SetValues();
const std::vector<std::string>& Exceptions();  // NPN_SetException messages since Reset

// ---- the browser's thread ----------------------------------------------------
size_t Pending();  // queued NPN_PluginThreadAsyncCall calls
// The browser stopped `instance` (after NPP_Destroy): its queued calls are
// dropped, and later ones are refused, as QtWebKit does. On by default;
// off, they run as if the instance lived.
void InstanceDestroyed(NPP instance);
void DropCallsOfDestroyedInstances(bool on);
// NPN calls made off the browser's thread (the thread that last reset the
// host), other than memory and NPN_PluginThreadAsyncCall: their slot names.
std::vector<std::string> OffThreadCalls();
size_t Pump();     // runs queued calls (including ones queued while running); returns how many ran
size_t PumpQueued();  // runs only the calls queued now (others may keep posting)
bool PumpUntil(const std::function<bool()>& done, int timeout_ms = 2000);  // pumps and waits

}  // namespace host

#endif
