#pragma once

#include <string>

#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// A rule of an environment's packet filter.
struct HBX_EXPORT HBXFirewallRule {
    /// An address with its mask; both empty: any.
    struct HBX_EXPORT NetAddress {
        std::string address;
        std::string mask;

        /// Address, separator and mask; the address alone when one of them is empty.
        [[nodiscard]] std::string toString(char separator) const;

        static const HBXRecordTable table;
        using Reader = HBXTableReader<NetAddress>;
        using Writer = HBXTableWriter<NetAddress>;
    };

    /// Ports from first to last; kNotSet: none said.
    struct HBX_EXPORT PortRange {
        static constexpr int kNotSet = -1;

        int first = kNotSet;
        int last = kNotSet;

        /// First port, separator and last port; the first alone when there is no last; "" without a first.
        [[nodiscard]] std::string toString(char separator) const;

        static const HBXRecordTable table;
        using Reader = HBXTableReader<PortRange>;
        using Writer = HBXTableWriter<PortRange>;
    };

    static constexpr const char* PT_TCP = "tcp";
    static constexpr const char* PT_UDP = "udp";
    static constexpr const char* CT_INPUT = "INPUT";
    static constexpr const char* CT_OUTPUT = "OUTPUT";
    static constexpr const char* CT_FORWARD = "FORWARD";
    static constexpr const char* PL_ACCEPT = "ACCEPT";
    static constexpr const char* PL_DROP = "DROP";
    static constexpr const char* PL_REJECT = "REJECT";

    /// Indexes of `words`.
    enum Word { CHAIN, POLICY, PROTOCOL };
    /// Of `addresses` and `ports`.
    enum End { SOURCE, DESTINATION };
    /// Of `interfaces`.
    enum Direction { INBOUND, OUTBOUND };

    std::string name;
    std::string words[3];    ///< CT_..., PL_... and PT_...; others are carried as they are
    bool enabled = false;    ///< The rule is applied.
    NetAddress addresses[2]; ///< empty: any
    PortRange ports[2];
    std::string interfaces[2]; ///< names of network interfaces; empty: all

    /// Gives every mask an address, without which it would not travel.
    void completeSample();

    static const HBXRecordTable table;

    /// Name and chain must be there (-1); what else is absent or unreadable stays as it was.
    struct HBX_EXPORT Reader {
        int operator()(const HBXMessageIterator& it, HBXFirewallRule& rule) const;
    };
    /// Leaves out what is empty but for name and chain, and ports that are not set. A mask without an address
    /// does not travel.
    struct HBX_EXPORT Writer : HBXWriterMarks<HBXFirewallRule> {
        int operator()(HBXMessageIterator& it, const HBXFirewallRule& rule) const;
    };
};

} // namespace HBX
