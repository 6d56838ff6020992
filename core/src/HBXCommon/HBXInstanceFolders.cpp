#include <HBXCommon/HBXInstanceFolders.h>

#include <HBXCommon/internal/HBXSetting.h>

namespace HBX {

namespace {

HBXSetting<HBXFolderProvider>& currentProvider() {
    static auto& provider = *new HBXSetting<HBXFolderProvider>({});
    return provider;
}

} // namespace

HBXFolderProvider setFolderProvider(HBXFolderProvider provider) {
    return currentProvider().set(std::move(provider));
}

std::string HBXInstanceFolders::etc() {
    const auto provider = currentProvider().get();
    return provider->etc ? provider->etc() : HBX_DEFAULT_ETC;
}

std::string getConfigurationFile() {
    const auto provider = currentProvider().get();
    return provider->configurationFile ? provider->configurationFile() : HBX_DEFAULT_ETC "/agent.xml";
}

} // namespace HBX
