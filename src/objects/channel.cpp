#include "objects/channel.h"

#include "objects/collection_item.h"
#include "frame/frame.h"
#include "middleware/broadcast.h"
#include "middleware/collection.h"
#include "utils/convert.h"

namespace {

SharedList g_channels;

// No major channel: the property reads as absent.
bool MajorChannel(SharedRecord* r, NPVariant* result) {
  int32_t major = MwChannelGetMajorChannel(r->handle);
  if (major < 0) return false;
  SetInt(result, major);
  return true;
}

using R = SharedRecord;
using Row = Member<R>;
const Row kMembers[] = {
    Row::Get("TYPE_TV", Constant<R, 0>),
    Row::Get("TYPE_RADIO", Constant<R, 1>),
    Row::Get("TYPE_OTHER", Constant<R, 2>),
    Row::Get("TYPE_HBBTV_DATA", Constant<R, 256>),
    Row::Get("channelType", IntOf<R, MwChannelGetChannelType>),
    Row::Get("ccid", TextOf<R, MwChannelGetCcid>),
    Row::Get("dsd", TextOf<R, MwChannelGetDsd>),
    Row::Get("onid", IntOf<R, MwChannelGetOnid>),
    Row::Get("tsid", IntOf<R, MwChannelGetTsid>),
    Row::Get("sid", IntOf<R, MwChannelGetSid>),
    Row::Get("name", TextOf<R, MwChannelGetName>),
    Row::Get("nid", IntOf<R, MwChannelGetNid>),
    Row::Get("majorChannel", MajorChannel),
    Row::Get("locked", BoolOf<R, MwChannelIsLocked>),
    Row::Get("shortName", TextOf<R, MwChannelGetShortName>),
    // A flag, not the DVB running-status code: pages test it for truth.
    Row::Get("runningStatus", BoolOf<R, MwChannelGetRunningStatus>),
    Row::Get("hidden", BoolOf<R, MwChannelIsHidden>),
    Row::Get("opalChannelType", IntOf<R, MwChannelGetOpalChannelType>),
    Row::Get("freesatServiceID", IntOf<R, MwChannelGetFreesatServiceID>),
};

// A channel of handle 0 fails every read.
struct Channel : HandedOutKind<Channel, SharedRecord> {
  ORV_KIND(kMembers, g_channels)
  static Gate Check(const SharedRecord* r, Access) { return NeedHandle(r); }
};

}  // namespace

NPObject* ChannelCreate(NPP instance, MwHandle channel) {
  // One script object per channel handle: a second wrap shares the first.
  if (NPObject* shared = SharedObject<Channel>(channel)) {
    MwObjectRelease(channel);
    return shared;
  }
  return NewHandedOut<Channel>(instance, channel, kReleaseOnFailure);
}

MwHandle ChannelGetHandle(NPObject* object) { return HandleOf<Channel>(object); }

// ---- channel lists ---------------------------------------------------------------

namespace {

void ChannelToResult(CollectionRecord* r, MwHandle channel, NPVariant* result) {
  SetObjectOrNull(result, channel ? ChannelCreate(r->instance, channel) : nullptr);
}

bool GetChannel(CollectionRecord* r, const NPVariant* args, uint32_t count, NPVariant* result) {
  if (count != 1) return false;
  MwString ccid = ArgText(args[0]);
  ChannelToResult(r, MwChannelListGetChannel(r->handle, &ccid), result);
  return true;
}

bool GetChannelByTriplet(CollectionRecord* r, const NPVariant* args, uint32_t count,
                         NPVariant* result) {
  if (count != 3) return false;
  uint32_t onid, tsid = 0, sid;
  if (!NP_UtilsGetU32BIT(&args[0], &onid) || !NP_UtilsGetU32BIT(&args[2], &sid)) return false;
  // A null tsid stands for "any transport stream" and is passed as 0.
  if (args[1].type != NPVariantType_Null && !NP_UtilsGetU32BIT(&args[1], &tsid)) return false;
  ChannelToResult(r, MwChannelListGetChannelByTriplet(r->handle, onid, tsid, sid), result);
  return true;
}

const CollectionMember kListMembers[] = {
    CollectionMember::Call("getChannel", GetChannel),
    CollectionMember::Call("getChannelByTriplet", GetChannelByTriplet),
};

}  // namespace

extern const CollectionItemKind kChannelItems = {ChannelCreate, true, ORV_MEMBERS(kListMembers)};
