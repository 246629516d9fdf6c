#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tool/scene/InputFiles.h"
#include "tool/scene/Products.h"
#include "tool/scene/Scenes.h"
#include "tool/scene/Session.h"
#include "tool/terminal/Failure.h"

namespace kestms {

/// What a run of the tool works with. Commands set `action` when they are chosen.
class Context {
  public:
    Context(std::istream& input, std::ostream& output, std::ostream& errors);

    /// The host, set up at the first call.
    Session& session();
    /// Has a file on the network that an argument names be read.
    void nameRemote(const std::string& path);
    /// One line on the error stream that does not end the command; none when the user wants quiet.
    void warn(const std::string& file, const std::string& reason) const;
    void note(const std::string& text) const;
    /// The line that ends a command.
    void fail(const std::string& text) const;
    /// What tables have room for; 0 for any width.
    std::size_t tableColumns() const;

    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    std::string language;  ///< empty: by the environment
    bool quiet = false;    ///< no warnings, notes and progress
    bool wide = false;     ///< tables are not fitted to the terminal
    ProductChoice products;
    /// What components may be beside plain files.
    Pyxis::PathPolicy paths{.archives = true};
    /// Whether arguments are the user's own words, which may name files on the network.
    bool takesRemoteNames = false;
    /// Of several scenes in a folder, the one to take.
    std::string scene;
    bool withQuality = false;  ///< quality and other layers are taken when they fit
    bool skipMisfits = false;  ///< so are sets, without the components that do not fit
    /// Components that may go when they do not fit.
    std::set<std::string> layers;
    /// What the command was given to read.
    InputFiles inputs;
    /// Whether the command lists layers of the scene (quality, masks, angles) beside the set, then
    /// those that are no part of it.
    bool listsLayers = false;
    std::vector<SetAside> layersAside;
    /// Whether files may change while the program runs.
    Session::Changes changes = Session::Changes::Ignore;
    /// The chosen command, run once the whole command line is understood.
    std::function<ExitCode()> action;

  private:
    std::unique_ptr<Session> session_;
};

}  // namespace kestms
