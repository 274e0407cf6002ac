// What all nodes with a floating-point value share: the interface, checking, caching, text forms,
// and how integer references see them. A kind says where its value and limits come from.
#pragma once

#include <memory>

#include <GenApi/IFloat.h>

#include "genapi/nodes/node.h"
#include "genapi/nodes/rounding.h"

namespace GENAPI_NAMESPACE {
namespace Engine {

class FloatBase : public Node, public IFloat {
  public:
    using Node::Node;
    ~FloatBase() override;

    EAccessMode GetAccessMode() const override { return Node::GetAccessMode(); }
    INode* GetNode() override { return this; }
    GENICAM_NAMESPACE::gcstring ToString(bool verify = false, bool ignoreCache = false) override;
    void FromString(const GENICAM_NAMESPACE::gcstring& text, bool verify = true) override;
    bool IsValueCacheValid() const override;

    void SetValue(double value, bool verify = true) override;
    IFloat& operator=(double value) override;
    double GetValue(bool verify = false, bool ignoreCache = false) override;
    double operator()() override { return GetValue(); }
    double operator*() override { return GetValue(); }
    double GetMin() override;
    double GetMax() override;
    bool HasInc() override;
    EIncMode GetIncMode() override;
    double GetInc() override;
    double_autovector_t GetListOfValidValues(bool bounded = true) override;
    ERepresentation GetRepresentation() override;
    GENICAM_NAMESPACE::gcstring GetUnit() const override;
    EDisplayNotation GetDisplayNotation() const override;
    int64_t GetDisplayPrecision() const override;
    void ImposeMin(double value) override;
    void ImposeMax(double value) override;

    std::int64_t getInt(ReadOptions options) final;
    void setInt(std::int64_t value, bool verify) final;
    std::int64_t minInt() final;
    std::int64_t maxInt() final;
    std::int64_t incInt() final { return 1; }
    double getFloat(ReadOptions options) final;
    void setFloat(double value, bool verify) final;
    double minFloat() final;
    double maxFloat() final;
    bool hasInc() override { return false; }
    double incFloat() override;

  protected:
    virtual double readValue(ReadOptions options) = 0;
    virtual void writeValue(double value, bool verify) = 0;
    virtual double ownMin() = 0;
    virtual double ownMax() = 0;
    // Whether a verified read must verify the nodes below, too.
    virtual bool restsOnNodes() const { return true; }
    // Whether a read past the cache leaves what it found in it, instead of nothing.
    virtual bool refreshesCache() const { return false; }

  private:
    struct Limits {
        double min = -kDoubleMax;
        double max = kDoubleMax;
    };

    double readableFloat(ReadOptions options);
    Presentation shown() const;
    std::string textInRange(double value);
    Limits& imposed();
    void checkRange(double value);

    double value_ = 0;
    std::unique_ptr<Limits> imposed_;  // limits set by the application, which few nodes have
};

}  // namespace Engine
}  // namespace GENAPI_NAMESPACE
