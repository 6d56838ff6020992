#include "VocabularyTestUtil.h"

#include <atomic>
#include <thread>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXFileUtil.h>
#include <HBXCommon/HBXInstanceFolders.h>

namespace HBX::test {
namespace {

const std::string kSamples = HBX_SOURCE_DIR "/samples/";

/// Opens the protected door of a prototype.
struct OpenPrototype : HBXVocPrototype {
    using HBXVocPrototype::HBXVocPrototype;
    using HBXVocPrototype::reset;
};

TEST(VocPrototype, TellsParametersFromCategories) {
    const auto voc = vocOf({"c:network", "p:ipv6,network", "p:vocversion=1.2"});
    EXPECT_TRUE(voc->isFeatureEnabled("ipv6"));
    EXPECT_FALSE(voc->isFeatureEnabled("network"));
    EXPECT_FALSE(voc->isFeatureEnabled("ipv4"));
    const HBXVocPrototype& constant = *voc;
    EXPECT_EQ(placeOf(VocCursor(constant.readParameter("ipv6")).get()), "ipv6");
    EXPECT_EQ(placeOf(VocCursor(constant.read()).get()), "agent");
    EXPECT_EQ(walkParameters(*VocCursor(constant.readCategory("network")), {}), "ipv6 vocversion ");
    EXPECT_EQ(placeOf(VocCursor(HBXVocPrototype().read()).get()), "null");
}

TEST(VocPrototype, KeepsAVersionOnceThereIsOne) {
    OpenPrototype voc(messageOf(vocText({"p:x"})).detach());
    EXPECT_EQ(voc.readVersion(), "");
    const VocCursor it(voc.read());
    it->newChild(1017);
    it->putValue("vocversion", 1010);
    EXPECT_EQ(voc.getVersion(), "") << "without a value";
    it->putValue("2.0", 1307);
    EXPECT_EQ(voc.readVersion(), "2.0");
    it->deleteFromChild();
    EXPECT_EQ(voc.getVersion(), "2.0");
    voc.reset(messageOf(vocText({"p:vocversion=3.0"})).detach());
    EXPECT_EQ(voc.getVersion(), "3.0") << "a new message has a version of its own";
}

TEST(VocPrototype, AnIteratorOutlivesAReplacedMessage) {
    OpenPrototype voc(messageOf(vocText({"p:old"})).detach());
    const VocCursor it(voc.read());
    voc.reset(messageOf(vocText({"p:new"})).detach());
    EXPECT_EQ(it->seekParameter("old"), 0);
    EXPECT_FALSE(voc.isFeatureEnabled("old"));
    EXPECT_TRUE(voc.isFeatureEnabled("new"));
    voc.reset(nullptr);
    EXPECT_FALSE(voc.isFeatureEnabled("new"));
    EXPECT_EQ(voc.saveToFile("/nowhere/voc"), -1);
}

TEST(VocPrototype, FilesComeBackAsTheyWereSaved) {
    const ScratchFolder folder;
    HBXVocPrototype voc;
    ASSERT_EQ(voc.readFromFile(kSamples + "vocabulary/hbagent.voc.windows"), 0) << getErrorMessage();
    EXPECT_EQ(voc.readVersion(), "4.2.1");
    EXPECT_TRUE(voc.isFeatureEnabled("migration.live"));
    EXPECT_FALSE(voc.isFeatureEnabled("migration"));
    EXPECT_EQ(walkParameters(*VocCursor(voc.read()), {"network", "security"}),
              "firewall.rules firewall.chains ");
    ASSERT_EQ(voc.saveToFile(folder.path("copy")), 0);
    HBXVocPrototype copy;
    ASSERT_EQ(copy.readFromFile(folder.path("copy")), 0);
    EXPECT_EQ(copy, voc);
}

TEST(VocPrototype, BadFilesSayWhereAndKeepWhatWasLoaded) {
    const ScratchFolder folder;
    const std::string head = R"(<message xmlns:hbx="urn:hbx:message" hbx:v="1">)";
    std::string wide = head + "<data><agent>";
    for (int i = 0; i < 1000000; ++i) {
        wide += "<id/>";
    }
    std::filesystem::create_directory(folder.path("folder"));
    folder.write("huge", head);
    std::filesystem::resize_file(folder.path("huge"), (std::size_t{256} << 20) + 1);
    const struct {
        std::string path;
        const char* reason;
    } rows[] = {
        {kSamples + "bad/voc-cut-off.xml", "line 132, column 21, /data/agent/parameter/id: no element found"},
        {kSamples + "bad/voc-not-xml.xml", "line 1, column 1, /: syntax error"},
        {kSamples + "bad/voc-too-deep.xml", ": more than 256 levels of elements"},
        {folder.write("wide", wide + "</agent></data></message>"),
         "line 1, column 5000051, /data/agent: more than 1000000 elements"},
        {folder.write("path", head + "<data><agent><parameter></id>"),
         "line 1, column 74, /data/agent/parameter: mismatched tag"},
        {folder.write("empty", ""), "line 1, column 1, /: no element found"},
        {folder.path("huge"), "File too large"},
        {folder.path("folder"), ""},
        {folder.path("missing"), "No such file or directory"},
    };
    const auto voc = vocOf({"p:kept"});
    for (const auto& row : rows) {
        clearErrorMessage();
        EXPECT_EQ(voc->readFromFile(row.path), -1) << row.path;
        EXPECT_NE(getErrorMessage().find(row.path), std::string::npos) << getErrorMessage();
        EXPECT_NE(getErrorMessage().find(row.reason), std::string::npos) << getErrorMessage();
        EXPECT_TRUE(voc->isFeatureEnabled("kept"));
    }
}

TEST(VocPrototype, EveryBeginningOfAFileIsRefused) {
    const ScratchFolder folder;
    const std::string text = takeText(messageOf(vocText({"c:a", "p:b,a=1"}))->toText(nullptr, ""));
    const auto voc = vocOf({"p:kept"});
    for (std::size_t length = 0; length + 1 < text.size(); ++length) {
        EXPECT_EQ(voc->readFromFile(folder.write("cut", text.substr(0, length))), -1) << length;
    }
    EXPECT_TRUE(voc->isFeatureEnabled("kept"));
}

TEST(VocPrototype, TravelsAsARecordWithoutAnExtraLevel) {
    const auto voc = vocOf({"c:a", "p:b,a=1"});
    const Message message = newMessage();
    const Cursor it = rootOf(message);
    ASSERT_EQ(it->putObject(*voc, 3064), 0);
    ASSERT_EQ(it->seek(3064), 0);
    EXPECT_EQ(it->curType(), "computer:voc_prototype");
    HBXVocPrototype back;
    ASSERT_EQ(it->getObject(back, 0), 0);
    EXPECT_EQ(back, *voc);
    EXPECT_TRUE(back.isFeatureEnabled("b"));

    it->deleteChild(1307);
    EXPECT_EQ(it->getObject(back, 0), -1);
    EXPECT_TRUE(back.isFeatureEnabled("b")) << "a failed read changes nothing";
    EXPECT_EQ(it->putObject(HBXVocPrototype(), 0), -1);
    EXPECT_EQ(it->putObject(HBXVocPrototype(messageOf("<agent/>").detach()), 0), -1);
}

TEST(VocPrototype, TheLocalVocabularyIsLoadedOnceWhenItsFileAppears) {
    const ScratchFolder folder;
    const HBXFolderProvider previous =
        setFolderProvider({.etc = [&] { return folder.path(); }, .configurationFile = {}});
    const auto voc = HBXVocPrototype::getVoc();
    ASSERT_NE(voc, nullptr);
    EXPECT_EQ(placeOf(VocCursor(voc->read()).get()), "null");
    EXPECT_NE(getErrorMessage().find(folder.path("hbagent.voc.windows")), std::string::npos)
        << getErrorMessage();
    folder.write("hbagent.voc.windows", "<message");
    EXPECT_FALSE(voc->isFeatureEnabled("env.create"));

    std::filesystem::copy_file(kSamples + "vocabulary/hbagent.voc.windows",
                               folder.path("hbagent.voc.windows"),
                               std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(placeOf(VocCursor(std::as_const(*voc).read()).get()), "null") << "the const form does not load";
    EXPECT_TRUE(voc->isFeatureEnabled("env.create"));
    EXPECT_EQ(voc->readVersion(), "4.2.1");
    std::filesystem::remove(folder.path("hbagent.voc.windows"));
    EXPECT_TRUE(HBXVocPrototype::getVoc()->isFeatureEnabled("env.create"));
    EXPECT_EQ(HBXVocPrototype::getVoc(), voc);
    setFolderProvider(previous);
}

void runThreads(const std::vector<std::function<void()>>& works) {
    std::vector<std::thread> threads;
    for (const auto& work : works) {
        threads.emplace_back(work);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(VocPrototype, ThreadsAskWhileAnotherReplaces) {
    const ScratchFolder folder;
    std::vector<std::string> files;
    for (const char* version : {"1", "2"}) {
        files.push_back(folder.path(version));
        ASSERT_EQ(
            vocOf({"c:a", "p:both,a", std::string("p:vocversion=") + version})->saveToFile(files.back()), 0);
    }
    HBXVocPrototype voc;
    ASSERT_EQ(voc.readFromFile(files[0]), 0);
    std::atomic<int> failures{0};
    const auto ask = [&] {
        for (int round = 0; round < 300; ++round) {
            const std::string version = voc.readVersion();
            const VocCursor it(voc.readCategory("a"));
            const HBXVocPrototype copy(voc);
            failures += voc.isFeatureEnabled("both") && it && it->firstParameter() == 0 &&
                                (version == "1" || version == "2") && VocCursor(copy.readParameter("both"))
                            ? 0
                            : 1;
        }
    };
    const auto replace = [&] {
        for (std::size_t round = 0; round < 100; ++round) {
            failures += voc.readFromFile(files[round % 2]) == 0 ? 0 : 1;
        }
    };
    runThreads({ask, ask, ask, replace});
    EXPECT_EQ(failures, 0);
    EXPECT_EQ(voc.readVersion(), "2") << "no version of an earlier message is kept";
}

TEST(VocPrototype, ThreadsLoadTheLocalVocabularyOnce) {
    const ScratchFolder folder;
    std::atomic<int> lookUps{0};
    const HBXFolderProvider previous = setFolderProvider({.etc =
                                                              [&] {
                                                                  ++lookUps;
                                                                  return folder.path();
                                                              },
                                                          .configurationFile = {}});
    ASSERT_EQ(vocOf({"p:x"})->saveToFile(folder.path("hbagent.voc.windows")), 0);
    HBXVocLocalPrototype voc;
    std::atomic<int> found{0};
    const auto ask = [&] { found += voc.isFeatureEnabled("x") ? 1 : 0; };
    runThreads({ask, ask, ask, ask});
    EXPECT_EQ(found, 4);
    EXPECT_EQ(lookUps, 1);
    setFolderProvider(previous);
}

} // namespace
} // namespace HBX::test
