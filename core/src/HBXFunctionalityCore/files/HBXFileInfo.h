#pragma once

#include <cstdint>
#include <string>

#include <HBXMessage/HBXPolymorphic.h>
#include <HBXMessage/HBXRecord.h>

namespace HBX {

/// What a file transfer is about.
struct HBX_EXPORT HBXFileInfo : HBXPolymorphic {
    static constexpr std::int64_t kWholeFile = -1; ///< as `size`: as much as the file holds
    static constexpr std::int64_t kAppend = -1;    ///< as `offset` of a download: behind what is there
    static constexpr std::int64_t kTruncate = -2;  ///< as `offset` of a download: instead of it

    std::string name;        ///< as the peer sees it
    std::int64_t size = 0;   ///< bytes to transfer
    std::int64_t offset = 0; ///< where in the local file the transfer starts
    std::string data;        ///< the bytes of a transfer in memory

    static const HBXRecordTable table;
    using Reader = HBXTableReader<HBXFileInfo>;
    using Writer = HBXTableWriter<HBXFileInfo>;
};

} // namespace HBX
