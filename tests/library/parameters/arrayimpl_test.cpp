// Arrays: the port below the node map, lookups, and access by name.
#include <cstring>
#include <functional>

#include <GenApi/NodeCallback.h>
#include <gmock/gmock.h>

#include "tests/genapi/support/testmap.h"
#include "tests/library/support/camera.h"

using namespace ZelGenParam;
using test::ErrorOf;

TEST_F(CameraTest, FailedAccessesReachTheCallerAsGenApisExceptions) {
    const std::string where = "Address = 0x00000ABC, Length = 18(0x12)";
    const struct {
        int result;
        std::string kind;
        std::string text;
    } rows[] = {{-1005, "AccessException", " error. Access denied. " + where},
                {-1011, "TimeoutException", " error. Timeout. " + where},
                {-1006, "InvalidArgumentException",
                 " error. Invalid parameter. " + where + ", Error = -1006"},
                {-1009, "InvalidArgumentException",
                 " error. Invalid parameter. " + where + ", Error = -1009"},
                {-1013, "InvalidArgumentException",
                 " error. Invalid parameter. " + where + ", Error = -1013"},
                {-1010, "RuntimeException", " error. " + where + ", Error = -1010"},
                {1, "RuntimeException", " error. " + where + ", Error = 1"},
                {0, "LogicalErrorException", " incomplete. " + where + ", Actual size = 17(0x11)"}};
    port.actualSize = 17;
    uint8_t buffer[18] = {};
    for (const auto& row : rows) {
        port.result = row.result;
        for (const bool read : {true, false}) {
            const auto access = [&] {
                read ? array->Read(buffer, 0xABC, 18) : array->Write(buffer, 0xABC, 18);
            };
            EXPECT_EQ(ErrorOf(access), row.kind + ": " + (read ? "Read" : "Write") + row.text);
        }
    }
}

TEST_F(CameraTest, ThePortTellsItsAccessMode) {
    EXPECT_EQ(array->GetAccessMode(), GenApi::RW);
    port.writable = false;
    EXPECT_EQ(array->GetAccessMode(), GenApi::RO);
    port.readable = false;
    EXPECT_EQ(array->GetAccessMode(), GenApi::_UndefinedAccesMode);
    port.writable = true;
    EXPECT_EQ(array->GetAccessMode(), GenApi::WO);
    port.notAvailable = true;
    EXPECT_EQ(array->GetAccessMode(), GenApi::NA);
    port.notImplemented = true;
    EXPECT_EQ(array->GetAccessMode(), GenApi::NI);

    port.notImplemented = false;
    for (const auto& [result, error] :
         {std::pair{-1005, "AccessException: Get port info error. Access denied. Command = 9."},
          {-1006,
           "InvalidArgumentException: Get port info error. Invalid parameter. Command = 9, Error = "
           "-1006"},
          {-1011, "RuntimeException: Get port info error. Command = 9, Error = -1011"}}) {
        port.failures[GenTL::PORT_INFO_ACCESS_NA] = result;
        EXPECT_EQ(ErrorOf([&] { array->GetAccessMode(); }), error);
    }
}

TEST_F(CameraTest, ANameLeadsToOneObject) {
    Param* const param = array->GetParam("Int", &err);
    ASSERT_NE(param, nullptr);
    EXPECT_EQ(array->GetParam("Int", nullptr), param);
    EXPECT_EQ(array->GetInt("Int", &err), param->ToInt());
    EXPECT_EQ(array->GetRootCategory(&err)->GetParamByIndex(0, &err), param);
    EXPECT_EQ(err, ZelCamErr_Success);

    for (const char* const name : {"Nothing", "", static_cast<const char*>(nullptr)}) {
        for (int time = 0; time < 2; ++time) {
            EXPECT_EQ(array->GetParam(name, &err), nullptr);
            EXPECT_EQ(err, ZelCamErr_ParamNotFound);
        }
    }
}

TEST_F(CameraTest, TypedLookupsGiveTheirKindOnly) {
    const std::pair<const char*, std::function<Param*(const char*)>> lookups[] = {
        {"Boolean", [&](const char* name) { return array->GetBoolean(name, &err); }},
        {"Command", [&](const char* name) { return array->GetCommand(name, &err); }},
        {"Enum", [&](const char* name) { return array->GetEnum(name, &err); }},
        {"Float", [&](const char* name) { return array->GetFloat(name, &err); }},
        {"Int", [&](const char* name) { return array->GetInt(name, &err); }},
        {"String", [&](const char* name) { return array->GetString(name, &err); }}};
    for (const auto& [kind, lookup] : lookups) {
        for (const auto& [name, other] : lookups) {
            EXPECT_EQ(lookup(name) != nullptr, name == kind) << kind << " " << name;
            EXPECT_EQ(err, name == kind ? ZelCamErr_Success : ZelCamErr_WrongParamType);
        }
        EXPECT_EQ(lookup("Nothing"), nullptr);
        EXPECT_EQ(err, ZelCamErr_ParamNotFound);
    }
}

