#include "plotwerk/drawing/richText.h"
#include "tests/fuzz/fuzz.h"

#include <glib.h>

// Whatever the text, each run is UTF-8 that can be set in type.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    const std::string input(data, data + size);
    for (const std::string &text : {input, "{\\rtf1 " + input}) {
        const std::vector<char> block = exactBlock(text);
        const plotwerk::RichText runs = plotwerk::richTextOf({block.data(), block.size()});
        for (const plotwerk::TextRun &run : runs) {
            require(!run.text.empty());
            require(
                g_utf8_validate(run.text.data(), static_cast<gssize>(run.text.size()), nullptr));
            for (const char c : run.text)
                require(static_cast<unsigned char>(c) >= 0x20 || c == '\n' || c == '\t');
        }
        require(plotwerk::plainTextOf(runs).size() <= 3 * 4096 + 16);
    }
    return 0;
}
