#include "ProgramTest.h"

namespace HBX {
namespace {

TEST_F(ProgramTest, BackupReferencesReadBackOrAreRefused) {
    const std::string id = "5f0c3b1e-7d14-4f0a-9b52-2f6f8a3f1c77";
    const Words make = {"backup-uri", "make", "a/b"};
    EXPECT_EQ(out(make), "backup://a/b/\n");
    EXPECT_EQ(out({"backup-uri", "parse", "backup://a/b/c/d"}), "id: a/b\npath: c/d\n");
    const Json made = json(
        joined(make, {"c", "--storage-id", id, "--storage-path", "/srv", "--server", "s", "--share", "b"}));
    const std::string uri = made["uri"];
    EXPECT_EQ(out({"backup-uri", "parse", uri}),
              "id: a/b\npath: c\nstorage: " + id + " /srv\nserver: s\nshare: b\n");
    Json parsed = json({"backup-uri", "parse", uri});
    EXPECT_EQ(parsed["storage"]["path"], "/srv");
    parsed["uri"] = uri;
    EXPECT_EQ(parsed, made);

    expectFailures({
        {3, "\"backup://a\" is no backup reference\n", {"backup-uri", "parse", "backup://a"}},
        {3,
         "backup://x/p/q would read back as identifier \"x/p\", path \"q\"\n",
         {"backup-uri", "make", "x", "p/q"}},
        {3, "the identifier is empty\n", {"backup-uri", "make", ""}},
        {2, "a storage has --storage-id and ", joined(make, {"--server", "s"})},
        {2, "--storage-id: \"1\"", joined(make, {"--storage-id", "1", "--storage-path", "p"})},
    });
}

} // namespace
} // namespace HBX
