#include <gtest/gtest.h>

#include <HBXFunctionalityCore/alert/HBXAlertData.h>
#include <HBXFunctionalityCore/alert/HBXEnvInfo.h>
#include <HBXFunctionalityCore/environment/HBXEnvCache.h>

#include "support/ScratchFolder.h"

namespace HBX::test {
namespace {

const HBXEID kEid(HBXGUID(0x0123456789ABCDEF, 0x0011223344556677));
constexpr const char* kEidText = "01234567-89ab-cdef-0011-223344556677";

/// "text|flag{name=text|flag{...}, ...}"
std::string describe(const HBXInfo& info) {
    std::string text = info.text + (info.translatable ? "|1" : "|0");
    std::string between = "{";
    for (const HBXInfo& parameter : info.parameters) {
        text += between + parameter.name + '=' + describe(parameter);
        between = ", ";
    }
    return info.parameters.empty() ? text : text + '}';
}

std::string envText(const std::string& title) { return "env=%title%|1{title=" + title + "|0}"; }

TEST(AlertText, OfAResource) {
    HBXResourceAlertData alert;
    alert.eid = kEid;
    alert.level = HBXAlertData::YELLOW;
    alert.resourceId = "memory";
    alert.current = -5;
    alert.hard = 9223372036854775807;
    const std::string text =
        "Resource %id% %type% alert on environment %env% current value: %cur% soft limit: "
        "%soft% hard limit: %hard%|1{" +
        envText(kEidText) + ", type=yellow|1, id=memory|0, cur=-5|0, soft=";
    HBXInfo info("old", "old", false);
    info.setParameter({"old", "old", true});
    alert.toInfo(info);
    EXPECT_EQ(info.name, "");
    EXPECT_EQ(describe(info), text + "|0, hard=9223372036854775807|0}") << "an unset limit is no 0";

    alert.soft = 0;
    alert.toInfo(info);
    EXPECT_EQ(describe(info), text + "0|0, hard=9223372036854775807|0}") << "a second time, into the same";
}

TEST(AlertText, OfAServerGroupNamesTheServerInPlaceOfTheEnvironment) {
    HBXServerGroupAlertData alert;
    alert.eid = kEid;
    alert.level = 7;
    alert.envId = HBXGUID(1, 2);
    alert.reason = "no answer";
    alert.code = -3;
    alert.subsystem = "heartbeat";
    HBXInfo info;
    const HBXAlertData& base = alert;
    base.toInfo(info);
    EXPECT_EQ(
        describe(info),
        "Calvanti group problem with %env%. Subsystem: %subsystem% failed, reason %reason% [code %code%].|1"
        "{env=00000000-0000-0001-0000-000000000002|0, type=|1, subsystem=heartbeat|1, "
        "reason=no answer|1, code=-3|0}");
}

TEST(AlertText, NamesTheFourLevelsOnly) {
    const char* const names[] = {"", "green", "yellow", "red", "black", ""};
    for (int level = -1; level <= 4; ++level) {
        EXPECT_STREQ(HBXAlertData::getAlertTypeString(level), names[level + 1]) << level;
    }
}

TEST(AlertText, CallsAnEnvironmentByItsTitleWhenTheOpenCacheKnowsIt) {
    const ScratchFolder folder;
    EXPECT_EQ(describe(HBXEnvInfo(kEid)), "%title%|1{title=" + std::string(kEidText) + "|0}");
    ASSERT_EQ(initEnvCache(folder.path("cache"), true), 0);
    EXPECT_EQ(HBXEnvInfo(kEid).parameters.at(0).text, kEidText);
    EXPECT_EQ(folder.files(), 0) << "a text is no reason to open the cache";

    const auto config = boost::make_shared<HBXEnvConfig>();
    config->setName(HBXOptionalProperty<std::string>("web server"));
    ASSERT_NE(envCache(), nullptr);
    ASSERT_EQ(envCache()->insert(HBXEnv(kEid, config)), 0);
    EXPECT_EQ(HBXEnvInfo(kEid).parameters.at(0).text, "web server");
    EXPECT_EQ(HBXEnvInfo(HBXEID()).parameters.at(0).text, HBXEID().toString());
    finiEnvCache();
}

TEST(Info, ParametersReplaceTheOneOfTheirName) {
    HBXInfo info("", "%a% %b%", true);
    info.setParameter({"a", "1", false});
    info.setParameter({"b", "2", false});
    HBXInfo nested("a", "whole", false);
    nested.setParameter({"a", "part", false});
    info.setParameter(nested);
    info.setParameter(info.parameters[0].parameters[0]); // a part of what it replaces
    EXPECT_EQ(describe(info), "%a% %b%|1{a=part|0, b=2|0}");
}

} // namespace
} // namespace HBX::test
