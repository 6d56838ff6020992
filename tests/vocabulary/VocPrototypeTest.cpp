#include "VocabularyTestUtil.h"

#include <atomic>
#include <chrono>
#include <thread>

#include <HBXCommon/HBXErrorMessage.h>
#include <HBXCommon/HBXInstanceFolders.h>

#include "support/ScratchFolder.h"
#include "support/Threads.h"

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
    EXPECT_EQ(placeOf(VocCursor(voc->readParameter("ipv6")).get()), "ipv6");
    EXPECT_EQ(placeOf(VocCursor(voc->read()).get()), "agent");
    EXPECT_EQ(walkParameters(*VocCursor(std::as_const(*voc).readCategory("network")), {}),
              "ipv6 vocversion ");
    EXPECT_EQ(placeOf(VocCursor(HBXVocPrototype().read()).get()), "null");
}

TEST(VocPrototype, AVersionAndIteratorsBelongToTheirMessage) {
    OpenPrototype voc(textMessage(vocText({"p:old"})).detach());
    EXPECT_EQ(voc.readVersion(), "");
    const VocCursor it(voc.read());
    it->newChild(1017);
    it->putValue("vocversion", 1010);
    EXPECT_EQ(voc.getVersion(), "") << "without a value";
    it->putValue("2.0", 1307);
    EXPECT_EQ(voc.readVersion(), "2.0");
    it->deleteFromChild();
    EXPECT_EQ(voc.getVersion(), "2.0") << "it is read once";

    voc.reset(textMessage(vocText({"p:new", "p:vocversion=3.0"})).detach());
    EXPECT_EQ(voc.getVersion(), "3.0");
    EXPECT_EQ(it->seekParameter("old"), 0);
    EXPECT_TRUE(voc.isFeatureEnabled("new"));
    voc.reset(nullptr);
    EXPECT_FALSE(voc.isFeatureEnabled("new"));
    EXPECT_EQ(voc.saveToFile("/nowhere/voc"), -1);
}

TEST(VocPrototype, FilesComeBackAsTheyWereSavedAndBadOnesChangeNothing) {
    const ScratchFolder folder;
    HBXVocPrototype voc, copy;
    ASSERT_EQ(voc.readFromFile(kSamples + "vocabulary/hbagent.voc.windows"), 0) << getErrorMessage();
    EXPECT_EQ(walkParameters(*VocCursor(voc.read()), {"network", "security"}),
              "firewall.rules firewall.chains ");
    ASSERT_EQ(voc.saveToFile(folder.path("copy")), 0);
    ASSERT_EQ(copy.readFromFile(folder.path("copy")), 0);
    EXPECT_EQ(copy, voc);
    const std::string cutOff = kSamples + "bad/voc-cut-off.xml";
    EXPECT_EQ(copy.readFromFile(cutOff), -1);
    EXPECT_EQ(getErrorMessage().find(cutOff + ": line 132, column 21, /data/agent/parameter/id: "), 0U)
        << getErrorMessage();
    EXPECT_EQ(copy, voc);
}

TEST(VocPrototype, TravelsAsARecordWithoutAnExtraLevel) {
    const Cursor it = newCursor();
    ASSERT_EQ(it->putObject(*vocOf({"c:a", "p:b,a=1"}), 3064), 0);
    ASSERT_EQ(it->seek(3064), 0);
    HBXVocPrototype back;
    ASSERT_EQ(it->getObject(back, 0), 0);
    it->deleteChild(1307);
    EXPECT_EQ(it->getObject(back, 0), -1);
    EXPECT_TRUE(back.isFeatureEnabled("b")) << "a failed read changes nothing";
    EXPECT_EQ(it->putObject(HBXVocPrototype(textMessage("<agent/>").detach()), 0), -1);
}

/// The folder where the local vocabulary is looked for.
class LocalFolder : public ScratchFolder {
public:
    LocalFolder()
        : previous_(setFolderProvider({.etc = [this] { return look(); }, .configurationFile = {}})) {}
    ~LocalFolder() { setFolderProvider(previous_); }
    std::atomic<int> lookUps{0};

private:
    std::string look() {
        ++lookUps;
        std::this_thread::sleep_for(std::chrono::milliseconds(10)); // so that other threads come meanwhile
        return path();
    }

    HBXFolderProvider previous_;
};

TEST(VocPrototype, TheLocalVocabularyIsLoadedOnceWhenItsFileAppears) {
    const LocalFolder folder;
    const std::string file = folder.path("hbagent.voc.windows");
    const auto voc = HBXVocPrototype::getVoc();
    ASSERT_NE(voc, nullptr);
    EXPECT_EQ(placeOf(VocCursor(voc->read()).get()), "null");
    EXPECT_NE(getErrorMessage().find(file), std::string::npos) << getErrorMessage();
    folder.write("hbagent.voc.windows", "<message");
    EXPECT_FALSE(voc->isFeatureEnabled("x"));

    ASSERT_EQ(vocOf({"p:x"})->saveToFile(file), 0);
    EXPECT_EQ(placeOf(VocCursor(std::as_const(*voc).read()).get()), "null") << "the const form does not load";
    EXPECT_TRUE(voc->isFeatureEnabled("x"));
    std::filesystem::remove(file);
    EXPECT_TRUE(voc->isFeatureEnabled("x"));
    EXPECT_EQ(HBXVocPrototype::getVoc(), voc);
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
            const bool isRead = voc.readFromFile(files[round % 2]) == 0;
            failures += isRead && voc.readVersion() == std::to_string(round % 2 + 1) ? 0 : 1;
        }
    };
    runThreads({ask, ask, ask, replace});
    EXPECT_EQ(failures, 0);
}

TEST(VocPrototype, ThreadsLoadTheLocalVocabularyOnce) {
    const LocalFolder folder;
    ASSERT_EQ(vocOf({"p:x"})->saveToFile(folder.path("hbagent.voc.windows")), 0);
    HBXVocLocalPrototype voc;
    std::atomic<int> found{0};
    const auto ask = [&] { found += voc.isFeatureEnabled("x") ? 1 : 0; };
    runThreads({ask, ask, ask, ask});
    EXPECT_EQ(found, 4);
    EXPECT_EQ(folder.lookUps, 1);
}

} // namespace
} // namespace HBX::test
