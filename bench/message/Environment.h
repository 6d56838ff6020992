#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <HBXMessage/HBXRecord.h>

/// The record that all sides of these benchmarks carry: an environment's description of 72 elements below the
/// root. Two identifiers, seven integers, five strings, 200 bytes of base64 text, and lists of four, three,
/// two and ten small records: 15 + 4 lists + 19 items + 34 members of items.
namespace HBX::bench {

struct NameServer {
    std::string address;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<NameServer>;
    using Writer = HBXTableWriter<NameServer>;
    friend bool operator==(const NameServer&, const NameServer&) = default;
};

struct Address {
    std::string ip;
    std::string netmask;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Address>;
    using Writer = HBXTableWriter<Address>;
    friend bool operator==(const Address&, const Address&) = default;
};

struct Disk {
    std::string name;
    std::int64_t size = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Disk>;
    using Writer = HBXTableWriter<Disk>;
    friend bool operator==(const Disk&, const Disk&) = default;
};

struct QoS {
    std::string id;
    std::int64_t limit = 0;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<QoS>;
    using Writer = HBXTableWriter<QoS>;
    friend bool operator==(const QoS&, const QoS&) = default;
};

struct Environment {
    std::string eid;
    std::string parentEid;
    int state = 0;
    int transition = 0;
    int alertType = 0;
    int version = 0;
    int cpuCount = 0;
    std::int64_t memory = 0;
    std::int64_t time = 0;
    std::string name;
    std::string description;
    std::string hostname;
    std::string domain;
    std::string architecture;
    std::string data; ///< base64 text, carried as it is by all sides
    std::vector<NameServer> nameServers;
    std::vector<Address> addresses;
    std::vector<Disk> disks;
    std::vector<QoS> qoses;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<Environment>;
    using Writer = HBXTableWriter<Environment>;
    friend bool operator==(const Environment&, const Environment&) = default;
};

/// The same with a complex type, so that each of its children carries a namespace.
struct MarkedEnvironment : Environment {
    static const HBXRecordTable table;
    using Reader = HBXTableReader<MarkedEnvironment>;
    using Writer = HBXTableWriter<MarkedEnvironment>;
    friend bool operator==(const MarkedEnvironment&, const MarkedEnvironment&) = default;
};

struct EnvironmentList {
    std::vector<Environment> environments;

    static const HBXRecordTable table;
    using Reader = HBXTableReader<EnvironmentList>;
    using Writer = HBXTableWriter<EnvironmentList>;
    friend bool operator==(const EnvironmentList&, const EnvironmentList&) = default;
};

/// The element ids of an environment, for the readers and writers by hand.
enum Element : int {
    kEid = 1870,
    kParentEid = 1866,
    kState = 1421,
    kTransition = 1588,
    kAlertType = 1003,
    kVersion = 1223,
    kCpuCount = 3085,
    kMemory = 3087,
    kTime = 1004,
    kName = 1026,
    kDescription = 1496,
    kHostName = 1261,
    kDomain = 1374,
    kArchitecture = 1276,
    kData = 1307,
    kNameServers = 1281,
    kAddresses = 1687,
    kDisks = 3172,
    kDisk = 3173,
    kQoSes = 1476,
    kEntry = 1008,
    kValue = 1018,
    kIpAddress = 1262,
    kNetmask = 1784,
    kSize = 3056,
    kId = 1010,
    kLimit = 1067,
    kEnvironment = 1185,
};

inline constexpr std::size_t kElements = 72; ///< of one environment

/// Different for each index, always of the same shape.
Environment sampleEnvironment(unsigned index);
EnvironmentList sampleList(unsigned count);

} // namespace HBX::bench
