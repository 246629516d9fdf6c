#pragma once

#include "codec/strings/KestExport.h"
#include "properties/KestMultispectralProperty.h"
#include "pyxis/FormatCodecProperty.h"

/// The reference name of the whole set, as a string value.
class KEST_API KestMultispectralReferenceNameProperty : public Pyxis::FormatCodecStringProperty,
                                                        public KestMultispectralProperty {
  public:
    explicit KestMultispectralReferenceNameProperty(const Pyxis::StringBuffer& referenceName);
    ~KestMultispectralReferenceNameProperty() override;
    Pyxis::FormatCodecPropertyInterface* clone() const override;

  private:
    KestMultispectralReferenceNameProperty(const KestMultispectralReferenceNameProperty& other);
};
