#pragma once

#include <string>

#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Tests/Shared/Cross/RenderAnim/DataTrees.h"
#include "Tests/Shared/Cross/RenderAnim/Generic/GenericFixture.h"

class GenericOnDisk : public GenericFixture {
protected:
    GenericOnDisk() {
        for (const char* pFolder : {"GENERIC/art", "DATA/art/ebps"})
            m_Trees.MakeFolder(pFolder);
        ra::SetGenericLoad(true);
        ra::InstallGenericModelLoader();
    }
    ~GenericOnDisk() override {
        ra::SetGenericLoad(false);
        RenderModelTypeInfo::SetGenericLoader(nullptr);
    }

    // Under the name of the file, so that they can be told apart.
    static void Save(const char* pPath) {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->SetName(pPath);
        ASSERT_TRUE(ra::SaveGeneric(*pModel, pPath)) << pPath;
        Forget(std::move(pModel));
    }
    static std::string Load(const char* pName, bool withMotionFile = false) {
        std::string name = "none";
        const std::string fault = FaultOf([&] {
            if (const std::unique_ptr<RenderModel> pModel = ra::LoadGeneric(pName, withMotionFile))
                name = pModel->GetName();
        });
        Forget();
        return fault.empty() ? name : fault;
    }

    DataTrees m_Trees;
};
