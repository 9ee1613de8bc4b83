#pragma once
// The real veldra-server for the game's end-to-end tests: started on a free port of 127.0.0.1
// with its database and credentials in the test's folder, and its stored records read back
// through its own export, as a researcher would read them.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "server/server_process.h"

namespace veldra::testing {

// One stored record: its CSV cells by column name.
using StoredRecord = std::map<std::string, std::string>;

class StudyServer {
public:
    // Serves `folder`/study.sqlite for the account game:s3cret, with `user_ids` registered.
    // `extra` are further parameters of the server (a limit, say).
    StudyServer(const std::filesystem::path& folder, const std::string& user_ids,
                const std::vector<std::string>& extra = {})
        : folder_(folder) {
        std::ofstream(folder / "server_credentials.json")
            << R"({"api_username": "game", "api_password": "s3cret"})";
        std::vector<std::string> arguments{
            "db=" + database(), "credentials=" + (folder / "server_credentials.json").string(),
            "port=0", "rate_limit=0", "user_ids=" + user_ids};
        arguments.insert(arguments.end(), extra.begin(), extra.end());
        process_ = std::make_unique<ServerProcess>(arguments);
        port_ = process_->wait_until_listening();
    }

    int port() const { return port_; }
    // Stops it as a service manager would (SIGTERM); its exit status.
    int stop() { return process_->terminate(); }
    std::string output() const { return process_->output(); }
    std::string database() const { return (folder_ / "study.sqlite").string(); }

    // The game's ".api_env.json" in `folder`, for this server (no "/" at the end: the game adds
    // it) with `password`.
    // In `game_folder`, when the game runs elsewhere than the server's folder.
    void write_api_env(const std::string& password,
                       const std::filesystem::path& game_folder = {}) const {
        std::ofstream((game_folder.empty() ? folder_ : game_folder) / ".api_env.json")
            << R"({"remote_url": "http://127.0.0.1:)" << port_
            << R"(", "api_username": "game", "api_password": ")" << password << R"("})";
    }

    // Every record of `database`, in arrival order.
    std::vector<StoredRecord> stored(const std::string& database) const {
        const std::string csv = (folder_ / "export.csv").string();
        ServerProcess exporter({"db=" + database, "export=" + csv});
        EXPECT_EQ(exporter.wait_for_exit(), 0) << exporter.output();
        std::ifstream file(csv);
        std::vector<std::string> names;
        std::vector<StoredRecord> records;
        for (std::string line; std::getline(file, line);) {
            std::vector<std::string> cells;
            std::stringstream stream(line);
            for (std::string cell; std::getline(stream, cell, ';');)
                cells.push_back(cell);
            if (names.empty()) {
                names = cells;
                continue;
            }
            StoredRecord record;
            for (std::size_t i = 0; i < names.size() && i < cells.size(); ++i)
                record[names[i]] = cells[i];
            records.push_back(record);
        }
        return records;
    }
    std::vector<StoredRecord> stored() const { return stored(database()); }

private:
    std::filesystem::path folder_;
    std::unique_ptr<ServerProcess> process_;
    int port_ = 0;
};

}  // namespace veldra::testing
