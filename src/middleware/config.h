/* Middleware contract: configuration, local system, network interfaces and capabilities. */
#ifndef ORVANE_MIDDLEWARE_CONFIG_H
#define ORVANE_MIDDLEWARE_CONFIG_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* ---- configuration ---- */
/* The configuration for `context` (the page's object); owned by the caller. */
MwHandle MwConfigurationOpen(void* context);
/* The user preferences. The plug-in holds at most one: a new reference when it
 * holds none, else lent. A later call replaces it without a release; the
 * plug-in releases it when its newest Configuration object goes. */
MwHandle MwConfigGetPreferences(MwHandle configuration);
/* The local system; new reference or 0. */
MwHandle MwConfigGetLocalSystem(MwHandle configuration);
/* Preference texts as middleware strings (0 when absent). */
MwHandle MwConfigGetPreferredAudioLanguage(MwHandle preferences);
MwHandle MwConfigGetPreferredSubtitleLanguage(MwHandle preferences);
MwHandle MwConfigGetPreferredUILanguage(MwHandle preferences);
MwHandle MwConfigGetCountryId(MwHandle preferences);
MwHandle MwConfigGetPostcode(MwHandle preferences);
/* 1 enabled, 0 disabled, anything else: not supported. */
int32_t MwConfigGetSpeechDescriptionEnabled(MwHandle preferences);
int32_t MwConfigGetVoiceControlEnabled(MwHandle preferences);
int32_t MwConfigGetTerminalMode(MwHandle preferences);

/* ---- local system (texts are middleware strings, 0 when absent) ---- */
MwHandle MwLocalSystemGetDeviceId(MwHandle localSystem);
MwHandle MwLocalSystemGetVendorName(MwHandle localSystem);
MwHandle MwLocalSystemGetFamilyName(MwHandle localSystem);
MwHandle MwLocalSystemGetModelName(MwHandle localSystem);
MwHandle MwLocalSystemGetSoftwareVersion(MwHandle localSystem);
MwHandle MwLocalSystemGetHardwareVersion(MwHandle localSystem);
MwHandle MwLocalSystemGetOipfProfile(MwHandle localSystem);
/* Non-zero when the receiver has a PVR. */
int32_t MwLocalSystemGetPvrEnabled(MwHandle localSystem);
int32_t MwLocalSystemGetPvrStatus(MwHandle localSystem);
/* The network interfaces as a list; new reference or 0. */
MwHandle MwLocalSystemGetNetworkInterfaces(MwHandle localSystem);

/* ---- network interfaces ---- */
MwHandle MwNetworkInterfaceGetIpAddress(MwHandle networkInterface);
MwHandle MwNetworkInterfaceGetMacAddress(MwHandle networkInterface);
int32_t MwNetworkInterfaceIsConnected(MwHandle networkInterface);
int32_t MwNetworkInterfaceIsEnabled(MwHandle networkInterface);

/* ---- capabilities ---- */
/* The capabilities for `context` (the page's object); owned by the caller. */
MwHandle MwCapabilitiesOpen(void* context);
/* The capability description XML as a middleware string. */
MwHandle MwCapabilitiesGetXml(MwHandle capabilities);
int32_t MwCapabilitiesGetExtraSDVideoDecodes(MwHandle capabilities);
int32_t MwCapabilitiesGetExtraHDVideoDecodes(MwHandle capabilities);
/* Non-zero when the receiver supports the named profile. */
int32_t MwCapabilitiesHasCapability(MwHandle capabilities, const MwString* profileName);

#ifdef __cplusplus
}
#endif

#endif
