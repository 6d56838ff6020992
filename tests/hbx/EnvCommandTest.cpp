#include "EnvCommandTest.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <boost/smart_ptr/make_shared_object.hpp>

#include <HBXCore/HBXMemoryMappedFile.h>
#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

namespace HBX {
namespace {

TEST_F(EnvCommandTest, WhatGetPrintsCanBePutAgainAndRemoved) {
    putThree();
    const std::string got = out(call({"get", kWeb}));
    EXPECT_NE(got.find("<odd>kept</odd>"), std::string::npos) << got;
    const std::string copy = path("copy");
    EXPECT_EQ(out({"env", "put", "--cache", copy, "-"}, {.in = write("got.xml", got)}), "");
    EXPECT_EQ(out({"env", "get", "--cache", copy, kWeb}), got);
    const Json document = json(call({"get", kWeb}));
    EXPECT_EQ(document["env_type"], "lab");
    EXPECT_EQ(document["env"]["status"]["state"], 3);
    EXPECT_EQ(document["env"]["alert_type"], Json({0, 2, 0, 0, 1}));
    EXPECT_EQ(document["env"]["env_config"]["name"], "web \t[2J\xC2\x9B");
    EXPECT_EQ(out(call({"remove", kHost, kWeb})), "");
    const std::string complaint = cache_ + ": there is no environment " + kHost + '\n';
    expectFailures({{1, complaint, call({"get", kHost})}, {1, complaint, call({"remove", kHost, kBare})}});
    EXPECT_EQ(env({"list"}).code, 1);
    EXPECT_EQ(env({"check"}).code, 0);
}

TEST_F(EnvCommandTest, ATypeComesFromOptionMessageCacheOrIsGeneric) {
    const std::tuple<std::string, Words, std::string> rows[] = {
        {"", {}, "generic"},
        {"lab", {}, "lab"},
        {"", {}, "lab"},
        {"lab", {"--type", "sixteen-bytes-ok"}, "sixteen-bytes-ok"},
    };
    for (const auto& [inMessage, options, then] : rows) {
        const std::string file = messageOf({{kHost, kNull, "", 6, inMessage}});
        EXPECT_EQ(out(call(joined({"put", file}, options))), "");
        EXPECT_EQ(listed()[0]["type"], then);
    }
    const std::string none = write("none.xml", messageText("<data/>"));
    const std::string bad = write("bad.xml", messageText("<env><eid>" + kHost + "</eid></env>"));
    const std::string null = messageOf({{kNull}});
    expectFailures({
        {2, "a type has 1 to 16 bytes", call({"put", null, "--type", "seventeen-bytes-no"})},
        {3, null + ": an environment has a null identifier\n", call({"put", null})},
        {1, none, call({"put", none})},
        {3, bad, call({"put", bad})},
    });
}

TEST_F(EnvCommandTest, OnlyPutMakesAFile) {
    const std::vector<Words> verbs = openingVerbs();
    EXPECT_EQ(env({"check"}).code, 3);
    const std::ptrdiff_t before = files();
    for (const Words& words : verbs) {
        if (words[0] != "put") {
            expectFailures({{3, cache_ + ": there is no such cache file\n", call(words)}});
        }
    }
    EXPECT_EQ(files(), before);
    EXPECT_EQ(out({"env", "put", messageOf({{kHost}})}), "");
    EXPECT_TRUE(std::filesystem::exists(path("home/environments.cache"))); // HBX_HOME of the tests
    EXPECT_EQ(run({"env", "list"}).code, 0);
}

TEST_F(EnvCommandTest, WhatIsNoCacheInOrderIsToldAndLeftAloneUnlessForced) {
    putThree();
    const std::string good = contentOf(cache_);
    const auto changed = [&](std::size_t offset, std::uint64_t value, std::size_t width) {
        return std::string(good).replace(offset, width, reinterpret_cast<const char*>(&value), width);
    };
    const std::string other = "this is no cache file, it is left as it is\n";
    const std::tuple<int, std::string, std::string, std::string> rows[] = {
        {3, "my notes\n", other, ""},
        {3, std::string(100'000, '\0'), other, ""},
        {5, changed(73, 0, 4), "the file is marked as", "73: damage: the file is marked as abandoned"},
        {5, changed(40, 4080, 8), "damaged: there is no readable state", "4080: damage: "},
    };
    for (const auto& [code, bytes, complaint, finding] : rows) {
        write("cache", bytes);
        std::filesystem::remove(cache_ + ".lock");
        const std::ptrdiff_t before = files();
        const Ended checked = env({"check"});
        EXPECT_EQ(checked.code, 5);
        EXPECT_EQ(checked.out.rfind(cache_ + ": offset " + finding, 0), 0U) << checked.out;
        EXPECT_EQ(Json::parse(env({"check", "--json"}).out)["verdict"], "damaged");
        for (const Words& words : openingVerbs()) {
            expectFailures({{code, cache_ + ": " + complaint, call(words)}});
        }
        EXPECT_EQ(contentOf(cache_), bytes);
        EXPECT_TRUE(code == 5 || files() == before);
        EXPECT_EQ(out(call({"put", "--force", messageOf({{kWeb}})})), "");
        EXPECT_EQ(listed().size(), 1U);
    }
    write("cache", changed(8, 64, 8)); // bytes in used blocks: the next opener repairs that
    const std::string checked = out(call({"check"}));
    EXPECT_NE(checked.find(": offset 0: repairable: "), std::string::npos) << checked;
    EXPECT_EQ(listed().size(), 3U);
    EXPECT_EQ(json(call({"check"}))["verdict"], "in order");
    std::filesystem::create_symlink(cache_, path("link"));
    EXPECT_EQ(run({"env", "list", "--cache", path("link")}).code, 6);
    EXPECT_EQ(run({"env", "list", "--cache", path("")}).code, 3);
    write("cache", std::string(4096, '\0')); // what a killed creator leaves
    EXPECT_EQ(out(call({"put", messageOf({{kWeb}})})), "");
}

TEST_F(EnvCommandTest, StatAndReadersTellWhoHoldsWhat) {
    putThree();
    EXPECT_EQ(out(call({"readers"})), "no process uses it\n");
    const auto cache = HBXEnvCache::createInstance(cache_, boost::make_shared<HBXEnvCache::PreProcess>());
    ASSERT_NE(cache, nullptr);
    const auto list = cache->getEnvList();
    put({{kHost, kNull, "", 3}}); // makes the list one of an earlier state
    const auto present = cache->getEnvList();

    const Json stat = json(call({"stat"}));
    HBXCacheStatus status;
    ASSERT_EQ(cache->getStatus(status), 0);
    EXPECT_EQ(stat["environments"], 3);
    EXPECT_EQ(stat["live_data"], cache->getAchiveableSize());
    EXPECT_EQ(stat["allocated"], cache->getTotalAllocatedSize());
    EXPECT_EQ(stat["changes"], status.changes);
    EXPECT_EQ(stat["states_held"], 2);
    const Json holders = stat["holders"];
    ASSERT_EQ(holders.size(), 2U);
    EXPECT_NE(holders[0]["current"], holders[1]["current"]);
    EXPECT_TRUE(holders[0]["pid"] == getpid() && holders[0]["lists"] == 1 && holders[0]["seconds"] <= 60);
    EXPECT_NE(out(call({"stat"})).find(" holds 1 list of an earlier state for "), std::string::npos);
    EXPECT_NE(out(call({"readers"})).find("  hbx_test  2 "), std::string::npos) << out(call({"readers"}));
    const Json readers = json(call({"readers"}))["processes"];
    ASSERT_EQ(readers.size(), 1U);
    EXPECT_TRUE(readers[0]["pid"] == getpid() && readers[0]["lists"] == 2);
    EXPECT_EQ(json(call({"check"}))["in_use"], true);
}

TEST_F(EnvCommandTest, ALockThatIsNotLetGoIsToldAndTheCacheStays) {
    putThree();
    HBXMemoryMappedFile file;
    ASSERT_NE(file.map(cache_, HBXMemoryMappedFile::getMemoryPageSize(), kSharedMapping), nullptr);
    ASSERT_EQ(file.lock(false), 0);
    expectFailures({{4, cache_ + ": locked: ", call({"list"})}});
    EXPECT_EQ(env({"check"}).code, 0); // needs no lock
    file.unlock();
    EXPECT_EQ(env({"list"}).code, 0);
}

/// Until other processes have written so many lines to each of their files.
void waitForLines(std::size_t count, const Words& files) {
    for (const std::string& file : files) {
        for (int i = 0; i < 1000 && linesOf(contentOf(file)) < count; ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        }
    }
}

TEST_F(EnvCommandTest, WatchSeesWhatOtherProcessesDo) {
    putThree();
    const Words files = {path("text"), path("json")};
    const auto watch = [&](const Words& options, const std::string& file) {
        return execute(call(joined({"watch"}, options)), {.out = file, .err = file + ".err"});
    };
    test::ChildProcess watcher([&] { return watch({}, files[0]); });
    test::ChildProcess counter([&] { return watch({"--json", "--count", "4"}, files[1]); });
    for (int i = 0; i < 1000 && json(call({"readers"}))["processes"].size() < 2; ++i) {
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(200)); // from being attached to the first look
    put({{kHost, kNull, "node", 3, "host"}});
    waitForLines(1, files);
    env({"remove", kHost});
    waitForLines(2, files);
    put({{kHost, kNull, "node", 3, "host"}, {kBare, kHost, "bare", 5}});
    waitForLines(4, {files[0]});
    watcher.signal(SIGINT);
    EXPECT_EQ(watcher.wait(), 0) << contentOf(files[0] + ".err");
    EXPECT_EQ(contentOf(files[0]), "~ node " + kHost + ": state \"running\" -> \"down\"\n- node " + kHost +
                                       "\n+ node " + kHost + "\n~ bare " + kBare + ": title \"" + kBare +
                                       "\" -> \"bare\", " + "state \"running\" -> \"suspended\", parent \"" +
                                       kWeb + "\" -> \"" + kHost + "\", configuration\n");
    EXPECT_EQ(counter.wait(), 0) << contentOf(files[1] + ".err");
    const std::string documents = contentOf(files[1]);
    EXPECT_EQ(linesOf(documents), 4U);
    const Json change = Json::parse(documents.substr(0, documents.find('\n')));
    EXPECT_EQ(change["schema"], 1);
    EXPECT_EQ(change["change"], "changed");
    EXPECT_EQ(change["environment"]["eid"], kHost);
    EXPECT_EQ(change["what"][0], Json({{"member", "state"}, {"before", "running"}, {"after", "down"}}));

    EXPECT_EQ(out(call({"watch", "--timeout", "0.1"})), "");
    expectFailures({
        {4, cache_ + ": only 0 of 1 changes", call({"watch", "--timeout", "0.1", "--count", "1"})},
        {2, "--timeout is 0 to ", call({"watch", "--timeout=-1"})},
        {2, "--count is at least 1", call({"watch", "--count", "0"})},
    });
}

} // namespace
} // namespace HBX
