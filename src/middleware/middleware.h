/* The whole middleware contract. */
#ifndef ORVANE_MIDDLEWARE_MIDDLEWARE_H
#define ORVANE_MIDDLEWARE_MIDDLEWARE_H

#include "middleware/appmgr.h"
#include "middleware/avcontrol.h"
#include "middleware/broadcast.h"
#include "middleware/collection.h"
#include "middleware/config.h"
#include "middleware/drm.h"
#include "middleware/parental.h"
#include "middleware/recording.h"
#include "middleware/search.h"
#include "middleware/types.h"

#endif
