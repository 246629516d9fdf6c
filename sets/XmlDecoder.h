#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sets/XmlDocument.h"

namespace kest::xml {

/// What is decoded: it decides which references and which white space are replaced.
enum class DecodeMode {
    Text,
    CData,
    EntityValue,  ///< parameter-entity references only
    Attribute,
};

/// Decodes runs of a document's text: line ends, character references, entity references.
class Decoder {
  public:
    struct Result {
        std::string_view text;
        bool moved = false;  ///< lies in new memory of the document, no longer where it was
    };

    explicit Decoder(Document& document) : document_(document) {}

    /// Decodes `length` characters at `run`, in place as long as the result does not grow.
    Result decode(char* run, std::size_t length, DecodeMode mode);

    /// Where parameter entities are looked up.
    Document::EntityTable& parameterEntities() { return parameterEntities_; }

  private:
    /// A text being decoded: the run itself, or the replacement of an entity in it.
    struct Source {
        std::string_view text;
        std::size_t at = 0;
    };

    const std::string_view* replacementFor(const Source& source, DecodeMode mode) const;
    Result expand(std::string_view done, std::string_view rest, DecodeMode mode);

    Document& document_;
    Document::EntityTable parameterEntities_;
    std::string expanded_;
    std::vector<Source> sources_;
};

}  // namespace kest::xml
