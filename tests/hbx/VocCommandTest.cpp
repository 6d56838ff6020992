#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace HBX {
namespace {

const std::string kVoc = sample("vocabulary/hbagent.voc.windows");
const std::string kMap = sample("vocabulary/map.xml");

TEST_F(ProgramTest, ListsWhatAVocabularyOffers) {
    const struct {
        Words words;
        int code;
        const char* out;
        const char* err;
    } rows[] = {
        {{"voc", "features", "--tag", "security", "--tag", "network", kVoc},
         0,
         "firewall.rules (firewall, network, security)\n"
         "firewall.chains = input output forward (firewall, network, security)\n",
         ""},
        {{"voc", "categories", "--tag", "security", kVoc}, 0, "firewall (network, security)\n", ""},
        {{"voc", "features", "--tag", "none", kVoc}, 1, "", ": there are no such features\n"},
        {{"voc", "features", "--tag", "container", "--tag", "resource", kMap},
         0,
         "base: cpu.units (cpu, resource, container)\n"
         "base: disk.quota = first-level (disk, resource, container)\n",
         ""},
        {{"voc", "has", "disk.quota", kVoc}, 0, "disk.quota = first-level (disk, resource, container)\n", ""},
        {{"voc", "has", "env.clone", kMap},
         0,
         "backup: env.clone (environment, container, virtual_machine)\n",
         ""},
        {{"voc", "has", "disk.quota", "--tag", "network", kVoc},
         1,
         "",
         ": there is no feature \"disk.quota\"\n"},
        {{"voc", "has", "network", kVoc}, 1, "", ": there is no feature \"network\"\n"},
        {{"voc", "has"}, 2, "", "wrong number of operands"},
        {{"voc", "features", sample("bad/voc-too-deep.xml")}, 3, "", "/voc-too-deep.xml: line 5"},
        {{"voc", "features", sample("requests/clock-now.xml")}, 3, "", ": there is no vocabulary in it\n"},
    };
    for (const auto& row : rows) {
        const Ended ended = run(row.words);
        EXPECT_EQ(ended.code, row.code) << ended.err;
        EXPECT_EQ(ended.out, row.out);
        EXPECT_NE(ended.err.find(row.err), std::string::npos) << ended.err;
    }
    EXPECT_EQ(linesOf(run({"voc", "features", "-"}, {.in = kVoc}).out), 42U);
}

TEST_F(ProgramTest, VocabulariesAreGivenAsJson) {
    const auto document = [&](Words words) {
        words.emplace_back("--json");
        return nlohmann::json::parse(run(words).out);
    };
    const auto features = document({"voc", "features", "--tag", "backup", kMap});
    ASSERT_EQ(features["features"].size(), 3U);
    EXPECT_EQ(features["features"][2], nlohmann::json::parse(R"({"id": "backup.encryption",
        "tags": ["backup", "security"], "vocabulary": "backup"})"));
    EXPECT_EQ(document({"voc", "categories", kVoc})["categories"].size(), 15U);
    EXPECT_EQ(document({"voc", "has", "vocversion", kVoc})["value"], "4.2.1");
}

} // namespace
} // namespace HBX
