#pragma once

#include <string>
#include <vector>

namespace kestms {

/// The languages for which a file of texts is there, in order.
std::vector<std::string> availableLanguages();

/// The file of texts in that language ("de"); empty when there is none. It is looked for in
/// share/kestms/resources, in the folders above the program or driver.
std::string resourceFile(const std::string& language);

/// The catalogue of products that comes with the program, found like the texts.
std::string catalogueFile();

/// The language that the user's environment asks for (LC_ALL, LC_MESSAGES, LANG), as a code such
/// as "de"; "en" when it asks for none that is available.
std::string environmentLanguage();

}  // namespace kestms
