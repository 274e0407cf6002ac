// For sources that name no version of GenTL: the newest one here, which declares all earlier ones.
#ifndef GENTL_GENTL_H
#define GENTL_GENTL_H

#include <GenTL/GenTL_v1_6.h>  // IWYU pragma: export

#endif  // GENTL_GENTL_H
