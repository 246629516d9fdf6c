#pragma once

#include <mutex>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "tool/scene/Context.h"
#include "tool/scene/OpenedSet.h"

namespace kestgdal {

/// The host and its codecs, once for the whole process.
///
/// Never destroyed: a program may leave datasets open, which GDAL closes when the process ends,
/// and by then the statics of this module may be gone. Codecs are asked by one thread at a time;
/// frames are read without a lock.
class SharedSession {
  public:
    static SharedSession& instance();

    /// Opens the set that the argument names, as on the tool's command line. `scene` chooses one of
    /// several, `products` is a catalogue beside those known already; both may be empty. `warnings`
    /// gets a line for each component that is left out. Throws what the tool reports as the reason.
    kestms::OpenedSet open(const std::string& argument, const std::string& scene,
                           const std::string& products, std::string& warnings);
    /// The files that make up a set: headers, and the pixels that they describe.
    std::vector<std::string> filesOf(const kestms::OpenedSet& set);

    /// Counts the datasets that may read. With the last of them the files of components close:
    /// GDAL destroys what is still open when its drivers go.
    void addReader();
    void removeReader();

  private:
    SharedSession();
    void useProducts(const std::string& file);

    std::mutex mutex_;  // guards all
    std::istringstream noInput_;
    std::ostringstream output_;
    std::ostringstream warnings_;
    kestms::Context context_{noInput_, output_, warnings_};
    kestms::Session* session_ = nullptr;  ///< the context's, once created
    std::vector<std::string> usualProducts_;
    std::optional<std::vector<std::string>> products_;  ///< in use
    int readers_ = 0;
};

/// Keeps files of components open for its lifetime.
class Reader {
  public:
    Reader() { SharedSession::instance().addReader(); }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { SharedSession::instance().removeReader(); }
};

}  // namespace kestgdal
