#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <functional>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "tests/fakes/Paths.h"
#include "tests/fakes/Rasters.h"
#include "tests/tool/RunTool.h"

// Runs the built tool, and GDAL's programs on its output, as separate processes.

namespace kestms {

class Process {
  public:
    /// `prepare` is called in the new process: limits, signals.
    explicit Process(const Strings& arguments, const std::function<void()>& prepare = {}) {
        std::vector<char*> argv;
        for (const std::string& argument : arguments) {
            argv.push_back(const_cast<char*>(argument.c_str()));
        }
        argv.push_back(nullptr);
        id_ = fork();
        if (id_ == 0) {
            for (const auto& [descriptor, name] :
                 {std::pair(STDOUT_FILENO, "out"), {STDERR_FILENO, "err"}}) {
                dup2(open((directory_ / name).c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600),
                     descriptor);
            }
            if (prepare) {
                prepare();
            }
            execvp(argv[0], argv.data());
            _exit(127);
        }
    }
    Process(const Process&) = delete;
    Process& operator=(const Process&) = delete;

    void signal(int number) const { kill(id_, number); }

    /// Waits until the process has set a handler for the signal, however busy the machine is.
    void awaitHandler(int number) const {
        constexpr int kBase = 16;
        const std::string status = "/proc/" + std::to_string(id_) + "/status";
        for (int i = 0; i < 1000; ++i) {
            const std::string text = fakes::readFile(status);
            const std::size_t mask = text.find("SigCgt:");
            if (mask != std::string::npos &&
                ((std::stoull(text.substr(mask + 7), nullptr, kBase) >> (number - 1)) & 1U) != 0) {
                return;
            }
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }
    std::string errorsSoFar() const { return fakes::readFile(directory_ / "err"); }

    /// The exit code, or the negative number of the signal that ended the process.
    Outcome wait() {
        int status = 0;
        waitpid(id_, &status, 0);
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status),
                fakes::readFile(directory_ / "out"), fakes::readFile(directory_ / "err")};
    }

  private:
    fakes::TempDirectory directory_;
    pid_t id_ = -1;
};

/// Runs the built tool, in English.
inline Outcome runKestms(const Strings& arguments, const std::function<void()>& prepare = {}) {
    return Process(joined({fakes::kTool, "--language", "en"}, arguments), prepare).wait();
}

/// Runs a program that must succeed.
inline Outcome runProgram(const Strings& arguments) {
    const Outcome outcome = Process(arguments).wait();
    if (outcome.code != 0) {
        throw std::runtime_error(arguments[0] + ": " + outcome.err);
    }
    return outcome;
}

/// The output of `gdalinfo` for a raster.
inline nlohmann::json gdalInfo(const std::string& raster) {
    return runProgram({"gdalinfo", "-json", "-checksum", "-mdd", "all", raster}).json();
}

/// A band's pixels line by line, as `gdal_translate` reads them with the options.
inline std::vector<double> gdalPixels(const std::string& raster, int band,
                                      const Strings& options = {}) {
    const fakes::TempDirectory directory;
    const std::string file = directory / "pixels";
    const std::string number = std::to_string(band);
    runProgram(joined(
        {"gdal_translate", "-q", "-of", "ENVI", "-ot", "Float64", "-b", number, raster, file},
        options));
    const std::string bytes = fakes::readFile(file);
    std::vector<double> pixels(bytes.size() / sizeof(double));
    bytes.copy(reinterpret_cast<char*>(pixels.data()), bytes.size());
    return pixels;
}

}  // namespace kestms
