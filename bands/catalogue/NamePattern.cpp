#include "bands/catalogue/NamePattern.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "bands/AsciiText.h"

namespace kest {
namespace {

constexpr std::size_t kNoMatch = std::u16string_view::npos;

bool isLetter(char16_t character) {
    return toUpper(character) >= u'A' && toUpper(character) <= u'Z';
}

std::size_t digitsAt(std::u16string_view text) {
    return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), isDigit) -
                                    text.begin());
}

/// The length of "2018/6/29" or "2018/06/29".
std::size_t dateFoldersAt(std::u16string_view text) {
    constexpr std::array<std::size_t, 3> kMostDigits = {4, 2, 2};
    std::size_t length = 0;
    for (const std::size_t most : kMostDigits) {
        if (length > 0 && !text.substr(length++).starts_with(u'/')) {
            return kNoMatch;
        }
        const std::size_t digits = digitsAt(text.substr(length, most));
        if (digits == 0 || (length == 0 && digits < most)) {
            return kNoMatch;
        }
        length += digits;
    }
    return length;
}

}  // namespace

class NamePattern::Compiler {
  public:
    Compiler(std::u16string_view text, const std::vector<std::u16string>& codes, std::string& fault)
        : rest_(text), codes_(codes), fault_(fault) {}

    bool compile(NamePattern& pattern) {
        if (rest_.size() > kMaxLength) {
            return fail("is too long");
        }
        while (!rest_.empty()) {
            if (!part()) {
                return false;
            }
        }
        if (bands_ != 1) {
            return fail("needs one {band}");
        }
        if (sceneStarts_ != sceneEnds_) {
            return fail("lacks a ]");
        }
        const auto first = std::find_if(parts_.begin(), parts_.end(), [](const Part& part) {
            return part.kind != Kind::SceneStart;
        });
        pattern.start_ = first->text;  // there is a band, at the least
        pattern.folders_ = folders_;
        pattern.parts_ = std::move(parts_);
        return true;
    }

  private:
    bool fail(const char* what) {
        fault_ = what;
        return false;
    }

    bool takes(std::u16string_view word) {
        if (!rest_.starts_with(word)) {
            return false;
        }
        rest_.remove_prefix(word.size());
        return true;
    }

    Part& add(Kind kind) {
        parts_.emplace_back().kind = kind;
        return parts_.back();
    }

    bool part() {
        if (takes(u"#+")) {
            add(Kind::Digits);
        } else if (takes(u"#")) {
            add(Kind::Digit);
        } else if (takes(u"@")) {
            add(Kind::Letter);
        } else if (takes(u"{date}")) {
            add(Kind::Date).digits = 8;
        } else if (takes(u"{yearday}")) {
            add(Kind::Date).digits = 7;
        } else if (takes(u"{y/m/d}")) {
            add(Kind::DateFolders);
            folders_ += 2;
        } else if (takes(u"{band}")) {
            ++bands_;
            Part& band = add(Kind::Band);
            band.choices = codes_;
            sortChoices(band);
        } else if (takes(u"(")) {
            return choice();
        } else if (takes(u"[")) {
            add(Kind::SceneStart);
            return ++sceneStarts_ == 1 || fail("has a second [");
        } else if (takes(u"]")) {
            add(Kind::SceneEnd);
            return ++sceneEnds_ == sceneStarts_ || fail("has a ] without a [");
        } else {
            return text();
        }
        return true;
    }

    bool text() {
        if (takes(u"\\")) {
            if (rest_.empty()) {
                return fail("ends in a \\");
            }
        } else if (std::u16string_view(u"{}()|+").find(rest_.front()) != rest_.npos) {
            return fail("has a sign out of place; write \\ before one that stands for itself");
        }
        folders_ += rest_.front() == u'/' ? 1 : 0;
        Part& part =
            parts_.empty() || parts_.back().kind != Kind::Text ? add(Kind::Text) : parts_.back();
        part.text.push_back(toUpper(rest_.front()));
        rest_.remove_prefix(1);
        return true;
    }

