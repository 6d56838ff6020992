#pragma once

#include <string>

#include <boost/program_options/options_description.hpp>
#include <nlohmann/json.hpp>

namespace HBX::tool {

/// Counts up when a document loses a member, or a member changes its meaning; new members leave it as it is.
inline constexpr int kJsonSchema = 1;

void declareJsonOption(boost::program_options::options_description_easy_init& option);

/// One document for programs, with a line end. Its first member is "schema". Bytes that are no UTF-8 are
/// replaced.
/// @param members  an object without "schema".
std::string jsonText(const nlohmann::ordered_json& members);

/// The same in one line.
std::string jsonLine(const nlohmann::ordered_json& members);

} // namespace HBX::tool
