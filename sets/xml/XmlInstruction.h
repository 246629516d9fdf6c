#pragma once

#include <string_view>

#include "sets/xml/XmlDocument.h"

namespace kest::xml {

/// Stores a processing instruction, given without its "<?" and "?>". An `xml` one may declare the
/// document standalone.
void addInstruction(Document& document, std::string_view instruction);

}  // namespace kest::xml
