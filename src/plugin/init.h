// One-time initialisation, from NP_Initialize: only the broadcast kind needs one.
#ifndef ORVANE_PLUGIN_INIT_H
#define ORVANE_PLUGIN_INIT_H

void InitialiseBroadcast();

#endif
