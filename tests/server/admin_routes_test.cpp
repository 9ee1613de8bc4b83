#include "server/admin_routes.h"

#include <gtest/gtest.h>

#include "server/api_routes.h"
#include "server/trial_export.h"
#include "server/trial_record_sample.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::record_json;
using veldra::testing::sample_trial_data;
using veldra::testing::ScratchDirectory;

constexpr const char* ADMIN_AUTH = "Basic YWRtaW46cmVzZWFyY2gtcHc=";  // admin:research-pw
constexpr const char* API_AUTH = "Basic bGFiOnNlY3JldA==";            // lab:secret

class AdminRoutesTest : public ::testing::Test {
protected:
    ScratchDirectory scratch{"admin_routes"};
    TrialStore store{(scratch.path() / "study.sqlite").string(), SqliteOpen::create};
    const AdminSettings settings{
        .password = "research-pw", .form_token = make_form_token(), .levels_to_finish = 0};

    void SetUp() override {
        trial_data_get_flattened_names();
        store.register_users({"p1", "p2"});
        post(sample_trial_data("p1", "a.txt", 1, 2));
        post(sample_trial_data("p1", "b.txt", 1, 3));
        post(sample_trial_data("p2", "a.txt", 1, 4));
    }
    void post(const TrialData& data) {
        const ApiAnswer answer =
            answer_api_request(ApiRequest{.method = "POST",
                                          .path = "/api/game/trials",
                                          .fields = std::nullopt,
                                          .authorization = API_AUTH,
                                          .body = record_json(data)},
                               store, {.username = "lab", .password = "secret"});
        ASSERT_EQ(answer.status, 201) << answer.body;
    }
    ApiAnswer answer(const std::string& method, const std::string& path,
                     const std::string& authorization = ADMIN_AUTH, const std::string& user = "",
                     const std::string& token = "", const std::string& origin = "") {
        return answer_admin_request(AdminRequest{.method = method,
                                                 .path = path,
                                                 .authorization = authorization,
                                                 .origin = origin,
                                                 .host = "127.0.0.1:8080",
                                                 .user = user,
                                                 .token = token},
                                    store, settings);
    }
    static std::string header(const ApiAnswer& answer, const std::string& name) {
        for (const auto& [key, value] : answer.headers)
            if (key == name)
                return value;
        return {};
    }
};

TEST_F(AdminRoutesTest, OnlyTheAdministratorPasswordOpensThePage) {
    for (const std::string& authorization :
         {std::string(), std::string(API_AUTH),
          std::string("Basic YWRtaW46c2VjcmV0"),          // admin:secret (the API password)
          std::string("Basic bGFiOnJlc2VhcmNoLXB3"),      // lab:research-pw
          std::string("Basic YWRtaW46cmVzZWFyY2gtcHc")})  // unpadded
    {
        SCOPED_TRACE(authorization);
        for (const char* path : {"/admin/", "/admin/trials.csv", "/admin/delete", "/admin/x"}) {
            const ApiAnswer refused = answer("GET", path, authorization, "p1");
            EXPECT_EQ(refused.status, 401) << path;
            EXPECT_NE(header(refused, "WWW-Authenticate").find("veldra researchers"),
                      std::string::npos);
            EXPECT_EQ(refused.body.find("a.txt"), std::string::npos);
        }
        EXPECT_EQ(answer("POST", "/admin/delete", authorization, "p1", settings.form_token).status,
                  401);
    }
    EXPECT_EQ(store.record_count_of_user("p1"), 2);
    EXPECT_EQ(answer("GET", "/admin/").status, 200);
    EXPECT_EQ(answer("GET", "/admin").status, 200);
}

