// The administrative record of a FAST header, as a file holds it.

#include <string>

#include "fuzz/Input.h"
#include "host/formats/FastHeader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using fuzz::require;
    const std::string_view header(reinterpret_cast<const char*>(data), size);
    const auto names = Pyxis::fastBandFileNames(header);
    require(names.size() <= 7, "no more names than bands");
    const std::string_view text = header.substr(0, header.find('\0'));
    std::size_t from = 0;
    for (const std::string& name : names) {
        require(name.size() <= 29, "names are no longer than their field");
        require(name.find_first_of(" \t\r\n\v\f") != 0, "names are trimmed at the front");
        require(name.empty() || name.find_last_of(" \t\r\n\v\f") != name.size() - 1,
                "names are trimmed at the end");
        from = text.find("FILENAME", from) + 8;
        require(text.find(name, from) != std::string_view::npos, "names stand behind their word");
        require(!Pyxis::isPlainFileName(name + "/x") && !Pyxis::isPlainFileName("..\\" + name),
                "a path is no plain name");
        Pyxis::isPlainFileName(name);
    }
    require(!Pyxis::looksLikeFastHeader(header) ||
                header.find("ACQUISITION DATE =") != std::string_view::npos,
            "a header tells its date");
    return 0;
}
