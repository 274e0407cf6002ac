#include "tools/zelsim/controlsocket.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <poll.h>
#include <stdexcept>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace ZelSimTool {

namespace {

constexpr size_t kMaxClients = 16;
constexpr size_t kMaxCommand = 4096;
constexpr const char* kDone = "ok\n";
constexpr const char* kRefused = "error: ";

[[noreturn]] void Fail(const std::string& path, const std::string& reason) {
    throw std::runtime_error(path + ": " + reason);
}

sockaddr_un NativeOf(const std::string& path) {
    sockaddr_un native{};
    native.sun_family = AF_UNIX;
    if (path.empty() || path.size() >= sizeof native.sun_path) {
        Fail(path, "no name of a socket has this length");
    }
    std::memcpy(native.sun_path, path.c_str(), path.size() + 1);
    return native;
}

std::unique_ptr<Descriptor> NewSocket(const std::string& path) {
    auto made = std::make_unique<Descriptor>(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (made->Number() < 0) Fail(path, std::strerror(errno));
    return made;
}

bool Connect(const Descriptor& from, const std::string& path) {
    const sockaddr_un native = NativeOf(path);
    return connect(from.Number(), reinterpret_cast<const sockaddr*>(&native), sizeof native) == 0;
}

// Whether a socket is there that nobody listens to.
bool IsLeftOver(const std::string& path) {
    struct stat status {};
    if (lstat(path.c_str(), &status) != 0 || !S_ISSOCK(status.st_mode)) return false;
    return !Connect(*NewSocket(path), path) && errno == ECONNREFUSED;
}

}  // namespace

Descriptor::~Descriptor() {
    if (number_ >= 0) close(number_);
}

struct ControlSocket::Client {
    explicit Client(int number) : descriptor(number) {}

    Descriptor descriptor;
    std::string received;  // of a command whose end is missing
};

ControlSocket::ControlSocket(std::string path, Answer answer)
    : path_(std::move(path)), answer_(std::move(answer)), listener_(NewSocket(path_)) {
    const sockaddr_un native = NativeOf(path_);
    if (IsLeftOver(path_)) unlink(path_.c_str());
    // Nobody else may connect, from the beginning.
    const mode_t before = umask(0177);
    const int failed =
        bind(listener_->Number(), reinterpret_cast<const sockaddr*>(&native), sizeof native);
    const int error = errno;
    umask(before);
    if (failed != 0) Fail(path_, std::strerror(error));
    if (listen(listener_->Number(), kMaxClients) != 0) Fail(path_, std::strerror(errno));
}

ControlSocket::~ControlSocket() {
    unlink(path_.c_str());
}

void ControlSocket::AddTo(std::vector<pollfd>& wanted) const {
    if (clients_.size() < kMaxClients) wanted.push_back({listener_->Number(), POLLIN, 0});
    for (const Client& client : clients_)
        wanted.push_back({client.descriptor.Number(), POLLIN, 0});
}

void ControlSocket::Serve() {
    clients_.remove_if([this](Client& client) { return !Serve(client); });
    if (clients_.size() < kMaxClients) Accept();
}

void ControlSocket::Accept() {
    pollfd wait{listener_->Number(), POLLIN, 0};
    if (poll(&wait, 1, 0) != 1) return;
    const int number = accept4(listener_->Number(), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
    if (number >= 0) clients_.emplace_back(number);
}

// False when the client is gone.
bool ControlSocket::Serve(Client& client) {
    std::array<char, kMaxCommand> bytes{};
    const ssize_t size = recv(client.descriptor.Number(), bytes.data(), bytes.size(), 0);
    if (size < 0) return errno == EAGAIN || errno == EINTR;
    if (size == 0) return false;
    client.received.append(bytes.data(), static_cast<size_t>(size));
    for (;;) {
        const size_t end = client.received.find('\n');
        if (end == std::string::npos) return client.received.size() <= kMaxCommand;
        const std::string command = client.received.substr(0, end);
        client.received.erase(0, end + 1);
        if (!Reply(client, command)) return false;
    }
}

// False for a client that does not read its answers.
bool ControlSocket::Reply(Client& client, const std::string& command) {
    std::string answer;
    try {
        answer = answer_(command) + kDone;
    } catch (const std::exception& error) {
        answer = kRefused + std::string(error.what()) + '\n';
    }
    const ssize_t sent =
        send(client.descriptor.Number(), answer.data(), answer.size(), MSG_NOSIGNAL);
    return sent == static_cast<ssize_t>(answer.size());
}

std::string TellProgram(const std::string& path, const std::string& command) {
    const auto program = NewSocket(path);
    if (!Connect(*program, path)) Fail(path, std::strerror(errno));
    const std::string line = command + '\n';
    if (send(program->Number(), line.data(), line.size(), MSG_NOSIGNAL) !=
        static_cast<ssize_t>(line.size()))
        Fail(path, std::strerror(errno));

    std::string answer;
    std::array<char, 4096> bytes{};
    for (;;) {
        const size_t last =
            answer.size() < 2 ? std::string::npos : answer.rfind('\n', answer.size() - 2);
        const size_t begin = last == std::string::npos ? 0 : last + 1;
        const std::string end = answer.substr(begin);
        if (end == kDone) return answer.substr(0, begin);
        if (end.rfind(kRefused, 0) == 0 && end.back() == '\n') {
            throw std::runtime_error(
                end.substr(std::strlen(kRefused), end.size() - 1 - std::strlen(kRefused)));
        }
        const ssize_t size = recv(program->Number(), bytes.data(), bytes.size(), 0);
        if (size < 0 && errno == EINTR) continue;
        if (size <= 0) Fail(path, "the program ended before it answered");
        answer.append(bytes.data(), static_cast<size_t>(size));
    }
}

}  // namespace ZelSimTool
