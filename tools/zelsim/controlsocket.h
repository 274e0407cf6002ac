// The socket through which users control the running program.
#pragma once

#include <functional>
#include <list>
#include <memory>
#include <string>
#include <vector>

struct pollfd;

namespace ZelSimTool {

// A file descriptor, closed with the object.
class Descriptor {
  public:
    explicit Descriptor(int number) : number_(number) {}
    ~Descriptor();
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    int Number() const { return number_; }

  private:
    const int number_;
};

// A socket in the file system, for its owner only, which is removed with the object. Clients send
// commands, a line each; the answer to each ends with the line "ok" or "error: " and the reason.
// Thread-bound.
class ControlSocket {
  public:
    // Answers a command with whole lines, or throws a std::exception with the reason.
    using Answer = std::function<std::string(const std::string& command)>;

    // Takes the place of a socket that an ended program left. Throws std::runtime_error.
    ControlSocket(std::string path, Answer answer);
    ~ControlSocket();
    ControlSocket(const ControlSocket&) = delete;
    ControlSocket& operator=(const ControlSocket&) = delete;

    // What to poll for, and what to do then. Neither waits.
    void AddTo(std::vector<pollfd>& wanted) const;
    void Serve();

  private:
    struct Client;

    void Accept();
    bool Serve(Client& client);
    bool Reply(Client& client, const std::string& command);

    const std::string path_;
    const Answer answer_;
    std::unique_ptr<Descriptor> listener_;
    std::list<Client> clients_;
};

// Sends a command to the program behind a socket, and prints its answer but for the last line.
// Throws std::runtime_error, also with the reason of a refusal.
std::string TellProgram(const std::string& path, const std::string& command);

}  // namespace ZelSimTool
