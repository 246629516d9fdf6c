#include <algorithm>
#include <charconv>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

#include "platform/Platform.h"
#include "platform/posix/PathText.h"
#include "platform/posix/RegularFile.h"

// String resources in a text file: a line a text, which is the id, one space or tab, the text. A
// line that starts with "#" is a comment; \n, \t and \\ are escapes.

namespace kest::platform {
namespace {

/// A file of texts is a few kilobytes; what is larger than this is something else.
constexpr off_t kLargestFile = off_t{4} << 20;

std::string unescaped(std::string_view text) {
    static constexpr std::pair<char, char> kEscapes[] = {{'n', '\n'}, {'t', '\t'}, {'\\', '\\'}};
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto* escape =
            text[i] == '\\' && i + 1 < text.size()
                ? std::find_if(std::begin(kEscapes), std::end(kEscapes),
                               [next = text[i + 1]](auto pair) { return pair.first == next; })
                : std::end(kEscapes);
        const bool escaped = escape != std::end(kEscapes);
        result.push_back(escaped ? escape->second : text[i]);
        i += escaped ? 1 : 0;
    }
    return result;
}

class TextFileModule : public StringModule {
  public:
    explicit TextFileModule(std::string_view content) {
        if (content.starts_with("\xEF\xBB\xBF")) {
            content.remove_prefix(3);
        }
        while (!content.empty()) {
            const std::size_t end = std::min(content.find('\n'), content.size());
            addLine(content.substr(0, end));
            content.remove_prefix(std::min(end + 1, content.size()));
        }
    }

    int loadString(unsigned int id, char16_t* buffer, int capacity) const override {
        if (capacity <= 0) {
            return 0;
        }
        const auto found = texts_.find(id);
        const std::u16string_view text =
            found == texts_.end() ? std::u16string_view() : found->second;
        const std::size_t count = std::min(text.size(), static_cast<std::size_t>(capacity) - 1);
        std::copy_n(text.begin(), count, buffer);
        buffer[count] = u'\0';
        return static_cast<int>(count);
    }

  private:
    void addLine(std::string_view line) {
        if (line.ends_with('\r')) {
            line.remove_suffix(1);
        }
        unsigned int id = 0;
        const char* const end = line.data() + line.size();
        const auto [rest, error] = std::from_chars(line.data(), end, id);
        if (error == std::errc() && rest != end && (*rest == ' ' || *rest == '\t')) {
            texts_.insert_or_assign(
                id, wideFromUtf8(unescaped({rest + 1, static_cast<std::size_t>(end - rest - 1)})));
        }
    }

    std::unordered_map<unsigned int, std::u16string> texts_;
};

}  // namespace

std::unique_ptr<StringModule> StringModule::load(const std::u16string& path) {
    const auto file = RegularFile::open(pathBytes(path));
    const off_t size = file ? file->size() : -1;
    if (size < 0 || size > kLargestFile) {
        return nullptr;
    }
    std::string content(static_cast<std::size_t>(size), '\0');
    content.resize(file->readFromStart(content.data(), content.size()));
    return std::make_unique<TextFileModule>(content);
}

}  // namespace kest::platform
