#include <HBXCore/internal/CacheHeader.h>

#include <algorithm>
#include <array>

#include <HBXCore/internal/PlainFile.h>

#include <sys/stat.h>

namespace HBX::internal {

namespace {

/// A field that tells a cache file, in the order in which they are validated.
struct Field {
    std::uint32_t found;
    std::uint32_t expected;
    int code;
};

std::array<Field, 5> fieldsOf(const char* base, const HBXCacheFormat& format) {
    const HBXCacheConstants constants = readConstants(base);
    return {{
        {constants.headerSize, kCacheHeaderSize, -11},
        {constants.keySize, format.keySize, -13},
        {constants.signature, HBX_CACHE_FILE_SIGNATURE, -12},
        {constants.format, kCacheFormatConstant, -15},
        {constants.valueSize, format.valueSize, -16},
    }};
}

bool isRight(const Field& field) { return field.found == field.expected; }

} // namespace

bool isNewCache(const char* base, const HBXCacheFormat& format) {
    HBXCacheHead head;
    std::memcpy(&head, base, sizeof head);
    const auto fields = fieldsOf(base, format);
    return head.snapshot == 0 && readConstants(base).valid == 0 &&
           std::all_of(fields.begin(), fields.end(),
                       [](const Field& field) { return field.found == 0 || isRight(field); });
}

void writeConstants(char* base, const HBXCacheFormat& format) {
    const HBXCacheConstants constants{0,
                                      HBX_CACHE_FILE_SIGNATURE,
                                      kCacheHeaderSize,
                                      format.keySize,
                                      kCacheFormatConstant,
                                      format.valueSize,
                                      1,
                                      0};
    std::memcpy(base + kCacheConstantsOffset, &constants, sizeof constants);
}

void writeValidFlag(char* base, bool valid) {
    const std::uint32_t flag = valid ? 1 : 0;
    std::memcpy(base + kCacheValidOffset, &flag, sizeof flag);
}

int validateHeader(const char* base, const HBXCacheFormat& format) {
    if (readConstants(base).valid == 0) {
        return -14;
    }
    const auto fields = fieldsOf(base, format);
    const auto wrong = std::find_if_not(fields.begin(), fields.end(), isRight);
    return wrong == fields.end() ? 0 : wrong->code;
}

int countKnownFields(const char* base, const HBXCacheFormat& format) {
    const auto fields = fieldsOf(base, format);
    return static_cast<int>(std::count_if(fields.begin(), fields.end(), isRight));
}

void markAbandoned(int descriptor) {
    constexpr std::uint32_t kInvalid = 0;
    struct stat status {};
    if (fstat(descriptor, &status) == 0 && static_cast<std::size_t>(status.st_size) >= kCacheHeaderSize) {
        writeAt(descriptor, &kInvalid, sizeof kInvalid, kCacheValidOffset);
    }
}

} // namespace HBX::internal
