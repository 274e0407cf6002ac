// What all nodes with an integer value share: the interface, checking, caching, text forms, and
// how floating-point references see them. A kind says where its value and limits come from.
#pragma once

#include <memory>

#include <GenApi/IInteger.h>

#include "genapi/nodes/node.h"
#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class IntegerBase : public Node, public IInteger {
  public:
    using Node::Node;
    ~IntegerBase() override;

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;

    void SetValue(int64_t value, bool verify = true) override;
    IInteger& operator=(int64_t value) override;
    int64_t GetValue(bool verify = false, bool ignoreCache = false) override;
    int64_t operator()() override { return GetValue(); }
    int64_t operator*() override { return GetValue(); }
    int64_t GetMin() override;
    int64_t GetMax() override;
    EIncMode GetIncMode() override;
    int64_t GetInc() override;
    int64_autovector_t GetListOfValidValues(bool bounded = true) override;
    ERepresentation GetRepresentation() override;
    GENICAM_NAMESPACE::gcstring GetUnit() override;
    void ImposeMin(int64_t value) override;
    void ImposeMax(int64_t value) override;

    std::int64_t getInt(ReadOptions options) final;
    void setInt(std::int64_t value, bool verify) final;
    std::int64_t minInt() final;
    std::int64_t maxInt() final;
    std::int64_t incInt() final { return ownInc(); }
    double getFloat(ReadOptions options) final;
    void setFloat(double value, bool verify) final;
    double minFloat() final;
    double maxFloat() final;
    bool hasInc() override { return true; }
    double incFloat() override;

  protected:
    virtual std::int64_t readValue(ReadOptions options) = 0;
    virtual void writeValue(std::int64_t value, bool verify) = 0;
    virtual std::int64_t ownMin() = 0;
    virtual std::int64_t ownMax() = 0;
    virtual std::int64_t ownInc() { return 1; }
    virtual Slice<std::int64_t> validValues() { return {}; }
    // Whether a verified read must verify the nodes below, too.
    virtual bool restsOnNodes() const { return true; }
    // Whether a read past the cache leaves what it found in it, instead of nothing.
    virtual bool refreshesCache() const { return false; }

  private:
    struct Limits {
        std::int64_t min = kInt64Min;
        std::int64_t max = kInt64Max;
    };

    std::int64_t readableInt(ReadOptions options);
    Limits& imposed();
    void checkRange(std::int64_t value);

    std::int64_t value_ = 0;
    std::unique_ptr<Limits> imposed_;  // limits set by the application, which few nodes have
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
