#include <gtest/gtest.h>

#include "EnvTestUtil.h"
#include "support/CapturedLog.h"
#include "support/ScratchFolder.h"

#include <unistd.h>

namespace HBX::test {

namespace {

HBXEID eidOf(std::int64_t number) { return HBXEID(HBXGUID(number, number)); }

HBXEnv envOf(std::int64_t number, const std::string& name) {
    HBXEnv env(eidOf(number), boost::make_shared<HBXEnvConfig>(coreOf("<name>" + name + "</name>")));
    recordOf(env)->type = "told";
    return env;
}

class EnvCacheTest : public testing::Test, protected ScratchFolder {
protected:
    void SetUp() override {
        initEnvCache(name_, true);
        HBXEnvFactory::getInstance().registerEnvUpdater("told", updater_);
        debug_level = 4;
    }
    void TearDown() override {
        debug_level = 2;
        HBXEnvFactory::getInstance().clear();
        finiEnvCache();
    }
    std::string title(std::int64_t number) {
        const auto env = envCache()->getEnvCopy(eidOf(number));
        return env == nullptr ? "absent" : env->getTitle();
    }

    const std::string name_ = path("cache");
    boost::shared_ptr<TellingUpdater> updater_ = boost::make_shared<TellingUpdater>();
    CapturedLog log_{"Calling ["}; ///< Without the tracing of readers and writers.
};

TEST_F(EnvCacheTest, AsksTheUpdaterBeforeEachChange) {
    const auto cache = envCache();
    ASSERT_NE(cache, nullptr);
    const auto work = [&](const std::string& verb) {
        return verb == "insert"   ? cache->insert(envOf(1, "one"))
               : verb == "update" ? cache->update(envOf(1, "first"))
                                  : cache->remove(eidOf(1));
    };
    const auto told = [](const std::string& verb, int code) {
        return std::string(code == 0 ? "4" : "2") + " EnvCache::" + verb + " called for " +
               eidOf(1).toString() + ", returning " + std::to_string(code) + ".\n";
    };
    const struct {
        std::string verb;
        int check, result, code;
        const char *asked, *title; ///< `title`: of environment 1 afterwards.
    } rows[] = {
        {"insert", 0, 7, 7, "check insert ", "absent"}, {"insert", 5, 7, 0, "check ", "one"},
        {"update", 0, -3, -3, "check update ", "one"},  {"update", 0, 0, 0, "check update ", "first"},
        {"remove", 5, 9, 9, "remove ", "first"},        {"remove", 0, 0, 0, "remove ", "absent"},
        {"update", 0, 0, 0, "check update ", "first"}, // although there is nothing
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.verb + std::to_string(row.result));
        updater_->asked.clear();
        updater_->checkResult = row.check;
        updater_->result = row.result;
        log_.take();
        EXPECT_EQ(work(row.verb), row.code);
        EXPECT_EQ(log_.take(), told(row.verb, row.code));
        EXPECT_EQ(updater_->asked, row.asked);
        EXPECT_EQ(title(1), row.title);
    }
    updater_->result = 9;
    EXPECT_EQ(cache->remove(eidOf(2)), 0) << "there is nothing";
    EXPECT_EQ(cache->insert(envOf(0, "null identifier")), -1);
    EXPECT_EQ(log_.take(), "");
    HBXEnvFactory::getInstance().registerEnvUpdater(HBXEnv::type, updater_); // nobody falls back on it
    HBXEnvFactory::getInstance().unregisterEnvUpdater("told");
    EXPECT_EQ(cache->insert(envOf(1, "other")), 0);
    EXPECT_EQ(log_.take(), "4 EnvUpdater is not found for 'told'.\n" + told("insert", 0));
    EXPECT_EQ(title(1), "other");
}

TEST_F(EnvCacheTest, StoresWhatTheConfigurationsSayNowOrUndoesTheHook) {
    HBXEnv env = envOf(1, "one");
    env.getConfig()->setName(Text("changed"));
    const auto cache = envCache();
    ASSERT_EQ(cache->insert(env), 0);
    EXPECT_EQ(title(1), "changed");
    EXPECT_EQ(cache->getEnvCopy(eidOf(1))->getType().str(), "told");
    updater_->asked.clear();
    cache->reinit();
    EXPECT_EQ(cache->insert(env), -1);
    EXPECT_EQ(updater_->asked, "check insert remove ");
    EXPECT_NE(log_.take().find("2 EnvCache::insert called for"), std::string::npos);
}

TEST_F(EnvCacheTest, ListsViewsThatStayGood) {
    for (const int number : {3, 1, 2}) {
        ASSERT_EQ(envCache()->insert(envOf(number, "env" + std::to_string(number))), 0);
    }
    std::vector<boost::shared_ptr<const HBXEnv>> kept;
    {
        const auto list = envCache()->getEnvList();
        ASSERT_EQ(envCache()->remove(eidOf(2)), 0);
        ASSERT_EQ(envCache()->update(envOf(3, "later")), 0);
        for (auto it = list->begin(); it != list->end(); ++it) {
            kept.push_back(*it);
        }
        EXPECT_EQ((--list->end())->getEID(), eidOf(3));
        HBXEnv mine(*list->getEnv(eidOf(1)));
        mine.setStatus({6, 0});
        EXPECT_FALSE(list->getEnv(eidOf(1))->getStatus().isRunning()) << "wrote into the file";
        EXPECT_EQ(list->getEnv(eidOf(4)), nullptr);
    }
    finiEnvCache();
    std::string titles;
    for (const auto& env : kept) {
        titles += env->getTitle() + ' ';
    }
    EXPECT_EQ(titles, "env1 env2 env3 ");
    EXPECT_EQ(title(2) + ' ' + title(3), "absent later");
    kept.clear();
    HBXCacheStatus status;
    ASSERT_EQ(envCache()->getStatus(status), 0);
    EXPECT_TRUE(status.holders.empty());
}

TEST_F(EnvCacheTest, SaysWhenAListHoldsNoSnapshot) {
    const auto cache = envCache();
    ASSERT_EQ(cache->insert(envOf(1, "one")), 0);
    std::vector<boost::intrusive_ptr<HBXEnvCache::EnvValuesList>> lists;
    for (std::size_t i = 0; i < HBXEnvCache::kMaximumLists; ++i) {
        lists.push_back(cache->getEnvList());
        ASSERT_TRUE(lists.back()->holdsSnapshot());
    }
    const auto refused = cache->getEnvList();
    EXPECT_TRUE(refused->begin() == refused->end());
    HBXEnvFactory::getInstance().registerEnvUpdater(HBXEnv::type, updater_);
    log_.take();
    EXPECT_EQ(refused->getEnv(eidOf(1)), nullptr);
    EXPECT_EQ(cache->syncEnvListOf(HBXEID()), -1);
    EXPECT_EQ(updater_->asked.find("sync"), std::string::npos);
    EXPECT_EQ(log_.take(), "1 Environment cache: failed to acquire snapshot. Running out of memory.\n"
                           "1 [HBX::HBXEnvCache::syncEnvListOf]: failed to acquire environments list.\n");
    lists.pop_back();
    EXPECT_TRUE(cache->getEnvList()->holdsSnapshot()) << "a refused list takes no place";
}

TEST_F(EnvCacheTest, HandsChildrenToTheGenericUpdater) {
    const auto cache = envCache();
    for (int number = 1; number <= 4; ++number) {
        HBXEnv env = envOf(number, "child");
        env.setParentEID(eidOf(number == 4 ? 8 : 9));
        ASSERT_EQ(cache->insert(env), 0);
    }
    log_.take();
    EXPECT_EQ(cache->syncEnvListOf(eidOf(9)), -1);
    EXPECT_EQ(cache->syncSlaveList({eidOf(1)}), -1);
    EXPECT_EQ(log_.take(), "4 [HBX::HBXEnvCache::syncEnvListOf] EnvUpdater is not found for 'generic'.\n"
                           "4 [HBX::HBXEnvCache::syncSlaveList] EnvUpdater is not found for 'generic'.\n");
    HBXEnvFactory::getInstance().registerEnvUpdater(HBXEnv::type, updater_);
    EXPECT_EQ(cache->syncEnvListOf(eidOf(9)), 0);
    EXPECT_EQ(updater_->synced, (std::set<HBXEID, HBXEnvIDComparator>{eidOf(1), eidOf(2), eidOf(3)}));
    EXPECT_EQ(cache->syncSlaveList({eidOf(5)}), 0);
    EXPECT_EQ(updater_->synced, (std::set<HBXEID, HBXEnvIDComparator>{eidOf(5)}));
}

TEST_F(EnvCacheTest, OpensAFreshCacheWhenTheFileIsGone) {
    ASSERT_EQ(envCache()->insert(envOf(1, "one")), 0);
    const auto old = envCache();
    initEnvCache(path("other"), false);
    EXPECT_EQ(envCache(), old) << "the name counts from the next opening on";
    initEnvCache(name_, false);
    ASSERT_EQ(unlink(name_.c_str()), 0);
    EXPECT_EQ(title(1), "absent");
    EXPECT_NE(envCache(), old);
    ASSERT_EQ(envCache()->insert(envOf(2, "two")), 0);
    initEnvCache(name_, true);
    EXPECT_EQ(title(2), "absent");
    finiEnvCache();
    initEnvCache(path(), false);
    log_.take();
    EXPECT_EQ(envCache(), nullptr);
    EXPECT_EQ(log_.take(), "1 Environment cache unavailable for process environment_test, code is -2.\n");
}

} // namespace

} // namespace HBX::test
