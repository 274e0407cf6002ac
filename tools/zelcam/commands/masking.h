// Hides private data in a text that is shown to others.
#pragma once

#include <set>
#include <string>

namespace ZelTool {

// Replaces network addresses and secrets in a text by "***". It recognises addresses by their form;
// secrets must be added.
class Mask {
  public:
    // A mask that is not active leaves texts as they are.
    explicit Mask(bool active = true) : active_(active) {}

    // Ignores texts of fewer than 4 characters, which would match too much.
    void AddSecret(const std::string& secret);

    std::string Apply(const std::string& text) const;

  private:
    bool active_;
    std::set<std::string> secrets_;
};

// Whether the name of a feature shows that its value is private: a serial number, a name given by
// the user, an address.
bool IsSecretFeature(const std::string& name);

}  // namespace ZelTool
