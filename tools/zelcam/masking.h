// Making a text fit to be shown to others.
#ifndef ZELCAM_TOOLS_ZELCAM_MASKING_H
#define ZELCAM_TOOLS_ZELCAM_MASKING_H

#include <set>
#include <string>

// Replaces addresses and secrets in a text by "***". Network addresses are found by their form;
// what else is secret must be told.
class Mask {
  public:
    // A text of fewer than 4 characters cannot be found among others and is left alone.
    void AddSecret(const std::string& secret);

    std::string Apply(const std::string& text) const;

  private:
    std::set<std::string> secrets_;
};

// Tells by the name of a feature that its value is not for others: a serial number, a name that the
// user gave, an address.
bool IsSecretFeature(const std::string& name);

#endif  // ZELCAM_TOOLS_ZELCAM_MASKING_H
