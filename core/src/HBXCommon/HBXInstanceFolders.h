#pragma once

#include <HBXCommon/HBXExport.h>

#include <functional>
#include <string>

namespace HBX {

/// Answers where this instance of the agent keeps its files. A function that is left empty answers the place
/// that was set when the library was built (/etc/hbx and /etc/hbx/agent.xml). Called from any thread.
struct HBXFolderProvider {
    std::function<std::string()> etc;               ///< Configuration folder, without a trailing slash.
    std::function<std::string()> configurationFile; ///< Path of the global configuration file.
};

/// Replaces the provider of the process and returns the previous one.
HBX_EXPORT HBXFolderProvider setFolderProvider(HBXFolderProvider provider);

/// The folders of this instance of the agent, as the provider answers.
class HBX_EXPORT HBXInstanceFolders {
public:
    /// The configuration folder.
    static std::string etc();
};

/// The path of the global configuration file; nothing says that the file exists.
HBX_EXPORT std::string getConfigurationFile();

} // namespace HBX