TEST_F(AdminRoutesTest, TheOverviewCountsFromTheDatabase) {
    const ApiAnswer page = answer("GET", "/admin/");
    EXPECT_EQ(page.content_type, "text/html; charset=utf-8");
    EXPECT_NE(page.body.find("id=\"registered\">2<"), std::string::npos);
    EXPECT_NE(page.body.find("id=\"started\">2<"), std::string::npos);
    EXPECT_NE(page.body.find("id=\"finished\">1<"), std::string::npos);  // p1: both levels
    EXPECT_NE(page.body.find("id=\"records\">3<"), std::string::npos);
}

TEST_F(AdminRoutesTest, TheDownloadIsTheExportAsAnAttachment) {
    const ApiAnswer csv = answer("GET", "/admin/trials.csv");
    EXPECT_EQ(csv.status, 200);
    EXPECT_EQ(csv.body, trial_records_as_csv(store));
    EXPECT_EQ(header(csv, "Content-Disposition"), R"(attachment; filename="trials.csv")");
    EXPECT_EQ(csv.content_type.rfind("text/csv", 0), 0u);
}

TEST_F(AdminRoutesTest, DeletingTakesTheConfirmationPostAndRemovesOneParticipantOnly) {
    const ApiAnswer confirmation = answer("GET", "/admin/delete", ADMIN_AUTH, "p1");
    EXPECT_EQ(confirmation.status, 200);
    EXPECT_NE(confirmation.body.find(settings.form_token), std::string::npos);
    EXPECT_EQ(store.record_count_of_user("p1"), 2);  // asking deletes nothing

    // A form on another site can make a logged-in browser post, but cannot know the token.
    EXPECT_EQ(answer("POST", "/admin/delete", ADMIN_AUTH, "p1").status, 403);
    EXPECT_EQ(answer("POST", "/admin/delete", ADMIN_AUTH, "p1", "0123456789abcdef").status, 403);
    EXPECT_EQ(answer("POST", "/admin/delete", ADMIN_AUTH, "p1", settings.form_token,
                     "https://evil.example")
                  .status,
              403);
    EXPECT_EQ(answer("PUT", "/admin/delete", ADMIN_AUTH, "p1", settings.form_token).status, 405);
    EXPECT_EQ(store.record_count_of_user("p1"), 2);

    const ApiAnswer deleted = answer("POST", "/admin/delete", ADMIN_AUTH, "p1", settings.form_token,
                                     "http://127.0.0.1:8080");
    EXPECT_EQ(deleted.status, 200);
    EXPECT_NE(deleted.body.find("2 records"), std::string::npos);
    EXPECT_EQ(store.record_count_of_user("p1"), 0);
    EXPECT_EQ(store.record_count_of_user("p2"), 1);
    EXPECT_TRUE(store.user_exists("p1"));
}

TEST_F(AdminRoutesTest, UnknownParticipantsPagesAndMethodsAreRefused) {
    EXPECT_EQ(answer("GET", "/admin/delete", ADMIN_AUTH, "p9").status, 404);
    EXPECT_EQ(answer("POST", "/admin/delete", ADMIN_AUTH, "p9", settings.form_token).status, 404);
    EXPECT_EQ(answer("GET", "/admin/nothing").status, 404);
    const ApiAnswer post_overview = answer("POST", "/admin/");
    EXPECT_EQ(post_overview.status, 405);
    EXPECT_EQ(header(post_overview, "Allow"), "GET, HEAD");
    EXPECT_EQ(answer("DELETE", "/admin/trials.csv").status, 405);
}

TEST(AdminPathTest, OnlyTheAdminFolderIsThePage) {
    EXPECT_TRUE(is_admin_path("/admin"));
    EXPECT_TRUE(is_admin_path("/admin/trials.csv"));
    EXPECT_FALSE(is_admin_path("/administrator"));
    EXPECT_FALSE(is_admin_path("/api/game/admin/"));
    EXPECT_NE(make_form_token(), make_form_token());
    EXPECT_EQ(make_form_token().size(), 32u);
}

}  // namespace
}  // namespace veldra
