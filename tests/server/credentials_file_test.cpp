#include "server/credentials_file.h"

#include <gtest/gtest.h>

#include <fstream>

#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::ScratchDirectory;

class CredentialsFileTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"credentials_file"};

    CredentialsRead read_text(const std::string& text) {
        const std::string path = (scratch.path() / "api_env.json").string();
        std::ofstream(path) << text;
        return read_credentials_file(path);
    }
};

TEST_F(CredentialsFileTest, TheGamesApiEnvironmentFileIsReadAsItIs) {
    const CredentialsRead read = read_text(
        R"({"remote_url": "https://study.example/", "api_username": "lab", "api_password": "pw"})");
    ASSERT_TRUE(read.credentials) << read.error;
    EXPECT_EQ(read.credentials->username, "lab");
    EXPECT_EQ(read.credentials->password, "pw");
}

TEST_F(CredentialsFileTest, UnusableFilesAreRefusedWithoutShowingThePassword) {
    for (const std::string& text :
         {std::string(R"({"api_username": "lab"})"),
          std::string(R"({"api_username": "lab", "api_password": 12})"),
          std::string(R"({"api_username": "", "api_password": "pw-secret"})"),
          std::string(R"({"api_username": "a:b", "api_password": "pw-secret"})"),
          std::string(R"({"api_username": "lab", "api_password": ""})"),
          std::string(R"({"api_username": "lab", "api_password": "pw-secret" x})"),
          std::string(R"({"api_username": "lab", "api_password": pw-secret})")}) {
        SCOPED_TRACE(text);
        const CredentialsRead read = read_text(text);
        EXPECT_FALSE(read.credentials);
        EXPECT_NE(read.error.find("api_env.json"), std::string::npos);
        EXPECT_EQ(read.error.find("secret"), std::string::npos) << read.error;
    }
    EXPECT_NE(read_credentials_file((scratch.path() / "none.json").string()).error.find("no such"),
              std::string::npos);
}

}  // namespace
}  // namespace veldra
