#pragma once

#include <optional>
#include <string>

namespace kestms {

/// When a scene was recorded: an instant, or a span if no more is known. RFC 3339, in UTC.
struct TimeSpan {
    std::string start;
    std::string end;  ///< of an instant the same as `start`

    bool isInstant() const { return start == end; }
};

/// Parses a day ("2018-06-29"), a time ("2018-06-29T00:02:41Z"), or two of them separated by "/".
/// Nothing for another text.
std::optional<TimeSpan> parseTimeSpan(const std::string& text);

/// The time of a scene: from its metadata file (may be empty), from a date and time in its name,
/// else the whole `day` ("2018-06-29"). Nothing if there is none of these.
std::optional<TimeSpan> acquisitionTime(const std::string& name, const std::string& day,
                                        const std::string& metadataFile);

}  // namespace kestms
