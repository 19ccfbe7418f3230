// One-time initialisation of the kinds that need it, from NP_Initialize.
#ifndef ORVANE_PLUGIN_INIT_H
#define ORVANE_PLUGIN_INIT_H

void InitialiseKinds();

#endif
