#include "host/fixture.h"

#include "host/internal.h"
#include "sim/sim.h"

void OrvaneTest::SetUp() {
  host::Reset();
  sim::Reset();
  sim::SetStrictOwnership(true);  // a release the contract does not make stops the suite
  plugin_funcs_ = NPPluginFuncs();
  plugin_funcs_.size = sizeof(NPPluginFuncs);
  init_error_ = NP_Initialize(host::Funcs(), &plugin_funcs_);
  initialized_ = init_error_ == NPERR_NO_ERROR;
  ASSERT_EQ(NPERR_NO_ERROR, init_error_) << "NP_Initialize failed";
}

void OrvaneTest::TearDown() {
  for (auto& entry : instances_) {
    if (entry.second->alive) DestroyPlugin(entry.first);
  }
  if (initialized_) NP_Shutdown();
  initialized_ = false;
  host::Pump();
  host::UnloadPages();
  CheckClean();
  instances_.clear();
  host::Reset();
  sim::Reset();
}

void OrvaneTest::CheckClean() {
  host::Pump();
  std::string left = host::AccountingReport();
  EXPECT_TRUE(left.empty()) << "the test left:\n" << left;
}

NPP OrvaneTest::NewPlugin(const char* mime, Attributes attrs, host::PageSpec spec) {
  host::Page* page = host::NewPage(spec);
  NPP npp = host::NewInstance(page);
  auto instance = std::make_unique<Instance>();
  for (const auto& attr : attrs) {
    instance->names.push_back(attr.first);
    instance->values.push_back(attr.second);
  }
  for (size_t i = 0; i < attrs.size(); ++i) {
    instance->argn.push_back(&instance->names[i][0]);
    instance->argv.push_back(&instance->values[i][0]);
  }
  std::string type = mime ? mime : "";
  last_error_ = NPERR_INVALID_FUNCTABLE_ERROR;
  if (plugin_funcs_.newp)
    last_error_ = plugin_funcs_.newp(mime ? &type[0] : nullptr, npp, 1 /* NP_EMBED */,
                                     static_cast<int16_t>(attrs.size()), instance->argn.data(),
                                     instance->argv.data(), nullptr);
  // A browser does not destroy an instance whose NPP_New failed.
  instance->alive = last_error_ == NPERR_NO_ERROR;
  instances_[npp] = std::move(instance);
  // The browser takes the element's script object as soon as it binds the
  // element to the page's script.
  Scriptable(npp);
  return npp;
}

NPObject* OrvaneTest::Scriptable(NPP npp) {
  auto it = instances_.find(npp);
  if (it == instances_.end() || !it->second->alive) return nullptr;
  Instance& instance = *it->second;
  if (!instance.fetched && plugin_funcs_.getvalue) {
    NPObject* object = nullptr;
    if (plugin_funcs_.getvalue(npp, NPPVpluginScriptableNPObject, &object) == NPERR_NO_ERROR)
      instance.scriptable = object;
    instance.fetched = true;
  }
  return instance.scriptable;
}

void OrvaneTest::DestroyPlugin(NPP npp) {
  auto it = instances_.find(npp);
  if (it == instances_.end() || !it->second->alive) return;
  Instance& instance = *it->second;
  instance.alive = false;
  if (plugin_funcs_.destroy) {
    NPSavedData* saved = nullptr;
    plugin_funcs_.destroy(npp, &saved);
  }
  host::InstanceDestroyed(npp);
  if (instance.scriptable) host::Funcs()->releaseobject(instance.scriptable);
  instance.scriptable = nullptr;
}

void ScriptTest::TearDown() {
  for (NPVariant& v : held_) host::Release(&v);
  held_.clear();
  host::detail::ResetFunctions();
  OrvaneTest::TearDown();
}

NPVariant ScriptTest::Keep(NPVariant v) {
  held_.push_back(v);
  return v;
}

NPVariant ScriptTest::Get(NPObject* o, const char* name, bool* ok) {
  NPVariant v = host::Void();
  bool got = host::Get(npp_, o, name, &v);
  if (ok) *ok = got;
  return Keep(v);
}

NPVariant ScriptTest::Call(NPObject* o, const char* method, std::vector<NPVariant> args, bool* ok) {
  NPVariant v = host::Void();
  bool done = host::Invoke(npp_, o, method, args, &v);
  if (ok) *ok = done;
  return Keep(v);
}

std::string ScriptTest::Text(NPObject* o, const char* name) {
  NPVariant v = host::Void();
  host::Get(npp_, o, name, &v);
  std::string s = host::AsString(v);
  host::Release(&v);
  return s;
}
