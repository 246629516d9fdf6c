#include "tool/scene/Scenes.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <string_view>
#include <system_error>
#include <tuple>
#include <utility>

#include "bands/BandWords.h"
#include "bands/catalogue/ProductCatalogue.h"
#include "host/Text.h"
#include "tool/scene/MetadataFile.h"
#include "tool/scene/PathParts.h"
#include "tool/terminal/Interrupt.h"

namespace fs = std::filesystem;

namespace kestms {
namespace {

/// A file and its match in the catalogue.
struct Member {
    std::string path;
    const kest::CatalogueBand* band;
    const kest::CatalogueBucket* bucket;
};

/// A scene being gathered.
struct Gathered {
    Scene scene;
    const kest::Product* product = nullptr;
    std::vector<Member> members;
};

/// The name of the folder that holds the file, of the current directory as well.
std::string folderName(const std::string& path) {
    std::error_code error;
    const fs::path whole = fs::absolute(path, error);
    std::string name =
        (error ? fs::path(path) : whole).lexically_normal().parent_path().filename().string();
    if (name.ends_with('}')) {  // of an archive: "/vsizip/{/home/me/a.zip}"
        name.pop_back();
    }
    return name;
}

/// The folder of the Sentinel-2 product that a file is part of: the ".SAFE" folder, or that of the
/// granule if the former was renamed or is not there; empty when it is part of none.
std::string safeFolderOf(const std::string& path) {
    constexpr std::array<std::string_view, 2> kSafe = {".SAFE/", ".safe/"};
    for (const std::string_view ending : kSafe) {
        if (const std::size_t at = path.find(ending); at != path.npos) {
            return path.substr(0, at + ending.size() - 1);
        }
    }
    constexpr std::array<std::string_view, 2> kInGranule = {"/IMG_DATA/", "/QI_DATA/"};
    for (const std::string_view folder : kInGranule) {
        if (const std::size_t at = path.rfind(folder); at != path.npos) {
            return path.substr(0, at);
        }
    }
    return {};
}

/// The innermost of a folder and those around it with whose path the other path begins.
std::string startOf(const std::string& folder, const std::string& other) {
    const auto end = std::mismatch(folder.begin(), folder.end(), other.begin(), other.end()).first;
    const std::string common(folder.begin(), end);
    return end == folder.end() || *end == '/' ? common : folderOf(common);
}

/// The innermost folder that holds all files; for a Sentinel-2 product its whole folder.
std::string commonFolder(const std::vector<Member>& members) {
    std::string folder = folderOf(members.front().path);
    for (const Member& member : members) {
        const std::string other = folderOf(member.path);
        folder = startOf(other, startOf(folder, other));
    }
    const std::string safe = safeFolderOf(members.front().path);
    return safe.empty() ? folder : safe;
}

/// Whether two folders have the same band at the same pixel size.
bool hasCopies(const std::vector<Member>& members) {
    std::map<std::pair<const kest::CatalogueBand*, const kest::CatalogueBucket*>, std::string>
        folders;
    return std::any_of(members.begin(), members.end(), [&folders](const Member& member) {
        const std::string folder = folderOf(member.path);
        const auto [first, isNew] =
            folders.try_emplace(std::pair(member.band, member.bucket), folder);
        return member.band->details.role == kest::BandRole::Band && !isNew &&
               first->second != folder;
    });
}

/// A scene for each folder that has files of it.
std::vector<Gathered> copiesOf(Gathered&& whole) {
    std::vector<Gathered> copies;
    std::map<std::string, std::size_t> places;
    for (const Member& member : whole.members) {
        const auto [place, isNew] = places.try_emplace(folderOf(member.path), copies.size());
        if (isNew) {
            copies.push_back({whole.scene, whole.product, {}});
        }
        copies[place->second].members.push_back(member);
    }
    return copies;
}

/// Sort key for the files of one band: the product's own pixel size first.
auto preference(const kest::Product& product, const Member& member) {
    const bool other = member.bucket != &product.buckets[member.band->bucket];
    return std::tuple(other, member.bucket->number);
}

/// By its extension: ".tfw", ".j2w", ".wld".
bool isWorldFile(const std::string& path) {
    const std::string_view extension = extensionOf(path);
    constexpr std::size_t kShortest = 4;
    return extension.size() >= kShortest && (extension.back() == 'w' || extension.back() == 'W' ||
                                             extension == ".wld" || extension == ".WLD");
}

/// By its name: that of the scene with the extension of a picture.
bool isPictureOf(const Scene& scene, const std::string& path) {
    constexpr std::array<std::string_view, 3> kExtensions = {".jpg", ".jpeg", ".png"};
    return stemOf(path) == scene.name && hasExtension(path, kExtensions);
}

/// Of a Sentinel-2 product: "MSK_DETFOO_B02.jp2".
bool isMaskOfProduct(const std::string& path) {
    return nameOf(path).starts_with("MSK_") && !safeFolderOf(path).empty();
}

/// Why a file is set aside that has the band or layer of another one.
std::string repetitionOf(const Member& member, const Member& first) {
    const bool isBand = member.band->details.role == kest::BandRole::Band;
    return std::string("same ") + (isBand ? "band" : "layer") +
           (member.bucket == first.bucket ? " in another form" : " at another pixel size");
}

void sortMembers(Gathered& gathered) {
    auto& members = gathered.members;
    std::stable_sort(members.begin(), members.end(), [&](const Member& a, const Member& b) {
        return std::tuple_cat(std::tuple(a.band->order), preference(*gathered.product, a)) <
               std::tuple_cat(std::tuple(b.band->order), preference(*gathered.product, b));
    });
    std::vector<SetAside>& aside = gathered.scene.setAside;
    const Member* last = nullptr;
    for (const Member& member : members) {
        const kest::BandRole role = member.band->details.role;
        if (isWorldFile(member.path)) {
            aside.push_back({member.path, "world file", false});
            continue;
        }
        if (role == kest::BandRole::Metadata || isMetadataFile(member.path)) {
            aside.push_back({member.path, kMetadata, false});
            continue;
        }
        if (last != nullptr && member.band == last->band) {
            aside.push_back({member.path, repetitionOf(member, *last), false});
            continue;
        }
        if (role != kest::BandRole::Band) {
            aside.push_back({member.path, std::string(kest::wordOf(kest::kRoleWords, role)),
                             role != kest::BandRole::Preview});
        } else {
            gathered.scene.files.push_back(member.path);
        }
        last = &member;
    }
}

/// Sorts files into scenes of products, and the rest by folder.
class Sorter {
  public:
    explicit Sorter(Session& session)
        : session_(session),
          catalogue_(kest::currentCatalogue()),
          witnesses_(&session.finder(), &session.codec()) {}

