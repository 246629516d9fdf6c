#include "tool/commands/InputOptions.h"

namespace kestms {

void addInputOptions(CLI::App& command, Context& context) {
    command.add_option("--scene", context.scene,
                       "The scene to take, where there are several: its name (see kestms\n"
                       "scenes), that of its product or folder, or a pattern");
    command.add_flag("--with-quality", context.withQuality,
                     "Take the scene's quality and other layers, too, if they fit its bands");
    command.add_flag("--skip-misfits", context.skipMisfits,
                     "Leave out, with a warning, what does not fit the first component");
}

}  // namespace kestms
