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

enum Preference {
  kAudioLanguage,
  kSubtitleLanguage,
  kUILanguage,
  kCountryId,
  kPostcode,
  kSpeechDescription,
  kVoiceControl,
  kTerminalMode,
};
const char* const kPreferenceNames[] = {
    "preferredAudioLanguage", "preferredSubtitleLanguage", "preferredUILanguage", "countryId",
    "postcode", "speechDescriptionEnabled", "voiceControlEnabled", "terminalMode",
};

// 1 true, 0 false, anything else: undefined (a setting the receiver lacks).
bool TriState(int32_t value, NPVariant* result) {
  if (value == 0 || value == 1) SetBool(result, value == 1);
  return true;
}

bool Text(MwHandle text, NPVariant* result) {
  NP_UtilsHbbtvStringToResult(text, result);
  return true;
}

struct Configuration : KindDefaults<Configuration> {
  ORV_PROPERTY_TABLE(kPreferenceNames)

  // The preferences go with the current object: a later read through an
  // older object finds none rather than a released handle.
  static void Deallocate(NPObject* object) {
    if (object != conf_np_obj) return;
    if (g_preferences) MwObjectRelease(g_preferences);
    g_preferences = 0;
    conf_np_obj = nullptr;
  }

  // Every Configuration object answers from the current preferences.
  static bool GetProperty(NPObject*, NPIdentifier id, NPVariant* result) {
    MwHandle p = g_preferences;
    switch (Properties().Find(id)) {
      case kAudioLanguage: return Text(MwConfigGetPreferredAudioLanguage(p), result);
      case kSubtitleLanguage: return Text(MwConfigGetPreferredSubtitleLanguage(p), result);
      case kUILanguage: return Text(MwConfigGetPreferredUILanguage(p), result);
      case kCountryId: return Text(MwConfigGetCountryId(p), result);
      case kPostcode: {
        MwHandle postcode = MwConfigGetPostcode(p);
        return postcode && Text(postcode, result);  // none: the read fails
      }
      case kSpeechDescription: return TriState(MwConfigGetSpeechDescriptionEnabled(p), result);
      case kVoiceControl: return TriState(MwConfigGetVoiceControlEnabled(p), result);
      case kTerminalMode: SetInt(result, MwConfigGetTerminalMode(p)); return true;
      default: return false;
    }
  }
};

// ---- the configuration element ----------------------------------------------

enum Property { kConfiguration, kLocalSystem };
const char* const kPropertyNames[] = {"configuration", "localSystem"};

// The middleware's configuration goes with the object.
struct OipfConfiguration : HandleWithObjectKind<OipfConfiguration, OipfConfigurationRecord> {
  ORV_PROPERTY_TABLE(kPropertyNames)
  static RecordList& List() { return g_configurations; }

  static bool GetProperty(NPObject* object, NPIdentifier id, NPVariant* result) {
    OipfConfigurationRecord* r = Find(object);
    if (!r) return false;
    switch (Properties().Find(id)) {
      case kConfiguration: {
        if (!r->handle) return false;
        NPObject* configuration = ConfigurationCreate(r->instance, r->handle);
        SetObjectOrNull(result, configuration);
        return configuration != nullptr;
      }
      case kLocalSystem: {
        MwHandle local = MwConfigGetLocalSystem(r->handle);  // asked even of no configuration
        if (!local) {
          SetNull(result);
          return false;
        }
        SetObjectOrNull(result, LocalSystemCreate(r->instance, local));
        return true;
      }
      default:
        return false;
    }
  }
};

}  // namespace

ORV_OPENED_INSTANCE_KIND(kConfigurationKind, OipfConfiguration, g_configurations,
                         "application/oipfconfiguration", kKindConfiguration, OipfConfigurationCreate,
                         OipfConfigurationDestroy, MwConfigurationOpen)

NPObject* ConfigurationCreate(NPP instance, MwHandle configuration) {
  Configuration::Properties().Intern();
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
