// What the instance dispatch knows of each page-instance kind. A kind joins
// the dispatch with one line in kinds.cpp.
#ifndef ORVANE_FRAME_INSTANCE_KIND_H
#define ORVANE_FRAME_INSTANCE_KIND_H

#include "frame/record.h"
#include "npapi/npapi.h"

// The object element's attributes.
struct ElementAttributes {
  const char* style = nullptr;
  const char* data = nullptr;
  int32_t width = -1;
  int32_t height = -1;
  int32_t loop = 0;   // "infinite": -1
  int32_t cache = 0;  // "true": 1
};

struct InstanceKind {
  const char* mime;  // lower case, as compared
  uint32_t kind;     // instance kind number
  // Makes the record (null on failure) with whatever follow-up calls the kind needs.
  ObjectRecord* (*create)(NPP instance, const ElementAttributes& attributes);
  void (*destroy)(ObjectRecord* record);
  // Optional: window placement, paint of a dirty rectangle, stream data of
  // requests the kind made, and their end.
  void (*set_window)(ObjectRecord* record, NPWindow* window);
  void (*paint)(ObjectRecord* record, const uint16_t rect[4]);
  bool accepts_streams;
  bool wants_all_streams;
  int32_t (*stream_data)(ObjectRecord* record, NPStream* stream, int32_t length, void* bytes);
  void (*url_notify)(ObjectRecord* record, void* notify_data, NPReason reason);
  RecordList* list;  // the kind's records; null for a kind that keeps none
};

namespace instance_kind_detail {
template <class F>
struct Takes;
template <class R>
struct Takes<void (*)(R*)> {
  using Record = R;
};
template <auto Create>
ObjectRecord* CreateFor(NPP instance, const ElementAttributes&) {
  return Create(instance);
}
template <auto Destroy>
void DestroyRecord(ObjectRecord* r) {
  Destroy(static_cast<typename Takes<decltype(Destroy)>::Record*>(r));
}
}  // namespace instance_kind_detail

// A kind that is only a script object over its record: no window, no
// streams, no element attributes. Create(NPP) makes the record (null on
// failure), Destroy(record) takes it down.
template <auto Create, auto Destroy>
constexpr InstanceKind ScriptObjectKind(const char* mime, uint32_t kind, RecordList* list) {
  return {mime, kind, instance_kind_detail::CreateFor<Create>,
          instance_kind_detail::DestroyRecord<Destroy>, nullptr, nullptr, false, false,
          nullptr, nullptr, list};
}

// The whole tail of a page-instance kind K on `list`: its InstanceKind
// `kind_var`, the exported creator `Create` (opens the middleware's object
// with `open`, given the new script object or nothing) and destroyer
// `Destroy` (ends the instance; a record that is not on the list is left as
// it is).
#define ORV_OPENED_INSTANCE_KIND(kind_var, K, list, mime, number, Create, Destroy, open)         \
  extern const InstanceKind kind_var = ScriptObjectKind<Create, Destroy>(mime, number, &(list)); \
  K::Record* Create(NPP instance) { return OpenInstance<K>(instance, number, open); }            \
  void Destroy(K::Record* r) { DestroyInstance(list, r); }

// The kinds in the order their MIME types are compared; null-terminated.
extern const InstanceKind* const g_instance_kinds[];

#endif
