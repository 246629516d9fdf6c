#pragma once

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>

// A network on one machine.

namespace fakes {

inline sockaddr_in localAddress(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    return address;
}

/// A local socket that counts connections.
class Listener {
  public:
    Listener() : socket_(socket(AF_INET, SOCK_STREAM, 0)) {
        sockaddr_in address = localAddress(0);
        socklen_t size = sizeof address;
        auto* plain = reinterpret_cast<sockaddr*>(&address);
        if (bind(socket_, plain, size) != 0 || listen(socket_, 4) != 0 ||
            getsockname(socket_, plain, &size) != 0) {
            throw std::runtime_error("no socket");
        }
        port_ = ntohs(address.sin_port);
    }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;
    ~Listener() { close(socket_); }

    std::string url() const { return "/vsicurl/http://127.0.0.1:" + std::to_string(port_) + "/o"; }
    int port() const { return port_; }
    bool isCalled() const {
        pollfd waiting{socket_, POLLIN, 0};
        return poll(&waiting, 1, 0) > 0;
    }

  private:
    int socket_;
    int port_ = 0;
};

/// Serves the files of a folder for its lifetime.
class WebServer {
  public:
    explicit WebServer(const std::string& folder) : port_(freePort()), id_(fork()) {
        if (id_ == 0) {
            const int nowhere = open("/dev/null", O_WRONLY);
            dup2(nowhere, STDOUT_FILENO);
            dup2(nowhere, STDERR_FILENO);
            execlp("python3", "python3", "-m", "http.server", "--bind", "127.0.0.1", "--directory",
                   folder.c_str(), std::to_string(port_).c_str(), nullptr);
            _exit(127);
        }
        for (int i = 0; i < 200 && !answers(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
        }
    }
    WebServer(const WebServer&) = delete;
    WebServer& operator=(const WebServer&) = delete;
    ~WebServer() {
        kill(id_, SIGKILL);
        waitpid(id_, nullptr, 0);
    }

    std::string url() const { return "http://127.0.0.1:" + std::to_string(port_) + "/"; }

  private:
    static int freePort() {
        const Listener listener;
        return listener.port();
    }
    bool answers() const {
        const int client = socket(AF_INET, SOCK_STREAM, 0);
        const sockaddr_in address = localAddress(port_);
        const bool answers =
            connect(client, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
        close(client);
        return answers;
    }

    int port_;
    pid_t id_;
};

}  // namespace fakes