    bool choice() {
        const std::size_t end = rest_.find(u')');
        if (end == rest_.npos) {
            return fail("lacks a )");
        }
        const std::u16string_view texts = rest_.substr(0, end);
        rest_.remove_prefix(end + 1);
        if (texts.find_first_of(u"#@([{}]/\\") != texts.npos) {
            return fail("has a choice of more than plain texts");
        }
        Part& part = add(Kind::Choice);
        part.choices = split(upperCase(texts), u'|');
        sortChoices(part);
        return true;
    }

    static void sortChoices(Part& part) {
        part.codes.resize(part.choices.size());
        std::iota(part.codes.begin(), part.codes.end(), std::size_t{0});
        std::stable_sort(part.codes.begin(), part.codes.end(),
                         [&part](std::size_t left, std::size_t right) {
                             return part.choices[left].size() > part.choices[right].size();
                         });
        std::vector<std::u16string> sorted;
        for (const std::size_t code : part.codes) {
            sorted.push_back(part.choices[code]);
        }
        part.choices = std::move(sorted);
    }

    std::u16string_view rest_;
    const std::vector<std::u16string>& codes_;
    std::string& fault_;
    std::vector<Part> parts_;
    std::size_t folders_ = 0;
    std::size_t bands_ = 0;
    std::size_t sceneStarts_ = 0;
    std::size_t sceneEnds_ = 0;
};

std::optional<NamePattern> NamePattern::compile(std::u16string_view text,
                                                const std::vector<std::u16string>& codes,
                                                std::string& fault) {
    NamePattern pattern;
    if (!Compiler(text, codes, fault).compile(pattern)) {
        return std::nullopt;
    }
    return pattern;
}

std::optional<NamePattern::Match> NamePattern::match(std::u16string_view name) const {
    if (!name.starts_with(start_)) {
        return std::nullopt;
    }
    Match match;
    std::size_t at = 0;
    std::size_t sceneStart = 0;
    for (const Part& part : parts_) {
        const std::u16string_view rest = name.substr(at);
        std::size_t choice = 0;
        const std::size_t length = lengthAt(part, rest, choice);
        if (length == kNoMatch) {
            return std::nullopt;
        }
        if (part.kind == Kind::SceneStart) {
            sceneStart = at;
        } else if (part.kind == Kind::SceneEnd) {
            match.scene = name.substr(sceneStart, at - sceneStart);
        } else if (part.kind == Kind::Band) {
            match.code = part.codes[choice];
        } else if (part.kind == Kind::Date || part.kind == Kind::DateFolders) {
            match.date = rest.substr(0, length);
        }
        at += length;
    }
    return at == name.size() ? std::optional(match) : std::nullopt;
}

std::size_t NamePattern::lengthAt(const Part& part, std::u16string_view rest, std::size_t& choice) {
    switch (part.kind) {
        case Kind::Text:
            return rest.starts_with(part.text) ? part.text.size() : kNoMatch;
        case Kind::Digit:
            return !rest.empty() && isDigit(rest.front()) ? 1 : kNoMatch;
        case Kind::Letter:
            return !rest.empty() && isLetter(rest.front()) ? 1 : kNoMatch;
        case Kind::Digits: {
            const std::size_t length = digitsAt(rest);
            return length > 0 ? length : kNoMatch;
        }
        case Kind::Date:
            return digitsAt(rest.substr(0, part.digits)) == part.digits ? part.digits : kNoMatch;
        case Kind::DateFolders:
            return dateFoldersAt(rest);
        case Kind::Choice:
        case Kind::Band:
            for (choice = 0; choice < part.choices.size(); ++choice) {
                if (rest.starts_with(part.choices[choice])) {
                    return part.choices[choice].size();
                }
            }
            return kNoMatch;
        case Kind::SceneStart:
        case Kind::SceneEnd:
            return 0;
    }
    return kNoMatch;
}

}  // namespace kest
