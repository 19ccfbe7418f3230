/*
 * NPAPI declarations used by the plug-in and by its test hosts.
 *
 * Written from the ABI: record layouts, slot orders and constant values of
 * the Netscape Plug-in API as browsers on X11 receivers implement it. Every
 * pointer-sized field is a real pointer, so the layouts hold on LP64
 * (x86-64, aarch64) and ILP32 (32-bit ARM, MIPS) alike.
 */
#ifndef ORVANE_NPAPI_H
#define ORVANE_NPAPI_H

#include <stdbool.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

typedef int16_t NPError;
typedef int16_t NPReason;
typedef unsigned char NPBool;
typedef char NPUTF8;
typedef char* NPMIMEType;

/* NPError values */
enum {
  NPERR_NO_ERROR = 0,
  NPERR_GENERIC_ERROR = 1,
  NPERR_INVALID_INSTANCE_ERROR = 2,
  NPERR_INVALID_FUNCTABLE_ERROR = 3,
  NPERR_MODULE_LOAD_FAILED_ERROR = 4,
  NPERR_OUT_OF_MEMORY_ERROR = 5,
  NPERR_INVALID_PLUGIN_ERROR = 6,
  NPERR_INVALID_PLUGIN_DIR_ERROR = 7,
  NPERR_INCOMPATIBLE_VERSION_ERROR = 8,
  NPERR_INVALID_PARAM = 9,
  NPERR_INVALID_URL = 10,
  NPERR_FILE_NOT_FOUND = 11,
  NPERR_NO_DATA = 12,
  NPERR_STREAM_NOT_SEEKABLE = 13
};

/* NPReason values */
enum { NPRES_DONE = 0, NPRES_NETWORK_ERR = 1, NPRES_USER_BREAK = 2 };

/* Stream types and instance modes */
enum { NP_NORMAL = 1, NP_SEEK = 2, NP_ASFILE = 3, NP_ASFILEONLY = 4 };
enum { NP_EMBED = 1, NP_FULL = 2 };

typedef struct _NPP {
  void* pdata; /* plug-in private data */
  void* ndata; /* browser private data */
} NPP_t;
typedef NPP_t* NPP;

typedef struct _NPStream {
  void* pdata;
  void* ndata;
  const char* url;
  uint32_t end;
  uint32_t lastmodified;
  void* notifyData;
  const char* headers;
} NPStream;

typedef struct _NPByteRange {
  int32_t offset;
  uint32_t length;
  struct _NPByteRange* next;
} NPByteRange;

typedef struct _NPSavedData {
  int32_t len;
  void* buf;
} NPSavedData;

typedef struct _NPRect {
  uint16_t top;
  uint16_t left;
  uint16_t bottom;
  uint16_t right;
} NPRect;

typedef enum { NPWindowTypeWindow = 1, NPWindowTypeDrawable = 2 } NPWindowType;

typedef struct _NPWindow {
  void* window;
  int32_t x;
  int32_t y;
  uint32_t width;
  uint32_t height;
  NPRect clipRect;
  void* ws_info; /* X11: NPSetWindowCallbackStruct* */
  NPWindowType type;
} NPWindow;

typedef struct _NPPrint {
  uint16_t mode;
  union {
    struct {
      void* pluginPrinted;
      void* printCallback;
      void* platformPrint;
    } fullPrint;
    struct {
      NPWindow window;
      void* platformPrint;
    } embedPrint;
  } print;
} NPPrint;

/* Values the browser asks of the plug-in */
typedef enum {
  NPPVpluginNameString = 1,
  NPPVpluginDescriptionString = 2,
  NPPVpluginWindowBool = 3,
  NPPVpluginTransparentBool = 4,
  NPPVjavaClass = 5,
  NPPVpluginWindowSize = 6,
  NPPVpluginTimerInterval = 7,
  NPPVpluginScriptableInstance = 10,
  NPPVpluginScriptableIID = 11,
  NPPVjavascriptPushCallerBool = 12,
  NPPVpluginKeepLibraryInMemory = 13,
  NPPVpluginNeedsXEmbed = 14,
  NPPVpluginScriptableNPObject = 15,
  NPPVformValue = 16,
  NPPVpluginUrlRequestsDisplayedBool = 17,
  NPPVpluginWantsAllNetworkStreams = 18
} NPPVariable;

