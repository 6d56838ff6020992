#pragma once

#include <functional>
#include <string>
#include <vector>

#include <HBXFunctionalityCore/environment/HBXEnvCoreBasic.h>
#include <HBXFunctionalityCore/environment/HBXIPAddress.h>
#include <HBXFunctionalityCore/environment/HBXOS.h>
#include <HBXMessage/HBXDerivedParsers.h>

namespace HBX {

/// The configuration of an environment: a view over a message, whose elements are read and written one by
/// one, so that those which nobody here knows stay as they are. The message is the view's own, or lies in a
/// core record until the first write; the record itself is never written. Copies are independent.
///
/// Getters: 0; -1 and the value untouched when there is no message, or no such element that can be read.
/// Setters: 0 or -1; they replace the element and take an unset property's away.
/// Const functions may be called by several threads at once.
class HBX_EXPORT HBXEnvConfig {
public:
    /// Without a message, which the first write makes.
    HBXEnvConfig() : HBXEnvConfig(nullptr) {}
    /// Over the configuration in a core record.
    explicit HBXEnvConfig(boost::shared_ptr<const HBXEnvCoreBasic> core)
        : HBXEnvConfig(std::move(core), ENV_CONFIG) {}
    HBXEnvConfig(const HBXEnvConfig& other);
    HBXEnvConfig(HBXEnvConfig&&) noexcept = default;
    HBXEnvConfig& operator=(const HBXEnvConfig& other);
    HBXEnvConfig& operator=(HBXEnvConfig&&) noexcept = default;
    virtual ~HBXEnvConfig();

    /// Which of an environment's two configurations it is.
    [[nodiscard]] EnvConfigType getConfigType() const { return kind_; }
    /// The environment's type; kept beside the message.
    [[nodiscard]] HBXEnvType getType() const { return type_; }
    void setType(const HBXEnvType& type) { type_ = type; }

    /// Properties of the environment, one element each (docs/environments.md).
    int getName(HBXOptionalProperty<std::string>& value) const;
    int setName(const HBXOptionalProperty<std::string>& value);
    int getDescription(HBXOptionalProperty<std::string>& value) const;
    int setDescription(const HBXOptionalProperty<std::string>& value);
    int getDomain(HBXOptionalProperty<std::string>& value) const;
    int setDomain(const HBXOptionalProperty<std::string>& value);
    int getHostname(HBXOptionalProperty<std::string>& value) const;
    int setHostname(const HBXOptionalProperty<std::string>& value);
    int getArchitecture(HBXOptionalProperty<std::string>& value) const;
    int setArchitecture(const HBXOptionalProperty<std::string>& value);
    int getNameservers(HBXOptionalProperty<std::vector<std::string>>& value) const;
    int setNameservers(const HBXOptionalProperty<std::vector<std::string>>& value);
    int getSearchDomains(HBXOptionalProperty<std::vector<std::string>>& value) const;
    int setSearchDomains(const HBXOptionalProperty<std::vector<std::string>>& value);
    int getChildTypes(HBXOptionalProperty<std::vector<std::string>>& value) const;
    int setChildTypes(const HBXOptionalProperty<std::vector<std::string>>& value);
    int getAddresses(HBXOptionalProperty<std::vector<HBXIPAddress>>& value) const;
    int setAddresses(const HBXOptionalProperty<std::vector<HBXIPAddress>>& value);
    int getOS(HBXOS& value) const;
    int setOS(const HBXOS& value);
    int getBaseSampleId(HBXOptionalProperty<HBXGUID>& value) const;
    int setBaseSampleId(const HBXOptionalProperty<HBXGUID>& value);
    int getBaseSnapshotId(HBXGUID& value) const;
    int setBaseSnapshotId(const HBXGUID& value);
    int getConfigCustomized(bool& value) const;
    /// The agent that made the configuration: 40000 when it does not say; -1 without a message, and for a
    /// virtual configuration.
    [[nodiscard]] int getAgentVersion() const;

    /// Makes the message when there is none, with the present agent version unless it is a virtual
    /// configuration. One that lies in a core record is taken out of it: -1 when it is damaged.
    int initMsg();
    /// A cursor on the message's root; null without a message. Through the first the message can be changed;
    /// the second gives, of a message in a core record, a copy.
    boost::shared_ptr<HBXMessageIterator> getMessageIterator();
    [[nodiscard]] boost::shared_ptr<const HBXMessageIterator> getMessageIterator() const;
    /// The message as a core record holds it, "" without one. -1 when it exceeds the limits of messages.
    int getBytes(std::string& bytes) const;

    /// By the bytes: below 0, 0 or above 0. No message is as good as an empty one.
    [[nodiscard]] int compare(const HBXEnvConfig& other) const;
    /// Drops the view's own message, so that the core record's counts again; true: forgets the record too.
    void reset(bool forgetCore);
    /// Which child of the root, from 0, is the first of this name; -1 when there is none.
    virtual int getPositionOfTheTag(const std::string& name) const;

    static const HBXRecordTable table;
    static const HBXPointerType family;

    /// Takes all that the current element holds; an empty element is an empty message.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXEnvConfig& config) const;
    };
    /// Copies all children of the message's root into the current element.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXEnvConfig> {
        int operator()(HBXMessageIterator& it, const HBXEnvConfig& config) const;
    };
    /// A filter: a number that is the current element's value.
    struct HBX_EXPORT FilterConfigReader {
        int operator()(const HBXMessageIterator& it, int& filter) const { return it.getValue(filter, 0); }
    };
    struct HBX_EXPORT FilterConfigWriter : HBXPlainMarks {
        int operator()(HBXMessageIterator& it, int filter) const { return it.putValue(filter, 0); }
    };

protected:
    HBXEnvConfig(boost::shared_ptr<const HBXEnvCoreBasic> core, EnvConfigType kind);

    /// Runs with a cursor on the message's root, wherever that lies; -1 without a message.
    int read(const std::function<int(const HBXMessageIterator&)>& reading) const;
    /// The same on the view's own message, which is made if need be.
    int write(const std::function<int(HBXMessageIterator&)>& writing);
    /// Removes the elements of this id, then writes.
    int replace(int id, const std::function<int(HBXMessageIterator&)>& writing);

    /// Whether there is a message, of the view's own or in the record.
    [[nodiscard]] bool hasMessage() const { return message_ != nullptr || !coreBytes().empty(); }

private:
    int getStringAttr(HBXOptionalProperty<std::string>& property, int id) const;
    int setStringAttr(const HBXOptionalProperty<std::string>& property, int id);
    int getStringBase64Attr(HBXOptionalProperty<std::string>& property, int id) const;
    int setStringBase64Attr(const HBXOptionalProperty<std::string>& property, int id);

    [[nodiscard]] std::string_view coreBytes() const;

    boost::intrusive_ptr<HBXMessage> message_;
    EnvConfigType kind_;
    boost::shared_ptr<const HBXEnvCoreBasic> core_;
    HBXEnvType type_;
};

extern template class HBX_EXPORT HBXDerivedParserFactory<HBXEnvConfig>;

} // namespace HBX
