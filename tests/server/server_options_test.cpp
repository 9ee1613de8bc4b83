#include "server/server_options.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

ServerOptionsRead read_options(const std::vector<std::string>& arguments) {
    return read_server_options(arguments);
}

TEST(ServerOptionsTest, ServingNeedsADatabaseAndCredentialsAndHasSafeDefaults) {
    const ServerOptionsRead ok = read_options({"db=study.sqlite", "credentials=.api_env.json"});
    ASSERT_TRUE(ok.options) << ok.error;
    EXPECT_EQ(ok.options->mode, ServerMode::serve);
    EXPECT_EQ(ok.options->address, "127.0.0.1");
    EXPECT_EQ(ok.options->port, 8080);
    EXPECT_EQ(ok.options->max_body, 65536u);
    EXPECT_DOUBLE_EQ(ok.options->rate_limit, 20);

    EXPECT_EQ(read_options({"credentials=x"}).error, "db=FILE is required");
    EXPECT_EQ(read_options({"db=x"}).error, "credentials=FILE is required to serve");
}

TEST(ServerOptionsTest, EveryParameterIsRead) {
    const ServerOptionsRead ok =
        read_options({"db=s.db", "credentials=c.json", "address=0.0.0.0", "port=0", "users=u.txt",
                      "user_ids=a, b,,c", "user_ids=d", "cert=c.pem", "key=k.pem", "max_body=1000",
                      "rate_limit=2.5"});
    ASSERT_TRUE(ok.options) << ok.error;
    EXPECT_EQ(ok.options->address, "0.0.0.0");
    EXPECT_EQ(ok.options->port, 0);
    EXPECT_EQ(ok.options->users_file, "u.txt");
    EXPECT_EQ(ok.options->user_ids, (std::vector<std::string>{"a", "b", "c", "d"}));
    EXPECT_EQ(ok.options->cert_file, "c.pem");
    EXPECT_EQ(ok.options->key_file, "k.pem");
    EXPECT_EQ(ok.options->max_body, 1000u);
    EXPECT_DOUBLE_EQ(ok.options->rate_limit, 2.5);
}

TEST(ServerOptionsTest, ThePagesPasswordFileAndLevelCountAreReadAndCheckedAndOffByDefault) {
    const ServerOptionsRead off = read_options({"db=s.db", "credentials=c.json"});
    ASSERT_TRUE(off.options);
    EXPECT_TRUE(off.options->admin_password_file.empty());
    EXPECT_EQ(off.options->levels, 0u);
    const ServerOptionsRead on =
        read_options({"db=s.db", "credentials=c.json", "admin_password_file=pw.txt", "levels=12"});
    ASSERT_TRUE(on.options) << on.error;
    EXPECT_EQ(on.options->admin_password_file, "pw.txt");
    EXPECT_EQ(on.options->levels, 12u);
    for (const char* levels : {"levels=0", "levels=-1", "levels=x", "levels=1.5"})
        EXPECT_FALSE(read_options({"db=s.db", "credentials=c.json", levels}).options) << levels;
}

TEST(ServerOptionsTest, ExportAndBackupAreRunsOfTheirOwnWithoutCredentials) {
    EXPECT_EQ(read_options({"db=s.db", "export=out.csv"}).options->mode, ServerMode::export_csv);
    EXPECT_EQ(read_options({"db=s.db", "backup=copy.db"}).options->mode, ServerMode::backup);
    EXPECT_FALSE(read_options({"db=s.db", "export=a.csv", "backup=b.db"}).options);
    for (const auto& arguments : std::vector<std::vector<std::string>>{
             {"--help"}, {"port=x", "-h"}, {"nonsense", "help"}}) {
        const ServerOptionsRead read = read_options(arguments);
        ASSERT_TRUE(read.options) << arguments.front();
        EXPECT_EQ(read.options->mode, ServerMode::help) << arguments.front();
    }
}

TEST(ServerOptionsTest, MistakesAreRefusedWithWhatIsWrong) {
    const std::vector<std::string> base = {"db=s.db", "credentials=c.json"};
    const auto with = [&](const std::string& argument) {
        std::vector<std::string> arguments = base;
        arguments.push_back(argument);
        return read_options(arguments).error;
    };
    EXPECT_EQ(with("max_bdy=10"), "unknown parameter \"max_bdy\"");
    EXPECT_EQ(with("verbose"), "\"verbose\" is not of the form key=value");
    EXPECT_NE(with("port=65536").find("port=65536"), std::string::npos);
    EXPECT_NE(with("port=-1").find("port=-1"), std::string::npos);
    EXPECT_NE(with("max_body=0").find("max_body=0"), std::string::npos);
    EXPECT_NE(with("rate_limit=-1").find("rate_limit"), std::string::npos);
    EXPECT_NE(with("user_ids=a,b/c").find("b/c"), std::string::npos);
    EXPECT_EQ(with("cert=c.pem"), "cert= and key= go together");
}

TEST(ServerOptionsTest, HelpNamesEveryParameter) {
    const std::string help = server_help_text();
    for (const char* name : {"db=", "address=", "port=", "credentials=", "users=", "user_ids=",
                             "cert=", "key=", "max_body=", "rate_limit=", "export=", "backup="})
        EXPECT_NE(help.find(std::string("  ") + name), std::string::npos) << name;
}

}  // namespace
}  // namespace veldra
