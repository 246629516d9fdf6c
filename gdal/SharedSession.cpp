#include "gdal/SharedSession.h"

#include <cpl_conv.h>

#include <algorithm>
#include <utility>

#include "tool/scene/Inputs.h"

namespace kestgdal {

SharedSession& SharedSession::instance() {
    static auto* const session = new SharedSession;
    return *session;
}

SharedSession::SharedSession() {
    // A program such as QGIS runs for days while files change under it.
    context_.changes = kestms::Session::Changes::Notice;
    // Catalogues hold for the whole process, so they are no option of one data set.
    if (const char* products = CPLGetConfigOption("KESTMS_PRODUCTS", nullptr)) {
        context_.products.files.emplace_back(products);
    }
}

kestms::OpenedSet SharedSession::open(const std::vector<std::string>& arguments,
                                      std::string& warnings) {
    const std::lock_guard<std::mutex> lock(mutex_);
    warnings_.str({});
    context_.inputs = {};
    session_ = &context_.session();
    kestms::OpenedSet set = kestms::openSet(context_, arguments);
    warnings = warnings_.str();
    return set;
}

std::vector<std::string> SharedSession::filesOf(const kestms::OpenedSet& set) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::vector<std::string> files;
    for (const std::string& component : set.files()) {
        for (std::string& file : kestms::filesOf(component)) {
            if (std::find(files.begin(), files.end(), file) == files.end()) {
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
