#!/usr/bin/env bash
# Checks what the plug-in library exports and that it does not depend on a
# middleware library (its Mw... symbols resolve from the host process).
set -euo pipefail
lib=${1:-build/libnporvane.so}
fail=0
exported=$(nm -D --defined-only "$lib" | awk '{print $3}')
# Exported: NP_ and NPP_ entry points, the globals the middleware uses, and the
# creators, lookups and event entries of the kinds (plain C names). Never a
# C++ (mangled) name, a shared helper or a middleware name.
allowed='^(NP_(Initialize|Shutdown|GetMIMEDescription|GetValue|GetPluginVersion)|NPP_[A-Za-z]+|browser_funcs|g_plugin_callbacks|g_width|g_heigth|conf_np_obj|[A-Z][A-Za-z]+(_on[A-Za-z]+)?)$'
while read -r name; do
  [ -z "$name" ] && continue
  if ! [[ $name =~ $allowed ]] || [[ $name =~ ^(Mw|NP_Utils|Style) ]]; then
    echo "unexpected export: $name"
    fail=1
  fi
done <<<"$exported"
for required in NP_Initialize NP_Shutdown NP_GetMIMEDescription NP_GetValue NP_GetPluginVersion \
  NPP_New NPP_Destroy NPP_SetWindow NPP_NewStream NPP_DestroyStream NPP_StreamAsFile NPP_WriteReady \
  NPP_Write NPP_Print NPP_HandleEvent NPP_URLNotify NPP_GetValue NPP_SetValue browser_funcs g_plugin_callbacks; do
  grep -qx "$required" <<<"$exported" || { echo "missing export: $required"; fail=1; }
done
if readelf -d "$lib" | grep NEEDED | grep -vE 'lib(c|m|stdc\+\+|gcc_s|asan|ubsan)\.so' ; then
  echo "unexpected library dependency"
  fail=1
fi
imports=$(nm -D --undefined-only "$lib" | awk '{print $2}')
grep -q '^Mw' <<<"$imports" || { echo "no middleware imports found"; fail=1; }
[ $fail -eq 0 ] && echo "exports: $(wc -l <<<"$exported") names, no middleware dependency"
exit $fail
