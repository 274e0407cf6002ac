// The base library, except for its locks.
#ifndef GCBASE_GCBASE_H
#define GCBASE_GCBASE_H

#include <Base/GCArray.h>
#include <Base/GCException.h>
#include <Base/GCString.h>
#include <Base/GCStringVector.h>
#include <Base/GCTypes.h>
#include <Base/GCUtilities.h>

#endif  // GCBASE_GCBASE_H
