// The environment in which node maps are made: variables, folders, log messages.
#include "ZelCameraApi/base/fixenvironment.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <optional>
#include <pwd.h>
#include <sstream>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "log/executabledirectory.h"
#include "tests/library/support/moduledescription.h"
#include "tests/library/support/systemlog.h"

using namespace ZelCameraApi::Internal;
using testing::ElementsAre;

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

// The folders that were asked for, "path mode".
std::vector<std::string> folders;

class FixEnvironmentTest : public testing::Test {
  protected:
    FixEnvironmentTest() {
        std::filesystem::create_directory(home);
        folders.clear();
    }
    ~FixEnvironmentTest() override { std::filesystem::remove_all(home); }

    const std::string home = testing::TempDir() + "home" + std::to_string(getpid());
    const Preset homeVariable{"HOME", home};
};

}  // namespace

// In the place of the system's, so that no test writes to the home directory of who runs it, or to
// the root of the file system.
extern "C" passwd* getpwuid(uid_t user) {
    static passwd account{};
    account.pw_uid = user;
    account.pw_dir = accountHome.data();
    return &account;
}
extern "C" int mkdir(const char* path, mode_t mode) noexcept {
    std::ostringstream folder;
    folder << path << ' ' << std::oct << mode;
    folders.push_back(folder.str());
    if (folder.str().rfind("/.config", 0) != 0)
        return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, path, mode));
    errno = EACCES;
    return -1;
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
            EXPECT_EQ(std::filesystem::absolute(root).lexically_normal(),
                      ExecutableDirectory() + "/genicam");
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
    const std::string user = home + "/.config";
    EXPECT_THAT(folders, ElementsAre(user + " 775", user + "/Zelcor 775",
                                     user + "/Zelcor/GENICAM_CACHE_V3_0 775",
                                     ExecutableDirectory() + " 775"));
}

TEST_F(FixEnvironmentTest, WithoutAHomeDirectoryNothingIsMadeInTheRoot) {
    accountHome.clear();
    for (const Text& none : {Text(""), Text()}) {
        const Preset empty("HOME", none);
        folders.clear();
        const std::unique_ptr<Environment> environment = FixEnvironment();
        EXPECT_EQ(Get(kVariables[2]), ExecutableDirectory() + "GENICAM_CACHE_V3_0");
        EXPECT_THAT(folders, ElementsAre(ExecutableDirectory() + " 775"));
    }
}

TEST_F(FixEnvironmentTest, WithoutHomeTheAccountSaysWhere) {
    const Preset none("HOME", std::nullopt);
    accountHome = home;
    const std::unique_ptr<Environment> environment = FixEnvironment();
    EXPECT_EQ(Get(kVariables[2]), home + "/.config/Zelcor/GENICAM_CACHE_V3_0");
}

TEST_F(FixEnvironmentTest, LoggingIsConfigured) {
    SystemLog log;
    FixEnvironment();
    EXPECT_THAT(log.Take(),
                testing::StartsWith("log: ZelLog4Cpp: trying to load " + ExecutableDirectory() +
                                    "/camerasdklog.property\n"));
}

TEST_F(FixEnvironmentTest, EachStepIsLogged) {
    const std::string prefix = "DEBUG|Environment::Environment: ";
    const auto expected = [&](const std::string& old, const std::string& outcomeOfFolder) {
        const std::string root = *Get(kVariables[0]);
        const std::string user = home + "/.config";
        const auto folder = [&](const std::string& path) {
            return prefix + "CREATE DIR = " + path + ", mode = 775, code = " + outcomeOfFolder;
        };
        return old + prefix + "CURR_DIR " + ExecutableDirectory() + "\n" +  //
               prefix + "ROOT_DIR " + root + "\n" +                         //
               prefix + "GENICAM_ROOT = " + root + ", code = 0\n" +         //
               prefix + "GENICAM_LOG_CONFIG_VERSION = " + root +
               "/log/config-unix/DefaultLogging.properties, code = 0\n" +  //
               folder(user) + folder(user + "/Zelcor") +
               folder(user + "/Zelcor/GENICAM_CACHE_V3_0") +  //
               prefix + "GENICAM_CACHE_VERSION = " + user +
               "/Zelcor/GENICAM_CACHE_V3_0, code = 0\n";
    };
    const std::string exists =
        "-1\nERROR|Environment::Environment: CREATE DIR: errno = " + std::to_string(EEXIST) + "\n";
    {
        const Preset presets[] = {{kVariables[0], {}}, {kVariables[1], {}}, {kVariables[2], {}}};
        const Messages messages("K4T_GEN", "%p|%m\n");
        const std::unique_ptr<Environment> environment = FixEnvironment();
        EXPECT_EQ(messages.Text(), expected("", "0\n"));
    }
    const Preset presets[] = {
        {kVariables[0], "/a%s"}, {kVariables[1], "/b"}, {kVariables[2], "/c"}};
    const Messages messages("K4T_GEN", "%p|%m\n");
    const std::unique_ptr<Environment> environment = FixEnvironment();
    EXPECT_EQ(messages.Text(), expected(prefix + "OLD GENICAM_ROOT = /a%s\n" +                  //
                                            prefix + "OLD GENICAM_LOG_CONFIG_VERSION = /b\n" +  //
                                            prefix + "OLD GENICAM_CACHE_VERSION = /c\n",
                                        exists));
}

using NodeMapEnvironmentTest = SessionTest;

TEST_F(NodeMapEnvironmentTest, SurroundsTheMakingOfANodeMapWhateverComesOfIt) {
    const Preset preset(kVariables[0], "/before");
    Text during;
    const auto note = [&](int32_t code) {
        during.reset();
        producer.ClearRules();
        producer.AddRule({"GCGetPortURLInfo", Scripted::kAnyCommand, [&during, code](const auto&) {
                              during = Get(kVariables[0]);
                              return code != 0 ? Scripted::Fails(code) : Scripted::Reply{};
                          }});
    };
    const auto isOurs = testing::Optional(testing::EndsWith("/genicam"));
    producer.SetDescription(Description::Xml());
    OpenInterface();
    note(-1010);
    EXPECT_EQ(iface->GetParameters(nullptr), nullptr);
    EXPECT_THAT(during, isOurs);
    EXPECT_EQ(Get(kVariables[0]), "/before");
    note(0);
    EXPECT_NE(iface->GetParameters(nullptr), nullptr);
    EXPECT_THAT(during, isOurs);
    EXPECT_EQ(Get(kVariables[0]), "/before");
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
