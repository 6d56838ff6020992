#include "ProgramTest.h"

namespace HBX {
namespace {

const std::string kStorageId = "5f0c3b1e-7d14-4f0a-9b52-2f6f8a3f1c77";

TEST_F(ProgramTest, BackupReferencesReadBackOrAreRefused) {
    EXPECT_EQ(out({"backup-uri", "make", "a/b"}), "backup://a/b/\n");
    EXPECT_EQ(out({"backup-uri", "parse", "backup://a/b/c/d"}), "id: a/b\npath: c/d\n");
    const Json made = json({"backup-uri", "make", "a/b", "c", "--storage-id", kStorageId, "--storage-path",
                            "/srv", "--server", "s", "--share", "b"});
    const std::string uri = made["uri"];
    EXPECT_EQ(out({"backup-uri", "parse", uri}),
              "id: a/b\npath: c\nstorage: " + kStorageId + " /srv\nserver: s\nshare: b\n");
    Json parsed = json({"backup-uri", "parse", uri});
    parsed["uri"] = uri;
    EXPECT_EQ(parsed, made);
    EXPECT_EQ(parsed["storage"]["path"], "/srv");

    expectFailures({
        {{"backup-uri", "parse", "backup://a"}, 3, "\"backup://a\" is no backup reference\n"},
        {{"backup-uri", "make", "x", "p/q"},
         3,
         "backup://x/p/q would read back as identifier \"x/p\", path \"q\"\n"},
        {{"backup-uri", "make", ""}, 3, "the identifier is empty\n"},
        {{"backup-uri", "make", "a/b", "--server", "s"}, 2, "a storage has --storage-id and "},
        {{"backup-uri", "make", "a/b", "--storage-id", "1", "--storage-path", "p"}, 2, "--storage-id: \"1\""},
    });
}

} // namespace
} // namespace HBX
