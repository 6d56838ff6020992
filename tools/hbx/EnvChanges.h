#pragma once

#include <map>
#include <string>
#include <vector>

#include "EnvTable.h"

namespace HBX::tool {

/// How one environment changed between two looks at a cache.
struct EnvChange {
    enum class Kind { Added, Changed, Removed };

    Kind kind;
    EnvRow row; ///< as it is now; of a removed one, as it was
    /// Of a changed one: what, and in words from what to what; the words are empty for configurations.
    struct Detail {
        std::string member;
        std::string before;
        std::string after;
    };
    std::vector<Detail> details;
};

/// Private copies of the environments of a cache as they were at the last look.
class EnvMemory {
public:
    /// Takes the present environments in. @return what is different now, in the order of the identifiers.
    std::vector<EnvChange> look(const HBXEnvCache::EnvValuesList& list);

private:
    struct Copy {
        EnvRow row;
        std::string bytes; ///< of the record, without what the cache keeps in it
        std::size_t configSize;
    };

    static Copy copyOf(const HBXEnvCoreBasic& record, const HBXEnv& env);
    static EnvChange compare(const Copy& before, const Copy& after);

    std::map<HBXEID, Copy> copies_;
};

/// "~ web-1 0d9e...: state "running" -> "down""; "+" for added, "-" for removed ones.
std::string describe(const EnvChange& change);
nlohmann::ordered_json toJson(const EnvChange& change);

} // namespace HBX::tool
