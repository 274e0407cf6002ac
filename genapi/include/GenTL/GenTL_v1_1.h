// For sources written for GenTL 1.1. Later versions only added to it; this declares all of them.
#ifndef GENTL_GENTL_V1_1_H
#define GENTL_GENTL_V1_1_H

#include <GenTL/GenTL_v1_6.h>  // IWYU pragma: export

#endif  // GENTL_GENTL_V1_1_H
