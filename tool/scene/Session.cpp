#include "tool/scene/Session.h"

#include "host/Text.h"
#include "tool/scene/Resources.h"
#include "tool/terminal/Failure.h"
#include "tool/terminal/Interrupt.h"
#include "tool/terminal/TerminalText.h"

namespace kestms {

Session::Session(const std::string& language, Changes changes)
    : language_(language.empty() ? environmentLanguage() : language),
      componentCodecs_(Pyxis::StandardCodecs::QuickBird::With, changes),
      registration_(codec_) {
    const std::string file = resourceFile(language_);
    if (file.empty() && !language.empty()) {
        throw Failure(ExitCode::Usage, "--language " + language,
                      "no such language; there are " + joined(availableLanguages(), ", "));
    }
    codec_.setResourceFileName(Pyxis::fileSpecifier(file));
}

void Session::readAhead(const std::vector<std::string>& paths) {
    componentCodecs_.readAhead(paths, isInterrupted);
}

}  // namespace kestms
