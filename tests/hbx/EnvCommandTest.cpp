#include "EnvCommandTest.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCore/HBXMemoryMappedFile.h>
#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

namespace HBX {
namespace {

void overwrite(std::string& bytes, std::size_t offset, std::uint64_t value, std::size_t width) {
    bytes.replace(offset, width, reinterpret_cast<const char*>(&value), width);
}

TEST_F(EnvCommandTest, WhatGetPrintsCanBePutAgain) {
    putThree();
    const std::string got = env({"get", kWeb}).out;
    EXPECT_NE(got.find("<odd>kept</odd>"), std::string::npos) << got;
    const std::string copy = path("copy");
    EXPECT_EQ(out({"env", "put", "--cache", copy, "-"}, {.in = write("got.xml", got)}), "");
    EXPECT_EQ(out({"env", "get", "--cache", copy, kWeb}), got);
    const Json document = envJson({"get", kWeb});
    EXPECT_EQ(document["env_type"], "lab");
    EXPECT_EQ(document["env"]["status"]["state"], 3);
    EXPECT_EQ(document["env"]["alert_type"], Json({0, 2, 0, 0, 1}));
    EXPECT_EQ(document["env"]["env_config"]["name"], "web \t[2J\xC2\x9B");
    EXPECT_EQ(env({"get", "00000000-0000-0000-0000-000000000009"}).code, 1);
    EXPECT_EQ(env({"get", "web"}).code, 2);
}

TEST_F(EnvCommandTest, ATypeComesFromOptionMessageCacheOrIsGeneric) {
    const auto typeNow = [this] { return listed()[0]["type"]; };
    put({{kHost}});
    EXPECT_EQ(typeNow(), "generic");
    put({{kHost, kNull, 6, "", "lab"}});
    EXPECT_EQ(typeNow(), "lab");
    put({{kHost}});
    EXPECT_EQ(typeNow(), "lab");
    const std::string lab = messageOf({{kHost, kNull, 6, "", "lab"}});
    EXPECT_EQ(env({"put", lab, "--type", "sixteen-bytes-ok"}).code, 0);
    EXPECT_EQ(env({"put", lab, "--type", "seventeen-bytes-no"}).code, 2);
    EXPECT_EQ(env({"put", messageOf({{kNull}})}).code, 3);
    EXPECT_EQ(env({"put", write("none.xml", messageText("<data/>"))}).code, 1);
    EXPECT_EQ(env({"put", write("bad.xml", messageText("<env><eid>" + kHost + "</eid></env>"))}).code, 3);
    EXPECT_EQ(typeNow(), "sixteen-bytes-ok");
}

TEST_F(EnvCommandTest, RemoveTellsWhatWasNotThere) {
    putThree();
    EXPECT_EQ(env({"remove", kHost, kWeb}).code, 0);
    expectFailures(
        {{call({"remove", kHost, kBare}), 1, cache_ + ": there is no environment " + kHost + "\n"}});
    EXPECT_EQ(env({"list"}).code, 1);
    EXPECT_EQ(env({"check"}).code, 0);
}

TEST_F(EnvCommandTest, OnlyPutMakesAFile) {
    std::vector<Words> verbs = openingVerbs();
    std::erase_if(verbs, [](const Words& words) { return words[0] == "put"; });
    verbs.push_back({"check"});
    const Words before = files();
    for (const Words& words : verbs) {
        expectFailures({{call(words), 3, ""}});
        EXPECT_EQ(files(), before) << words[0];
    }
    ASSERT_EQ(run({"env", "put", messageOf({{kHost}})}).code, 0);
    EXPECT_TRUE(std::filesystem::exists(path("home/environments.cache"))); // HBX_HOME of the tests
    EXPECT_EQ(run({"env", "list"}).code, 0);
}

TEST_F(EnvCommandTest, OtherPeoplesFilesStayAsTheyAre) {
    put({{kHost}});
    const std::string good = contentOf(cache_);
    std::string twoConstants = good;
    for (const std::size_t offset : {49U, 53U, 57U}) {
        overwrite(twoConstants, offset, 0x41, 4);
    }
    for (const std::string& bytes : {std::string("my notes\n"), std::string(100'000, '\0'), twoConstants}) {
        std::filesystem::remove(cache_ + ".lock");
        write("cache", bytes);
        const Words before = files();
        for (const Words& words : openingVerbs()) {
            expectFailures({{call(words), 3, cache_ + ": this is no cache file, it is left as it is\n"}});
            EXPECT_EQ(contentOf(cache_), bytes);
            EXPECT_EQ(files(), before);
        }
        EXPECT_EQ(env({"check"}).code, 5);
        EXPECT_EQ(env({"put", "--force", messageOf({{kWeb}})}).code, 0);
    }
    write("cache", good);
    std::filesystem::create_symlink(cache_, path("link"));
    EXPECT_EQ(run({"env", "list", "--cache", path("link")}).code, 6);
    EXPECT_EQ(run({"env", "list", "--cache", path("")}).code, 3);
    write("cache", std::string(4096, '\0')); // what a killed creator leaves
    EXPECT_EQ(env({"put", messageOf({{kWeb}})}).code, 0);
}

TEST_F(EnvCommandTest, DamageIsToldAndLeftAloneUnlessItIsRepairable) {
    putThree();
    const std::string good = contentOf(cache_);
    const struct {
        std::size_t offset;
        std::uint64_t value;
        std::size_t width;
        const char* reason;
        const char* finding;
    } rows[] = {
        {53, 78, 4, "the header size is wrong", ": offset 53: damage: the header size is 78 instead of 77\n"},
        {49, 1, 4, "the signature is wrong",
         ": offset 49: damage: the signature is 1 instead of 3402563075\n"},
        {73, 0, 4, "the file is marked as abandoned",
         ": offset 73: damage: the file is marked as abandoned\n"},
        {40, 4080, 8, "there is no readable state", ": offset 4080: damage: "},
    };
    for (const auto& row : rows) {
        std::string bad = good;
        overwrite(bad, row.offset, row.value, row.width);
        write("cache", bad);
        const Ended checked = env({"check"});
        EXPECT_EQ(checked.code, 5);
        EXPECT_EQ(checked.out.rfind(cache_ + row.finding, 0), 0U) << checked.out;
        EXPECT_EQ(envJson({"check"})["verdict"], "damaged");
        for (const Words& words : openingVerbs()) {
            const Ended ended = env(words);
            EXPECT_EQ(ended.code, 5) << words[0] << ended.err;
            EXPECT_NE(ended.err.find(row.reason), std::string::npos) << ended.err;
        }
        EXPECT_EQ(contentOf(cache_), bad);
        EXPECT_EQ(env({"put", "--force", messageOf({{kWeb}})}).code, 0);
        EXPECT_EQ(listed().size(), 1U);
    }
    putThree();
    std::string bytes = contentOf(cache_);
    overwrite(bytes, 8, 64, 8); // bytes in used blocks: the next opener repairs that
    write("cache", bytes);
    const std::string checked = out(call({"check"}));
    EXPECT_NE(checked.find(": offset 0: repairable: "), std::string::npos) << checked;
    EXPECT_EQ(listed().size(), 3U);
    EXPECT_EQ(envJson({"check"})["verdict"], "in order");
}

TEST_F(EnvCommandTest, StatAndReadersTellWhoHoldsWhat) {
    putThree();
    EXPECT_EQ(env({"readers"}).out, "no process uses it\n");
    const auto cache = HBXEnvCache::createInstance(cache_, boost::make_shared<HBXEnvCache::PreProcess>());
    ASSERT_NE(cache, nullptr);
    const auto list = cache->getEnvList();
    put({{kHost, kNull, 3}}); // makes the list one of an earlier state
    const auto present = cache->getEnvList();

    const Json stat = envJson({"stat"});
    HBXCacheStatus status;
    ASSERT_EQ(cache->getStatus(status), 0);
    EXPECT_EQ(stat["environments"], 3);
    EXPECT_EQ(stat["live_data"], cache->getAchiveableSize());
    EXPECT_EQ(stat["allocated"], cache->getTotalAllocatedSize());
    EXPECT_EQ(stat["changes"], status.changes);
    EXPECT_EQ(stat["states_held"], 2);
    ASSERT_EQ(stat["holders"].size(), 2U);
    EXPECT_NE(stat["holders"][0]["current"], stat["holders"][1]["current"]);
    EXPECT_EQ(stat["holders"][0]["pid"], getpid());
    EXPECT_EQ(stat["holders"][0]["lists"], 1);
    EXPECT_LE(stat["holders"][0]["seconds"], 60);
    EXPECT_NE(env({"stat"}).out.find(" holds 1 list of an earlier state for "), std::string::npos);

    const Json readers = envJson({"readers"})["processes"];
    ASSERT_EQ(readers.size(), 1U);
    EXPECT_EQ(readers[0]["pid"], getpid());
    EXPECT_EQ(readers[0]["lists"], 2);
    EXPECT_EQ(envJson({"check"})["in_use"], true);
}

TEST_F(EnvCommandTest, ALockThatIsNotLetGoIsToldAndTheCacheStays) {
    putThree();
    HBXMemoryMappedFile file;
    ASSERT_NE(file.map(cache_, HBXMemoryMappedFile::getMemoryPageSize(), kSharedMapping), nullptr);
    ASSERT_EQ(file.lock(false), 0);
    expectFailures({{call({"list"}), 4, cache_ + ": locked: "}});
    EXPECT_EQ(env({"check"}).code, 0); // needs no lock
    file.unlock();
    EXPECT_EQ(env({"list"}).code, 0);
}

/// The text of a file that another process writes, once it has enough lines.
std::string waitForLines(const std::string& file, std::size_t count) {
    std::string text;
    for (int i = 0; i < 1000 && linesOf(text) < count; ++i) {
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
        text = contentOf(file);
    }
    return text;
}

TEST_F(EnvCommandTest, WatchSeesWhatOtherProcessesDo) {
    putThree();
    const Streams streams = {.out = path("watch.out"), .err = path("watch.err")};
    const pid_t watcher = start({"env", "watch", "--cache", cache_}, streams);
    for (int i = 0; i < 1000 && env({"readers"}).out.find("hbx") == std::string::npos; ++i) {
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200)); // from being attached to the first look
    put({{kHost, kNull, 3, "node", "host"}});
    waitForLines(streams.out, 1);
    env({"remove", kHost});
    waitForLines(streams.out, 2);
    put({{kHost, kNull, 3, "node", "host"}, {kBare, kHost, 5, "bare"}});
    const std::string lines = waitForLines(streams.out, 4);
    ::kill(watcher, SIGINT);
    const Ended ended = end(watcher, streams);
    EXPECT_EQ(ended.code, 0) << ended.err;
    EXPECT_EQ(ended.err, "");
    EXPECT_EQ(lines, "~ node " + kHost + ": state \"running\" -> \"down\"\n- node " + kHost + "\n+ node " +
                         kHost + "\n~ bare " + kBare + ": title \"" + kBare + "\" -> \"bare\", " +
                         "state \"running\" -> \"suspended\", parent \"" + kWeb + "\" -> \"" + kHost +
                         "\", configuration\n");
}

TEST_F(EnvCommandTest, WatchEndsAfterACountOrATime) {
    putThree();
    EXPECT_EQ(env({"watch", "--timeout", "0.1"}).code, 0);
    EXPECT_EQ(env({"watch", "--timeout", "0.1", "--count", "1"}).code, 4);
    EXPECT_EQ(env({"watch", "--timeout=-1"}).code, 2);
    EXPECT_EQ(env({"watch", "--count", "0"}).code, 2);
    const Streams streams = {.out = path("watch.out"), .err = path("watch.err")};
    const pid_t watcher = start({"env", "watch", "--json", "--count", "2", "--cache", cache_}, streams);
    int status = 0;
    for (int state = 10; waitpid(watcher, &status, WNOHANG) == 0; ++state) {
        put({{kHost, kNull, state, "node", "host"}});
    }
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    const std::string lines = contentOf(streams.out);
    EXPECT_EQ(linesOf(lines), 2U);
    const Json change = Json::parse(lines.substr(0, lines.find('\n')));
    EXPECT_EQ(change["change"], "changed");
    EXPECT_EQ(change["environment"]["eid"], kHost);
    EXPECT_EQ(change["what"][0]["member"], "state");
    EXPECT_EQ(change["what"][0]["after"], change["environment"]["state"]);
}

} // namespace
} // namespace HBX
