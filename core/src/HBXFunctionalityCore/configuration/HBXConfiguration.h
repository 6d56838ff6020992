#pragma once

#include <compare>
#include <map>
#include <set>
#include <string>

#include <boost/smart_ptr/intrusive_ptr.hpp>
#include <boost/smart_ptr/shared_ptr.hpp>

#include <HBXFunctionalityCore/configuration/HBXConfigurationIterator.h>
#include <HBXFunctionalityCore/directory/HBXRealm.h>
#include <HBXFunctionalityCore/identity/HBXEID.h>
#include <HBXFunctionalityCore/security/HBXConnectionInfo.h>
#include <HBXMessage/HBXDerivedParsers.h>
#include <HBXMessage/HBXMessage.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// What a configuration holds: a message and a cursor on it, replaced together. Copies share the message and
/// have a cursor of their own, so that each may be used by a thread of its own as long as nobody writes.
class HBX_EXPORT HBXConfigurationContent {
public:
    HBXConfigurationContent() = default;
    HBXConfigurationContent(const HBXConfigurationContent& other) { reset(other.message_.get(), false); }
    HBXConfigurationContent(HBXConfigurationContent&&) noexcept = default;
    /// Does nothing when both hold the same message already.
    HBXConfigurationContent& operator=(const HBXConfigurationContent& other);
    HBXConfigurationContent& operator=(HBXConfigurationContent&&) noexcept = default;
    ~HBXConfigurationContent() = default;

    /// Takes a handle of its own; null empties. `deep`: of a copy of the message.
    void reset(HBXMessage* message, bool deep);
    /// Null when empty; this object keeps its handles.
    [[nodiscard]] HBXMessage* message() const { return message_.get(); }
    [[nodiscard]] HBXMessageIterator* iterator() const { return iterator_.get(); }

    /// The message in its text form, "" when there is none: so this is a value that is one text.
    [[nodiscard]] std::string toString() const;
    /// Reads such a text; -1 and unchanged when it is no message.
    int fromString(std::string_view text);
    /// One that follows from the number, for tests.
    static HBXConfigurationContent sample(std::uint64_t random);

    /// By the bytes of the messages; no message comes first.
    friend HBX_EXPORT bool operator==(const HBXConfigurationContent& a, const HBXConfigurationContent& b);
    friend HBX_EXPORT std::strong_ordering operator<=>(const HBXConfigurationContent& a,
                                                       const HBXConfigurationContent& b);

    static const HBXRecordTable table;
    using Reader = HBXTextReader<HBXConfigurationContent>;
    using Writer = HBXTextWriter<HBXConfigurationContent>;

private:
    boost::intrusive_ptr<HBXMessage> message_;
    boost::shared_ptr<HBXMessageIterator> iterator_;
};

/// The agent's configuration: a tree message that is loaded from a file, held in memory and navigated by
/// paths (HBXConfigurationIterator), with accessors for the settings that the data model itself needs. Empty
/// until a message is loaded or given. Copies share the message: what one writes, all see.
///
/// Results: 0 done, -1 failed (nothing is logged); queries that answer bool give false on failure. Reading
/// and removing never create elements. One thread at a time uses a configuration.
class HBX_EXPORT HBXConfiguration {
public:
    /// Empty when `message` is null; else with a handle of its own of the message.
    explicit HBXConfiguration(HBXMessage* message = nullptr) { reset(message, false); }
    HBXConfiguration(const HBXConfiguration&) = default;
    HBXConfiguration(HBXConfiguration&&) noexcept = default;
    HBXConfiguration& operator=(const HBXConfiguration&) = default;
    HBXConfiguration& operator=(HBXConfiguration&&) noexcept = default;
    virtual ~HBXConfiguration() = default;

    /// Replaces the content by that of a file in text form; as it was on failure. The thread's error message
    /// says what is wrong, and where: file, line, column and path of element names.
    int readFromFile(const std::string& file);
    /// Replaces the file, whole or not at all (also over a crash); -1 when empty. Reasons as above.
    int saveToFile(const std::string& file) const;

