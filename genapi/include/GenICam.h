// Everything: strings and exceptions, node maps.
#ifndef GENICAM_H
#define GENICAM_H

#include <Base/GCBase.h>
#include <GenApi/GenApi.h>

#endif  // GENICAM_H
