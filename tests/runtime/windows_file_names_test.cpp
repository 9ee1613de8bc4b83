#include "runtime/windows_file_names.h"

#include <gtest/gtest.h>

namespace veldra {
namespace {

std::string problem(const std::string& path) {
    return windows_file_name_problem(path).value_or("");
}

TEST(WindowsFileNamesTest, DeviceNamesForbiddenCharactersAndTrailingDotsAreNamed) {
    for (const char* device :
         {"CON", "con.csv", "out/NUL.txt", "C:\\data\\Com1.csv", "lpt9", "aux .log", "prn.tar.gz"})
        EXPECT_NE(problem(device).find("is the name of a device"), std::string::npos) << device;
    EXPECT_EQ(problem("results/a?.csv"),
              "the name \"a?.csv\" has \"?\", which Windows does not allow in file names");
    EXPECT_EQ(
        problem("J\xc3\xbcrgen/Tabelle \xc3\xb6?.csv"),
        "the name \"Tabelle \xc3\xb6?.csv\" has \"?\", which Windows does not allow in file names");
    EXPECT_NE(problem("x<y.csv").find("\"<\""), std::string::npos);
    EXPECT_NE(problem("out/time 10:30.csv").find("\":\""), std::string::npos);
    EXPECT_NE(problem("tab\there.csv").find("control character"), std::string::npos);
    EXPECT_NE(problem("C:\\results.\\out.csv").find("ends with a dot"), std::string::npos);
    EXPECT_NE(problem("out.csv ").find("ends with a space"), std::string::npos);
}

TEST(WindowsFileNamesTest, OrdinaryPathsDrivesSharesAndLookalikesPass) {
    for (const char* fine :
         {"out.csv", "C:\\Users\\J\xc3\xbcrgen\\Veldra\\session.csv", "C:/data/levels/level_01.txt",
          "\\\\labserver\\studies\\out.csv", "../results/./out.csv", "console.csv", "CONFIG",
          "com10.csv", "LPT0.txt", "nullable.json", ".api_env.json", "d:"})
        EXPECT_EQ(problem(fine), "") << fine;
}

}  // namespace
}  // namespace veldra