TEST_F(CameraTest, FeaturesAreAFlatList) {
    std::vector<std::string> names;
    for (uint32_t i = 0; i < array->GetCount(); ++i)
        names.emplace_back(array->GetParamByIndex(i, &err)->GetName());
    EXPECT_THAT(names,
                testing::UnorderedElementsAre("Root", "Int", "Float", "String", "Enum", "Boolean",
                                              "Command", "Category", "ReadOnly", "Raw", "Hidden"));
    EXPECT_EQ(array->GetParamByIndex(array->GetCount(), &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_IndexOutOfRange);
}

TEST_F(CameraTest, ValuesAreReadAndWrittenByName) {
    EXPECT_EQ(array->SetIntegerValue("Int", 95), ZelCamErr_Success);
    EXPECT_EQ(array->GetIntegerValue("Int", &err), 95);
    EXPECT_EQ(array->SetFloatValue("Float", 1.5), ZelCamErr_Success);
    EXPECT_EQ(array->GetFloatValue("Float", &err), 1.5);
    EXPECT_EQ(array->SetBooleanValue("Boolean", true), ZelCamErr_Success);
    EXPECT_TRUE(array->GetBooleanValue("Boolean", &err));
    EXPECT_EQ(array->SetStringValue("String", "text"), ZelCamErr_Success);
    const char* const text = array->GetStringValue("String", &err);
    EXPECT_EQ(array->SetEnumValueStr("Enum", "Two"), ZelCamErr_Success);
    EXPECT_EQ(array->GetEnumValue("Enum", &err), 2);
    EXPECT_EQ(array->SetEnumValue("Enum", 1), ZelCamErr_Success);
    EXPECT_STREQ(array->GetEnumValueStr("Enum", &err), "One");
    EXPECT_STREQ(text, "text");  // a text read under another name leaves it alone
    EXPECT_EQ(array->ExecuteCommand("Command"), ZelCamErr_Success);
    EXPECT_FALSE(array->IsCommandDone("Command", &err));
    port.memory[32] = 0;
    EXPECT_TRUE(array->IsCommandDone("Command", &err));
    EXPECT_EQ(err, ZelCamErr_Success);
    EXPECT_EQ(port.memory[0], 95);
    EXPECT_EQ(port.memory[24], 1);
    EXPECT_EQ(port.memory[28], 1);
}

TEST_F(CameraTest, TextsSetFeaturesOfEveryKind) {
    const char* reason = nullptr;
    const auto set = [&](const char* name, const char* value) {
        return array->SetValueStr(name, value, &reason);
    };
    for (const auto& [name, value] : {std::pair{"Int", "0x5F"},
                                      {"Float", "1.5"},
                                      {"Boolean", "true"},
                                      {"String", "text"},
                                      {"Enum", "Two"},
                                      {"Raw", "0x0102030405060708"}}) {
        EXPECT_EQ(set(name, value), ZelCamErr_Success) << name << reason;
        EXPECT_STREQ(reason, "") << name;
    }
    EXPECT_EQ(array->GetIntegerValue("Int", &err), 95);
    EXPECT_EQ(array->GetFloatValue("Float", &err), 1.5);
    EXPECT_TRUE(array->GetBooleanValue("Boolean", &err));
    const char* const text = array->GetStringValue("String", &err);
    EXPECT_EQ(array->GetEnumValue("Enum", &err), 2);
    EXPECT_EQ(port.memory[47], 8);

    const std::vector<uint8_t> before = port.memory;
    EXPECT_EQ(set("Int", "110"), ZelCamErr_OutOfRange);
    EXPECT_THAT(reason, testing::HasSubstr("100"));
    EXPECT_EQ(array->SetValueStr("Int", "110", nullptr), ZelCamErr_OutOfRange);
    EXPECT_EQ(set("Enum", "Three"), ZelCamErr_InvalidValue);
    EXPECT_EQ(set("ReadOnly", "4"), ZelCamErr_AccessDenied);
    EXPECT_STRNE(reason, "");
    for (const char* name : {"Command", "Category", "Device"})
        EXPECT_EQ(set(name, "1"), ZelCamErr_WrongParamType) << name;
    EXPECT_EQ(set("Nothing", "1"), ZelCamErr_ParamNotFound);
    EXPECT_STREQ(reason, "");
    EXPECT_EQ(port.memory, before);
    EXPECT_STREQ(text, "text");  // a reason leaves texts alone that were read
    port.result = -1010;
    EXPECT_EQ(set("Boolean", "false"), ZelCamErr_GenApiError);
    EXPECT_THAT(reason, testing::HasSubstr("Error = -1010"));
}

TEST_F(CameraTest, FeaturesOfEveryKindAreReadAsTextsThatSetThem) {
    port.result = -1010;
    EXPECT_EQ(array->GetValueStr("Float", &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_GenApiError);
    port.result = 0;
    for (const auto& [name, value] : {std::pair{"Int", "95"},
                                      {"Float", "1.5"},
                                      {"Boolean", "1"},
                                      {"String", "text"},
                                      {"Enum", "Two"},
                                      {"Raw", "0x0102030405060708"}}) {
        ASSERT_EQ(array->SetValueStr(name, value, nullptr), ZelCamErr_Success) << name;
        EXPECT_STREQ(array->GetValueStr(name, &err), value);
        EXPECT_EQ(err, ZelCamErr_Success) << name;
    }
    for (const char* name : {"Command", "Category", "Device"}) {
        EXPECT_EQ(array->GetValueStr(name, &err), nullptr);
        EXPECT_EQ(err, ZelCamErr_WrongParamType) << name;
    }
    EXPECT_EQ(array->GetValueStr("Nothing", &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_ParamNotFound);
}

TEST_F(CameraTest, NothingIsWrittenWhileItIsLocked) {
    port.memory[56] = 1;
    const std::vector<uint8_t> before = port.memory;
    EXPECT_EQ(array->SetIntegerValue("Int", 20), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->SetFloatValue("Float", 1), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->SetBooleanValue("Boolean", true), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->SetStringValue("String", "text"), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->SetEnumValue("Enum", 2), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->SetEnumValueStr("Enum", "Two"), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->ExecuteCommand("Command"), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->SetValueStr("Int", "20", nullptr), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetInt("Int", &err)->SetValue(20), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetFloat("Float", &err)->SetValue(1), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetBoolean("Boolean", &err)->SetValue(true), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetString("String", &err)->SetValue("text"), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetEnum("Enum", &err)->SetValue(2), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetEnum("Enum", &err)->SetValueStr("Two"), ZelCamErr_AccessDenied);
    EXPECT_EQ(array->GetCommand("Command", &err)->Execute(), ZelCamErr_AccessDenied);
    EXPECT_EQ(port.memory, before);
}

TEST_F(CameraTest, AccessByNameNeedsTheFeatureAndItsKind) {
    const std::pair<const char*, std::function<void(const char*)>> operations[] = {
        {"Int", [&](const char* name) { err = array->SetIntegerValue(name, 20); }},
        {"Int", [&](const char* name) { EXPECT_EQ(array->GetIntegerValue(name, &err), 0); }},
        {"Float", [&](const char* name) { err = array->SetFloatValue(name, 1); }},
        {"Float", [&](const char* name) { EXPECT_EQ(array->GetFloatValue(name, &err), 0); }},
        {"Boolean", [&](const char* name) { err = array->SetBooleanValue(name, true); }},
        {"Boolean", [&](const char* name) { EXPECT_FALSE(array->GetBooleanValue(name, &err)); }},
        {"String", [&](const char* name) { err = array->SetStringValue(name, ""); }},
        {"String", [&](const char* n) { EXPECT_EQ(array->GetStringValue(n, &err), nullptr); }},
        {"Enum", [&](const char* name) { err = array->SetEnumValue(name, 1); }},
        {"Enum", [&](const char* name) { err = array->SetEnumValueStr(name, "One"); }},
        {"Enum", [&](const char* name) { EXPECT_EQ(array->GetEnumValue(name, &err), 0); }},
        {"Enum", [&](const char* n) { EXPECT_EQ(array->GetEnumValueStr(n, &err), nullptr); }},
        {"Command", [&](const char* name) { err = array->ExecuteCommand(name); }},
        {"Command", [&](const char* name) { EXPECT_FALSE(array->IsCommandDone(name, &err)); }}};
    const size_t before = port.accesses;
    for (const auto& [kind, operation] : operations) {
        operation("Nothing");
        EXPECT_EQ(err, ZelCamErr_ParamNotFound) << kind;
        operation(kind == std::string("Int") ? "Float" : "Int");
        EXPECT_EQ(err, ZelCamErr_WrongParamType) << kind;
    }
    EXPECT_EQ(port.accesses, before);
}

TEST_F(CameraTest, PollAsksForWhatIsDue) {
    GenApi::INode* const node = array->GetFloat("Float", &err)->GetNode();
    EXPECT_EQ(array->GetFloatValue("Float", &err), 0.0);
    const double changed = 1.5;
    std::memcpy(port.memory.data() + 8, &changed, sizeof changed);
    EXPECT_EQ(array->Poll(99), ZelCamErr_Success);
    EXPECT_EQ(array->GetFloatValue("Float", &err), 0.0);  // still cached
    EXPECT_EQ(array->Poll(1), ZelCamErr_Success);
    EXPECT_EQ(array->GetFloatValue("Float", &err), 1.5);

    GenApi::Register(node, [](GenApi::INode*) { throw ACCESS_EXCEPTION("refused"); });
    EXPECT_EQ(array->Poll(100), ZelCamErr_AccessDenied);
}
