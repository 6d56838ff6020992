#include <HBXCommon/OptionManager.h>

#include <memory>
#include <string>

#include <HBXCommon/HBXInstanceFolders.h>
#include <HBXCommon/HBXLog.h>
#include <HBXFunctionalityCore/configuration/HBXConfiguration.h>

namespace HBX {

namespace {

constexpr const char* kRead = "HBX::oh_read_global_config_option";
constexpr const char* kGet = "HBX::oh_get_global_config_option";

constexpr int kNoIterator = -1;
constexpr int kFailed = 1;

Log2 logAt(int line, const char* function) {
    return {"HBXFunctionalityCore", "core/src/HBXCommon/OptionManager", line, function, function};
}

/// Puts a cursor on the option's element in a loaded configuration.
int seekOption(const HBXConfiguration& configuration, const char* path,
               std::unique_ptr<HBXMessageIterator>& it) {
    it.reset(configuration.getMessage()->newIterator());
    if (it == nullptr) {
        logAt(__LINE__, kRead).put(1, "[%s] iterator is NULL: ", kRead);
        return kNoIterator;
    }
    if (it->seekRoot() != 0) {
        logAt(__LINE__, kRead).put(1, "[%s] Can't seek root", kRead);
        return kFailed;
    }
    if (it->seek(path) != 0) {
        logAt(__LINE__, kRead).put(1, "[%s] Can't seek path: %s", kRead, path);
        return kFailed;
    }
    return 0;
}

template <class T>
bool isInRange(const T& value, const T& min, const T& max, bool inclusive) {
    return inclusive ? min <= value && value <= max : min < value && value < max;
}

} // namespace

template <class T>
int oh_read_global_config_option(const char* path, T* value) {
    logAt(__LINE__, kRead).put(4, "Calling [%s] for %s", kRead, path);
    const std::string file = getConfigurationFile();
    logAt(__LINE__, kRead).put(4, "[%s] read config file from: %s", kRead, file.c_str());
    HBXConfiguration configuration;
    if (configuration.readFromFile(file) != 0) {
        logAt(__LINE__, kRead).put(1, "[%s] can't read config file: %s", kRead, file.c_str());
        return kFailed;
    }
    std::unique_ptr<HBXMessageIterator> it;
    if (const int result = seekOption(configuration, path, it); result != 0) {
        return result;
    }
    if (it->getValue(*value, 0) != 0) {
        logAt(__LINE__, kRead)
            .put(1, "[%s] Can't parse %s option from global config with error %d.", kRead, path, kFailed);
        return kFailed;
    }
    if (debug_level >= 4) {
        logAt(__LINE__, kRead).put(4, "Get %s for %s", std::to_string(*value).c_str(), path);
    }
    return 0;
}

template <class T>
int oh_get_global_config_option(const char* path, T* value, const T* min, const T* max, bool inclusive) {
    T read{};
    if (const int result = oh_read_global_config_option(path, &read); result != 0) {
        return result;
    }
    if (isInRange(read, *min, *max, inclusive)) {
        *value = read;
        return 0;
    }
    const std::string bounds = std::to_string(*min) + ".." + std::to_string(*max);
    logAt(__LINE__, kGet).put(1, "[%s] Value : %s must be from %s", kGet, path, bounds.c_str());
    return 0;
}

template int oh_read_global_config_option<int>(const char*, int*);
template int oh_get_global_config_option<int>(const char*, int*, const int*, const int*, bool);

} // namespace HBX
