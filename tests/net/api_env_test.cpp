#include "net/api_env.h"

#include <gtest/gtest.h>

#include "runtime/files.h"
#include "runtime/log.h"
#include "runtime/paths.h"

namespace veldra {
namespace {

struct ApiEnvRead {
    ApiEnv env;
    LogCapture log;
};

void read_env(MemoryFiles& files, ApiEnvRead& read) {
    initialize_api_env(files, read.env);
}

TEST(ApiEnvTest, AFileThatIsThereButWrongSaysWhyBesidesTheMissingFileMessage) {
    const std::string path = resolve_user_path(API_ENV_FILENAME);
    for (const char* text : {"[1,2", "[1, 2]"}) {
        MemoryFiles files;
        files.files[path] = text;
        ApiEnvRead read;
        read_env(files, read);
        EXPECT_FALSE(read.env.remote_url);
        EXPECT_TRUE(read.log.contains("Couldn't find API configuration file \".api_env.json\"."));
        EXPECT_TRUE(read.log.contains("\"" + path + "\": ")) << text;
    }
    // Missing: the one message, nothing more to say.
    MemoryFiles none;
    ApiEnvRead read;
    read_env(none, read);
    EXPECT_EQ(read.log.count(path), 0u);
    EXPECT_TRUE(read.log.contains("Couldn't find API configuration file"));
}

TEST(ApiEnvTest, ReadsItsKeysAndNamesACertificateFileThatIsNotThere) {
    const std::string path = resolve_user_path(API_ENV_FILENAME);
    MemoryFiles files;
    files.files[path] = R"({"remote_url": "https://127.0.0.1:8443/", "api_username": "game",
                            "api_password": "pw", "ca_file": "/no/such/ca.pem"})";
    ApiEnvRead read;
    read_env(files, read);
    EXPECT_EQ(read.env.remote_url, "https://127.0.0.1:8443/");
    EXPECT_EQ(read.env.api_username, "game");
    EXPECT_EQ(read.env.api_password, "pw");
    EXPECT_TRUE(read.log.contains("\"/no/such/ca.pem\" named by ca_file")) << path;
    // Once only: a second call changes nothing and says so.
    files.files[path] = R"({"remote_url": "http://127.0.0.1:8080/"})";
    read_env(files, read);
    EXPECT_EQ(read.env.remote_url, "https://127.0.0.1:8443/");
}

}  // namespace
}  // namespace veldra
