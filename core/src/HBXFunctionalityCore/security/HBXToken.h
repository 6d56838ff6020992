#pragma once

#include <utility>
#include <vector>

#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/security/HBXSID.h>

namespace HBX {

/// On whose behalf something is done: a principal and the groups it belongs to. Every thread has a current
/// token; a new thread has one without anything, which is nobody and no administrator.
///
/// On a message nothing has to be there, but an identifier that is there must be one (-1). An empty principal
/// is left out; an empty identifier in a list does not write.
struct HBX_EXPORT HBXToken {
    HBXSID sid;                     ///< may be empty
    std::vector<HBXSID> groups;     ///< in the order in which they are asked
    std::vector<HBXSID> restricted; ///< what `restrict` took away; gives no right

    /// The calling thread's token; the reference shows later ones.
    static const HBXToken& getCurrent();
    /// Returns the one that was current.
    static HBXToken setCurrent(HBXToken token);

    /// The token under which the agent itself acts, always an administrator. It follows the configuration.
    static HBXToken getAgentToken();

    /// Whether the principal or a group is the administrators' group of the local environment, the system's
    /// administrators' group ("S-1-5-32-544") or the system's account administrator ("S-1-5-21-x-y-z-500").
    /// An empty identifier never is.
    [[nodiscard]] bool isLocalAdministrators() const;
    /// The same with the administrators' group of this environment.
    [[nodiscard]] bool isEnvAdministrators(const HBXEID& eid) const;

    /// Keeps only what the other token carries too, as principal or group; a principal that it does not carry
    /// becomes the anonymous one. What is lost goes to `restricted`. Never adds a right; 0.
    int restrict(const HBXToken& other);

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXToken>;
    using Writer = HBXTableWriter<HBXToken>;
};

/// Makes a token the calling thread's current one for a scope. Holders end in the reverse order of their
/// beginning, in the thread where they began.
class HBX_EXPORT HBXTokenHolder {
public:
    explicit HBXTokenHolder(const HBXToken& token) : previous_(HBXToken::setCurrent(token)) {}
    ~HBXTokenHolder() { HBXToken::setCurrent(std::move(previous_)); }
    HBXTokenHolder(const HBXTokenHolder&) = delete;
    HBXTokenHolder& operator=(const HBXTokenHolder&) = delete;

private:
    HBXToken previous_;
};

} // namespace HBX
