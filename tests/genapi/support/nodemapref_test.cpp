// Who owns a node map.
#include <GenApi/NodeMapRef.h>
#include <gmock/gmock.h>

using namespace GENAPI_NAMESPACE;
using GENICAM_NAMESPACE::AccessException;
using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::gcstring_vector;
using GENICAM_NAMESPACE::RuntimeException;

namespace {

// Counts how many of its kind are alive.
class Map final : public INodeMap, public IDestroy {
  public:
    explicit Map(int& alive) : alive_(alive) { ++alive_; }
    virtual ~Map() { --alive_; }

    void GetNodes(NodeList_t&) const override {}
    INode* GetNode(const gcstring&) const override { return nullptr; }
    void InvalidateNodes() const override {}
    bool Connect(IPort*, const gcstring&) const override { return false; }
    bool Connect(IPort*) const override { return false; }
    bool Connect(IPortStacked*, const gcstring&) override { return false; }
    bool Connect(IPortStacked*) override { return false; }
    gcstring GetDeviceName() override { return "fake"; }
    void Poll(int64_t) override {}
    CLock& GetLock() const override { return lock_; }
    uint64_t GetNumNodes() const override { return 0; }
    bool ParseSwissKnifes(gcstring_vector*) const override { return true; }
    void Destroy() override { delete this; }

  private:
    int& alive_;
    mutable CLock lock_;
};

TEST(NodeMapRef, LastReferenceEndsTheMap) {
    int alive = 0;
    CNodeMapRef first(new Map(alive));
    {
        CNodeMapRef second(first);
        CNodeMapRef third;
        third = second;
        first._Destroy();
        EXPECT_EQ(first._Ptr, nullptr);
        EXPECT_EQ(third._GetDeviceName(), "fake");
        EXPECT_EQ(alive, 1);
    }
    EXPECT_EQ(alive, 0);
}

TEST(NodeMapRef, AssignedMapReplacesTheFormer) {
    int alive = 0;
    CNodeMapRef ref(new Map(alive));
    ref = ref._Ptr;
    EXPECT_EQ(alive, 1);
    ref = new Map(alive);
    EXPECT_EQ(alive, 1);
    EXPECT_EQ(ref._GetDeviceName(), "fake");
}

TEST(NodeMapRef, RefusesOperationsWithoutAMapAndLoadsWithOne) {
    CNodeMapRef empty;
    NodeList_t nodes;
    EXPECT_THROW(empty._GetDeviceName(), AccessException);
    EXPECT_THROW(empty._GetNodes(nodes), AccessException);
    EXPECT_THROW(empty._Poll(1), AccessException);

    int alive = 0;
    CNodeMapRef full(new Map(alive));
    EXPECT_THROW(full._LoadXMLFromString("no description"), RuntimeException);
    EXPECT_THROW(full._LoadXMLFromZIPData(nullptr, 0), RuntimeException);
    EXPECT_EQ(full._GetDeviceName(), "fake");
}

// Parameters that remember the maps they were given.
class Parameters {
  protected:
    virtual ~Parameters() {}
    // NOLINTNEXTLINE(readability-identifier-naming): CNodeMapRefT calls it by this name
    virtual void _Initialize(INodeMap* map) { maps.push_back(map); }
    std::vector<INodeMap*> maps;
};

struct Camera : CNodeMapRefT<Parameters> {
    using CNodeMapRefT<Parameters>::CNodeMapRefT;
    const std::vector<INodeMap*>& Seen() const { return maps; }
};

TEST(NodeMapRef, TellsTheParametersOfEveryMap) {
    int alive = 0;
    const Camera first(new Map(alive));
    EXPECT_THAT(first.Seen(), testing::ElementsAre(first._Ptr));
    const Camera second(first);
    EXPECT_THAT(second.Seen(), testing::ElementsAre(first._Ptr));
}

}  // namespace
