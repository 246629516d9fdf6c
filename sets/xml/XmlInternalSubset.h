#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_set>

#include "sets/xml/XmlDecoder.h"
#include "sets/xml/XmlDocument.h"

namespace kest::xml {

/// Reads the declarations in the internal subset of a document type, or of several, into the
/// document's tables.
class InternalSubset {
  public:
    InternalSubset(Document& document, Decoder& decoder) : document_(document), decoder_(decoder) {}

    /// `text` lies in the document's source. Stops at its first fault and keeps what was
    /// read before (compatibility.md, 2).
    void read(std::string_view text);

  private:
    bool readEntity();
    bool readAttributeList();
    bool readAttributeDeclaration(std::string_view elementName);
    bool readAttributeType(bool& isCData);
    static bool namesItself(std::string_view value, std::string_view name);
    bool leadsTo(std::string_view value, std::string_view name);
    std::string_view word(std::string_view ends);
    bool quoted(std::string_view& value);
    bool skipTo(std::string_view mark);

    Document& document_;
    Decoder& decoder_;
    std::string_view text_;
    std::size_t at_ = 0;
    std::unordered_set<std::string_view> awaited_;  ///< referenced before their declaration
    std::size_t searchedBytes_ = 0;
};

}  // namespace kest::xml
