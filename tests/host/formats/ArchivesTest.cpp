#include <cpl_vsi.h>
#include <gmock/gmock.h>
#include <sys/stat.h>

#include "host/codecs/Places.h"
#include "host/codecs/Readability.h"
#include "tests/host/formats/Opened.h"

namespace {

using namespace Pyxis;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;

class Archives : public OnFiles {
  protected:
    Archives() { StandardCodecs::allow({.archives = true}); }
    ~Archives() override { StandardCodecs::allow({}); }

    std::string zip(const char* name,
                    const std::vector<std::pair<std::string, std::string>>& members) const {
        const std::string path = directory / name;
        VSILFILE* archive = VSIFOpenL(("/vsizip/" + path).c_str(), "wb");
        for (const auto& [member, content] : members) {
            VSILFILE* file = VSIFOpenL(("/vsizip/" + path + "/" + member).c_str(), "wb");
            VSIFWriteL(content.data(), 1, content.size(), file);
            VSIFCloseL(file);
        }
        VSIFCloseL(archive);
        return path;
    }
    static std::string member(const std::string& archive, const std::string& name) {
        return insideOfArchive(archive) + "/" + name;
    }
    static std::string replaced(std::string text, const std::string& from, const std::string& to) {
        for (std::size_t at = 0; (at = text.find(from, at)) != text.npos; at += to.size()) {
            text.replace(at, from.size(), to);
        }
        return text;
    }
    /// With an extra field for the path of its only entry; `sum` is that of the entry's own name.
    static std::string withPath(std::string zip, const std::string& sum, const std::string& path) {
        const auto add = [&zip](std::size_t at, std::size_t more) {
            zip[at] = static_cast<char>(zip[at] + static_cast<char>(more));
        };
        const std::string field =
            std::string("up") + static_cast<char>(5 + path.size()) + '\0' + '\1' + sum + path;
        const std::size_t entry = zip.find("PK\1\2");
        add(zip.find("PK\5\6") + 12, field.size());
        add(entry + 30, field.size());
        const auto nameSize = static_cast<unsigned char>(zip[entry + 28]);
        return zip.insert(entry + 46 + nameSize, field);
    }
    static std::string whyNotListed(const std::string& archive) {
        const auto files = filesInArchive(insideOfArchive(archive));
        return files ? "" : files.refusal().reason;
    }
    static std::string tarMember(const std::string& name, const std::string& content,
                                 char type = '0') {
        std::string block(512, '\0');
        block.replace(0, name.size(), name);
        block.replace(124, 11, CPLSPrintf("%011o", static_cast<unsigned>(content.size())));
        block.replace(136, 11, 11, '0');
        block[156] = type;
        block.replace(257, 8, std::string("ustar\00000", 8));
        block.replace(148, 8, 8, ' ');
        unsigned sum = 0;
        for (const char c : block) {
            sum += static_cast<unsigned char>(c);
        }
        block.replace(148, 7, CPLSPrintf("%06o", sum) + std::string(1, '\0'));
        return block + content + std::string((512 - content.size() % 512) % 512, '\0');
    }
};

TEST_F(Archives, MembersAreReadLikeFiles) {
    const std::string plain = fakes::writeRaster(directory / "a.tif");
    const std::string bytes = fakes::readFile(plain);
    const std::string lost =
        fakes::readFile(fakes::writeRaster(directory / "l.tif", {.transform = {}, .epsg = 0}));
    const std::string archive = zip("a.zip", {{"in/a.tif", bytes},
                                              {"in/{}}.tif", bytes},
                                              {"in/l.tif", lost},
                                              {"in/l.tfw", "30\n0\n0\n-30\n1015\n1985\n"}});
    const std::string tar = directory / "a.tar";
    fakes::writeFile(tar, tarMember("in/a.tif", bytes) + std::string(1024, '\0'));
    for (const std::string& path : {member(archive, "in/a.tif"), "/vsizip/" + archive + "/in/a.tif",
                                    member(archive, "in/{}}.tif"), member(tar, "in/a.tif")}) {
        SCOPED_TRACE(path);
        const Opened opened(path);
        ASSERT_NE(opened.frame, nullptr) << whyNotReadable(fileSpecifier(path));
        EXPECT_EQ(opened.pixels(), gdalPixels(plain, 1));
        EXPECT_EQ(opened.place(), Opened(plain).place());
    }
    EXPECT_EQ(Opened(member(archive, "in/l.tif")).place(), "1000 1760, -1 ");
    // Names of old programs: of a code page, with the other slash, with a path apart.
    const std::string u = fakes::readFile(zip("u.zip", {{"u|a.tif", bytes}}));
    const std::pair<const char*, std::string> old[] = {
        {"page.zip", replaced(u, "u|a", "\x81\\a")},
        {"apart.zip", withPath(u, "\xB7\xBF\x75\xF8", "\u00fc/a.tif")},
    };
    for (const auto& [name, content] : old) {
        SCOPED_TRACE(name);
        fakes::writeFile(directory / name, content);
        EXPECT_THAT(*filesInArchive(insideOfArchive(directory / name)),
                    ElementsAre(EndsWith("/\u00fc/a.tif")));
        EXPECT_EQ(Opened(member(directory / name, "\u00fc/a.tif")).pixels(), gdalPixels(plain, 1));
    }
    EXPECT_THAT(*filesInArchive(insideOfArchive(archive) + "/in"),
                ElementsAre(EndsWith("in/a.tif"), EndsWith("in/{}}.tif"), EndsWith("in/l.tif"),
                            EndsWith("in/l.tfw")));
}

TEST_F(Archives, HostsMustAllowThem) {
    const std::string path =
        member(zip("a.zip", {{"a.tif", fakes::readFile(fakes::writeRaster(directory / "a.tif"))}}),
               "a.tif");
    for (const bool allowed : {false, true}) {
        StandardCodecs::allow({.archives = allowed});
        EXPECT_EQ(codecOf(path) != nullptr, allowed);
    }
    const std::pair<const char*, PathKind> kinds[] = {
        {"a.tif", PathKind::Plain},
        {"/vsizip/a.zip/b", PathKind::InArchive},
        {"/vsitar/{a.tar}/b", PathKind::InArchive},
        {"/vsigzip//a.gz", PathKind::InArchive},
        {"/vsis3/a", PathKind::Remote},
        {"/vsicurl?url=http://a", PathKind::Remote},
        {"/vsicurl_streaming/http://a", PathKind::Remote},
        {"/vsizip/vsicurl/http://a.zip/b", PathKind::Remote},
        {"/vsitar/{/vsis3/a.tar}/b", PathKind::Remote},
        {"/vsizip//vsizip/a.zip/b.zip/c", PathKind::Other},
        {"/vsisubfile/0_9,/vsicurl/http://a", PathKind::Other},
        {"/vsimem/a", PathKind::Other},
        {"/vsistdin/", PathKind::Other},
    };
    for (const auto& [name, kind] : kinds) {
        EXPECT_EQ(kindOf(name), kind) << name;
        EXPECT_EQ(codecOf(name), nullptr);
    }
}

TEST_F(Archives, HostileOnesAreRefusedWithAReason) {
    const std::string tif = fakes::readFile(fakes::writeRaster(directory / "a.tif"));
    std::string many;
    for (int i = 0; i < 20'001; ++i) {
        many += tarMember("f" + std::to_string(i), "");
    }
    std::string deep;
    for (int i = 0; i < 40; ++i) {
        deep += i % 2 == 0 ? "d/" : "d\\";
    }
    const std::string whole = fakes::readFile(zip("whole.zip", {{"a.tif", tif}}));
    const std::tuple<const char*, std::string, const char*> cases[] = {
        {"many.tar", many, "holds more than 20000 entries"},
        {"deep.tar", tarMember(deep, tif), "a name of too many folders"},
        {"long.tar", tarMember("x", std::string(2000, 'n'), 'L') + tarMember("y", tif),
         "a name of too many folders"},
        {"empty.zip", "", "damaged or empty"},
        {"empty.tar", "", "damaged or empty"},
        {"short.tar", tarMember("a.tif", tif) + tarMember("b.tif", tif).substr(0, 700),
         "cut short"},
        {"text.zip", std::string(600, 'x'), "no archive"},
        {"short.zip", whole.substr(0, whole.size() - 30), "damaged or empty"},
        {"torn.zip",
         whole.substr(0, whole.find("PK\1")) + "XX" + whole.substr(whole.find("PK\1") + 2),
         "damaged"},
    };
    for (const auto& [name, bytes, reason] : cases) {
        fakes::writeFile(directory / name, bytes);
        EXPECT_THAT(whyNotListed(directory / name), HasSubstr(reason)) << name;
    }
    ASSERT_EQ(mkfifo((directory / "pipe.zip").c_str(), 0600), 0);
    EXPECT_EQ(whyNotListed(directory / "pipe.zip"), "not a regular file");
    const std::string out = directory / "out.tar";
    fakes::writeFile(out, tarMember("../a.tif", tif) + tarMember("/b.tif", tif) +
                              tarMember("c/../../d.tif", tif) + tarMember("link.tif", "", '2') +
                              tarMember("in..side.tif", tif));
    EXPECT_THAT(*filesInArchive(insideOfArchive(out)), ElementsAre(EndsWith("/in..side.tif")));
}

TEST_F(Archives, WhatUnpacksOutOfProportionIsRefused) {
    const std::string zeros(std::size_t{70} << 20U, '\0');
    const std::string bomb = zip("bomb.zip", {{"a.tif", zeros}});
    EXPECT_THAT(whyNotReadable(fileSpecifier(member(bomb, "a.tif"))),
                HasSubstr("claims 73400320 bytes in an archive of"));
    const std::string compressed = directory / "bomb.tgz";
    VSILFILE* file = VSIFOpenL(("/vsigzip/" + compressed).c_str(), "wb");
    VSIFWriteL(zeros.data(), 1, zeros.size(), file);
    VSIFCloseL(file);
    EXPECT_THAT(whyNotListed(compressed), HasSubstr("unpacks to more than 67108864 bytes"));
    EXPECT_THAT(whyNotReadable(fileSpecifier("/vsigzip/" + compressed)),
                HasSubstr("unpacks to more than 67108864 bytes"));
}

}  // namespace
