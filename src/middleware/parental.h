/* Middleware contract: parental control, rating schemes and ratings. */
#ifndef ORVANE_MIDDLEWARE_PARENTAL_H
#define ORVANE_MIDDLEWARE_PARENTAL_H

#include "middleware/types.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Parental control; owned by the caller, 0 on failure. */
MwHandle MwParentalControlOpen(void);
/* The known rating schemes as a list; new reference or 0. */
MwHandle MwParentalGetRatingSchemes(MwHandle parentalControl);

MwHandle MwRatingSchemeGetName(MwHandle scheme);
/* Number of rating values. */
int32_t MwRatingSchemeGetLength(MwHandle scheme);
/* The viewer's threshold rating; new reference or 0. */
MwHandle MwRatingSchemeGetThreshold(MwHandle scheme);
/* Index of the named value, -1 when unknown. */
int32_t MwRatingSchemeIndexOf(MwHandle scheme, const MwString* name);
/* Name and icon URL of value `index`; middleware strings or 0. */
MwHandle MwRatingSchemeItem(MwHandle scheme, uint32_t index);
MwHandle MwRatingSchemeIconUrl(MwHandle scheme, uint32_t index);

MwHandle MwRatingGetName(MwHandle rating);
MwHandle MwRatingGetScheme(MwHandle rating);
int32_t MwRatingGetValue(MwHandle rating);
int32_t MwRatingGetLabels(MwHandle rating);
MwHandle MwRatingGetRegion(MwHandle rating);

#ifdef __cplusplus
}
#endif

#endif
