#pragma once

#include "properties/MultispectralPropertyId.h"
#include "pyxis/FormatCodecProperty.h"
#include "pyxis/StringBuffer.h"

namespace kest {

/// Fills `name` with the property's name from the string resources. False, with `name` unchanged,
/// for an unknown id.
bool multispectralPropertyName(MultispectralPropertyId id, Pyxis::StringBuffer& name);

/// Whether two names are equal: exactly, and only among texts of one width, since nothing is
/// converted (compatibility.md, 30).
bool isSamePropertyName(const Pyxis::StringBuffer& left, const Pyxis::StringBuffer& right);

/// Whether frames of a set publish the property: the geo-correlation, or a custom one by its exact
/// name.
bool isSupportedMultispectralProperty(
    Pyxis::FormatCodecPropertyInterface::PropertyIdentifier identifier,
    const Pyxis::StringBuffer* name);

}  // namespace kest
