// The simulated configuration: user preferences, the local system with its
// network interfaces, and the capabilities, all read from the receiver.
#include <memory>
#include <string>

#include "middleware/config.h"
#include "sim/config_sim.h"
#include "sim/core.h"
#include "sim/fields.h"
#include "sim/receiver.h"

namespace {

using Lock = std::lock_guard<std::recursive_mutex>;
using sim::NetworkInterfaceObject;
using sim::Receiver;

struct ConfigurationObject : sim::Object {
  const char* Type() const override { return "configuration"; }
};
struct PreferencesObject : sim::Object {
  const char* Type() const override { return "preferences"; }
};
struct LocalSystemObject : sim::Object {
  const char* Type() const override { return "local-system"; }
};
struct CapabilitiesObject : sim::Object {
  const char* Type() const override { return "capabilities"; }
};

// The receiver's preferences and local system: persistent, made on first use.
MwHandle g_preferences = 0;
MwHandle g_local_system = 0;
bool g_timeline_started = false;
sim::ResetHook g_reset([] {
  g_preferences = 0;
  g_local_system = 0;
  g_timeline_started = false;
});

void StartTimeline();

template <class T>
MwHandle Singleton(MwHandle* handle) {
  Lock lock(sim::Mutex());
  if (!sim::Find<T>(*handle)) *handle = sim::Register(std::make_shared<T>(), true);
  return *handle;
}

// A receiver text as a new string (0 when empty) if `handle` names a T.
template <class T>
MwHandle RxString(MwHandle handle, std::string Receiver::*field) {
  if (!sim::Find<T>(handle)) return 0;
  Lock lock(sim::Mutex());
  return sim::NewStringHandleOrNull(sim::Rx().*field);
}

template <class T>
int32_t RxInt(MwHandle handle, int32_t Receiver::*field) {
  if (!sim::Find<T>(handle)) return 0;
  Lock lock(sim::Mutex());
  return sim::Rx().*field;
}

}  // namespace

namespace sim {

MwHandle LocalSystemHandle() { return Singleton<LocalSystemObject>(&g_local_system); }

void RaisePvrStatusChange(int32_t status, bool on_sim_thread) {
  MwHandle local_system = LocalSystemHandle();
  {
    Lock lock(Mutex());
    Rx().pvr_status = status;
  }
  auto raise = [local_system, status] { SIM_EMIT(LocalSystem_onPvrStatusChange, local_system, status); };
  if (on_sim_thread)
    OnSimThread(raise);
  else
    raise();
}

void RaiseNetworkStatusChange(MwHandle networkInterface, int32_t status, bool on_sim_thread) {
  if (auto n = Find<NetworkInterfaceObject>(networkInterface)) {
    Lock lock(Mutex());
    if (status == 0 || status == 1) n->connected = status;
  }
  auto raise = [networkInterface, status] {
    SIM_EMIT(NetworkInterface_onNetworkStatusChange, networkInterface, status);
  };
  if (on_sim_thread)
    OnSimThread(raise);
  else
    raise();
}

}  // namespace sim

namespace {

void StartTimeline() {
  std::vector<sim::TimelineStep> steps;
  {
    Lock lock(sim::Mutex());
    if (g_timeline_started) return;
    g_timeline_started = true;
    steps = sim::Rx().timeline;
  }
  for (const sim::TimelineStep& step : steps) {
    sim::OnSimThread(
        [step] {
          if (step.pvr_status >= 0) sim::RaisePvrStatusChange(step.pvr_status);
          if (step.network_interface < 0) return;
          MwHandle n = 0;
          {
            Lock lock(sim::Mutex());
            const std::vector<MwHandle>& all = sim::Rx().network_interfaces;
            if (static_cast<size_t>(step.network_interface) < all.size()) n = all[static_cast<size_t>(step.network_interface)];
          }
          if (n) sim::RaiseNetworkStatusChange(n, step.connected ? 1 : 0);
        },
        step.at_ms);
  }
}

}  // namespace

