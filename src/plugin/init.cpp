#include "plugin/init.h"

void InitialiseKinds() {}
