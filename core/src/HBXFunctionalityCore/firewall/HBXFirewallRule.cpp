#include <HBXFunctionalityCore/firewall/HBXFirewallRule.h>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX {

namespace {

using Rule = HBXFirewallRule;

constexpr int kName = 1026;
constexpr int kEnabled = 1198;
constexpr int kWords[] = {1195, 1196, 1197};
constexpr int kAddresses[] = {1199, 1200};
constexpr int kPorts[] = {1201, 1202};
constexpr int kInterfaces[] = {1203, 1204};

constexpr HBXRow kNetAddress[] = {
    optional<&Rule::NetAddress::address>(1262),
    optional<&Rule::NetAddress::mask>(1784),
};

constexpr HBXRow kPortRange[] = {
    optional<&Rule::PortRange::first>(1194),
    optional<&Rule::PortRange::last>(1193),
};

/// One item of an array member.
template <auto Array>
constexpr HBXRow itemOf(std::size_t index, int id, std::string_view name) {
    using Item = std::remove_extent_t<typename internal::MemberParts<decltype(Array)>::Type>;
    HBXRow row = optional<&Rule::name>(id);
    row.where = &(internal::probe<Rule>.object.*Array)[index];
    row.type = &internal::valueType<Item>;
    row.kind = row.type->kind;
    row.plain = row.kind < HBXKind::Record;
    row.name = name;
    return row;
}

constexpr HBXRow mandatory(HBXRow row) {
    row.presence = HBXPresence::Mandatory;
    return row;
}

constexpr HBXRow kFirewallRule[] = {
    member<&Rule::name>(kName),
    mandatory(itemOf<&Rule::words>(Rule::CHAIN, kWords[Rule::CHAIN], "chain")),
    itemOf<&Rule::words>(Rule::POLICY, kWords[Rule::POLICY], "policy"),
    itemOf<&Rule::words>(Rule::PROTOCOL, kWords[Rule::PROTOCOL], "protocol"),
    optional<&Rule::enabled>(kEnabled),
    itemOf<&Rule::addresses>(Rule::SOURCE, kAddresses[Rule::SOURCE], "sourceAddress"),
    itemOf<&Rule::addresses>(Rule::DESTINATION, kAddresses[Rule::DESTINATION], "destinationAddress"),
    itemOf<&Rule::ports>(Rule::SOURCE, kPorts[Rule::SOURCE], "sourcePorts"),
    itemOf<&Rule::ports>(Rule::DESTINATION, kPorts[Rule::DESTINATION], "destinationPorts"),
    itemOf<&Rule::interfaces>(Rule::INBOUND, kInterfaces[Rule::INBOUND], "inboundInterface"),
    itemOf<&Rule::interfaces>(Rule::OUTBOUND, kInterfaces[Rule::OUTBOUND], "outboundInterface"),
};

template <class Item, std::size_t N>
void getOptional(const HBXMessageIterator& it, Item (&items)[N], const int (&ids)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        if constexpr (HBXRecord<Item>) {
            it.getObject(items[i], ids[i]);
        } else {
            it.getValue(items[i], ids[i]);
        }
    }
}

int putUnlessEmpty(HBXMessageIterator& it, const std::string& text, int id) {
    return text.empty() ? 0 : it.putValue(text, id);
}

int putUnlessEmpty(HBXMessageIterator& it, const Rule::NetAddress& address, int id) {
    return address.address.empty() ? 0 : it.putObject(address, id);
}

int putUnlessEmpty(HBXMessageIterator& it, const Rule::PortRange& ports, int id) {
    return ports == Rule::PortRange() ? 0 : it.putObject(ports, id);
}

template <class Item, std::size_t N>
int putAll(HBXMessageIterator& it, const Item (&items)[N], const int (&ids)[N]) {
    int result = 0;
    for (std::size_t i = 0; i < N && result == 0; ++i) {
        result = putUnlessEmpty(it, items[i], ids[i]);
    }
    return result;
}

} // namespace

constinit const HBXRecordTable Rule::NetAddress::table =
    recordTable<Rule::NetAddress>("HBXFirewallRule::NetAddress", 0, 0, kNetAddress);
constinit const HBXRecordTable Rule::PortRange::table =
    recordTable<Rule::PortRange>("HBXFirewallRule::PortRange", 0, 0, kPortRange);
constinit const HBXRecordTable Rule::table = recordTable<Rule>("HBXFirewallRule", 409, 5085, kFirewallRule);

std::string Rule::NetAddress::toString(char separator) const {
    return address.empty() || mask.empty() ? address : address + separator + mask;
}

std::string Rule::PortRange::toString(char separator) const {
    if (first == kNotSet) {
        return {};
    }
    return last == kNotSet ? std::to_string(first) : std::to_string(first) + separator + std::to_string(last);
}

void Rule::completeSample() {
    for (NetAddress& address : addresses) {
        address.address += '.';
    }
}

int Rule::Reader::operator()(const HBXMessageIterator& it, Rule& rule) const {
    if (it.getValue(rule.name, kName) != 0 || it.getValue(rule.words[CHAIN], kWords[CHAIN]) != 0) {
        return -1;
    }
    it.getValue(rule.words[POLICY], kWords[POLICY]);
    it.getValue(rule.words[PROTOCOL], kWords[PROTOCOL]);
    it.getValue(rule.enabled, kEnabled);
    getOptional(it, rule.addresses, kAddresses);
    getOptional(it, rule.ports, kPorts);
    getOptional(it, rule.interfaces, kInterfaces);
    return 0;
}

int Rule::Writer::operator()(HBXMessageIterator& it, const Rule& rule) const {
    const bool isWritten = it.putValue(rule.name, kName) == 0 &&
                           it.putValue(rule.words[CHAIN], kWords[CHAIN]) == 0 &&
                           putUnlessEmpty(it, rule.words[POLICY], kWords[POLICY]) == 0 &&
                           putUnlessEmpty(it, rule.words[PROTOCOL], kWords[PROTOCOL]) == 0 &&
                           it.putValue(static_cast<int>(rule.enabled), kEnabled) == 0 &&
                           putAll(it, rule.addresses, kAddresses) == 0 && putAll(it, rule.ports, kPorts) == 0;
    return isWritten ? putAll(it, rule.interfaces, kInterfaces) : -1;
}

} // namespace HBX
