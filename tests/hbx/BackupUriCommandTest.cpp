#include "ProgramTest.h"

#include <nlohmann/json.hpp>

namespace HBX {
namespace {

constexpr const char* kStorageId = "5f0c3b1e-7d14-4f0a-9b52-2f6f8a3f1c77";

TEST_F(ProgramTest, TakesBackupReferencesApart) {
    const struct {
        const char* uri;
        int code;
        const char* out;
    } rows[] = {
        {"backup://a/b/c/d", 0, "id: a/b\npath: c/d\n"},
        {"backup://a/b", 0, "id: a/b\npath: \n"},
        {"backup://a", 3, ""},
        {"file://a/b/c", 3, ""},
        {"backup://00&a/b/c", 3, ""},
        {"", 3, ""},
    };
    for (const auto& row : rows) {
        const Ended ended = run({"backup-uri", "parse", row.uri});
        EXPECT_EQ(ended.code, row.code) << row.uri;
        EXPECT_EQ(ended.out, row.out);
        EXPECT_EQ(ended.err,
                  row.code == 0 ? "" : std::string("hbx: \"") + row.uri + "\" is no backup reference\n");
    }
}

TEST_F(ProgramTest, MakesBackupReferencesThatReadBack) {
    EXPECT_EQ(run({"backup-uri", "make", "a/b", "c/d"}).out, "backup://a/b/c/d\n");
    EXPECT_EQ(run({"backup-uri", "make", "a/b"}).out, "backup://a/b/\n");
    const struct {
        Words words;
        int code;
        const char* err;
    } rows[] = {
        {{"x", "p/q"}, 3, "backup://x/p/q would read back as identifier \"x/p\", path \"q\"\n"},
        {{"x&y/z"}, 3, "backup://x&y/z/ would read back as identifier \"\", path \"\"\n"},
        {{""}, 3, "the identifier is empty\n"},
        {{"a/b", "--server", "s"}, 2, "a storage has --storage-id and --storage-path\n"},
        {{"a/b", "--storage-id", "1", "--storage-path", "p"}, 2, "--storage-id: \"1\" is no identifier\n"},
    };
    for (const auto& row : rows) {
        Words words = {"backup-uri", "make"};
        words.insert(words.end(), row.words.begin(), row.words.end());
        const Ended ended = run(words);
        EXPECT_EQ(ended.code, row.code);
        EXPECT_EQ(ended.err, std::string("hbx: ") + row.err);
    }

    const Words storage = {"--storage-id", kStorageId, "--storage-path", "/srv",
                           "--server",     "s",        "--share",        "b"};
    Words words = {"backup-uri", "make", "--json", "a/b", "c"};
    words.insert(words.end(), storage.begin(), storage.end());
    const nlohmann::json made = nlohmann::json::parse(run(words).out);
    const std::string uri = made["uri"];
    EXPECT_EQ(run({"backup-uri", "parse", uri}).out,
              "id: a/b\npath: c\nstorage: " + std::string(kStorageId) + " /srv\nserver: s\nshare: b\n");
    nlohmann::json parsed = nlohmann::json::parse(run({"backup-uri", "parse", "--json", uri}).out);
    parsed["uri"] = uri;
    EXPECT_EQ(parsed, made);
    EXPECT_EQ(parsed["storage"]["path"], "/srv");
}

} // namespace
} // namespace HBX
