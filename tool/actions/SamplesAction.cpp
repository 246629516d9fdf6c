#include "tool/actions/RasterActions.h"
#include "tool/samples/SampleSets.h"

namespace kestms {

ExitCode writeSampleSets(Context& /*context*/, const SamplesOptions& options) {
    samples::writeSamples(options.directory, options.size, options.overwrite);
    return ExitCode::Success;
}

}  // namespace kestms
