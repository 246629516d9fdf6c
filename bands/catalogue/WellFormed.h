#pragma once

#include <string>
#include <string_view>

namespace kest {

/// Why a text in UTF-8 is no XML document, or one with a document type, with the line: "line 3: a
/// control character". Empty for well-formed documents, and for some that end too early or whose
/// tags do not match, which the parser refuses. The parser itself overlooks what this finds.
std::string whyNotWellFormed(std::string_view document);

}  // namespace kest
