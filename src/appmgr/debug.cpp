#include "appmgr/debug.h"

#include "frame/frame.h"

namespace {

// Every script operation on it fails.
struct Debug : KindDefaults<Debug> {
  static constexpr bool kStubResult = false;
  static bool HasMethod(NPObject*, NPIdentifier) { return false; }
  static bool HasProperty(NPObject*, NPIdentifier) { return false; }
};

}  // namespace

NPObject* DebugCreate(NPP instance) { return NPN_CreateObject(instance, ScriptClass<Debug>::Class()); }
