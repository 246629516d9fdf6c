#include "host/formats/Formats.h"

#include <algorithm>

namespace Pyxis {

const std::vector<const Format*>& formats() {
    static const std::vector<const Format*> formats = {
        &quickBirdFormat(), &tiffFormat(),  &nitfFormat(), &fastFormat(),
        &jpeg2000Format(),  &erdasFormat(), &pngFormat(),  &jpegFormat(),
    };
    return formats;
}

const Format* formatOf(std::string_view head) {
    const auto found =
        std::find_if(formats().begin(), formats().end(), [head](const Format* format) {
            return format->reject == nullptr && format->recognise(head);
        });
    return found != formats().end() ? *found : nullptr;
}

}  // namespace Pyxis
