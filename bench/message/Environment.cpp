#include "Environment.h"

#include <random>

#include <HBXMessage/HBXRecordTable.h>

namespace HBX::bench {
namespace {

constexpr HBXRow kNameServerRows[] = {member<&NameServer::address>(kValue)};

constexpr HBXRow kAddressRows[] = {
    member<&Address::ip>(kIpAddress),
    member<&Address::netmask>(kNetmask),
};

constexpr HBXRow kDiskRows[] = {
    member<&Disk::name>(kName),
    member<&Disk::size>(kSize),
};

constexpr HBXRow kQoSRows[] = {
    member<&QoS::id>(kId),
    member<&QoS::limit>(kLimit),
};

constexpr HBXRow kEnvironmentRows[] = {
    member<&Environment::eid>(kEid),
    member<&Environment::parentEid>(kParentEid),
    member<&Environment::state>(kState),
    member<&Environment::transition>(kTransition),
    member<&Environment::alertType>(kAlertType),
    member<&Environment::version>(kVersion),
    member<&Environment::cpuCount>(kCpuCount),
    member<&Environment::memory>(kMemory),
    member<&Environment::time>(kTime),
    member<&Environment::name>(kName),
    member<&Environment::description>(kDescription),
    member<&Environment::hostname>(kHostName),
    member<&Environment::domain>(kDomain),
    member<&Environment::architecture>(kArchitecture),
    member<&Environment::data>(kData),
    list<&Environment::nameServers>(kNameServers, kEntry),
    list<&Environment::addresses>(kAddresses, kEntry),
    list<&Environment::disks>(kDisks, kDisk),
    list<&Environment::qoses>(kQoSes, kEntry),
};

constexpr HBXRow kListRows[] = {list<&EnvironmentList::environments>(0, kEnvironment)};

} // namespace

constinit const HBXRecordTable NameServer::table =
    recordTable<NameServer>("NameServer", 0, 0, kNameServerRows);
constinit const HBXRecordTable Address::table = recordTable<Address>("Address", 0, 0, kAddressRows);
constinit const HBXRecordTable Disk::table = recordTable<Disk>("Disk", 0, 0, kDiskRows);
constinit const HBXRecordTable QoS::table = recordTable<QoS>("QoS", 0, 0, kQoSRows);
constinit const HBXRecordTable Environment::table =
    recordTable<Environment>("Environment", 0, 0, kEnvironmentRows);
// A table of Environment itself: the two have the same address, and a base table would be a walk of its own.
constinit const HBXRecordTable MarkedEnvironment::table =
    recordTable<Environment>("MarkedEnvironment", 408, 5074, kEnvironmentRows);
constinit const HBXRecordTable EnvironmentList::table =
    recordTable<EnvironmentList>("EnvironmentList", 0, 0, kListRows);

namespace {

std::string identifier(std::mt19937& random) {
    std::string text = "00000000-0000-0000-0000-000000000000";
    for (char& c : text) {
        c = c == '-' ? c : "0123456789abcdef"[random() % 16];
    }
    return text;
}

std::string base64Text(std::mt19937& random, std::size_t length) {
    std::string text(length, '\0');
    for (char& c : text) {
        c = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"[random() % 64];
    }
    return text;
}

std::string ip(unsigned network, unsigned host) {
    return "192.168." + std::to_string(network % 256) + "." + std::to_string(host % 256);
}

void fillLists(Environment& environment, unsigned index) {
    for (unsigned i = 0; i < 4; ++i) {
        environment.nameServers.push_back({ip(10 + i, index)});
    }
    for (unsigned i = 0; i < 3; ++i) {
        environment.addresses.push_back({ip(100 + i, index), "255.255.255.0"});
    }
    environment.disks = {{"/dev/sda", (index + 20) * 1048576}, {"/dev/sdb", (index + 40) * 1048576}};
    for (const char* id : {"memory_pages", "locked_pages", "processes", "sockets", "open_files",
                           "pipe_buffers", "send_buffer", "receive_buffer", "semaphores", "disk_quota"}) {
        environment.qoses.push_back(
            {id, index + 1024 * static_cast<std::int64_t>(environment.qoses.size() + 1)});
    }
}

} // namespace

Environment sampleEnvironment(unsigned index) {
    std::mt19937 random(index);
    Environment environment;
    environment.eid = identifier(random);
    environment.parentEid = identifier(random);
    environment.state = 6;
    environment.transition = 2;
    environment.alertType = 3;
    environment.version = 40712;
    environment.cpuCount = 16;
    environment.memory = std::int64_t{8} << 30;
    environment.time = 1717228800 + index;
    environment.name = "environment-" + std::to_string(1000 + index);
    environment.description = "Runs the accounting services of the northern branch";
    environment.hostname = "accounting-" + std::to_string(1000 + index) + ".example.org";
    environment.domain = "example.org";
    environment.architecture = "x86_64";
    environment.data = base64Text(random, 200);
    fillLists(environment, index);
    return environment;
}

EnvironmentList sampleList(unsigned count) {
    EnvironmentList list;
    for (unsigned i = 0; i < count; ++i) {
        list.environments.push_back(sampleEnvironment(i));
    }
    return list;
}

} // namespace HBX::bench
