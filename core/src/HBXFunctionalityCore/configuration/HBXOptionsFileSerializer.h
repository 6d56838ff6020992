#pragma once

#include <string>
#include <utility>

#include <HBXCommon/HBXExport.h>
#include <HBXFunctionalityCore/configuration/HBXProgramOptions.h>

namespace HBX {

/// Keeps program options in a file: a message in text form with one element "option" for each, below it
/// "name" (left out when empty) and the elements "value". Only key and values are kept. Reasons of failures
/// that have to do with the file are the thread's error message.
class HBX_EXPORT HBXOptionsFileSerializer : public HBXProgramOptions::serializer {
public:
    explicit HBXOptionsFileSerializer(std::string file) : file_(std::move(file)) {}

    /// Replaces the list. Options of one key become one with all values, at the place of the first. An option
    /// without a key is positional and has exactly one value, else the whole read fails.
    int read(Options& options) override;
    /// Replaces the file, whole or not at all. An option without values fails, also when it has a key: a bare
    /// switch is not kept.
    int write(Options& options) override;

private:
    std::string file_;
};

} // namespace HBX
