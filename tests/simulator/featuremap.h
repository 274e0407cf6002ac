// The features of a module, as a consumer sees them.
#ifndef TESTS_SIMULATOR_FEATUREMAP_H
#define TESTS_SIMULATOR_FEATUREMAP_H

#include <memory>
#include <string>
#include <vector>

#include <GenApi/GenApi.h>

#include "tests/simulator/producer.h"

// A node map of the description that a port announces, connected with the port. Port accesses that
// fail throw, and LastCode tells why.
class FeatureMap : public GENAPI_NAMESPACE::IPort {
  public:
    // Takes the last URL of the port, which is that of its own description.
    FeatureMap(const Producer& producer, GenTL::PORT_HANDLE port);

    GENAPI_NAMESPACE::INodeMap& Nodes() { return *map_._Ptr; }

    // Any feature with a value, as text.
    std::string Get(const char* name);
    void Set(const char* name, const std::string& text);

    int64_t Integer(const char* name);
    void SetInteger(const char* name, int64_t value);
    double Float(const char* name);
    void Execute(const char* name);

    // Whether there is a node of this name that can be read now.
    bool IsReadable(const char* name);

    // What the last access to the port gave.
    GenTL::GC_ERROR LastCode() const { return lastCode_; }

    GENAPI_NAMESPACE::EAccessMode GetAccessMode() const override { return GENAPI_NAMESPACE::RW; }
    void Read(void* buffer, int64_t address, int64_t length) override;
    void Write(const void* buffer, int64_t address, int64_t length) override;

  private:
    template <typename Interface>
    Interface& As(const char* name);
    std::vector<char> Description(uint32_t url);
    Info UrlInfo(uint32_t url, int32_t command);
    void Check(GenTL::GC_ERROR code, int64_t address);

    const Producer& producer_;
    const GenTL::PORT_HANDLE port_;
    GenTL::GC_ERROR lastCode_ = GenTL::GC_ERR_SUCCESS;
    GENAPI_NAMESPACE::CNodeMapRef map_;
};

// Reads each feature that can be read, and returns how many there were; those that throw fail the
// test.
size_t ReadAllFeatures(FeatureMap& map);

#endif  // TESTS_SIMULATOR_FEATUREMAP_H
