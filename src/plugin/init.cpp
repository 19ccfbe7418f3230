#include "plugin/init.h"

#include "broadcast/broadcast.h"

void InitialiseBroadcast() {
  BroadcastInit();
}
