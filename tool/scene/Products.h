#pragma once

#include <string>
#include <vector>

#include "codec/KestMultispectralCodec.h"

namespace kestms {

/// The catalogues of products to use.
struct ProductChoice {
    std::vector<std::string> files;  ///< the user's documents, tried first
    bool shipped = true;             ///< whether to use the shipped catalogue
};

/// Makes the chosen documents the codec's catalogue. Throws a Failure with ExitCode::CannotRead
/// that names the document and its fault.
void useProducts(KestMultispectralCodec& codec, const ProductChoice& choice);

}  // namespace kestms
