#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// What the file names of a product look like, as the catalogue writes it:
//
//   LC08_          letters, digits and signs stand for themselves, whatever their case
//   #  @           a digit, a letter
//   #+             a run of digits, at least one
//   (T1|T2|)       one of several texts; the last one here is empty
//   [ ... ]        the scene's name
//   {band}         the code of one of the product's bands or layers
//   {date}         year, month and day in eight digits; {yearday} year and day in seven
//   {y/m/d}        year, month and day as three folders, "2018/6/29"
//   /              the end of a folder's name
//   \x             the sign x itself
//
// Each part matches the longest text that it can, without backtracking, so that matching takes
// linear time, whatever the pattern.

namespace kest {

/// Letters and digits are ASCII. Names and codes are upper-case.
class NamePattern {
  public:
    static constexpr std::size_t kMaxLength = 500;

    struct Match {
        std::optional<std::u16string_view> scene;
        std::size_t code = 0;  ///< index of the code that matches "{band}"
        /// 8 digits, or 7 with the day of the year, or with "/" between; empty without one.
        std::u16string_view date;
    };

    /// `codes` are the values of "{band}". Nothing on an error; `fault` is then a sentence.
    static std::optional<NamePattern> compile(std::u16string_view text,
                                              const std::vector<std::u16string>& codes,
                                              std::string& fault);

    /// Number of folders that the pattern names.
    std::size_t folders() const { return folders_; }
    /// `name` is as many folders as the pattern has, and the file's name without extension, in
    /// upper case and separated by "/". The views in the result point into it.
    std::optional<Match> match(std::u16string_view name) const;

  private:
    enum class Kind {
        Text,
        Digit,
        Letter,
        Digits,
        Choice,
        Band,
        Date,
        DateFolders,
        SceneStart,
        SceneEnd
    };

    struct Part {
        Kind kind = Kind::Text;
        std::u16string text;
        std::vector<std::u16string> choices;  ///< the longest first
        std::vector<std::size_t> codes;       ///< of each choice, its index among the codes
        std::size_t digits = 0;               ///< of a date
    };

    class Compiler;

    static std::size_t lengthAt(const Part& part, std::u16string_view rest, std::size_t& choice);

    std::vector<Part> parts_;
    std::u16string start_;  ///< what all names begin with: most files are of other products
    std::size_t folders_ = 0;
};

}  // namespace kest
