#include "Shared_Tools/BurnerImp/BurnPlugin.h"

#include "Shared/Cross/Pipeline/TextUtil.h"

#include <algorithm>

std::span<const BurnPlugin* const> GetBurnPlugins() {
    static const BurnPlugin* const s_Plugins[] = {&GetModelPlugin(), &GetShaderPlugin(), &GetPatternPlugin(),
                                                  &GetCopyPlugin()};
    return s_Plugins;
}

const BurnPlugin* FindBurnPlugin(const std::string& name) {
    const auto plugins = GetBurnPlugins();
    const auto it =
        std::ranges::find_if(plugins, [&](const BurnPlugin* pPlugin) { return EqualNoCase(pPlugin->GetName(), name); });
    return it != plugins.end() ? *it : nullptr;
}
