#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "pyxis/FileSpecifier.h"

// The component list document: a compound specifier's text, which names the files of a set and
// the frame of each that holds the band.

namespace kest {

/// A component of a set: a file, and the frame of it that holds the band, 0 for the first.
struct Component {
    Pyxis::FileSpecifier file;
    int frame = 0;
};

/// Number of components; a plain specifier with a text counts as one (compatibility.md, 9).
int countComponents(const Pyxis::FileSpecifier& specifier);

/// Reads component `index`, 0 for the first. False for a plain specifier, past the last component,
/// and for a component without a path; `file` is then unchanged, `frame` unchanged or 0
/// (compatibility.md, 10).
bool getComponent(const Pyxis::FileSpecifier& specifier, int index, Pyxis::FileSpecifier& file,
                  int& frame);

/// Appends a component; an empty `specifier` becomes a new list. A text without a list is left
/// unchanged (compatibility.md, 8).
void appendComponent(const Pyxis::FileSpecifier& component, int frame,
                     Pyxis::FileSpecifier& specifier);

/// The components of a list that is parsed once, for callers that read more than one.
class ComponentList {
  public:
    explicit ComponentList(const Pyxis::FileSpecifier& specifier);

    /// As `countComponents`.
    int count() const { return static_cast<int>(components_.size()); }
    /// Component `index`, valid as long as the list. Null past the ends, and where `getComponent`
    /// returns false.
    const Component* get(int index) const;
    /// The same, with an empty component for null.
    Component at(int index) const;

  private:
    std::vector<std::optional<Component>> components_;
};

class ListDocument;

/// Builds a component list without writing the document after every component.
class ComponentListBuilder {
  public:
    /// Starts where `appendComponent` on an empty specifier would.
    ComponentListBuilder();
    ~ComponentListBuilder();

    void append(const Pyxis::FileSpecifier& component, int frame);
    int count() const;
    /// The list as a compound specifier; an empty plain one when nothing was appended.
    Pyxis::FileSpecifier specifier() const;

  private:
    std::unique_ptr<ListDocument> document_;
};

}  // namespace kest
