// The inert debug object.
#include <gtest/gtest.h>

#include "appmgr/debug.h"
#include "host/fixture.h"

namespace {

using DebugTest = OrvaneTest;

TEST_F(DebugTest, EveryScriptOperationFails) {
  NPP npp = host::NewInstance(host::NewPage());
  NPObject* debug = DebugCreate(npp);
  ASSERT_NE(nullptr, debug);
  NPClass* c = debug->_class;
  NPVariant r = host::Void();
  NPVariant arg = host::Str("hello");
  NPIdentifier id = host::Id("log");
  EXPECT_FALSE(c->invokeDefault(debug, &arg, 1, &r));
  EXPECT_FALSE(c->hasMethod(debug, id));
  EXPECT_FALSE(c->invoke(debug, id, &arg, 1, &r));
  EXPECT_FALSE(c->hasProperty(debug, id));
  EXPECT_FALSE(c->getProperty(debug, id, &r));
  EXPECT_FALSE(c->setProperty(debug, id, &arg));
  EXPECT_FALSE(c->removeProperty(debug, id));
  EXPECT_FALSE(c->enumerate(debug, nullptr, nullptr));
  EXPECT_FALSE(c->construct(debug, &arg, 1, &r));
  EXPECT_EQ(NPVariantType_Void, r.type);
  host::Funcs()->releaseobject(debug);
  host::FailAllocation(1);
  EXPECT_EQ(nullptr, DebugCreate(npp));
}

}  // namespace
