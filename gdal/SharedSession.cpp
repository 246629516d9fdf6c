#include "gdal/SharedSession.h"

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
}

kestms::OpenedSet SharedSession::open(const std::vector<std::string>& arguments,
                                      std::string& warnings) {
    const std::lock_guard<std::mutex> lock(mutex_);
    warnings_.str({});
    context_.inputs = {};
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
    if (--readers_ == 0) {
        context_.session().closeFiles();
    }
}

}  // namespace kestgdal
