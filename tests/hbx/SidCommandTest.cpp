#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace HBX {
namespace {

constexpr const char* kEid = "01234567-89ab-cdef-0011-223344556677";
constexpr const char* kUser7 = "S-1-8193-1732584193-4023233417-857870592-2003195204-7";
constexpr const char* kUser7Binary = "AQUAAAAAIAEBI0VniavN7wARIjNEVWZ3BwAAAA==";

TEST_F(ProgramTest, TakesIdentifiersApart) {
    const std::string user =
        std::string(kUser7) + "\nbinary: " + kUser7Binary + "\nuser 7 of environment " + kEid + "\n";
    const struct {
        const char* sid;
        int code;
        std::string out;
    } rows[] = {
        {kUser7, 0, user},
        {kUser7Binary, 0, user},
        {"S-1-5-7", 0, "S-1-5-7\nbinary: AQEAAAAAAAUHAAAA\nwell known: anonymous\n"},
        {"S-1-5-", 3, ""},
        {"AQEAAAAAAAUH", 3, ""},
    };
    for (const auto& row : rows) {
        const Ended ended = run({"sid", "parse", row.sid});
        EXPECT_EQ(ended.code, row.code) << row.sid;
        EXPECT_EQ(ended.out, row.out) << row.sid;
        EXPECT_EQ(ended.err,
                  row.code == 0 ? "" : std::string("hbx: \"") + row.sid + "\" is no security identifier\n");
    }
    const Ended json = run({"sid", "parse", "--json", kUser7});
    EXPECT_EQ(nlohmann::json::parse(json.out), (nlohmann::json{{"schema", 1},
                                                               {"text", kUser7},
                                                               {"binary", kUser7Binary},
                                                               {"type", "user"},
                                                               {"local_id", 7},
                                                               {"eid", kEid}}));
}

TEST_F(ProgramTest, MakesIdentifiersOfPrincipals) {
    const struct {
        Words words;
        int code;
        const char* out;
    } rows[] = {
        {{"7", "--eid", kEid}, 0, "S-1-8193-1732584193-4023233417-857870592-2003195204-7\n"},
        {{"4294967295", "--type", "role", "--eid", kEid},
         0,
         "S-1-8194-1732584193-4023233417-857870592-2003195204-4294967295\n"},
        {{"4294967296", "--eid", kEid}, 2, ""},
        {{"-1", "--eid", kEid}, 2, ""},
        {{"7", "--eid", "x"}, 2, ""},
        {{"7", "--type", "none", "--eid", kEid}, 2, ""},
    };
    for (const auto& row : rows) {
        const Ended ended = run(joined({"sid", "local"}, row.words));
        EXPECT_EQ(ended.code, row.code) << ended.err;
        EXPECT_EQ(ended.out, row.out);
    }
    EXPECT_EQ(run({"sid", "local", "7"}).code, 1) << "nobody says which environment is the local one";
    const Ended json = run({"sid", "local", "7", "--eid", kEid, "--json"});
    EXPECT_EQ(nlohmann::json::parse(json.out)["binary"], kUser7Binary);
}

TEST_F(ProgramTest, ListsWellKnownIdentifiers) {
    const Ended all = run({"sid", "well-known"});
    EXPECT_EQ(linesOf(all.out), 11U);
    EXPECT_EQ(
        all.out.rfind("0 everyone S-1-1000-1\n1 authenticated S-1-1000-2\n2 local_administrators -\n", 0),
        0U);
    EXPECT_EQ(run({"sid", "well-known", "local_administrators", "--eid", kEid}).out,
              "2 local_administrators S-1-8192-1732584193-4023233417-857870592-2003195204-0\n");
    EXPECT_EQ(run({"sid", "well-known", "master_environment", "--eid", kEid, "--master",
                   "00000000-0000-0001-0000-000000000002"})
                  .out,
              "7 master_environment S-1-8195-0-16777216-0-33554432-0\n");
    EXPECT_EQ(nlohmann::json::parse(run({"sid", "well-known", "nobody", "--json"}).out)["identifiers"],
              (nlohmann::json::array({{{"kind", 8}, {"name", "nobody"}, {"text", "S-1-0-0"}}})));
    EXPECT_EQ(run({"sid", "well-known", "somebody"}).code, 2);
}

} // namespace
} // namespace HBX
