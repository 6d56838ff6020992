#include "ConfigurationTestUtil.h"

#include <atomic>
#include <thread>
#include <vector>

namespace HBX::test {
namespace {

HBXEID eid(int number) { return HBXEID(HBXGUID(1, number)); }

Message messageOf(int number) {
    const Message message = newMessage();
    const std::string id = number == 0 ? "" : "<id>" + eid(number).toString() + "</id>";
    EXPECT_EQ(
        message->fromText(messageText("<data><agent><configuration>" + id + "<number>" +
                                      std::to_string(number) + "</number></configuration></agent></data>")
                              .c_str(),
                          nullptr),
        0);
    return message;
}

class LocalConfiguration : public testing::Test {
protected:
    ~LocalConfiguration() override { HBXConfiguration::setLocalConfig(nullptr); }
};

TEST_F(LocalConfiguration, IdentifierIsReadOnceForEachInstallation) {
    EXPECT_EQ(HBXConfiguration::getLocalConfig().getMessage(), nullptr);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), HBXEID());

    EXPECT_EQ(HBXConfiguration::setLocalConfig(messageOf(0).get()), 0);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), HBXEID());
    EXPECT_EQ(HBXConfiguration::getLocalConfig().setEID(eid(1)), 0);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), eid(1)) << "it tries again while it knows none";
    EXPECT_EQ(HBXConfiguration::getLocalConfig().setEID(eid(2)), 0);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), eid(1)) << "it remembers";

    HBXConfiguration::setLocalConfig(messageOf(3).get());
    EXPECT_EQ(HBXConfiguration::getLocalEID(), eid(3));
    HBXConfiguration::setLocalConfig(nullptr);
    EXPECT_EQ(HBXConfiguration::getLocalEID(), HBXEID());
}

TEST_F(LocalConfiguration, KeepsAHandleOfItsOwn) {
    HBXMessage* message = messageOf(1).detach();
    HBXConfiguration::setLocalConfig(message);
    message->destroy();
    const HBXConfiguration handedOut = HBXConfiguration::getLocalConfig();
    HBXConfiguration::setLocalConfig(nullptr);
    HBXEID id;
    EXPECT_EQ(handedOut.getEID(id), 0);
    EXPECT_EQ(id, eid(1));
}

TEST_F(LocalConfiguration, ThreadsReadWhileOthersInstall) {
    constexpr int kRounds = 400;
    std::atomic<int> wrong{0};
    std::vector<std::thread> threads;
    for (int installer = 0; installer < 2; ++installer) {
        threads.emplace_back([installer] {
            for (int round = 0; round < kRounds; ++round) {
                HBXConfiguration::setLocalConfig(round % 7 == 0 ? nullptr : messageOf(installer + 1).get());
            }
        });
    }
    for (int reader = 0; reader < 2; ++reader) {
        threads.emplace_back([&wrong] {
            for (int round = 0; round < kRounds; ++round) {
                const HBXEID id = HBXConfiguration::getLocalEID();
                wrong += !id.isValid() || id == eid(1) || id == eid(2) ? 0 : 1;
                const HBXConfiguration configuration = HBXConfiguration::getLocalConfig();
                const std::unique_ptr<HBXConfigurationIterator> it(configuration.getIterator());
                HBXEID own;
                int number = 0;
                if (it != nullptr) {
                    wrong += it->getValue(number, "/agent/number") == 0 && configuration.getEID(own) == 0 &&
                                     own == eid(number)
                                 ? 0
                                 : 1;
                }
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace
} // namespace HBX::test
