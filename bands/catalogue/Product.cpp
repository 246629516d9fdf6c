#include "bands/catalogue/Product.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>

#include "bands/AsciiText.h"

namespace kest {
namespace {

constexpr char kEnglish[] = "en";

#ifdef _WIN32
constexpr std::u16string_view kSeparators = u"/\\";
#else
constexpr std::u16string_view kSeparators = u"/";
#endif

/// The path without the extension that compression added.
std::u16string_view uncompressed(std::u16string_view path) {
    constexpr std::u16string_view kEnding = u".gz";
    const std::size_t size = path.size() - std::min(kEnding.size(), path.size());
    return path.starts_with(u"/vsigzip/") && equalIgnoringCase(path.substr(size), kEnding)
               ? path.substr(0, size)
               : path;
}

/// The path with another sign between folders.
std::u16string withSeparator(std::u16string path, char16_t sign) {
    std::replace_if(
        path.begin(), path.end(),
        [](char16_t c) { return kSeparators.find(c) != kSeparators.npos; }, sign);
    return path;
}

std::u16string comparableText(std::u16string_view path) {
    path = uncompressed(path);
    const std::size_t nameStart = path.find_last_of(kSeparators) + 1;
    const std::size_t dot = path.find_last_of(u'.');
    return withSeparator(
        upperCase(path.substr(0, dot == path.npos || dot < nameStart ? path.size() : dot)), u'/');
}

int number(std::u16string_view digits) {
    int value = 0;
    for (const char16_t digit : digits) {
        value = value * 10 + (digit - u'0');
    }
    return value;
}

/// The date in eight digits, in seven with the day of the year, or with "/" between; empty if there
/// is no such day.
std::string isoDate(std::u16string_view digits) {
    using namespace std::chrono;
    if (digits.empty()) {
        return {};
    }
    const year itsYear(number(digits.substr(0, 4)));
    const std::size_t slash = digits.rfind(u'/');
    const year_month_day date =
        slash != digits.npos
            ? itsYear / number(digits.substr(5, slash - 5)) / number(digits.substr(slash + 1))
        : digits.size() == 8
            ? itsYear / number(digits.substr(4, 2)) / number(digits.substr(6))
            : year_month_day(sys_days(itsYear / January / 1) + days(number(digits.substr(4)) - 1));
    if (!date.ok() || date.year() != itsYear) {
        return {};
    }
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02u", int{date.year()},
                  unsigned{date.month()}, unsigned{date.day()});
    return text.data();
}

}  // namespace

std::u16string_view LocalText::in(std::string_view language) const {
    for (const std::string_view wanted : {language, std::string_view(kEnglish)}) {
        for (const auto& [tag, text] : texts) {
            if (tag == wanted) {
                return text;
            }
        }
    }
    return texts.empty() ? std::u16string_view() : texts.front().second;
}

std::u16string_view ProductFile::witnessFolder() const {
    const std::u16string_view base = witnessBase;
    return base.substr(0, base.find_last_of(kSeparators) + 1);
}

ProductPath::ProductPath(std::u16string_view path)
    : path_(path), comparable_(comparableText(path)) {
    std::size_t start = comparable_.rfind(u'/') + 1;
    starts_.push_back(start);
    while (start >= 2) {
        start = comparable_.rfind(u'/', start - 2) + 1;
        starts_.push_back(start);
    }
}

std::optional<std::size_t> ProductPath::startOf(std::size_t folders) const {
    return folders < starts_.size() ? std::optional(starts_[folders]) : std::nullopt;
}

std::optional<ProductFile> Product::match(const ProductPath& whole) const {
    const std::u16string_view path = whole.path();
    const std::u16string_view view = whole.comparable();
    for (const FilePattern& each : files) {
        const std::optional<std::size_t> start = whole.startOf(each.pattern.folders());
        const auto found = start ? each.pattern.match(view.substr(*start)) : std::nullopt;
        if (!found) {
            continue;
        }
        ProductFile file;
        file.product = this;
        file.band = &bands[bandOfCode[found->code]];
        file.bucket = &buckets[each.bucket.value_or(file.band->bucket)];
        file.date = isoDate(found->date);
        std::size_t inScene = *start;
        std::u16string_view folder = view.substr(0, *start - std::min<std::size_t>(*start, 1));
        if (found->scene) {
            const auto sceneStart = static_cast<std::size_t>(found->scene->data() - view.data());
            const std::size_t sceneEnd = sceneStart + found->scene->size();
            inScene = view.substr(sceneEnd).starts_with(u'/') ? sceneEnd + 1 : inScene;
            // Folders of the same names elsewhere are a copy.
            const bool isTree = found->scene->find(u'/') != found->scene->npos;
            file.sceneKey = isTree ? view.substr(0, sceneEnd) : *found->scene;
            // Outputs are named after scenes.
            file.scene =
                withSeparator(std::u16string(path.substr(sceneStart, found->scene->size())), u'_');
        } else {
            file.sceneKey = folder;
            file.scene = path.substr(0, folder.size()).substr(folder.rfind(u'/') + 1);
        }
        file.witnessBase = path.substr(0, path.find_first_of(kSeparators, inScene));
        return file;
    }
    return std::nullopt;
}

}  // namespace kest