/* Values the plug-in asks of the browser */
typedef enum {
  NPNVxDisplay = 1,
  NPNVxtAppContext = 2,
  NPNVnetscapeWindow = 3,
  NPNVjavascriptEnabledBool = 4,
  NPNVasdEnabledBool = 5,
  NPNVisOfflineBool = 6,
  NPNVserviceManager = 10,
  NPNVDOMElement = 11,
  NPNVDOMWindow = 12,
  NPNVToolkit = 13,
  NPNVSupportsXEmbedBool = 14,
  NPNVWindowNPObject = 15,
  NPNVPluginElementNPObject = 16,
  NPNVSupportsWindowless = 17,
  NPNVprivateModeBool = 18
} NPNVariable;

/* Scripting */
typedef void* NPIdentifier;

typedef struct _NPString {
  const NPUTF8* UTF8Characters;
  uint32_t UTF8Length;
} NPString;

typedef enum {
  NPVariantType_Void = 0,
  NPVariantType_Null = 1,
  NPVariantType_Bool = 2,
  NPVariantType_Int32 = 3,
  NPVariantType_Double = 4,
  NPVariantType_String = 5,
  NPVariantType_Object = 6
} NPVariantType;

typedef struct NPObject NPObject;
typedef struct NPClass NPClass;

typedef struct _NPVariant {
  NPVariantType type;
  union {
    bool boolValue;
    int32_t intValue;
    double doubleValue;
    NPString stringValue;
    NPObject* objectValue;
  } value;
} NPVariant;

typedef NPObject* (*NPAllocateFunctionPtr)(NPP npp, NPClass* aClass);
typedef void (*NPDeallocateFunctionPtr)(NPObject* npobj);
typedef void (*NPInvalidateFunctionPtr)(NPObject* npobj);
typedef bool (*NPHasMethodFunctionPtr)(NPObject* npobj, NPIdentifier name);
typedef bool (*NPInvokeFunctionPtr)(NPObject* npobj, NPIdentifier name, const NPVariant* args,
                                    uint32_t argCount, NPVariant* result);
typedef bool (*NPInvokeDefaultFunctionPtr)(NPObject* npobj, const NPVariant* args,
                                           uint32_t argCount, NPVariant* result);
typedef bool (*NPHasPropertyFunctionPtr)(NPObject* npobj, NPIdentifier name);
typedef bool (*NPGetPropertyFunctionPtr)(NPObject* npobj, NPIdentifier name, NPVariant* result);
typedef bool (*NPSetPropertyFunctionPtr)(NPObject* npobj, NPIdentifier name,
                                         const NPVariant* value);
typedef bool (*NPRemovePropertyFunctionPtr)(NPObject* npobj, NPIdentifier name);
typedef bool (*NPEnumerationFunctionPtr)(NPObject* npobj, NPIdentifier** value, uint32_t* count);
typedef bool (*NPConstructFunctionPtr)(NPObject* npobj, const NPVariant* args, uint32_t argCount,
                                       NPVariant* result);

#define NP_CLASS_STRUCT_VERSION 3

struct NPClass {
  uint32_t structVersion;
  NPAllocateFunctionPtr allocate;
  NPDeallocateFunctionPtr deallocate;
  NPInvalidateFunctionPtr invalidate;
  NPHasMethodFunctionPtr hasMethod;
  NPInvokeFunctionPtr invoke;
  NPInvokeDefaultFunctionPtr invokeDefault;
  NPHasPropertyFunctionPtr hasProperty;
  NPGetPropertyFunctionPtr getProperty;
  NPSetPropertyFunctionPtr setProperty;
  NPRemovePropertyFunctionPtr removeProperty;
  NPEnumerationFunctionPtr enumerate;
  NPConstructFunctionPtr construct;
};

struct NPObject {
  NPClass* _class;
  uint32_t referenceCount;
};

/* Browser-side functions (NPN_*) */
typedef NPError (*NPN_GetURLProcPtr)(NPP, const char* url, const char* window);
typedef NPError (*NPN_PostURLProcPtr)(NPP, const char* url, const char* window, uint32_t len,
                                      const char* buf, NPBool file);
typedef NPError (*NPN_RequestReadProcPtr)(NPStream*, NPByteRange*);
typedef NPError (*NPN_NewStreamProcPtr)(NPP, NPMIMEType, const char* window, NPStream**);
typedef int32_t (*NPN_WriteProcPtr)(NPP, NPStream*, int32_t len, void* buffer);
typedef NPError (*NPN_DestroyStreamProcPtr)(NPP, NPStream*, NPReason);
typedef void (*NPN_StatusProcPtr)(NPP, const char* message);
typedef const char* (*NPN_UserAgentProcPtr)(NPP);
typedef void* (*NPN_MemAllocProcPtr)(uint32_t size);
typedef void (*NPN_MemFreeProcPtr)(void* ptr);
typedef uint32_t (*NPN_MemFlushProcPtr)(uint32_t size);
typedef void (*NPN_ReloadPluginsProcPtr)(NPBool reloadPages);
typedef void* (*NPN_GetJavaEnvProcPtr)(void);
typedef void* (*NPN_GetJavaPeerProcPtr)(NPP);
typedef NPError (*NPN_GetURLNotifyProcPtr)(NPP, const char* url, const char* window,
                                           void* notifyData);
