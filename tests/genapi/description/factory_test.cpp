// The factory: its states, its inputs, injected nodes and extracted subtrees.
#include <cstdio>
#include <fstream>
#include <memory>

#include <Base/GCException.h>
#include <GenApi/IDestroy.h>
#include <GenApi/INode.h>
#include <GenApi/NodeMapFactory.h>
#include <gtest/gtest.h>

#include "tests/genapi/description/archives.h"
#include "tests/genapi/description/documents.h"

namespace test {
namespace {

using GENICAM_NAMESPACE::gcstring;
using GENICAM_NAMESPACE::InvalidArgumentException;
using GENICAM_NAMESPACE::LogicalErrorException;
using GENICAM_NAMESPACE::RuntimeException;

struct EndMap {
    void operator()(INodeMap* map) const { dynamic_cast<IDestroy*>(map)->Destroy(); }
};
using Map = std::unique_ptr<INodeMap, EndMap>;

Map Make(CNodeMapFactory& factory) {
    return Map(factory.CreateNodeMap("Camera"));
}

CNodeMapFactory FactoryOf(const std::string& nodes) {
    return CNodeMapFactory(gcstring(Document(nodes).c_str()));
}

TEST(Factory, GoesThroughItsStates) {
    CNodeMapFactory factory = FactoryOf(Integer("I"));
    CNodeMapFactory copy = factory;
    EXPECT_FALSE(factory.IsEmpty());
    EXPECT_FALSE(factory.IsLoaded());
    factory.LoadAndInject();
    EXPECT_TRUE(copy.IsLoaded());
    EXPECT_FALSE(copy.IsPreprocessed());
    const Map first = Make(factory);
    EXPECT_TRUE(copy.IsPreprocessed());
    EXPECT_TRUE(copy.IsCameraDescriptionFileDataReleased());
    const Map second = Make(copy);
    EXPECT_NE(first->GetNode("I"), second->GetNode("I"));
    EXPECT_STREQ("Camera", second->GetNode("I")->GetDeviceName().c_str());
}

TEST(Factory, RefusesWhatCannotBe) {
    CNodeMapFactory empty;
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(
        "Cannot preprocess, no camera description file data has been provided to the node "
        "map factory.",
        TextOf<LogicalErrorException>([&] { Make(empty); }));
    EXPECT_EQ(
        "The pointer to the camera description file buffer passed to the node map factory "
        "must not be NULL.",
        TextOf<InvalidArgumentException>(
            [] { CNodeMapFactory(ContentType_Xml, static_cast<const void*>(nullptr), 1); }));
    EXPECT_EQ(
        "The camera description file buffer passed to the node map factory must not be "
        "empty.",
        TextOf<InvalidArgumentException>([] { CNodeMapFactory(gcstring("")); }));
    EXPECT_EQ("Could not open file for hash computation: /nowhere/camera.xml",
              TextOf<RuntimeException>([] {
                  CNodeMapFactory factory(ContentType_Xml, gcstring("/nowhere/camera.xml"));
                  Make(factory);
              }));
}

TEST(Factory, TakesFilesAndArchives) {
    const std::string bytes = Archive({{"camera.xml", Document(Integer("I"))}});
    CNodeMapFactory memory(ContentType_ZippedXml, bytes.data(), bytes.size());
    EXPECT_NE(nullptr, Make(memory)->GetNode("I"));

    // A camera pads the text in an archive, and nobody knows with what.
    const std::string padded =
        Archive({{"camera.xml", Document(Integer("I")) + std::string(1, '\0') + "<junk"}});
    CNodeMapFactory unpadded(ContentType_ZippedXml, padded.data(), padded.size());
    EXPECT_NE(nullptr, Make(unpadded)->GetNode("I"));

    const std::string path = testing::TempDir() + "zelcam_factory_test.zip";
    std::ofstream(path, std::ios::binary) << bytes;
    CNodeMapFactory file(ContentType_ZippedXml, gcstring(path.c_str()));
    EXPECT_NE(nullptr, Make(file)->GetNode("I"));
    std::remove(path.c_str());
}

TEST(Factory, InjectsNodes) {
    CNodeMapFactory target = FactoryOf(Integer("I"));
    CNodeMapFactory injected = FactoryOf("<Integer Name='J'><pValue>I</pValue></Integer>");
    target.AddInjectionData(injected);
    const Map map = Make(target);
    EXPECT_EQ(2u, map->GetNumNodes());
    EXPECT_NE(nullptr, map->GetNode("J"));

    CNodeMapFactory again = FactoryOf(Integer("I"));
    CNodeMapFactory conflict = FactoryOf(Integer("I"));
    again.AddInjectionData(conflict);
    EXPECT_EQ("Merge conflict with node 'I'", TextOf<RuntimeException>([&] { Make(again); }));
    EXPECT_EQ("nothing", TextOf<RuntimeException>([&] { Make(conflict); }));
}

TEST(Factory, ExtractsSubtrees) {
    CNodeMapFactory factory = FactoryOf(Integer("I") + Integer("J"));
    CNodeMapFactory part = factory.ExtractSubtree("J");
    EXPECT_EQ(1u, Make(part)->GetNumNodes());
    CNodeMapFactory target = FactoryOf(Integer("J"));
    target.AddInjectionData(part);
    EXPECT_EQ("Merge conflict with node 'J'", TextOf<RuntimeException>([&] { Make(target); }));
    EXPECT_NE("nothing", TextOf<RuntimeException>([&] { factory.ExtractSubtree("K"); }));
}

TEST(Factory, LeavesOutStringsOnDemand) {
    const std::string text =
        Document("<Node Name='N'><ToolTip>t</ToolTip><DisplayName>d</DisplayName></Node>");
    CNodeMapFactory full(gcstring(text.c_str()));
    const Map fullMap = Make(full);
    CNodeMapFactory small(gcstring(text.c_str()), CacheUsage_Ignore, true);
    const Map smallMap = Make(small);
    EXPECT_STREQ("t", fullMap->GetNode("N")->GetToolTip().c_str());
    EXPECT_STREQ("", smallMap->GetNode("N")->GetToolTip().c_str());
    EXPECT_STREQ("d", smallMap->GetNode("N")->GetDisplayName().c_str());
}

TEST(Factory, TellsAboutTheDescription) {
    CNodeMapFactory factory =
        FactoryOf("<Integer Name='I'><pValue>J</pValue></Integer>" + Integer("J"));
    CNodeMapFactory::NodeStatistics_t statistics;
    factory.GetNodeStatistics(statistics);
    EXPECT_EQ(2u, statistics.NumNodes);
    EXPECT_EQ(2u, statistics.NumProperties);
    EXPECT_EQ(1u, statistics.NumLinks);
    EXPECT_EQ(1u, statistics.NumStrings);
    EXPECT_STREQ("I\n  pValue: J\nJ\n  Value: 1\n", factory.ToString().c_str());
    EXPECT_NE(std::string::npos, std::string(factory.ToXml().c_str()).find("<pValue>J</pValue>"));
    EXPECT_EQ(nullptr, Map(CNodeMapFactory::CreateEmptyNodeMap())->GetNode("I"));
}

}  // namespace
}  // namespace test
