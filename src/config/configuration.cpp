#include "config/configuration.h"

#include "config/local_system.h"
#include "frame/frame.h"
#include "frame/instance_kind.h"
#include "middleware/config.h"
#include "utils/convert.h"

NPObject* conf_np_obj = nullptr;

namespace {

RecordList g_configurations;
MwHandle g_preferences = 0;  // of the current Configuration object

// ---- the Configuration object: user preferences ---------------------------------

// Every Configuration object answers from the current preferences.
template <MwHandle (*Read)(MwHandle)>
bool Text(ObjectRecord*, NPVariant* result) {
  NP_UtilsHbbtvStringToResult(Read(g_preferences), result);
  return true;
}

// No postcode: the read fails.
bool Postcode(ObjectRecord*, NPVariant* result) {
  MwHandle postcode = MwConfigGetPostcode(g_preferences);
  if (!postcode) return false;
  NP_UtilsHbbtvStringToResult(postcode, result);
  return true;
}

// 1 true, 0 false, anything else: undefined (a setting the receiver lacks).
template <int32_t (*Read)(MwHandle)>
bool TriState(ObjectRecord*, NPVariant* result) {
  int32_t value = Read(g_preferences);
  if (value == 0 || value == 1) SetBool(result, value == 1);
  return true;
}

bool TerminalMode(ObjectRecord*, NPVariant* result) {
  SetInt(result, MwConfigGetTerminalMode(g_preferences));
  return true;
}

using Row = Member<ObjectRecord>;
const Row kPreferences[] = {
    Row::Get("preferredAudioLanguage", Text<MwConfigGetPreferredAudioLanguage>),
    Row::Get("preferredSubtitleLanguage", Text<MwConfigGetPreferredSubtitleLanguage>),
    Row::Get("preferredUILanguage", Text<MwConfigGetPreferredUILanguage>),
    Row::Get("countryId", Text<MwConfigGetCountryId>),
    Row::Get("postcode", Postcode),
    Row::Get("speechDescriptionEnabled", TriState<MwConfigGetSpeechDescriptionEnabled>),
    Row::Get("voiceControlEnabled", TriState<MwConfigGetVoiceControlEnabled>),
    Row::Get("terminalMode", TerminalMode),
};

// Its objects have no record of their own.
struct Configuration : KindDefaults<Configuration> {
  ORV_MEMBER_ROWS(kPreferences)
  static Gate Check(const ObjectRecord*, Access) { return Gate::kGo; }

  // The preferences go with the current object: a later read through an
  // older object finds none rather than a released handle.
  static void Deallocate(NPObject* object) {
    if (object != conf_np_obj) return;
    if (g_preferences) MwObjectRelease(g_preferences);
    g_preferences = 0;
    conf_np_obj = nullptr;
  }
};

// ---- the configuration element ----------------------------------------------

bool ConfigurationObject(OipfConfigurationRecord* r, NPVariant* result) {
  if (!r->handle) return false;
  NPObject* configuration = ConfigurationCreate(r->instance, r->handle);
  SetObjectOrNull(result, configuration);
  return configuration != nullptr;
}

bool LocalSystem(OipfConfigurationRecord* r, NPVariant* result) {
  MwHandle local = MwConfigGetLocalSystem(r->handle);  // asked even of no configuration
  if (!local) {
    SetNull(result);
    return false;
  }
  SetObjectOrNull(result, LocalSystemCreate(r->instance, local));
  return true;
}

const Member<OipfConfigurationRecord> kMembers[] = {
    Member<OipfConfigurationRecord>::Get("configuration", ConfigurationObject),
    Member<OipfConfigurationRecord>::Get("localSystem", LocalSystem),
};

// The middleware's configuration goes with the object.
struct OipfConfiguration : HandleWithObjectKind<OipfConfiguration, OipfConfigurationRecord> {
  ORV_KIND(kMembers, g_configurations)
};

}  // namespace

ORV_OPENED_INSTANCE_KIND(kConfigurationKind, OipfConfiguration, g_configurations,
                         "application/oipfconfiguration", kKindConfiguration, OipfConfigurationCreate,
                         OipfConfigurationDestroy, MwConfigurationOpen)

NPObject* ConfigurationCreate(NPP instance, MwHandle configuration) {
  Configuration::Members().Intern();
  NPObject* object = NPN_CreateObject(instance, ScriptClass<Configuration>::Class());
  if (!object) return nullptr;
  // The new object's preferences replace the current ones. The previous
  // handle is not released: the middleware keeps its preferences and lends
  // the handle again while the plug-in holds it.
  conf_np_obj = object;
  g_preferences = MwConfigGetPreferences(configuration);
  return object;
}

NPClass* ConfigurationGetClass(void) { return ScriptClass<Configuration>::Class(); }
