// Parameter objects: kinds, values, entries, texts and state, sinks.
#include "ZelCameraApi/ZelGenParam/paramimpl.h"

#include <future>
#include <stdexcept>

#include <gmock/gmock.h>

#include "ZelCameraApi/ZelGenParam/enumparams.h"
#include "ZelCameraApi/ZelGenParam/valueparams.h"
#include "tests/library/support/camera.h"
#include "tests/library/support/sink.h"

using namespace ZelGenParam;
using ZelCameraApi::Internal::CreateParam;
using ZelCameraApi::Internal::IntParamImpl;

TEST_F(CameraTest, EachKindIsReachedInOneWayOnly) {
    const std::pair<const char*, ParamType> kinds[] = {
        {"Raw", ParamType_Unknown},      {"Int", ParamType_Int},
        {"Float", ParamType_Float},      {"String", ParamType_String},
        {"Enum", ParamType_Enum},        {"EnumEntry_Enum_One", ParamType_EnumEntry},
        {"Boolean", ParamType_Boolean},  {"Command", ParamType_Command},
        {"Category", ParamType_Category}};
    for (const auto& [name, type] : kinds) {
        Param* const param = array->GetParam(name, &err);
        ASSERT_NE(param, nullptr) << name;
        EXPECT_EQ(param->GetType(), type);
        const Param* const conversions[] = {param,
                                            param->ToInt(),
                                            param->ToFloat(),
                                            param->ToString(),
                                            param->ToEnum(),
                                            param->ToEnumEntry(),
                                            param->ToBoolean(),
                                            param->ToCommand(),
                                            param->ToCategory()};
        for (uint32_t kind = ParamType_Int; kind <= ParamType_Category; ++kind)
            EXPECT_EQ(conversions[kind], kind == type ? param : nullptr) << name << kind;
        EXPECT_EQ(param->GetNode(), array->GetNodeMap(&err)->GetNode(name));
    }
}

TEST_F(CameraTest, NumbersHaveValuesAndLimits) {
    Int* const i = array->GetInt("Int", &err);
    EXPECT_EQ(i->GetMin(&err), 10);
    EXPECT_EQ(i->GetMax(&err), 100);
    EXPECT_EQ(i->GetIncrement(&err), 5);
    EXPECT_EQ(i->SetValue(20), ZelCamErr_Success);
    EXPECT_EQ(i->GetValue(&err), 20);
    Float* const f = array->GetFloat("Float", &err);
    EXPECT_EQ(f->GetMin(&err), 0.0);
    EXPECT_EQ(f->GetMax(&err), 2.0);
    EXPECT_STREQ(f->GetUnit(&err), "s");
    EXPECT_EQ(f->SetValue(0.5), ZelCamErr_Success);
    EXPECT_EQ(f->GetValue(&err), 0.5);
    EXPECT_EQ(f->SetValue(2.5), ZelCamErr_OutOfRange);
    EXPECT_EQ(err, ZelCamErr_Success);
}

TEST_F(CameraTest, OtherKindsHaveTheirValues) {
    String* const text = array->GetString("String", &err);
    size_t length = 99;
    EXPECT_EQ(text->SetValue("abc"), ZelCamErr_Success);
    EXPECT_STREQ(text->GetValue(&length, &err), "abc");
    EXPECT_EQ(length, 3U);
    EXPECT_STREQ(text->GetValue(nullptr, nullptr), "abc");
    EXPECT_EQ(text->GetMaxLength(&err), 8);

    Boolean* const flag = array->GetBoolean("Boolean", &err);
    EXPECT_EQ(flag->SetValue(true), ZelCamErr_Success);
    EXPECT_TRUE(flag->GetValue(&err));

    Command* const command = array->GetCommand("Command", &err);
    EXPECT_EQ(command->Execute(), ZelCamErr_Success);
    EXPECT_FALSE(command->IsDone(&err));
    port.memory[32] = 0;
    EXPECT_TRUE(command->IsDone(&err));
    EXPECT_EQ(err, ZelCamErr_Success);

    port.result = GenTL::GC_ERR_IO;
    array->GetNodeMap(&err)->InvalidateNodes();
    EXPECT_EQ(text->GetValue(&length, &err), nullptr);
    EXPECT_EQ(length, 0U);
    EXPECT_EQ(err, ZelCamErr_Error);
    EXPECT_EQ(command->Execute(), ZelCamErr_Error);
}

