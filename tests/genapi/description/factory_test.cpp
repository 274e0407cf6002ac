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

Map make(CNodeMapFactory& factory) {
    return Map(factory.CreateNodeMap("Camera"));
}

CNodeMapFactory factoryOf(const std::string& nodes) {
    return CNodeMapFactory(gcstring(document(nodes).c_str()));
}

TEST(Factory, GoesThroughItsStates) {
    CNodeMapFactory factory = factoryOf(integer("I"));
    CNodeMapFactory copy = factory;
    EXPECT_FALSE(factory.IsEmpty());
    EXPECT_FALSE(factory.IsLoaded());
    factory.LoadAndInject();
    EXPECT_TRUE(copy.IsLoaded());
    EXPECT_FALSE(copy.IsPreprocessed());
    const Map first = make(factory);
    EXPECT_TRUE(copy.IsPreprocessed());
    EXPECT_TRUE(copy.IsCameraDescriptionFileDataReleased());
    const Map second = make(copy);
    EXPECT_NE(first->GetNode("I"), second->GetNode("I"));
    EXPECT_STREQ("Camera", second->GetNode("I")->GetDeviceName().c_str());
}

TEST(Factory, RefusesWhatCannotBe) {
    CNodeMapFactory empty;
    EXPECT_TRUE(empty.IsEmpty());
    EXPECT_EQ(
        "Cannot preprocess, no camera description file data has been provided to the node "
        "map factory.",
        textOf<LogicalErrorException>([&] { make(empty); }));
    EXPECT_EQ(
        "The pointer to the camera description file buffer passed to the node map factory "
        "must not be NULL.",
        textOf<InvalidArgumentException>(
            [] { CNodeMapFactory(ContentType_Xml, static_cast<const void*>(nullptr), 1); }));
    EXPECT_EQ(
        "The camera description file buffer passed to the node map factory must not be "
        "empty.",
        textOf<InvalidArgumentException>([] { CNodeMapFactory(gcstring("")); }));
    EXPECT_EQ("Could not open file for hash computation: /nowhere/camera.xml",
              textOf<RuntimeException>([] {
                  CNodeMapFactory factory(ContentType_Xml, gcstring("/nowhere/camera.xml"));
                  make(factory);
              }));
}

TEST(Factory, TakesFilesAndArchives) {
    const std::string bytes = archive({{"camera.xml", document(integer("I"))}});
    CNodeMapFactory memory(ContentType_ZippedXml, bytes.data(), bytes.size());
    EXPECT_NE(nullptr, make(memory)->GetNode("I"));

    // A camera pads the text in an archive, and nobody knows with what.
    const std::string padded =
        archive({{"camera.xml", document(integer("I")) + std::string(1, '\0') + "<junk"}});
    CNodeMapFactory unpadded(ContentType_ZippedXml, padded.data(), padded.size());
    EXPECT_NE(nullptr, make(unpadded)->GetNode("I"));

    const std::string path = testing::TempDir() + "zelcam_factory_test.zip";
    std::ofstream(path, std::ios::binary) << bytes;
    CNodeMapFactory file(ContentType_ZippedXml, gcstring(path.c_str()));
    EXPECT_NE(nullptr, make(file)->GetNode("I"));
    std::remove(path.c_str());
}

TEST(Factory, InjectsNodes) {
    CNodeMapFactory target = factoryOf(integer("I"));
    CNodeMapFactory injected = factoryOf("<Integer Name='J'><pValue>I</pValue></Integer>");
    target.AddInjectionData(injected);
    const Map map = make(target);
    EXPECT_EQ(2u, map->GetNumNodes());
    EXPECT_NE(nullptr, map->GetNode("J"));

    CNodeMapFactory again = factoryOf(integer("I"));
    CNodeMapFactory conflict = factoryOf(integer("I"));
    again.AddInjectionData(conflict);
    EXPECT_EQ("Merge conflict with node 'I'", textOf<RuntimeException>([&] { make(again); }));
    EXPECT_EQ("nothing", textOf<RuntimeException>([&] { make(conflict); }));
}

TEST(Factory, ExtractsSubtrees) {
    CNodeMapFactory factory = factoryOf(integer("I") + integer("J"));
    CNodeMapFactory part = factory.ExtractSubtree("J");
    EXPECT_EQ(1u, make(part)->GetNumNodes());
    CNodeMapFactory target = factoryOf(integer("J"));
    target.AddInjectionData(part);
    EXPECT_EQ("Merge conflict with node 'J'", textOf<RuntimeException>([&] { make(target); }));
    EXPECT_NE("nothing", textOf<RuntimeException>([&] { factory.ExtractSubtree("K"); }));
}

TEST(Factory, LeavesOutStringsOnDemand) {
    const std::string text =
        document("<Node Name='N'><ToolTip>t</ToolTip><DisplayName>d</DisplayName></Node>");
    CNodeMapFactory full(gcstring(text.c_str()));
    const Map fullMap = make(full);
    CNodeMapFactory small(gcstring(text.c_str()), CacheUsage_Ignore, true);
    const Map smallMap = make(small);
    EXPECT_STREQ("t", fullMap->GetNode("N")->GetToolTip().c_str());
    EXPECT_STREQ("", smallMap->GetNode("N")->GetToolTip().c_str());
    EXPECT_STREQ("d", smallMap->GetNode("N")->GetDisplayName().c_str());
}

TEST(Factory, TellsAboutTheDescription) {
    CNodeMapFactory factory =
        factoryOf("<Integer Name='I'><pValue>J</pValue></Integer>" + integer("J"));
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
