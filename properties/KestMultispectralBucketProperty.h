#pragma once

#include "codec/strings/KestExport.h"
#include "properties/KestMultispectralProperty.h"
#include "pyxis/FormatCodecProperty.h"

/// The bucket, a group of bands of one pixel size, to which a frame's band belongs.
class KEST_API KestMultispectralBucketProperty : public Pyxis::FormatCodecPropertyInterface,
                                                 public KestMultispectralProperty {
  public:
    KestMultispectralBucketProperty(int bucketNum, int numBuckets,
                                    const Pyxis::StringBuffer& bucketName);
    ~KestMultispectralBucketProperty() override;
    Pyxis::FormatCodecPropertyInterface* clone() const override;

    /// The bucket's index in the set, 0 for the first.
    int getBucketNum() const;
    /// Number of buckets in the set.
    int getNumBuckets() const;
    /// The name to show; `out` is unchanged on allocation failure.
    void getBucketName(Pyxis::StringBuffer& out) const;

  private:
    KestMultispectralBucketProperty(const KestMultispectralBucketProperty& other);

    int bucketNum_;
    int numBuckets_;
    Pyxis::StringBuffer bucketName_;
};
