#pragma once

#include <string>

#include <HBXFunctionalityCore/environment/HBXVEnvConfig.h>

namespace HBX {

/// An environment (a container, a virtual machine, the host itself): a core record with its two
/// configurations. Copies share all three.
///
/// A const environment may be a view over a record in a read-only mapped file, and several threads may use
/// one. What is written goes into the core record at once, unless that lies in the file: then into a private
/// copy; changes of the configurations go into it by
/// `syncBuffer`.
class HBX_EXPORT HBXEnv {
public:
    /// The type of environments that no module makes its own: "generic".
    static const HBXEnvType type;

    HBXEnv();
    HBXEnv(const HBXEID& eid, boost::shared_ptr<HBXEnvConfig> config);
    HBXEnv(const HBXEID& eid, boost::shared_ptr<HBXVEnvConfig> virtualConfig);
    /// The type is the configuration's, which must be there and be no virtual one, or the program ends;
    /// without a virtual configuration there is an empty one. The identifier stays null when the
    /// configuration is too large for a record.
    HBXEnv(const HBXEID& eid, boost::shared_ptr<HBXEnvConfig> config,
           boost::shared_ptr<HBXVEnvConfig> virtualConfig);
    HBXEnv(const HBXEnv&) = default;
    HBXEnv(HBXEnv&&) noexcept = default;
    HBXEnv& operator=(const HBXEnv&) = default;
    HBXEnv& operator=(HBXEnv&&) noexcept = default;
    virtual ~HBXEnv();

    /// The environment's identifier.
    [[nodiscard]] const HBXEID& getEID() const { return getCoreBasic()->eid; }
    /// Its parent's; null at the top. Setters: 0.
    [[nodiscard]] const HBXEID& getParentEID() const { return getCoreBasic()->parentEid; }
    int setParentEID(const HBXEID& eid);
    /// What state it is in.
    [[nodiscard]] const HBXEnvStatus& getStatus() const { return getCoreBasic()->status; }
    int setStatus(const HBXEnvStatus& status);
    /// Of which type it is; "generic" unless a module says otherwise.
    [[nodiscard]] const HBXEnvType& getType() const { return getCoreBasic()->type; }
    /// GREEN, and -1 for the setter, for a reason that there is not.
    [[nodiscard]] HBXAlertData::AlertType getAlertType(HBXAlertData::AlertReason reason) const;
    int setAlertType(HBXAlertData::AlertReason reason, HBXAlertData::AlertType alertType);
    /// The worst of all reasons; at least GREEN.
    [[nodiscard]] HBXAlertData::AlertType getMaxAlertType() const;

    /// Never null.
    boost::shared_ptr<HBXEnvConfig> getConfig() { return config_; }
    [[nodiscard]] boost::shared_ptr<const HBXEnvConfig> getConfig() const { return config_; }
    virtual boost::shared_ptr<HBXVEnvConfig> getVirtualConfig() { return virtualConfig_; }
    [[nodiscard]] virtual boost::shared_ptr<const HBXVEnvConfig> getVirtualConfig() const {
        return virtualConfig_;
    }

    /// Brings the core record up to date with the configurations: a new record takes the place of the present
    /// one, unless that says the same. -1, with the record as it was, when a configuration is too large.
    int syncBuffer();

    /// What people call it: name, else host name, else first address, of the virtual configuration before
    /// that of the other; else the text of the identifier.
    [[nodiscard]] virtual std::string getTitle() const;

    /// By everything that travels in a message, so without the type: below 0, 0 or above 0.
    [[nodiscard]] int compare(const HBXEnv& other) const;

    static const HBXRecordTable table;
    static const HBXPointerType family;

    /// Into a core record of its own. Configurations that are absent are empty; an absent identifier, parent,
    /// status or alert level is -1, with the environment as it was. The type is that of the configuration,
    /// "generic" when it gives none.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXEnv& env) const;
    };
    /// All of it, in the present state of the configurations.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXEnv> {
        int operator()(HBXMessageIterator& it, const HBXEnv& env) const;
    };
    /// Reads into a new environment from the factory; the pointer is replaced only on 0.
    struct HBX_EXPORT EnvSPReader {
        int operator()(const HBXMessageIterator& it, boost::shared_ptr<HBXEnv>& env) const;
    };

protected:
    /// Over a record; every use of a null one ends the program.
    explicit HBXEnv(boost::shared_ptr<HBXEnvCoreBasic> core);

private:
    friend class HBXEnvCache;
    friend class HBXEnvFactory;
    friend struct HBXEnvMembers;

    [[nodiscard]] const boost::shared_ptr<HBXEnvCoreBasic>& getCoreBasic() const;
    HBXEnvCoreBasic& writableCore();

    boost::shared_ptr<HBXEnvCoreBasic> core_;
    boost::shared_ptr<HBXEnvConfig> config_;
    boost::shared_ptr<HBXVEnvConfig> virtualConfig_;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXEnv>;

} // namespace HBX
