#include "host/formats/Formats.h"

#include <algorithm>

namespace Pyxis {

const std::vector<const Format*>& formats() {
    static const std::vector<const Format*> formats = {
        &quickBirdFormat(),     &tiffFormat(),  &nitfFormat(), &fastFormat(),
        &jpeg2000Format(),      &erdasFormat(), &pngFormat(),  &jpegFormat(),
        &virtualRasterFormat(),  // refused unless the host allows it
        &enviFormat(),           // looks for a side file, so it comes last
    };
    return formats;
}

const Format* formatOf(std::string_view head, const std::string& path) {
    const auto found = std::find_if(formats().begin(), formats().end(), [&](const Format* format) {
        return format->reject == nullptr && format->recognise(head, path);
    });
    return found != formats().end() ? *found : nullptr;
}

}  // namespace Pyxis
