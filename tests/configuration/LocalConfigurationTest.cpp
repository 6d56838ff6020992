#include "ConfigurationTestUtil.h"

#include <atomic>

#include "support/Threads.h"

namespace HBX::test {
namespace {

Message messageOf(int number) {
    const std::string id = number == 0 ? "" : idText(number);
    return textMessage("<data><agent><configuration>" + id + "<number>" + std::to_string(number) +
                       "</number></configuration></agent></data>");
}

class LocalConfiguration : public testing::Test {
protected:
    void TearDown() override { HBXConfiguration::setLocalConfig(nullptr); }
};

TEST_F(LocalConfiguration, IdentifierIsReadOnceForEachInstallation) {
    EXPECT_EQ(HBXConfiguration::getLocalConfig().getMessage(), nullptr);
    EXPECT_EQ(HBXConfiguration::setLocalConfig(messageOf(0).get()), 0);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), HBXEID());
    HBXConfiguration::getLocalConfig().setEID(eid(1));
    EXPECT_EQ(HBXConfiguration::getLocalEID(), eid(1)) << "it tries again while it knows none";
    HBXConfiguration::getLocalConfig().setEID(eid(2));
    EXPECT_EQ(HBXConfiguration::getLocalEID(), eid(1)) << "it remembers";
    HBXConfiguration::setLocalConfig(messageOf(3).get());
    EXPECT_EQ(HBXConfiguration::getLocalEID(), eid(3));
    const HBXConfiguration handedOut = HBXConfiguration::getLocalConfig();
    HBXConfiguration::setLocalConfig(nullptr);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), HBXEID());
    HBXEID id;
    EXPECT_EQ(handedOut.getEID(id), 0);
    EXPECT_EQ(id, eid(3));
}

TEST_F(LocalConfiguration, ThreadsReadWhileOthersInstall) {
    constexpr int kRounds = 400;
    std::atomic<int> wrong{0};
    const auto install = [](int number) {
        for (int round = 0; round < kRounds; ++round) {
            HBXConfiguration::setLocalConfig(round % 7 == 0 ? nullptr : messageOf(number).get());
        }
    };
    const auto read = [&wrong] {
        for (int round = 0; round < kRounds; ++round) {
            const HBXEID id = HBXConfiguration::getLocalEID();
            wrong += !id.isValid() || id == eid(1) || id == eid(2) ? 0 : 1;
            const HBXConfiguration configuration = HBXConfiguration::getLocalConfig();
            const std::unique_ptr<HBXConfigurationIterator> it(configuration.getIterator());
            HBXEID own;
            int number = 0;
            wrong += it == nullptr || (it->getValue(number, "/agent/number") == 0 &&
                                       configuration.getEID(own) == 0 && own == eid(number))
                         ? 0
                         : 1;
        }
    };
    runThreads({[&] { install(1); }, read, [&] { install(2); }, read});
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace HBX::test
