#pragma once

#include "pyxis/Export.h"
#include "pyxis/StringBuffer.h"

namespace Pyxis {

/// One property of a frame or image as a codec publishes it. The getters are the host's own and
/// read what the constructors of the derived classes set.
class PYXIS_API FormatCodecPropertyInterface {
  public:
    /// Which property this is; custom ones differ by name.
    enum class PropertyIdentifier : int {
        Custom = 0,
        Description = 1,
        GeoCorrelation = 7,
    };
    /// The kind of value. Opaque: a class of the codec reads the value.
    enum class PropertyDataType : int { None = 0, Text = 1, GeoCorrelation = 2, Opaque = 9 };
    /// The purpose. Informative: shown to the user, not used for decoding.
    enum class PropertyUsage : int { Unspecified = 0, Informative = 1 };
    /// What the property describes.
    enum class PropertyLevel : int { Unspecified = 0, Frame = 1, FrameGroup = 2, Image = 3 };

    virtual ~FormatCodecPropertyInterface();  // slot 0
    /// A new object of the same class and content, owned by the caller; null when memory fails.
    virtual FormatCodecPropertyInterface* clone() const = 0;  // slot 1
    virtual PropertyIdentifier getIdentifier() const;         // slot 2
    virtual PropertyDataType getDataType() const;             // slot 3
    virtual bool isRequired() const;                          // slot 4
    virtual bool isContextSensitive() const;                  // slot 5
    /// A sentence for the user, owned by the property.
    virtual const StringBuffer& getDescription() const;  // slot 6
    /// The property's name, owned by the property.
    virtual const StringBuffer& getName() const;  // slot 7
    virtual PropertyUsage getUsage() const;       // slot 8
    virtual PropertyLevel getLevel() const;       // slot 9

  protected:
    FormatCodecPropertyInterface();
    FormatCodecPropertyInterface(const FormatCodecPropertyInterface& other);
    FormatCodecPropertyInterface& operator=(const FormatCodecPropertyInterface&) = delete;

    void setIdentifier(PropertyIdentifier identifier) { identifier_ = identifier; }
    void setDataType(PropertyDataType dataType) { dataType_ = dataType; }
    void setUsage(PropertyUsage usage) { usage_ = usage; }
    void setLevel(PropertyLevel level) { level_ = level; }
    /// The name and description, to be filled in by the derived class's constructor.
    StringBuffer& nameText() { return name_; }
    StringBuffer& descriptionText() { return description_; }

  private:
    PropertyIdentifier identifier_ = PropertyIdentifier::Custom;
    PropertyDataType dataType_ = PropertyDataType::None;
    bool required_ = false;
    bool contextSensitive_ = false;
    StringBuffer description_;
    StringBuffer name_;
    PropertyUsage usage_ = PropertyUsage::Unspecified;
    PropertyLevel level_ = PropertyLevel::Unspecified;
};

/// A property whose value is a text.
class PYXIS_API FormatCodecStringProperty : public FormatCodecPropertyInterface {
  public:
    enum class StringType : int { SingleLine = 0, MultiLine = 1 };

    virtual void getDefaultValue(StringBuffer& value) const;  // slot 10
    virtual void getValue(StringBuffer& value) const;         // slot 11
    /// False, and nothing changed, when the text needs more than `maximumStringBytes` bytes (a
    /// maximum of 0 sets no limit).
    virtual bool setValue(const StringBuffer& value);  // slot 12
    virtual int maximumStringBytes() const;            // slot 13
    virtual StringType getStringType() const;          // slot 14

  protected:
    /// The value is also the default value.
    FormatCodecStringProperty(const StringBuffer& value, int maximumBytes);
    FormatCodecStringProperty(const FormatCodecStringProperty& other);

    void setStringType(StringType stringType) { stringType_ = stringType; }

  private:
    StringBuffer value_;
    StringBuffer defaultValue_;
    int maximumBytes_;
    StringType stringType_ = StringType::SingleLine;
};

}  // namespace Pyxis
