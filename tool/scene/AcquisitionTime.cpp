#include "tool/scene/AcquisitionTime.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <chrono>
#include <sstream>
#include <string_view>

#include "host/codecs/Places.h"
#include "tool/scene/MetadataFile.h"

namespace kestms {
namespace {

constexpr std::size_t kDay = 10;  // 2018-06-29
constexpr std::size_t kTime = 8;  // 00:02:41
constexpr std::size_t kLargestFile = 1 << 20;

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

/// Whether the text has digits where the pattern has "0", and else the pattern's characters.
bool looksLike(std::string_view text, std::string_view pattern) {
    return text.size() == pattern.size() &&
           std::equal(text.begin(), text.end(), pattern.begin(), [](char given, char wanted) {
               return wanted == '0' ? isDigit(given) : given == wanted;
           });
}

int numberAt(std::string_view text, std::size_t from, std::size_t length) {
    int number = -1;
    std::from_chars(text.data() + from, text.data() + from + length, number);
    return number;
}

bool isDay(std::string_view text) {
    using namespace std::chrono;
    return looksLike(text, "0000-00-00") &&
           year_month_day(year(numberAt(text, 0, 4)),
                          month(static_cast<unsigned>(numberAt(text, 5, 2))),
                          day(static_cast<unsigned>(numberAt(text, 8, 2))))
               .ok();
}

/// "00:02:41", optionally with a fraction of a second.
bool isTime(std::string_view text) {
    const std::string_view parts = text.substr(std::min(text.size(), kTime));
    const bool hasParts =
        parts.size() > 1 && parts[0] == '.' && std::all_of(parts.begin() + 1, parts.end(), isDigit);
    return looksLike(text.substr(0, kTime), "00:00:00") && numberAt(text, 0, 2) < 24 &&
           numberAt(text, 3, 2) < 60 && numberAt(text, 6, 2) < 60 && (parts.empty() || hasParts);
}

TimeSpan wholeDay(std::string_view day) {
    return {std::string(day) + "T00:00:00Z", std::string(day) + "T23:59:59.999Z"};
}

std::optional<TimeSpan> instant(std::string_view day, std::string_view time) {
    if (!isDay(day) || !isTime(time)) {
        return std::nullopt;
    }
    const std::string text = std::string(day) + "T" + std::string(time) + "Z";
    return TimeSpan{text, text};
}

/// A day or a time.
std::optional<TimeSpan> parseOne(std::string_view text) {
    if (isDay(text)) {
        return wholeDay(text);
    }
    const bool isWhole = text.size() > kDay + 2 && text[kDay] == 'T' && text.back() == 'Z';
    return isWhole ? instant(text.substr(0, kDay), text.substr(kDay + 1, text.size() - kDay - 2))
                   : std::nullopt;
}

/// "20180629" and "2018180", the year with the day in it.
std::array<std::string, 2> compactForms(std::string_view day) {
    using namespace std::chrono;
    std::string digits(day);
    std::erase(digits, '-');
    const year itsYear(numberAt(day, 0, 4));
    const sys_days date(itsYear / numberAt(day, 5, 2) / numberAt(day, 8, 2));
    const auto number = (date - sys_days(itsYear / January / 1)).count() + 1;
    const std::string threeDigits = std::to_string(1000 + number).substr(1);
    return {digits, digits.substr(0, 4) + threeDigits};
}

/// "20180629T000241" or "2018180T000241" in a name, if it is of that day.
std::optional<TimeSpan> fromName(std::string_view name, const std::string& day) {
    if (!isDay(day)) {
        return std::nullopt;
    }
    for (const std::string& compact : compactForms(day)) {
        const std::size_t found = name.find(compact + "T");
        const std::string_view digits =
            found == name.npos ? "" : name.substr(found + compact.size() + 1).substr(0, 6);
        if (looksLike(digits, "000000")) {
            const auto pair = [&](std::size_t from) { return std::string(digits.substr(from, 2)); };
            return instant(day, pair(0) + ":" + pair(2) + ":" + pair(4));
        }
    }
    return std::nullopt;
}

std::string_view unquoted(std::string_view value) {
    constexpr std::string_view kAround = " \t\r\"";
    value.remove_prefix(std::min(value.find_first_not_of(kAround), value.size()));
    return value.substr(0, value.find_last_not_of(kAround) + 1);
}

/// The time of a Sentinel-2 tile: the first value behind one of the producers' keys.
std::optional<TimeSpan> fromTile(std::string_view text) {
    constexpr std::array<std::string_view, 2> kKeys = {"<SENSING_TIME", "\"timestamp\""};
    for (const std::string_view key : kKeys) {
        // After an attribute or a colon.
        const std::size_t start = text.find_first_of("0123456789", text.find(key));
        const std::size_t end = text.find('Z', std::min(start, text.size()));
        if (end != text.npos) {
            return parseOne(text.substr(start, end + 1 - start));
        }
    }
    return std::nullopt;
}

/// The date and time among lines of "KEY = VALUE", by the producers' keys.
std::optional<TimeSpan> fromLines(const std::string& text) {
    std::istringstream file(text);
    std::string day;
    std::string time;
    for (std::string line; std::getline(file, line);) {
        const std::size_t sign = std::min(line.find('='), line.size());
        const std::string_view key = unquoted(std::string_view(line).substr(0, sign));
        const std::string_view value =
            unquoted(std::string_view(line).substr(sign).substr(sign < line.size() ? 1 : 0));
        if (key == "DATE_ACQUIRED" || key == "ACQUISITION_DATE") {
            day = value;
        } else if (key == "SCENE_CENTER_TIME" || key == "SCENE_CENTER_SCAN_TIME") {
            time = value.substr(0, value.find('Z'));
        }
    }
    const auto whole = instant(day, time);
    return whole || !isDay(day) ? whole : wholeDay(day);
}

std::optional<TimeSpan> fromMetadata(const std::string& path) {
    const auto text = Pyxis::contentOfSideFile(path, kLargestFile);
    if (!text) {
        return std::nullopt;
    }
    return isLandsatMetadata(path) ? fromLines(*text) : fromTile(*text);
}

}  // namespace

std::optional<TimeSpan> parseTimeSpan(const std::string& text) {
    const std::size_t slash = text.find('/');
    if (slash == std::string::npos) {
        return parseOne(text);
    }
    const auto from = parseOne(text.substr(0, slash));
    const auto to = parseOne(text.substr(slash + 1));
    if (!from || !to || to->end < from->start) {
        return std::nullopt;
    }
    return TimeSpan{from->start, to->end};
}

std::optional<TimeSpan> acquisitionTime(const std::string& name, const std::string& day,
                                        const std::string& metadataFile) {
    if (auto time = fromMetadata(metadataFile)) {
        return time;
    }
    if (auto time = fromName(name, day)) {
        return time;
    }
    return isDay(day) ? std::optional(wholeDay(day)) : std::nullopt;
}

}  // namespace kestms
