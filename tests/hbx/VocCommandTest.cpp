#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, AnswersWhatAVocabularyOffers) {
    const std::string voc = sample("vocabulary/hbagent.voc.windows");
    const std::string map = sample("vocabulary/map.xml");
    EXPECT_EQ(out({"voc", "features", "--tag", "security", "--tag", "network", voc}),
              "firewall.rules (firewall, network, security)\n"
              "firewall.chains = input output forward (firewall, network, security)\n");
    EXPECT_EQ(linesOf(out({"voc", "features", "-"}, {.in = voc})), 42U);
    EXPECT_EQ(out({"voc", "categories", "--tag", "security", voc}), "firewall (network, security)\n");
    EXPECT_EQ(out({"voc", "has", "env.clone", map}),
              "backup: env.clone (environment, container, virtual_machine)\n");

    const Json features = json({"voc", "features", "--tag", "backup", map})["features"];
    EXPECT_EQ(features.size(), 3U);
    EXPECT_EQ(features[2], Json::parse(R"({"id": "backup.encryption", "tags": ["backup", "security"],
                                           "vocabulary": "backup"})"));
    EXPECT_EQ(json({"voc", "categories", voc})["categories"].size(), 15U);
    EXPECT_EQ(json({"voc", "has", "vocversion", voc})["value"], "4.2.1");

    const std::string deep = sample("bad/voc-too-deep.xml");
    const std::string other = sample("requests/clock-now.xml");
    expectFailures({
        {1, voc + ": there are no such features\n", {"voc", "features", "--tag", "none", voc}},
        {1, voc + ": there is no feature \"network\"\n", {"voc", "has", "network", voc}},
        {3, deep + ": line 5", {"voc", "features", deep}},
        {3, other + ": there is no vocabulary in it\n", {"voc", "features", other}},
    });
}

} // namespace
} // namespace HBX
