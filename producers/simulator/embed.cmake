# Writes a source with the texts of files: cmake -DOUTPUT=<source> -DFILES=<a;b;c> -P embed.cmake

set(entries "")
foreach(file IN LISTS FILES)
    get_filename_component(name "${file}" NAME)
    file(READ "${file}" text)
    string(APPEND entries "    {\"${name}\", R\"ZELSIM(${text})ZELSIM\"},\n")
endforeach()
file(WRITE "${OUTPUT}" "#include \"producers/simulator/fragments.h\"

#include <stdexcept>
#include <string>

namespace ZelSim {

namespace {

struct File {
    std::string_view name;
    std::string_view text;
};

constexpr File files[] = {
${entries}};

}  // namespace

std::string_view Fragment(std::string_view fileName) {
    for (const File& file : files) {
        if (file.name == fileName) return file.text;
    }
    throw std::logic_error(\"no fragment \" + std::string(fileName));
}

}  // namespace ZelSim
")
