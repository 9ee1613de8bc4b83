// HTTPS with a certificate made at test time by the openssl command: a client that trusts it
// (as its CA file) connects, one that does not is refused.

#include <gtest/gtest.h>
#include <httplib.h>

#include <cstdlib>
#include <fstream>

#include "server/server_process.h"
#include "support/scratch_directory.h"

namespace veldra {
namespace {

using veldra::testing::ScratchDirectory;
using veldra::testing::ServerProcess;

TEST(HttpsTest, AClientTrustingTheCertificateConnectsAndOneWithoutItIsRefused) {
    ScratchDirectory scratch{"https"};
    const std::string cert = (scratch.path() / "cert.pem").string();
    const std::string key = (scratch.path() / "key.pem").string();
    const std::string credentials = (scratch.path() / "api_env.json").string();
    std::ofstream(credentials) << R"({"api_username": "lab", "api_password": "s3cret-pw"})";
    const std::string make_certificate =
        "timeout 60 openssl req -x509 -newkey rsa:2048 -nodes -days 2 -subj /CN=127.0.0.1 "
        "-addext subjectAltName=IP:127.0.0.1 -keyout '" +
        key + "' -out '" + cert + "' >/dev/null 2>&1";
    ASSERT_EQ(std::system(make_certificate.c_str()), 0) << "the openssl command failed";

    ServerProcess server({"db=" + (scratch.path() / "study.sqlite").string(),
                          "credentials=" + credentials, "cert=" + cert, "key=" + key, "port=0"});
    const int port = server.wait_until_listening();
    ASSERT_GT(port, 0) << server.output();

    httplib::SSLClient trusting("127.0.0.1", port);
    trusting.set_ca_cert_path(cert.c_str());
    trusting.enable_server_certificate_verification(true);
    trusting.set_basic_auth("lab", "s3cret-pw");
    trusting.set_connection_timeout(10);
    trusting.set_read_timeout(10);
    const auto answer = trusting.Get("/");
    ASSERT_TRUE(answer) << httplib::to_string(answer.error());
    EXPECT_EQ(answer->status, 200);
    EXPECT_EQ(answer->body, "ok");

    httplib::SSLClient untrusting("127.0.0.1", port);
    untrusting.enable_server_certificate_verification(true);
    untrusting.set_basic_auth("lab", "s3cret-pw");
    untrusting.set_connection_timeout(10);
    untrusting.set_read_timeout(10);
    const auto refused = untrusting.Get("/");
    EXPECT_FALSE(refused);
    EXPECT_EQ(refused.error(), httplib::Error::SSLServerVerification);

    // Plain HTTP to the HTTPS port gets no answer.
    httplib::Client plain("127.0.0.1", port);
    plain.set_connection_timeout(10);
    plain.set_read_timeout(10);
    const auto plain_answer = plain.Get("/");
    EXPECT_TRUE(!plain_answer || plain_answer->status == 400);

    trusting.stop();
    untrusting.stop();
    EXPECT_EQ(server.terminate(), 0) << server.output();
}

}  // namespace
}  // namespace veldra
