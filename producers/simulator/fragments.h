// The files of the folder descriptions/, which the build puts into the producer.
#ifndef ZELSIM_FRAGMENTS_H
#define ZELSIM_FRAGMENTS_H

#include <string_view>

namespace ZelSim {

// The text of a file; throws std::logic_error when the folder holds none of that name.
std::string_view Fragment(std::string_view fileName);

}  // namespace ZelSim

#endif  // ZELSIM_FRAGMENTS_H