    /// Null when empty; this object keeps its handle.
    [[nodiscard]] HBXMessage* getMessage() const { return content_.message(); }
    /// A new iterator on the top element, owned by the caller; null when empty. It keeps the message alive.
    [[nodiscard]] HBXConfigurationIterator* getIterator() const;

    /// The local environment's identifier. Setting it needs the section "agent" to be there, and does not
    /// change what `getLocalEID` remembers.
    int getEID(HBXEID& id) const;
    int setEID(const HBXEID& id);

    // The configuration of this process, installed once and handed out by copy. Safe from any thread, as long
    // as nobody writes into the installed message.

    /// Over the installed message; empty when there is none.
    static HBXConfiguration getLocalConfig();
    /// Installs a handle of the message, null uninstalls; the caller's own handle stays the caller's. Always
    /// 0.
    static int setLocalConfig(HBXMessage* message);
    /// The local configuration's identifier, read once for each installed configuration that has one.
    static HBXEID getLocalEID();

    // The server group. Operations that write create the section, and everything above it, when missing.

    /// Whether the section names a master.
    [[nodiscard]] bool isInServerGroup() const;
    /// The identifier of the group's master, which `delMaster` removes.
    int getMaster(HBXEID& id) const;
    int setMaster(const HBXEID& id);
    int delMaster();
    /// In no group, or in a group whose master's identifier is the local one.
    [[nodiscard]] bool isMaster() const;
    /// In a group whose master is known to be another environment than the local one, itself known.
    [[nodiscard]] bool isSlave() const;
    /// Creates the list of client environments, still empty; one that is there stays.
    int setMasterness();
    /// 0 also when there is nothing to undo; -1, nothing changed, while there are client environments.
    int unsetMasterness();
    /// Appends, also beside one of the same identifier.
    int addClientEnv(const HBXEID& id);
    /// Removes the first of that identifier.
    int delClientEnv(const HBXEID& id);
    /// Adds to the set.
    void getGroupSlaves(std::set<HBXEID, HBXEnvIDComparator>& ids) const;

    // Where environments are reached. Entries that cannot be read are passed over.

    /// Adds to the map; of entries with one identifier the first counts. -1 when there is no table.
    int getMappingTable(std::map<HBXEID, HBXConnectionInfo>& mappings) const;
    /// One entry; -1, `info` untouched, when there is none.
    int findMapping(const HBXEID& id, HBXConnectionInfo& info) const;
    /// Replaces or appends the entry. Creates the table but not the section above it.
    int setMapping(const HBXEID& id, const HBXConnectionInfo& info);
    /// Removes the first entry of that identifier; -1 when there is none.
    int removeMapping(const HBXEID& id);

    /// The realm that the agent itself knows, by its identifier.
    int getBuiltinRealmID(HBXGUID& id) const;
    /// Null when identifier or list cannot be read (one damaged realm is enough), or the list lacks it.
    [[nodiscard]] boost::shared_ptr<HBXRealm> getBuiltinRealm() const;

    friend bool operator==(const HBXConfiguration& a, const HBXConfiguration& b) {
        return a.content_ == b.content_;
    }
    friend std::strong_ordering operator<=>(const HBXConfiguration& a, const HBXConfiguration& b) {
        return a.content_ <=> b.content_;
    }

    static const HBXRecordTable table;
    static const HBXPointerType family;

    /// Takes a copy of everything below the current element; -1 when there is nothing below it.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXConfiguration& configuration) const;
    };
    /// Copies the top element below the current one; -1 when empty.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXConfiguration> {
        int operator()(HBXMessageIterator& it, const HBXConfiguration& configuration) const;
    };

private:
    friend struct HBXConfigurationRows;

    void reset(HBXMessage* message, bool deep) { content_.reset(message, deep); }

    HBXConfigurationContent content_;
};

/// The one registry of the family in the process.
extern template class HBX_EXPORT HBXDerivedParserFactory<HBXConfiguration>;

} // namespace HBX
