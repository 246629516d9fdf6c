#pragma once

#include "pyxis/Export.h"
#include "pyxis/StringBuffer.h"

namespace Pyxis {

/// Names a file to open: a text and what kind of text it is.
class PYXIS_API FileSpecifier {
  public:
    enum class Type : int {
        PlainFile = 0,  ///< the text is a path
        Compound = 2,   ///< the text is a component list document
    };

    /// An empty specifier of type PlainFile.
    FileSpecifier();
    FileSpecifier(const StringBuffer& string, Type type);
    FileSpecifier(const FileSpecifier& other);
    FileSpecifier& operator=(const FileSpecifier& other);

    virtual ~FileSpecifier();                    // slot 0
    virtual Type type() const;                   // slot 1
    virtual const StringBuffer& string() const;  // slot 2
    /// Takes over the other's string and type.
    virtual void assign(const FileSpecifier& other);  // slot 3
    /// True when both have the same type and the same text.
    virtual bool isEqual(const FileSpecifier& other) const;  // slot 4
    /// True when the text is empty.
    virtual bool isEmpty() const;                             // slot 5
    virtual void set(const StringBuffer& string, Type type);  // slot 6

  private:
    StringBuffer string_;
    Type type_ = Type::PlainFile;
};

}  // namespace Pyxis