TEST_F(CameraTest, AnEntryIsOneObject) {
    Enum* const choice = array->GetEnum("Enum", &err);
    EXPECT_EQ(choice->GetEnumEntriesCount(&err), 2U);
    EnumEntry* const two = choice->GetEnumEntryByIndex(1);
    ASSERT_NE(two, nullptr);
    EXPECT_EQ(choice->GetEnumEntryByName("Two"), two);
    EXPECT_EQ(choice->GetEnumEntryByValue(2), two);
    EXPECT_NE(choice->GetEnumEntryByValue(1), two);
    EXPECT_EQ(two->GetValue(&err), 2);
    EXPECT_STREQ(two->GetValueStr(&err), "Two");
    EXPECT_EQ(choice->GetEnumEntryByIndex(2), nullptr);
    EXPECT_EQ(choice->GetEnumEntryByName("Three"), nullptr);
    EXPECT_EQ(choice->GetEnumEntryByName(nullptr), nullptr);
    EXPECT_EQ(choice->GetEnumEntryByValue(3), nullptr);

    EXPECT_EQ(choice->SetValueStr("Two"), ZelCamErr_Success);
    EXPECT_EQ(choice->GetValue(&err), 2);
    EXPECT_EQ(choice->SetValue(1), ZelCamErr_Success);
    EXPECT_STREQ(choice->GetValueStr(&err), "One");
    EXPECT_EQ(err, ZelCamErr_Success);
}

TEST_F(CameraTest, CategoriesGiveTheArraysObjects) {
    Category* const category = array->GetParam("Category", &err)->ToCategory();
    ASSERT_NE(category, nullptr);
    ASSERT_EQ(category->GetCount(), 3U);
    EXPECT_EQ(category->GetParamByIndex(1, &err), array->GetParam("Raw", nullptr));
    EXPECT_EQ(err, ZelCamErr_Success);
    EXPECT_EQ(category->GetParamByIndex(3, &err), nullptr);
    EXPECT_EQ(err, ZelCamErr_IndexOutOfRange);
}

TEST_F(CameraTest, ParametersDescribeThemselves) {
    Param* const param = array->GetParam("Int", &err);
    const char* const name = param->GetName();
    EXPECT_STREQ(param->GetToolTip(), "Tip");
    EXPECT_STREQ(param->GetDescription(), "About");
    EXPECT_STREQ(param->GetDisplayName(), "Shown");
    EXPECT_STREQ(name, "Int");  // the other texts left it alone
    EXPECT_EQ(param->GetVisibility(), Visibility::Guru);
    EXPECT_FALSE(param->IsVisible(Visibility::Expert));
    EXPECT_TRUE(param->IsVisible(Visibility::Guru));
    EXPECT_TRUE(param->IsVisible(Visibility::Invisible));
    EXPECT_TRUE(param->IsStreamable());
    EXPECT_FALSE(array->GetParam("ReadOnly", &err)->IsStreamable());
    EXPECT_FALSE(param->IsValueCached());
    EXPECT_EQ(array->GetIntegerValue("Int", &err), 50);
    EXPECT_TRUE(param->IsValueCached());

    const struct {
        const char* name;
        bool available, readable, writable;
    } rows[] = {{"Int", true, true, true},
                {"ReadOnly", true, true, false},
                {"WriteOnly", true, false, true},
                {"Hidden", false, false, false}};
    for (const auto& row : rows) {
        Param* const each = array->GetParam(row.name, &err);
        EXPECT_EQ(each->IsAvailable(), row.available) << row.name;
        EXPECT_EQ(each->IsReadable(), row.readable) << row.name;
        EXPECT_EQ(each->IsWritable(), row.writable) << row.name;
    }
}

