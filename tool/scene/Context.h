#pragma once

#include <functional>
#include <iosfwd>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "tool/scene/InputFiles.h"
#include "tool/scene/Products.h"
#include "tool/scene/SceneNames.h"
#include "tool/scene/Scenes.h"
#include "tool/scene/Session.h"
#include "tool/terminal/Failure.h"

namespace kestms {

/// The state of one run of the tool. Commands set `action` when they are chosen.
class Context {
  public:
    Context(std::istream& input, std::ostream& output, std::ostream& errors);

    /// The host, created at the first call.
    Session& session();
    /// Allows a file on the network that an argument names.
    void nameRemote(const std::string& path);
    /// Prints one line on the error stream, without ending the command; nothing with --quiet.
    void warn(const std::string& file, const std::string& reason) const;
    void note(const std::string& text) const;
    /// Prints the line that ends a command.
    void fail(const std::string& text) const;
    /// The width of tables; 0 for any width.
    std::size_t tableColumns() const;

    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    std::string lead = "kestms: ";  ///< of each line on the error stream
    std::string language;           ///< empty: that of the environment
    bool quiet = false;             ///< no warnings, notes and progress
    bool wide = false;              ///< tables are not fitted to the terminal
    ProductChoice products;
    /// What components may be besides plain files.
    Pyxis::PathPolicy paths{.archives = true};
    /// Whether arguments come from the user, and so may name files on the network.
    bool takesRemoteNames = false;
    /// The scene to use if a folder has several.
    std::string scene;
    /// How many scenes the message names that asks to choose one.
    std::size_t mostScenesNamed = kMostScenesNamed;
    bool withQuality = false;  ///< quality and other layers are included if they fit
    bool skipMisfits = false;  ///< components that do not fit are left out
    /// Components that may be left out if they do not fit.
    std::set<std::string> layers;
    /// The inputs of the command.
    InputFiles inputs;
    /// Whether the command lists layers of the scene (quality, masks, angles) and pictures beside
    /// the set, then those outside it.
    bool listsLayers = false;
    std::vector<SetAside> layersAside;
    /// Whether files may change while the program runs.
    Session::Changes changes = Session::Changes::Ignore;
    /// The chosen command, run after the whole command line is parsed.
    std::function<ExitCode()> action;

  private:
    std::unique_ptr<Session> session_;
};

}  // namespace kestms
