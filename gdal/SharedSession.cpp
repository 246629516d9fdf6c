#include "gdal/SharedSession.h"

#include <cpl_conv.h>

#include <array>
#include <limits>
#include <set>
#include <string_view>
#include <utility>

#include "tool/scene/Components.h"
#include "tool/terminal/Failure.h"

namespace kestgdal {
namespace {

/// A message of the tool with the driver's options instead of the tool's.
std::string inTermsOfGdal(std::string text) {
    constexpr std::array<std::pair<std::string_view, std::string_view>, 5> kTerms = {{
        {"--scene NAME", "the open option SCENE=NAME"},
        {" (--skip-misfits leaves out what differs)", ""},
        {" (--with-quality takes what fits)", ""},
        {" (--allow-remote reads it)", ""},
        {" (--allow-vrt reads it)", ""},
    }};
    for (const auto& [tool, driver] : kTerms) {
        for (std::size_t at = text.find(tool); at != std::string::npos; at = text.find(tool, at)) {
            text.replace(at, tool.size(), driver);
            at += driver.size();
        }
    }
    return text;
}

}  // namespace

SharedSession& SharedSession::instance() {
    static auto* const session = new SharedSession;
    return *session;
}

SharedSession::SharedSession() {
    // A program such as QGIS runs for days while files change under it.
    context_.changes = kestms::Session::Changes::Notice;
    // The policy holds for the whole process: kestms, if it loads the driver, may allow more.
    context_.paths = Pyxis::StandardCodecs::allowed();
    context_.paths.archives = true;
    // The Python package learns from the message which scenes there are.
    context_.mostScenesNamed = std::numeric_limits<std::size_t>::max();
    if (const char* products = CPLGetConfigOption("KESTMS_PRODUCTS", nullptr)) {
        usualProducts_.emplace_back(products);
    }
    context_.lead = "";
}

/// The catalogue holds for the whole process, but a set asks it only while it is opened.
void SharedSession::useProducts(const std::string& file) {
    std::vector<std::string> files = usualProducts_;
    if (!file.empty()) {
        files.insert(files.begin(), file);
    }
    if (products_ == files) {
        return;
    }
    products_.reset();  // After an unusable one there is none.
    context_.products.files = files;
    if (session_ == nullptr) {
        session_ = &context_.session();
    } else {
        session_->useProducts(context_.products);
    }
    products_ = std::move(files);
}

kestms::OpenedSet SharedSession::open(const std::string& argument, const std::string& scene,
                                      const std::string& products, std::string& warnings) {
    // One may name this very set, and GDAL would wait here for itself.
    const Pyxis::WithoutVirtualRasters withoutVirtualRasters;
    const std::lock_guard<std::mutex> lock(mutex_);
    warnings_.str({});
    context_.inputs = {};
    context_.scene = scene;
    try {
        useProducts(products);
        kestms::OpenedSet set = kestms::openSet(context_, {argument});
        warnings = inTermsOfGdal(warnings_.str());
        return set;
    } catch (const kestms::Failure& failure) {
        throw kestms::Failure(failure.code(), inTermsOfGdal(failure.what()));
    }
}

std::vector<std::string> SharedSession::filesOf(const kestms::OpenedSet& set) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> files;
    std::set<std::string> known;
    for (const std::string& component : set.files()) {
        for (std::string& file : kestms::filesOf(component)) {
            if (known.insert(file).second) {
                files.push_back(std::move(file));
            }
        }
    }
    return files;
}

void SharedSession::addReader() {
    const std::lock_guard<std::mutex> lock(mutex_);
    ++readers_;
}

void SharedSession::removeReader() {
    const std::lock_guard<std::mutex> lock(mutex_);
    if (--readers_ == 0 && session_ != nullptr) {
        session_->closeFiles();
    }
}

}  // namespace kestgdal
