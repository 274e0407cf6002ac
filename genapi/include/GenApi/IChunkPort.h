// A port that shows a chunk of a buffer.
#ifndef GENAPI_ICHUNKPORT_H
#define GENAPI_ICHUNKPORT_H

#include <Base/GCString.h>
#include <GenApi/IPort.h>

namespace GENAPI_NAMESPACE {

// Every port node has this interface, with or without a chunk.
struct GENAPI_DECL_ABSTRACT IChunkPort : virtual public IPort {
    // Hexadecimal; empty for a port without a chunk.
    virtual GENICAM_NAMESPACE::gcstring GetChunkID() const = 0;
    // Whether to copy the chunk, so that it outlives its buffer.
    virtual EYesNo CacheChunkData() const = 0;
};

}  // namespace GENAPI_NAMESPACE

#endif  // GENAPI_ICHUNKPORT_H
