#pragma once

#include "bands/BandTypes.h"
#include "codec/strings/KestExport.h"
#include "properties/MultispectralPropertyId.h"
#include "pyxis/ImageFormatCodec.h"
#include "sets/SetMembership.h"

namespace kest {
class ComponentList;
class SetJudge;
struct Judgement;
}  // namespace kest

/// The codec of multispectral sets: groups of single-band files, named by a compound specifier,
/// that other codecs of the host read. It only reads.
class KEST_API KestMultispectralCodec : public Pyxis::ImageFormatCodec {
  public:
    using BandDetails = kest::BandDetails;
    using InclusionData = kest::InclusionData;
    using MultispectralPropertyId = kest::MultispectralPropertyId;

    KestMultispectralCodec();
    /// Releases the string-resource module.
    ~KestMultispectralCodec() override;

    void getLibVersionInfo(unsigned int& major, unsigned int& minor,
                           unsigned int& build) const override;
    void getApiVersionInfo(unsigned int& major, unsigned int& minor) const override;
    Pyxis::CodecCapability codecCapability() const override;
    bool isValidFileName(const Pyxis::FileSpecifier& file) const override;
    Pyxis::FormatType getFormatDecodabilityType() const override;
    Pyxis::FormatOrganization getFormatOrganization() const override;
    Pyxis::FormatFrameType getFormatFrameType() const override;
    bool isFormatFeature(Pyxis::FormatFeature feature) const override;
    bool isSupportedProperty(Pyxis::FormatCodecPropertyInterface::PropertyIdentifier identifier,
                             Pyxis::StringBuffer* name) const override;
    int getNumExtensions() const override;
    void getExtensionText(int index, Pyxis::StringBuffer& text) const override;
    void getFormatName(Pyxis::StringBuffer& text) const override;
    void getDescriptionText(Pyxis::StringBuffer& text) const override;
    void getCopyrightText(Pyxis::StringBuffer& text) const override;
    /// Decodable, NotThisFormat, or UndecodableSet when fewer than two components fit together.
    Pyxis::FormatDecodability isDecodableFile(const Pyxis::FileSpecifier& file,
                                              Pyxis::FindFileInterface* finder) const override;
    bool isEncodableImage(const Pyxis::DataModelAttributes& attributes,
                          Pyxis::Size size) const override;
    /// With `finder` the image also finds a product's metadata text file.
    Pyxis::ReadImageFileInterface* openImage(const Pyxis::FileSpecifier* file,
                                             Pyxis::FindFileInterface& finder) const override;
    Pyxis::ReadImageFileInterface* openImage(const Pyxis::FileSpecifier* file) const override;
    Pyxis::WriteImageFileInterface* writeImage() const override;
    Pyxis::ReadImageFileInterface* cloneOpenImage(
        const Pyxis::ReadImageFileInterface* image) const override;

    /// Names the string-resource module, for the whole process.
    void setResourceFileName(const Pyxis::FileSpecifier& file);
    /// Sets the catalogue of products, which names sets that the other naming schemes do not, for
    /// the whole process: a document, or the documents that a compound specifier lists. An empty
    /// specifier removes it. False, with the reason in English and no catalogue, when a document
    /// cannot be used; the reason is empty when memory fails. Opened images keep their names.
    bool setProductCatalogue(const Pyxis::FileSpecifier& file,
                             Pyxis::StringBuffer* reason = nullptr);
    /// Details of the band of frame `frame`, beyond its properties: common name, spectrum, role,
    /// sort keys. False unless this codec opened `image` and it has the frame.
    bool getBandDetails(const Pyxis::ReadImageFileInterface& image, int frame,
                        BandDetails& details) const;
    /// The naming scheme of an image that this codec opened, a kest::NamingScheme; 0 for another
    /// image.
    int getNamingScheme(const Pyxis::ReadImageFileInterface& image) const;
    /// The name under which frames publish the property. False, with `name` untouched, for an
    /// unknown id.
    bool getMultispectralPropertyName(MultispectralPropertyId id, Pyxis::StringBuffer& name) const;
    /// Removes the components that no codec reads from a list (compatibility.md, 15). False, with
    /// `file` unchanged, when fewer than two remain or the list has one without a path.
    bool purifyFileSet(Pyxis::FileSpecifier& file) const;
    /// The judge behind `isDecodableFile`, for programs that link the plug-in and explain its
    /// answer. Codec and list must outlive it.
    kest::SetJudge judge(const kest::ComponentList& list) const;

  private:
    // The judge's steps: whether a component is accepted. These names, spelling included, are known
    // from stack traces (compatibility.md, 14).
    bool initialzeSetCriteria(const Pyxis::ImageFormatCodec& codec,
                              kest::Judgement& judgement) const;
    bool isFileInSet(const Pyxis::ImageFormatCodec& codec, kest::Judgement& judgement,
                     const InclusionData& criteria) const;
    bool getCompareData(const Pyxis::ImageFormatCodec& codec, kest::Judgement& judgement) const;
    Pyxis::ReadImageFileInterface* openSet(const Pyxis::FileSpecifier* file,
                                           Pyxis::FindFileInterface* finder) const;

    double toleranceFactor_ = kest::kToleranceFactor;
};
