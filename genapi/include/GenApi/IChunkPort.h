// A port that shows a chunk of a buffer.
#ifndef GENAPI_ICHUNKPORT_H
#define GENAPI_ICHUNKPORT_H

#include <Base/GCString.h>
#include <GenApi/IPort.h>

namespace GENAPI_NAMESPACE {

// Offered by every port node, with or without chunk.
struct GENAPI_DECL_ABSTRACT IChunkPort : virtual public IPort {
    // Hexadecimal, empty for a port without chunk.
    virtual GENICAM_NAMESPACE::gcstring GetChunkID() const = 0;
    // Whether the chunk is to be copied, so that it survives its buffer.
    virtual EYesNo CacheChunkData() const = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ICHUNKPORT_H
