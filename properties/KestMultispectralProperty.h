#pragma once

#include "codec/strings/KestExport.h"
#include "properties/MultispectralPropertyId.h"

/// Marks the plug-in's properties, which callers recognise in a property set by a checked cast.
/// Objects are destroyed through their host base.
class KEST_API KestMultispectralProperty {
  public:
    /// Which of the plug-in's properties this is.
    kest::MultispectralPropertyId multispectralPropertyId() const { return id_; }

  protected:
    explicit KestMultispectralProperty(kest::MultispectralPropertyId id) : id_(id) {}
    KestMultispectralProperty(const KestMultispectralProperty&) = default;
    KestMultispectralProperty& operator=(const KestMultispectralProperty&) = delete;
    ~KestMultispectralProperty() = default;

  private:
    kest::MultispectralPropertyId id_;
};
