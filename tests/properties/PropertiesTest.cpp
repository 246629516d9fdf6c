#include <gmock/gmock.h>

#include <array>
#include <cstring>
#include <sstream>

#include "properties/KestMultispectralBandNameProperty.h"
#include "properties/KestMultispectralBandTypeProperty.h"
#include "properties/KestMultispectralBucketProperty.h"
#include "properties/KestMultispectralMetadataTextFileProperty.h"
#include "properties/KestMultispectralPropertySetIterator.h"
#include "properties/KestMultispectralReferenceNameProperty.h"
#include "properties/PropertyNames.h"
#include "tests/fakes/Codecs.h"
#include "tests/fakes/Resources.h"
#include "tests/fakes/Sets.h"

namespace {

using Interface = Pyxis::FormatCodecPropertyInterface;
using Pyxis::CharacterType;
using Pyxis::toUtf8;
using Pyxis::toWideBuffer;
using testing::ElementsAre;

/// All attributes of a property, value included.
std::string describe(const Interface& property) {
    std::ostringstream text;
    text << toUtf8(property.getName()) << '|' << toUtf8(property.getDescription());
    const auto& own = dynamic_cast<const KestMultispectralProperty&>(property);
    const auto add = [&text](auto... numbers) {
        ((text << '|' << static_cast<int>(numbers)), ...);
    };
    add(property.getIdentifier(), property.getDataType(), property.getUsage(), property.getLevel(),
        property.isRequired(), property.isContextSensitive(), own.multispectralPropertyId());
    Pyxis::StringBuffer value;
    Pyxis::FileSpecifier file;
    if (const auto* string = dynamic_cast<const Pyxis::FormatCodecStringProperty*>(&property)) {
        string->getValue(value);
        add(string->maximumStringBytes(), string->getStringType());
    }
    if (const auto* bucket = dynamic_cast<const KestMultispectralBucketProperty*>(&property)) {
        bucket->getBucketName(value);
        add(bucket->getBucketNum(), bucket->getNumBuckets());
    }
    if (const auto* name = dynamic_cast<const KestMultispectralBandNameProperty*>(&property)) {
        name->getBandName(value);
        name->getFile(file);
        add(name->getBandIndex(), name->getFrame());
    }
    if (const auto* type = dynamic_cast<const KestMultispectralBandTypeProperty*>(&property)) {
        add(type->bandType(), type->bandAssignment());
    }
    if (const auto* metadata =
            dynamic_cast<const KestMultispectralMetadataTextFileProperty*>(&property)) {
        add(metadata->getMetadataFile(file));
    }
    text << '|' << toUtf8(value) << '|' << toUtf8(file.string());
    return text.str();
}

TEST(PropertiesTest, TellWhatTheyWereMadeOfAndSoDoTheirClones) {
    const fakes::TextsFrom texts(fakes::stringModule("numbers"));
    const Pyxis::FileSpecifier file = Pyxis::fileSpecifier("/none.tif");
    struct Row {
        Interface* property;
        const char* told;
    };
    const std::array rows = {
        Row{new KestMultispectralReferenceNameProperty(toWideBuffer("scene")),
            "<18107>|<18108>|0|1|1|3|0|0|0|0|0|scene|"},
        Row{new KestMultispectralBucketProperty(1, 3, toWideBuffer("thermal")),
            "<18111>|<18112>|0|9|1|2|0|0|1|1|3|thermal|"},
        Row{new KestMultispectralBandNameProperty(4, file, 7, toWideBuffer("red")),
            "<18109>|<18110>|0|9|1|1|0|0|2|4|7|red|/none.tif"},
        Row{new KestMultispectralBandTypeProperty(kest::BandType::Panchromatic,
                                                  kest::BandAssignment::BlueChannel),
            "<18116>|<18117>|0|9|1|1|0|0|3|10|3||"},
        Row{new KestMultispectralMetadataTextFileProperty(file),
            "<18113>|<18114>|0|1|1|3|0|0|4|2147483647|1|0||/none.tif"}};
    for (const Row& row : rows) {
        std::unique_ptr<Interface> original(row.property);
        EXPECT_EQ(describe(*original), row.told);
        const std::unique_ptr<Interface> copy(original->clone());
        original.reset();
        EXPECT_EQ(describe(*copy), row.told);
    }
}

TEST(PropertiesTest, MetadataTextIsTakenByteForByte) {
    for (const std::string& text : {std::string(),
                                    std::string("\xEF\xBB\xBF"
                                                "a\r\nb"),
                                    std::string("a\0b", 3), std::string(100000, 'x')}) {
        const fakes::TempFile file("metadata", text);
        const KestMultispectralMetadataTextFileProperty property(Pyxis::fileSpecifier(file.path()));
        EXPECT_TRUE(property.isValid());
        Pyxis::StringBuffer value;
        property.getValue(value);
        ASSERT_EQ(value.numDataBytes(), static_cast<int>(text.size()) + 1);
        EXPECT_EQ(value.type(), CharacterType::Plain);
        EXPECT_EQ(std::memcmp(value.data(), text.c_str(), text.size() + 1), 0);
    }
    const fakes::TempFile readable("metadata", "text");
    for (const Pyxis::FileSpecifier& file :
         {Pyxis::FileSpecifier(toWideBuffer(readable.path()), Pyxis::FileSpecifier::Type::Compound),
          Pyxis::fileSpecifier("/"), Pyxis::FileSpecifier()}) {
        const KestMultispectralMetadataTextFileProperty property(file);
        Pyxis::FileSpecifier given;
        EXPECT_FALSE(property.getMetadataFile(given));
        EXPECT_TRUE(given.isEqual(file));
        Pyxis::StringBuffer value;
        property.getValue(value);
        EXPECT_EQ(value.numDataBytes(), 0);
    }
}

TEST(PropertySetTest, KeepsClonesOfWhatTheSourceCanHandOut) {
    fakes::World world;
    {
        std::vector<fakes::PropertyPointer> properties;
        for (const char* name : {"a", "b", "c"}) {
            properties.push_back(fakes::property<fakes::PlainProperty>(name));
        }
        fakes::PropertySet source(world, properties, std::make_shared<int>(0));
        world.fail = [opened = 0](std::string_view) mutable { return ++opened == 2; };
        KestMultispectralPropertySetIterator set;
        set.appendProperties(nullptr);
        set.appendProperties(&source);
        EXPECT_TRUE(source.endOfList());
        KestMultispectralPropertySetIterator copy(set);
        EXPECT_THAT(fakes::namesIn(copy), ElementsAre("a", "c"));
    }
    EXPECT_EQ(world.misuse, 0);
}

TEST(PropertyNamesTest, MatchExactlyAndOnlyInOneWidth) {
    const fakes::TextsFrom texts(fakes::stringModule("numbers"));
    using Id = kest::MultispectralPropertyId;
    using Identifier = Interface::PropertyIdentifier;
    Pyxis::StringBuffer name = toWideBuffer("kept");
    for (const int id : {-1, 5}) {
        EXPECT_FALSE(kest::multispectralPropertyName(static_cast<Id>(id), name));
        EXPECT_EQ(toUtf8(name), "kept");
    }
    const auto supported = [](const Pyxis::StringBuffer& text) {
        return kest::isSupportedMultispectralProperty(Identifier::Custom, &text);
    };
    for (int id = 0; id < 5; ++id) {
        ASSERT_TRUE(kest::multispectralPropertyName(static_cast<Id>(id), name));
        EXPECT_TRUE(supported(name)) << id;
        // Neither a terminator nor an even number of bytes is relied upon.
        EXPECT_TRUE(supported({name.numDataBytes() - 1, name.data(), CharacterType::Wide}));
        EXPECT_FALSE(supported({name.numDataBytes() - 4, name.data(), CharacterType::Wide}));
        Pyxis::StringBuffer narrow;
        Pyxis::StringBuffer::convertString(name, narrow, CharacterType::Plain);
        EXPECT_FALSE(supported(narrow));
    }
    EXPECT_FALSE(supported(toWideBuffer("<18109> ")));
    EXPECT_FALSE(supported(Pyxis::StringBuffer()));
    EXPECT_FALSE(kest::isSupportedMultispectralProperty(Identifier::Custom, nullptr));
    EXPECT_TRUE(kest::isSupportedMultispectralProperty(Identifier::GeoCorrelation, nullptr));
    EXPECT_FALSE(kest::isSupportedMultispectralProperty(static_cast<Identifier>(3), &name));
}

TEST(PropertyNamesTest, SingleByteNamesMatchEachOther) {
    const auto text = [](std::string_view bytes, int type) -> Pyxis::StringBuffer {
        return {static_cast<int>(bytes.size()),
                reinterpret_cast<const unsigned char*>(bytes.data()),
                static_cast<CharacterType>(type)};
    };
    for (const int left : {0, 1, 2, 4}) {
        for (const int right : {0, 1, 2, 4}) {
            const bool alike = (left % 4 == 0 && right % 4 == 0) || (left == 2 && right == 2);
            EXPECT_EQ(kest::isSamePropertyName(text("ab", left), text("ab", right)), alike);
            for (const char* other : {"aB", "a", "abab"}) {
                EXPECT_FALSE(kest::isSamePropertyName(text("ab", left), text(other, right)));
            }
        }
    }
    EXPECT_TRUE(kest::isSamePropertyName(text("a", 0), text({"a\0b", 3}, 4)));
    EXPECT_TRUE(kest::isSamePropertyName(text("", 0), {}));
}

}  // namespace