typedef NPError (*NPN_PostURLNotifyProcPtr)(NPP, const char* url, const char* window,
                                            uint32_t len, const char* buf, NPBool file,
                                            void* notifyData);
typedef NPError (*NPN_GetValueProcPtr)(NPP, NPNVariable, void* value);
typedef NPError (*NPN_SetValueProcPtr)(NPP, NPPVariable, void* value);
typedef void (*NPN_InvalidateRectProcPtr)(NPP, NPRect*);
typedef void (*NPN_InvalidateRegionProcPtr)(NPP, void* region);
typedef void (*NPN_ForceRedrawProcPtr)(NPP);
typedef NPIdentifier (*NPN_GetStringIdentifierProcPtr)(const NPUTF8* name);
typedef void (*NPN_GetStringIdentifiersProcPtr)(const NPUTF8** names, int32_t nameCount,
                                                NPIdentifier* identifiers);
typedef NPIdentifier (*NPN_GetIntIdentifierProcPtr)(int32_t intid);
typedef bool (*NPN_IdentifierIsStringProcPtr)(NPIdentifier);
typedef NPUTF8* (*NPN_UTF8FromIdentifierProcPtr)(NPIdentifier);
typedef int32_t (*NPN_IntFromIdentifierProcPtr)(NPIdentifier);
typedef NPObject* (*NPN_CreateObjectProcPtr)(NPP, NPClass*);
typedef NPObject* (*NPN_RetainObjectProcPtr)(NPObject*);
typedef void (*NPN_ReleaseObjectProcPtr)(NPObject*);
typedef bool (*NPN_InvokeProcPtr)(NPP, NPObject*, NPIdentifier, const NPVariant* args,
                                  uint32_t argCount, NPVariant* result);
typedef bool (*NPN_InvokeDefaultProcPtr)(NPP, NPObject*, const NPVariant* args, uint32_t argCount,
                                         NPVariant* result);
typedef bool (*NPN_EvaluateProcPtr)(NPP, NPObject*, NPString* script, NPVariant* result);
typedef bool (*NPN_GetPropertyProcPtr)(NPP, NPObject*, NPIdentifier, NPVariant* result);
typedef bool (*NPN_SetPropertyProcPtr)(NPP, NPObject*, NPIdentifier, const NPVariant* value);
typedef bool (*NPN_RemovePropertyProcPtr)(NPP, NPObject*, NPIdentifier);
typedef bool (*NPN_HasPropertyProcPtr)(NPP, NPObject*, NPIdentifier);
typedef bool (*NPN_HasMethodProcPtr)(NPP, NPObject*, NPIdentifier);
typedef void (*NPN_ReleaseVariantValueProcPtr)(NPVariant*);
typedef void (*NPN_SetExceptionProcPtr)(NPObject*, const NPUTF8* message);
typedef void (*NPN_PushPopupsEnabledStateProcPtr)(NPP, NPBool enabled);
typedef void (*NPN_PopPopupsEnabledStateProcPtr)(NPP);
typedef bool (*NPN_EnumerateProcPtr)(NPP, NPObject*, NPIdentifier** identifiers,
                                     uint32_t* count);
typedef void (*NPN_PluginThreadAsyncCallProcPtr)(NPP, void (*func)(void*), void* userData);
typedef bool (*NPN_ConstructProcPtr)(NPP, NPObject*, const NPVariant* args, uint32_t argCount,
                                     NPVariant* result);

