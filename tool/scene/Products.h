#pragma once

#include <string>
#include <vector>

#include "codec/KestMultispectralCodec.h"

namespace kestms {

/// By which catalogues of products sets are named.
struct ProductChoice {
    std::vector<std::string> files;  ///< documents of the user's own, tried first
    bool shipped = true;             ///< with the catalogue that comes with the program
};

/// Makes the chosen documents the codec's catalogue. Throws a Failure with ExitCode::CannotRead
/// that names the document and what is wrong with it.
void useProducts(KestMultispectralCodec& codec, const ProductChoice& choice);

}  // namespace kestms
