// Tables of codes and the words for them.
#pragma once

#include <algorithm>
#include <iterator>
#include <string>

namespace ZelTool {

template <typename Code>
struct Word {
    Code code;
    const char* words;
};

template <typename Code, size_t size>
const char* WordsFor(Code code, const Word<Code> (&table)[size], const char* otherwise) {
    const auto* const found = std::find_if(std::begin(table), std::end(table),
                                           [&](const auto& each) { return each.code == code; });
    return found == std::end(table) ? otherwise : found->words;
}

// The code with these words, which are in the table.
template <typename Code, size_t size>
Code CodeOf(const std::string& words, const Word<Code> (&table)[size]) {
    return std::find_if(std::begin(table), std::end(table),
                        [&](const auto& each) { return each.words == words; })
        ->code;
}

}  // namespace ZelTool