extern "C" {

// ---- configuration ----
// The first configuration a page opens starts the receiver's timeline.
MwHandle MwConfigurationOpen(void* context) {
  SIM_CALL(MwHandle, context);
  StartTimeline();
  return sim::Register(std::make_shared<ConfigurationObject>(), false);
}

MwHandle MwConfigGetPreferences(MwHandle configuration) {
  SIM_CALL(MwHandle, configuration);
  if (!sim::Find<ConfigurationObject>(configuration)) return 0;
  // The plug-in holds the current preferences once and lets the earlier
  // ones go without a release: one preferences object, lent while held.
  return sim::GiveUnlessHeld(Singleton<PreferencesObject>(&g_preferences));
}

MwHandle MwConfigGetLocalSystem(MwHandle configuration) {
  SIM_CALL(MwHandle, configuration);
  if (!sim::Find<ConfigurationObject>(configuration)) return 0;
  return sim::Give(sim::LocalSystemHandle());
}

MwHandle MwConfigGetPreferredAudioLanguage(MwHandle preferences) {
  SIM_CALL(MwHandle, preferences);
  return RxString<PreferencesObject>(preferences, &Receiver::audio_language);
}

MwHandle MwConfigGetPreferredSubtitleLanguage(MwHandle preferences) {
  SIM_CALL(MwHandle, preferences);
  return RxString<PreferencesObject>(preferences, &Receiver::subtitle_language);
}

MwHandle MwConfigGetPreferredUILanguage(MwHandle preferences) {
  SIM_CALL(MwHandle, preferences);
  return RxString<PreferencesObject>(preferences, &Receiver::ui_language);
}

MwHandle MwConfigGetCountryId(MwHandle preferences) {
  SIM_CALL(MwHandle, preferences);
  return RxString<PreferencesObject>(preferences, &Receiver::country_id);
}

MwHandle MwConfigGetPostcode(MwHandle preferences) {
  SIM_CALL(MwHandle, preferences);
  return RxString<PreferencesObject>(preferences, &Receiver::postcode);
}

int32_t MwConfigGetSpeechDescriptionEnabled(MwHandle preferences) {
  SIM_CALL(int32_t, preferences);
  return RxInt<PreferencesObject>(preferences, &Receiver::speech_description);
}

int32_t MwConfigGetVoiceControlEnabled(MwHandle preferences) {
  SIM_CALL(int32_t, preferences);
  return RxInt<PreferencesObject>(preferences, &Receiver::voice_control);
}

int32_t MwConfigGetTerminalMode(MwHandle preferences) {
  SIM_CALL(int32_t, preferences);
  return RxInt<PreferencesObject>(preferences, &Receiver::terminal_mode);
}

// ---- local system ----
MwHandle MwLocalSystemGetDeviceId(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  return RxString<LocalSystemObject>(localSystem, &Receiver::device_id);
}

MwHandle MwLocalSystemGetVendorName(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  return RxString<LocalSystemObject>(localSystem, &Receiver::vendor_name);
}

MwHandle MwLocalSystemGetFamilyName(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  return RxString<LocalSystemObject>(localSystem, &Receiver::family_name);
}

MwHandle MwLocalSystemGetModelName(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  return RxString<LocalSystemObject>(localSystem, &Receiver::model_name);
}

MwHandle MwLocalSystemGetSoftwareVersion(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  return RxString<LocalSystemObject>(localSystem, &Receiver::software_version);
}

MwHandle MwLocalSystemGetHardwareVersion(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  return RxString<LocalSystemObject>(localSystem, &Receiver::hardware_version);
}

// The identity's profile, or else the name the capabilities give their ui_profile.
MwHandle MwLocalSystemGetOipfProfile(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  if (!sim::Find<LocalSystemObject>(localSystem)) return 0;
  Lock lock(sim::Mutex());
  const Receiver& rx = sim::Rx();
  std::string profile = rx.oipf_profile;
  if (profile.empty()) {
    profile = rx.capabilities.ui_profile;
    for (const std::string& e : rx.capabilities.extensions) profile += e;
  }
  return sim::NewStringHandle(profile);
}

int32_t MwLocalSystemGetPvrEnabled(MwHandle localSystem) {
  SIM_CALL(int32_t, localSystem);
  return RxInt<LocalSystemObject>(localSystem, &Receiver::pvr_enabled);
}

int32_t MwLocalSystemGetPvrStatus(MwHandle localSystem) {
  SIM_CALL(int32_t, localSystem);
  return RxInt<LocalSystemObject>(localSystem, &Receiver::pvr_status);
}

MwHandle MwLocalSystemGetNetworkInterfaces(MwHandle localSystem) {
  SIM_CALL(MwHandle, localSystem);
  if (!sim::Find<LocalSystemObject>(localSystem)) return 0;
  Lock lock(sim::Mutex());
  const std::vector<MwHandle>& interfaces = sim::Rx().network_interfaces;
  return interfaces.empty() ? 0 : sim::NewList(interfaces);
}

// ---- network interfaces ----
MwHandle MwNetworkInterfaceGetIpAddress(MwHandle networkInterface) {
  SIM_CALL(MwHandle, networkInterface);
  return sim::StringField(networkInterface, &NetworkInterfaceObject::ip_address);
}

MwHandle MwNetworkInterfaceGetMacAddress(MwHandle networkInterface) {
  SIM_CALL(MwHandle, networkInterface);
  return sim::StringField(networkInterface, &NetworkInterfaceObject::mac_address);
}

int32_t MwNetworkInterfaceIsConnected(MwHandle networkInterface) {
  SIM_CALL(int32_t, networkInterface);
  return sim::IntField(networkInterface, &NetworkInterfaceObject::connected);
}

int32_t MwNetworkInterfaceIsEnabled(MwHandle networkInterface) {
  SIM_CALL(int32_t, networkInterface);
  return sim::IntField(networkInterface, &NetworkInterfaceObject::enabled);
}

// ---- capabilities ----
MwHandle MwCapabilitiesOpen(void* context) {
  SIM_CALL(MwHandle, context);
  return sim::Register(std::make_shared<CapabilitiesObject>(), false);
}

MwHandle MwCapabilitiesGetXml(MwHandle capabilities) {
  SIM_CALL(MwHandle, capabilities);
  return sim::Answer<CapabilitiesObject>(capabilities, MwHandle{0}, [&](CapabilitiesObject&) {
    return sim::NewStringHandle(sim::CapabilitiesXml(sim::Rx().capabilities));
  });
}

int32_t MwCapabilitiesGetExtraSDVideoDecodes(MwHandle capabilities) {
  SIM_CALL(int32_t, capabilities);
  return RxInt<CapabilitiesObject>(capabilities, &Receiver::extra_sd_decodes);
}

int32_t MwCapabilitiesGetExtraHDVideoDecodes(MwHandle capabilities) {
  SIM_CALL(int32_t, capabilities);
  return RxInt<CapabilitiesObject>(capabilities, &Receiver::extra_hd_decodes);
}

int32_t MwCapabilitiesHasCapability(MwHandle capabilities, const MwString* profileName) {
  SIM_CALL(int32_t, capabilities, profileName);
  if (!sim::Find<CapabilitiesObject>(capabilities) || !profileName) return 0;
  std::string wanted = sim::Text(profileName);
  Lock lock(sim::Mutex());
  return sim::HasCapability(sim::Rx().capabilities, wanted) ? 1 : 0;
}

}  // extern "C"
