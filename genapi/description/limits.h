// Bounds on what a description may ask for. A description comes from a device: whatever it
// contains, it must not hang the loader or exhaust memory. The largest descriptions in use have
// about 1 MB of XML, 4000 nodes and 40000 elements; the bounds allow thirty times as much.
#pragma once

#include <cstddef>
#include <cstdint>

#include <GenApi/GenApiNamespace.h>

namespace GENAPI_NAMESPACE {
namespace Engine {

// Bytes of XML. The reader allocates a small multiple of it.
constexpr size_t kMaxXmlSize = 32u << 20;

// Bytes of a zip archive: XML up to kMaxXmlSize never needs a larger one.
constexpr size_t kMaxArchiveSize = kMaxXmlSize;

// Deflate shrinks XML to a tenth or a thirtieth. It can reach a thousandth, but only archives made
// for the purpose come near to that.
constexpr uint64_t kMaxArchiveRatio = 500;

// Nesting of elements: groups in groups, and foreign content of Extension. Nothing recurses, but
// the XML parser keeps a record for each open element.
constexpr unsigned kMaxNesting = 512;

// Name spaces declared at the same time. A look-up compares with each of them.
constexpr size_t kMaxPrefixes = 64;

// Bytes of the text of one element: the longest are descriptions and formulas of a few KB.
constexpr size_t kMaxTextSize = 1u << 20;

// Entries of an enumeration count as nodes.
constexpr size_t kMaxNodes = 200000;

// Elements of all nodes. The size of the XML does not bound them: the entries of a StructReg
// inherit its elements, and expressions inherit the variables of their node, so both numbers
// multiply.
constexpr size_t kMaxProperties = 2000000;

// Bytes of all texts. The size of the XML does not bound them: generated names repeat the names of
// their owners.
constexpr size_t kMaxPoolSize = 64u << 20;

// Elements visited in the search for selectors that read what they select. The schema forbids such
// selectors; they would do no harm.
constexpr size_t kMaxSelectorSteps = 4u << 20;

// Node numbers in all change sets of a description. The sets are made on demand. In the largest
// descriptions they add up to 50000, but a chain of nodes needs the square of its length.
constexpr size_t kMaxChangeSetSize = 4u << 20;

// Depth of an operation that goes from node to node: values over values, limits over limits,
// conditions on conditions. In nineteen descriptions of cameras and grabbers, with every value,
// limit, mode and text read and every feature written, the depth was ten at most. A step takes up
// to 400 bytes of stack, and the most deeply nested formula 40 KB more: at most 80 of the 128 KiB
// of a small stack. The rest is for ports and callbacks.
constexpr unsigned kMaxDependencyDepth = 100;

// Evaluations of nodes in one operation of an application. The same measurement found 383 at most,
// and 684 when a category asked all of its features while no port was connected. Shared nodes
// double the paths through a description with each level; an operation that exceeds this bound,
// after some milliseconds, would not end in reasonable time.
constexpr size_t kMaxWork = 20000;

// Other work that counts as one evaluation: evaluating a node walks over its properties and
// formula.
constexpr size_t kPropertiesPerWork = 16;
constexpr size_t kFormulaOperationsPerWork = 32;

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
