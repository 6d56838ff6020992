#pragma once

#include "ProgramTest.h"

namespace HBX {

inline const std::string kHost = "00000000-0000-0000-0000-000000000001";
inline const std::string kWeb = "00000000-0000-0000-0000-000000000002";
inline const std::string kBare = "00000000-0000-0000-0000-000000000003";
inline const std::string kNull = "00000000-0000-0000-0000-000000000000";

struct Sample {
    std::string eid;
    std::string parent = kNull;
    std::string title = "";
    int state = 6;
    std::string type = "";
};

inline std::string entryText(const Sample& env) {
    const std::string type = env.type.empty() ? "" : "<env_type>" + env.type + "</env_type>";
    const std::string name = env.title.empty() ? "" : "<name>" + env.title + "</name>";
    return "<entry>" + type + "<env><eid>" + env.eid + "</eid><parent_eid>" + env.parent +
           "</parent_eid><status><state>" + std::to_string(env.state) +
           "</state></status><alert_type>0</alert_type><alert_type>2</alert_type><alert_type>0</alert_type>"
           "<alert_type>0</alert_type><alert_type>1</alert_type><env_config>" +
           name + "<odd>kept</odd></env_config></env></entry>";
}

class EnvCommandTest : public ProgramTest {
protected:
    const std::string cache_ = path("cache");

    std::string messageOf(const std::vector<Sample>& envs) const {
        std::string text;
        for (const Sample& env : envs) {
            text += entryText(env);
        }
        return write("env.xml", messageText("<data>" + text + "</data>"));
    }
    void put(const std::vector<Sample>& envs) const { EXPECT_EQ(out(call({"put", messageOf(envs)})), ""); }
    void putThree() const {
        const std::string title = "web &#9;[2J\xC2\x9B";
        put({{kHost, kNull, "node", 6, "host"}, {kWeb, kHost, title, 3, "lab"}, {kBare, kWeb}});
    }
    Words call(const Words& words) const { return joined(joined({"env"}, words), {"--cache", cache_}); }
    Ended env(const Words& words) const { return run(call(words)); }
    /// The environments that "list" gives, or none.
    Json listed(const Words& options = {}) const {
        return Json::parse(env(joined({"list", "--json"}, options)).out)["environments"];
    }
    /// Every verb that opens a cache, with operands that are good.
    std::vector<Words> openingVerbs() const {
        return {{"list"}, {"get", kHost}, {"put", messageOf({{kHost}})}, {"remove", kHost},
                {"stat"}, {"readers"},    {"watch", "--timeout", "0"}};
    }
};

} // namespace HBX