TEST(ParamImpl, WithoutANodeThereIsNothingToTell) {
    EXPECT_EQ(CreateParam(nullptr, nullptr), nullptr);
    IntParamImpl param(nullptr, nullptr);
    ZelCamErr err = ZelCamErr_Success;
    EXPECT_EQ(param.GetValue(&err), 0);
    EXPECT_EQ(err, ZelCamErr_WrongParamType);
    EXPECT_EQ(param.SetValue(1), ZelCamErr_WrongParamType);
    EXPECT_EQ(param.GetVisibility(), Visibility::UndefinedVisibility);
    EXPECT_FALSE(param.IsVisible(Visibility::UndefinedVisibility));
    EXPECT_FALSE(param.IsAvailable() || param.IsReadable() || param.IsWritable() ||
                 param.IsStreamable() || param.IsValueCached());
    EXPECT_THROW(param.GetNode(), GenICam::LogicalErrorException);
    EXPECT_THROW(param.GetName(), GenICam::LogicalErrorException);
}

TEST_F(CameraTest, SinksHearOfEachChangeOnce) {
    Param* const param = array->GetParam("Int", &err);
    std::vector<std::pair<Param*, int64_t>> changes;
    Sink sink([&](Param* each) { changes.emplace_back(each, each->ToInt()->GetValue(nullptr)); });
    EXPECT_EQ(param->UnregisterEventSink(&sink), ZelCamErr_IndexOutOfRange);
    EXPECT_EQ(param->RegisterEventSink(&sink), ZelCamErr_Success);
    EXPECT_EQ(array->SetIntegerValue("Int", 20), ZelCamErr_Success);
    EXPECT_EQ(param->UnregisterEventSink(&sink), ZelCamErr_Success);
    EXPECT_EQ(array->SetIntegerValue("Int", 30), ZelCamErr_Success);
    EXPECT_THAT(changes, testing::ElementsAre(std::pair(param, 20)));
}

TEST_F(CameraTest, SinksAreCalledInsideTheLockAndWhatTheyThrowIsDropped) {
    GenApi::CLock& lock = array->GetNodeMap(nullptr)->GetLock();
    const auto isFree = [&lock] {
        return std::async(std::launch::async,
                          [&lock] {
                              const bool locked = lock.TryLock();
                              if (locked) lock.Unlock();
                              return locked;
                          })
            .get();
    };
    bool wasFree = true;
    int64_t seen = 0;
    Sink looking([&](Param*) { wasFree = isFree(); });
    Sink failing([](Param*) { throw std::runtime_error("of the application"); });
    Sink throwing([](Param*) { throw 7; });
    Sink last([&](Param* each) { seen = each->ToInt()->GetValue(nullptr); });
    Int* const param = array->GetInt("Int", &err);
    for (Sink* const sink : {&looking, &failing, &throwing, &last})
        ASSERT_EQ(param->RegisterEventSink(sink), ZelCamErr_Success);
    EXPECT_EQ(param->SetValue(20), ZelCamErr_Success);
    EXPECT_EQ(seen, 20);
    EXPECT_FALSE(wasFree);
    EXPECT_TRUE(isFree());
    EXPECT_EQ(array->SetIntegerValue("Int", 30), ZelCamErr_Success);
    EXPECT_EQ(seen, 30);
}

// A second registration counts, and only the first can be taken back. It ends with the array.
TEST_F(CameraTest, ASinkCanBeRegisteredTwice) {
    Param* const param = array->GetParam("Int", &err);
    int calls = 0;
    Sink sink([&](Param*) { ++calls; });
    param->RegisterEventSink(&sink);
    param->RegisterEventSink(&sink);
    EXPECT_EQ(param->RegisterEventSink(nullptr), ZelCamErr_Success);
    array->SetIntegerValue("Int", 20);
    EXPECT_EQ(calls, 2);
    EXPECT_EQ(param->UnregisterEventSink(&sink), ZelCamErr_Success);
    EXPECT_EQ(param->UnregisterEventSink(&sink), ZelCamErr_IndexOutOfRange);
    array->SetIntegerValue("Int", 30);
    EXPECT_EQ(calls, 3);
    array.reset();
    EXPECT_EQ(calls, 3);
}