typedef struct _NPNetscapeFuncs {
  uint16_t size;
  uint16_t version;
  NPN_GetURLProcPtr geturl;
  NPN_PostURLProcPtr posturl;
  NPN_RequestReadProcPtr requestread;
  NPN_NewStreamProcPtr newstream;
  NPN_WriteProcPtr write;
  NPN_DestroyStreamProcPtr destroystream;
  NPN_StatusProcPtr status;
  NPN_UserAgentProcPtr uagent;
  NPN_MemAllocProcPtr memalloc;
  NPN_MemFreeProcPtr memfree;
  NPN_MemFlushProcPtr memflush;
  NPN_ReloadPluginsProcPtr reloadplugins;
  NPN_GetJavaEnvProcPtr getJavaEnv;
  NPN_GetJavaPeerProcPtr getJavaPeer;
  NPN_GetURLNotifyProcPtr geturlnotify;
  NPN_PostURLNotifyProcPtr posturlnotify;
  NPN_GetValueProcPtr getvalue;
  NPN_SetValueProcPtr setvalue;
  NPN_InvalidateRectProcPtr invalidaterect;
  NPN_InvalidateRegionProcPtr invalidateregion;
  NPN_ForceRedrawProcPtr forceredraw;
  NPN_GetStringIdentifierProcPtr getstringidentifier;
  NPN_GetStringIdentifiersProcPtr getstringidentifiers;
  NPN_GetIntIdentifierProcPtr getintidentifier;
  NPN_IdentifierIsStringProcPtr identifierisstring;
  NPN_UTF8FromIdentifierProcPtr utf8fromidentifier;
  NPN_IntFromIdentifierProcPtr intfromidentifier;
  NPN_CreateObjectProcPtr createobject;
  NPN_RetainObjectProcPtr retainobject;
  NPN_ReleaseObjectProcPtr releaseobject;
  NPN_InvokeProcPtr invoke;
  NPN_InvokeDefaultProcPtr invokeDefault;
  NPN_EvaluateProcPtr evaluate;
  NPN_GetPropertyProcPtr getproperty;
  NPN_SetPropertyProcPtr setproperty;
  NPN_RemovePropertyProcPtr removeproperty;
  NPN_HasPropertyProcPtr hasproperty;
  NPN_HasMethodProcPtr hasmethod;
  NPN_ReleaseVariantValueProcPtr releasevariantvalue;
  NPN_SetExceptionProcPtr setexception;
  NPN_PushPopupsEnabledStateProcPtr pushpopupsenabledstate;
  NPN_PopPopupsEnabledStateProcPtr poppopupsenabledstate;
  NPN_EnumerateProcPtr enumerate;
  NPN_PluginThreadAsyncCallProcPtr pluginthreadasynccall;
  NPN_ConstructProcPtr construct;
  void* getvalueforurl;
  void* setvalueforurl;
  void* getauthenticationinfo;
  void* scheduletimer;
  void* unscheduletimer;
  void* popupcontextmenu;
  void* convertpoint;
  void* handleevent;
  void* unfocusinstance;
  void* urlredirectresponse;
} NPNetscapeFuncs;

/* Plug-in-side functions (NPP_*) */
typedef NPError (*NPP_NewProcPtr)(NPMIMEType, NPP, uint16_t mode, int16_t argc, char* argn[],
                                  char* argv[], NPSavedData* saved);
typedef NPError (*NPP_DestroyProcPtr)(NPP, NPSavedData** save);
typedef NPError (*NPP_SetWindowProcPtr)(NPP, NPWindow*);
typedef NPError (*NPP_NewStreamProcPtr)(NPP, NPMIMEType, NPStream*, NPBool seekable,
                                        uint16_t* stype);
typedef NPError (*NPP_DestroyStreamProcPtr)(NPP, NPStream*, NPReason);
typedef void (*NPP_StreamAsFileProcPtr)(NPP, NPStream*, const char* fname);
typedef int32_t (*NPP_WriteReadyProcPtr)(NPP, NPStream*);
typedef int32_t (*NPP_WriteProcPtr)(NPP, NPStream*, int32_t offset, int32_t len, void* buffer);
typedef void (*NPP_PrintProcPtr)(NPP, NPPrint*);
typedef int16_t (*NPP_HandleEventProcPtr)(NPP, void* event);
typedef void (*NPP_URLNotifyProcPtr)(NPP, const char* url, NPReason, void* notifyData);
typedef NPError (*NPP_GetValueProcPtr)(NPP, NPPVariable, void* value);
typedef NPError (*NPP_SetValueProcPtr)(NPP, NPNVariable, void* value);

typedef struct _NPPluginFuncs {
  uint16_t size;
  uint16_t version;
  NPP_NewProcPtr newp;
  NPP_DestroyProcPtr destroy;
  NPP_SetWindowProcPtr setwindow;
  NPP_NewStreamProcPtr newstream;
  NPP_DestroyStreamProcPtr destroystream;
  NPP_StreamAsFileProcPtr asfile;
  NPP_WriteReadyProcPtr writeready;
  NPP_WriteProcPtr write;
  NPP_PrintProcPtr print;
  NPP_HandleEventProcPtr event;
  NPP_URLNotifyProcPtr urlnotify;
  void* javaClass;
  NPP_GetValueProcPtr getvalue;
  NPP_SetValueProcPtr setvalue;
  void* gotfocus;
  void* lostfocus;
  void* urlredirectnotify;
  void* clearsitedata;
  void* getsitesforclearing;
  void* didComposite;
} NPPluginFuncs;

#ifdef __cplusplus
}
#endif

#endif