    void add(const std::string& path) {
        throwIfInterrupted();
        const std::u16string wide = Pyxis::utf8ToWide(path);
        const auto files =
            catalogue_ ? catalogue_->filesNamed(wide) : std::vector<kest::ProductFile>();
        const auto file = std::find_if(files.begin(), files.end(),
                                       [&](const auto& each) { return witnesses_.confirm(each); });
        if (file == files.end()) {
            loose_.push_back(path);
            return;
        }
        Gathered& gathered = of(*file, safeFolderOf(path));
        gathered.members.push_back({path, file->band, file->bucket});
    }

    std::vector<Scene> scenes() {
        std::vector<Scene> scenes;
        std::vector<Gathered> separate;
        for (Gathered& each : products_) {
            if (hasCopies(each.members)) {
                std::vector<Gathered> copies = copiesOf(std::move(each));
                std::move(copies.begin(), copies.end(), std::back_inserter(separate));
            } else {
                separate.push_back(std::move(each));
            }
        }
        products_ = std::move(separate);
        for (Gathered& each : products_) {
            sortMembers(each);
            each.scene.folder = commonFolder(each.members);
        }
        placeLayers();
        placeLoose();
        for (auto* group : {&products_, &folders_}) {
            for (Gathered& each : *group) {
                scenes.push_back(std::move(each.scene));
            }
        }
        return scenes;
    }

  private:
    /// `safe` is the ".SAFE" folder of the file: a product may be there in several editions.
    Gathered& of(const kest::ProductFile& file, const std::string& safe) {
        const auto [place, isNew] =
            index_.try_emplace({file.product, file.sceneKey, safe}, products_.size());
        if (isNew) {
            Gathered& gathered = products_.emplace_back();
            gathered.product = file.product;
            gathered.scene.product = file.product->id;
            gathered.scene.productName =
                Pyxis::wideToUtf8(file.product->name.in(session_.language()));
            gathered.scene.name = Pyxis::wideToUtf8(file.scene);
            gathered.scene.date = file.date;
            if (gathered.scene.name.empty()) {
                gathered.scene.name = gathered.scene.product;
            }
        }
        return products_[place->second];
    }

    /// Scenes by folder and name.
    using Owners = std::map<std::pair<std::string, std::string>, Scene*>;

