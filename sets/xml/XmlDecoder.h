#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "sets/xml/XmlDocument.h"

namespace kest::xml {

/// Decides which references and which white space are replaced.
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
        /// Counts as moved out of the source: some replacement text in it was longer than its
        /// reference. The next run of the element is then joined to it.
        bool moved = false;
    };

    explicit Decoder(Document& document) : document_(document) {}

    /// Decodes `length` characters at `run`, in place unless they refer to a declared entity.
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
    Result expand(const Result& done, std::string_view rest, DecodeMode mode);

    Document& document_;
    Document::EntityTable parameterEntities_;
    std::string expanded_;
    std::vector<Source> sources_;
};

}  // namespace kest::xml
