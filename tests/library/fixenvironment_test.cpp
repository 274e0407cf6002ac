#include "ZelCameraApi/fixenvironment.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <pwd.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "log/executabledirectory.h"

using namespace ZelCameraApi::Internal;

namespace {

using Text = std::optional<std::string>;

Text Get(const char* variable) {
    const char* const value = std::getenv(variable);
    return value != nullptr ? Text(value) : std::nullopt;
}

void Put(const char* variable, const Text& value) {
    if (value) {
        setenv(variable, value->c_str(), 1);
    } else {
        unsetenv(variable);
    }
}

// Changes a variable for as long as the object lives.
class Preset {
  public:
    Preset(const char* variable, const Text& value) : variable_(variable), old_(Get(variable)) {
        Put(variable, value);
    }
    ~Preset() { Put(variable_, old_); }
    Preset(const Preset&) = delete;
    Preset& operator=(const Preset&) = delete;

  private:
    const char* variable_;
    Text old_;
};

constexpr const char* kVariables[] = {"GENICAM_ROOT", "GENICAM_LOG_CONFIG_V3_0",
                                      "GENICAM_CACHE_V3_0"};

// The home directory of the account that the tests see.
std::string accountHome;

class FixEnvironmentTest : public testing::Test {
  protected:
    FixEnvironmentTest() { std::filesystem::create_directory(home); }
    ~FixEnvironmentTest() override { std::filesystem::remove_all(home); }

    const std::string home = testing::TempDir() + "home" + std::to_string(getpid());
    const Preset homeVariable{"HOME", home};
};

}  // namespace

// In the place of the system's, so that no test writes to the home directory of who runs it.
extern "C" passwd* getpwuid(uid_t user) {
    static passwd account{};
    account.pw_uid = user;
    account.pw_dir = accountHome.data();
    return &account;
}

TEST_F(FixEnvironmentTest, VariablesAreSetAndPutBack) {
    for (const Text& before : {Text("/before"), Text(), Text("")}) {
        const Preset presets[] = {
            {kVariables[0], before}, {kVariables[1], before}, {kVariables[2], before}};
        {
            const std::unique_ptr<Environment> environment = FixEnvironment();
            // The tests carry the library's objects, so its folder is theirs; the loader tells it
            // as it was called.
            const std::string root = *Get(kVariables[0]);
            EXPECT_EQ(std::filesystem::absolute(root), ExecutableDirectory() + "/genicam");
            EXPECT_EQ(Get(kVariables[1]), root + "/log/config-unix/DefaultLogging.properties");
            EXPECT_EQ(Get(kVariables[2]), home + "/.config/Zelcor/GENICAM_CACHE_V3_0");
            EXPECT_TRUE(std::filesystem::is_directory(*Get(kVariables[2])));
        }
        for (const char* const variable : kVariables)
            EXPECT_EQ(Get(variable), before == "" ? Text() : before) << variable;
    }
}

TEST_F(FixEnvironmentTest, ACacheFolderThatCannotBeMadeLiesByTheProgram) {
    std::ofstream(home + "/.config") << "in the way";
    const std::unique_ptr<Environment> environment = FixEnvironment();
    EXPECT_EQ(Get(kVariables[2]), ExecutableDirectory() + "GENICAM_CACHE_V3_0");
}

TEST_F(FixEnvironmentTest, WithoutHomeTheAccountSaysWhere) {
    const Preset none("HOME", std::nullopt);
    accountHome = home;
    const std::unique_ptr<Environment> environment = FixEnvironment();
    EXPECT_EQ(Get(kVariables[2]), home + "/.config/Zelcor/GENICAM_CACHE_V3_0");
}

TEST(FixEnvironment, FoldersAreTakenFromPaths) {
    const std::pair<const char*, const char*> parents[] = {{"/opt/app/bin", "/opt/app"},
                                                           {"/opt/app///", "/opt"},
                                                           {"/opt", ""},
                                                           {"opt", "opt"},
                                                           {"opt//", "opt//"},
                                                           {"/", "/"},
                                                           {"", ""}};
    for (const auto& [path, parent] : parents)
        EXPECT_EQ(GetParentDirectory(path), parent) << path;

    const std::pair<const char*, const char*> libraries[] = {{"/opt/app/bin", "/opt/app/lib"},
                                                             {"/bin/app/bin64", "/bin/app/lib64"},
                                                             {"/opt/bin/bin", "/opt/lib/bin"},
                                                             {"/opt/app/tests", "/opt/app/tests"},
                                                             {"", ""}};
    for (const auto& [executable, library] : libraries)
        EXPECT_EQ(LibraryDirectoryOf(executable), library) << executable;
}
