#pragma once

#include <string>
#include <vector>

namespace kestms {

/// The languages with a file of texts, in order.
std::vector<std::string> availableLanguages();

/// The file of texts in that language ("de"); empty when there is none. It is looked for
/// in share/kestms/resources, in the folders above the program or driver.
std::string resourceFile(const std::string& language);

/// The catalogue of products that comes with the program, found like the texts.
std::string catalogueFile();

/// The language of the user's environment (LC_ALL, LC_MESSAGES, LANG), as a code such as "de"; "en"
/// when it is not available.
std::string environmentLanguage();

}  // namespace kestms
