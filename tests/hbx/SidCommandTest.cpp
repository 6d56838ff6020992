#include "ProgramTest.h"

namespace HBX {
namespace {

const std::string kEid = "01234567-89ab-cdef-0011-223344556677";
const std::string kUser7 = "S-1-8193-1732584193-4023233417-857870592-2003195204-7";
const std::string kUser7Binary = "AQUAAAAAIAEBI0VniavN7wARIjNEVWZ3BwAAAA==";

TEST_F(ProgramTest, TakesIdentifiersApartAndMakesThemOfPrincipals) {
    for (const std::string& sid : {kUser7, kUser7Binary}) {
        EXPECT_EQ(out({"sid", "parse", sid}),
                  kUser7 + "\nbinary: " + kUser7Binary + "\nuser 7 of environment " + kEid + "\n");
    }
    EXPECT_EQ(out({"sid", "parse", "S-1-5-7"}), "S-1-5-7\nbinary: AQEAAAAAAAUHAAAA\nwell known: anonymous\n");
    EXPECT_EQ(json({"sid", "parse", kUser7}), (Json{{"schema", 1},
                                                    {"text", kUser7},
                                                    {"binary", kUser7Binary},
                                                    {"type", "user"},
                                                    {"local_id", 7},
                                                    {"eid", kEid}}));
    EXPECT_EQ(out({"sid", "local", "7", "--eid", kEid}), kUser7 + '\n');
    EXPECT_EQ(out({"sid", "local", "4294967295", "--type", "role", "--eid", kEid}),
              "S-1-8194-1732584193-4023233417-857870592-2003195204-4294967295\n");
    expectFailures({
        {{"sid", "parse", "S-1-5-"}, 3, "\"S-1-5-\" is no security identifier\n"},
        {{"sid", "parse", "AQEAAAAAAAUH"}, 3, "\"AQEAAAAAAAUH\" is no security identifier\n"},
        {{"sid", "local", "4294967296", "--eid", kEid}, 2, ""},
        {{"sid", "local", "7", "--eid", "x"}, 2, ""},
        {{"sid", "local", "7", "--type", "none", "--eid", kEid}, 2, ""},
        {{"sid", "local", "7"}, 1, ""}, // nobody says which environment is the local one
        {{"sid", "well-known", "somebody"}, 2, ""},
    });
}

TEST_F(ProgramTest, ListsWellKnownIdentifiers) {
    const std::string all = out({"sid", "well-known"});
    EXPECT_EQ(linesOf(all), 11U);
    EXPECT_EQ(all.rfind("0 everyone S-1-1000-1\n1 authenticated S-1-1000-2\n2 local_administrators -\n", 0),
              0U);
    EXPECT_EQ(out({"sid", "well-known", "local_administrators", "--eid", kEid}),
              "2 local_administrators S-1-8192-1732584193-4023233417-857870592-2003195204-0\n");
    const std::string master = "00000000-0000-0001-0000-000000000002";
    EXPECT_EQ(out({"sid", "well-known", "master_environment", "--eid", kEid, "--master", master}),
              "7 master_environment S-1-8195-0-16777216-0-33554432-0\n");
    EXPECT_EQ(json({"sid", "well-known", "nobody"})["identifiers"],
              (Json::array({{{"kind", 8}, {"name", "nobody"}, {"text", "S-1-0-0"}}})));
}

} // namespace
} // namespace HBX
