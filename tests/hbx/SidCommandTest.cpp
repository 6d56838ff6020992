#include "ProgramTest.h"

namespace HBX {
namespace {

const std::string kEid = "01234567-89ab-cdef-0011-223344556677";
const std::string kUser7 = "S-1-8193-1732584193-4023233417-857870592-2003195204-7";
const std::string kUser7Binary = "AQUAAAAAIAEBI0VniavN7wARIjNEVWZ3BwAAAA==";

TEST_F(ProgramTest, TakesIdentifiersApartAndMakesThemOfPrincipals) {
    const std::string master = "00000000-0000-0001-0000-000000000002";
    const std::pair<Words, std::string> rows[] = {
        {{"parse", kUser7Binary},
         kUser7 + "\nbinary: " + kUser7Binary + "\nuser 7 of environment " + kEid + '\n'},
        {{"parse", "S-1-5-7"}, "S-1-5-7\nbinary: AQEAAAAAAAUHAAAA\nwell known: anonymous\n"},
        {{"local", "7", "--eid", kEid}, kUser7 + '\n'},
        {{"local", "4294967295", "--type", "role", "--eid", kEid},
         "S-1-8194-1732584193-4023233417-857870592-2003195204-4294967295\n"},
        {{"well-known", "local_administrators", "--eid", kEid},
         "2 local_administrators S-1-8192-1732584193-4023233417-857870592-2003195204-0\n"},
        {{"well-known", "master_environment", "--eid", kEid, "--master", master},
         "7 master_environment S-1-8195-0-16777216-0-33554432-0\n"},
    };
    for (const auto& [words, printed] : rows) {
        EXPECT_EQ(out(joined({"sid"}, words)), printed);
    }
    EXPECT_EQ(linesOf(out({"sid", "well-known"})), 11U);
    const Json user = {{"schema", 1},    {"text", kUser7}, {"binary", kUser7Binary},
                       {"type", "user"}, {"local_id", 7},  {"eid", kEid}};
    EXPECT_EQ(json({"sid", "parse", kUser7}), user);
    EXPECT_EQ(json({"sid", "local", "7", "--eid", kEid}), user);
    EXPECT_EQ(json({"sid", "parse", "S-1-5-7"})["well_known"], Json::array({"anonymous"}));
    EXPECT_EQ(json({"sid", "well-known", "nobody"})["identifiers"],
              (Json::array({{{"kind", 8}, {"name", "nobody"}, {"text", "S-1-0-0"}}})));
    expectFailures({
        {3, "\"S-1-5-\" is no security identifier\n", {"sid", "parse", "S-1-5-"}},
        {3, "\"AQEAAAAAAAUH\" is no security identifier\n", {"sid", "parse", "AQEAAAAAAAUH"}},
        {2, "\"4294967296\" is no number of 32 bits", {"sid", "local", "4294967296", "--eid", kEid}},
        {2, "--eid: \"x\" is no identifier", {"sid", "local", "7", "--eid", "x"}},
        {2, "--type is user, ", {"sid", "local", "7", "--type", "none", "--eid", kEid}},
        {1, "the local environment has no identifier; ", {"sid", "local", "7"}},
        {2, "there is no well-known identifier \"somebody\"", {"sid", "well-known", "somebody"}},
    });
}

} // namespace
} // namespace HBX