    /// The scene whose folder holds the file, the innermost; of several the one with the start of
    /// `name`, which is the last that does not sort behind it. Null without one.
    static Scene* ownerOf(const std::string& path, const std::string& name, const Owners& owners) {
        std::string folder = folderOf(path);
        while (true) {
            const auto next = owners.upper_bound({folder, name});
            const auto last = next != owners.begin() ? std::prev(next) : owners.end();
            for (const auto place : {last, next}) {
                if (place != owners.end() && place->first.first == folder) {
                    return place->second;
                }
            }
            if (last == owners.end()) {
                return nullptr;
            }
            // A folder around it sorts before it, and is the start of all that sorts between.
            std::string outer = startOf(folder, last->first.first);
            if (outer.empty() && folder.starts_with('/')) {
                return nullptr;
            }
            folder = std::move(outer);
        }
    }

    /// The layers of a product may be named like those of another one: they belong to the scene
    /// that has bands.
    void placeLayers() {
        Owners owners;
        for (Gathered& each : products_) {
            if (!each.scene.files.empty()) {
                owners.try_emplace({each.scene.folder, each.scene.name}, &each.scene);
            }
        }
        for (Gathered& each : products_) {
            Scene* owner = each.scene.files.empty()
                               ? ownerOf(each.members.front().path, each.scene.name, owners)
                               : nullptr;
            if (owner != nullptr) {
                auto& layers = each.scene.setAside;
                owner->setAside.insert(owner->setAside.end(), layers.begin(), layers.end());
                each.members.clear();
            }
        }
        std::erase_if(products_, [](const Gathered& each) { return each.members.empty(); });
    }

    static const char* reasonFor(const std::string& path, const Scene& owner, bool isMetadata) {
        return isMetadata                 ? kMetadata
               : isMaskOfProduct(path)    ? "mask"
               : isPictureOf(owner, path) ? kPreview
                                          : kPartOfNoScene;
    }

    void placeLoose() {
        Owners owners;
        for (Gathered& each : products_) {
            owners.try_emplace({each.scene.folder, each.scene.name}, &each.scene);
        }
        const auto relative = std::find_if(owners.begin(), owners.end(), [](const auto& each) {
            const std::string& folder = each.first.first;
            return !folder.starts_with('/') && folder != ".." && !folder.starts_with("../");
        });
        // Metadata of a folder without a product go with its rasters.
        std::stable_partition(loose_.begin(), loose_.end(), std::not_fn(isMetadataFile));
        std::map<std::string, std::size_t> byFolder;
        for (const std::string& path : loose_) {
            const bool isMetadata = isMetadataFile(path);
            Scene* owner = ownerOf(path, std::string(nameOf(path)), owners);
            if (owner == nullptr && isMetadata) {  // of a product, above the folders of its bands
                const std::string folder = path.substr(0, path.rfind('/') + 1);
                const auto below = folder.empty() ? relative : owners.lower_bound({folder, ""});
                owner = below != owners.end() && below->first.first.starts_with(folder)
                            ? below->second
                            : nullptr;
            }
            if (owner != nullptr) {
                owner->setAside.push_back({path, reasonFor(path, *owner, isMetadata), false});
                continue;
            }
            const std::string folder = folderOf(path);
            const auto [place, isNew] = byFolder.try_emplace(folder, folders_.size());
            if (isNew) {
                Scene& scene = folders_.emplace_back().scene;
                scene.name = folderName(path);
                scene.folder = folder;
            }
            Scene& scene = folders_[place->second].scene;
            if (isMetadata && !scene.files.empty() && !isMetadataFile(scene.files.front())) {
                scene.setAside.push_back({path, kMetadata, false});
            } else {
                scene.files.push_back(path);
            }
        }
    }

    Session& session_;
    std::shared_ptr<const kest::ProductCatalogue> catalogue_;
    kest::Witnesses witnesses_;
    std::map<std::tuple<const kest::Product*, std::u16string, std::string>, std::size_t> index_;
    std::vector<Gathered> products_;
    std::vector<Gathered> folders_;
    std::vector<std::string> loose_;
};

}  // namespace

std::vector<Scene> scenesAmong(Session& session, const std::vector<std::string>& paths) {
    Sorter sorter(session);
    for (const std::string& path : paths) {
        sorter.add(path);
    }
    return sorter.scenes();
}

std::string summaryOf(const std::vector<SetAside>& setAside) {
    std::vector<std::pair<std::string, int>> counts;
    for (const SetAside& each : setAside) {
        const auto known = std::find_if(counts.begin(), counts.end(), [&](const auto& count) {
            return count.first == each.reason;
        });
        if (known == counts.end()) {
            counts.emplace_back(each.reason, 1);
        } else {
            ++known->second;
        }
    }
    std::string text;
    for (const auto& [reason, count] : counts) {
        text += (text.empty() ? "" : ", ") + std::to_string(count) + " " + reason;
    }
    return text;
}

}  // namespace kestms
