// Bounds on what a description may ask for. A description comes from a device: whatever it says, it
// must not make the loader hang or exhaust memory. The largest descriptions in use have about 1 MB
// of XML, 4000 nodes and 40000 elements; the bounds leave room for thirty times as much.
#pragma once

#include <cstddef>
#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Bytes of XML. What the reader allocates is a small multiple of it.
constexpr size_t kMaxXmlSize = 32u << 20;

// Bytes of a zip archive; nothing that unpacks to kMaxXmlSize needs more than its own size.
constexpr size_t kMaxArchiveSize = kMaxXmlSize;

// Deflated XML shrinks to a tenth or a thirtieth. Deflate itself can reach a thousand, which only
// archives made for the purpose come near to.
constexpr uint64_t kMaxArchiveRatio = 500;

// Elements inside each other: groups in groups, and foreign content of Extension. Nothing recurses,
// but the XML parser keeps a record for each open element.
constexpr unsigned kMaxNesting = 512;

// Name spaces that are declared at a time. Looking one up takes a comparison with each.
constexpr size_t kMaxPrefixes = 64;

// Bytes of the text of one element: the longest are descriptions and formulas of a few KB.
constexpr size_t kMaxTextSize = 1u << 20;

// Entries of an enumeration count as nodes.
constexpr size_t kMaxNodes = 200000;

// Elements of all nodes. Needed beside the size of the XML because the entries of a StructReg
// inherit its elements, and expressions the variables of their node, so that their product counts.
constexpr size_t kMaxProperties = 2000000;

// Bytes of all texts. Generated names repeat those of their owners, so this is no consequence of
// the size of the XML.
constexpr size_t kMaxPoolSize = 64u << 20;

// Elements that are looked at to find selectors which read what they select. Such selectors are
// refused as the schema demands it, not because they did harm.
constexpr size_t kMaxSelectorSteps = 4u << 20;

// Node numbers in all change sets of a description. They are made when needed; all those of the
// largest descriptions together have 50000, but in a chain of nodes the square of its length.
constexpr size_t kMaxChangeSetSize = 4u << 20;

// Nodes that an operation goes through from one to the next: values over values, limits over
// limits, conditions on conditions. Measured over nineteen descriptions of cameras and grabbers,
// with every value, limit, mode and text of each node read and each feature written: ten at most. A
// step takes up to 400 bytes of stack, and a formula that nests as deeply as it may 40 KB more: at
// most 80 of the 128 KiB of a small stack, which leaves the rest to ports and callbacks.
constexpr unsigned kMaxDependencyDepth = 100;

// Evaluations of nodes by one operation of an application. The same measurement found 383 at most,
// and 684 while no port was connected, when a category asks all of its features. Shared nodes make
// the paths through a description double with each level; an operation that goes on for longer than
// this, some milliseconds, is not about to end.
constexpr size_t kMaxWork = 20000;

// What else counts as an evaluation: a node is walked over when it is evaluated.
constexpr size_t kPropertiesPerWork = 16;
constexpr size_t kFormulaOperationsPerWork = 32;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
