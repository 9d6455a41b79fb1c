#pragma once

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/RenderAnim/LoadSwitch.h"
#include "Shared/Cross/RenderAnim/RenderModelTypeInfo.h"
#include "Shared/PC/FileSystem/OSFile.h"
#include "Tests/Shared/Cross/RenderAnim/Generic/GenericFixture.h"

// Folders of a disk as "GENERIC" and "DATA".
class GenericOnDisk : public GenericFixture {
protected:
    GenericOnDisk() {
        std::string path = (std::filesystem::temp_directory_path() / "pvx-generic-test-XXXXXX").string();
        if (!mkdtemp(path.data()))
            throw std::runtime_error("no temporary folder");
        m_Folder = path;
        for (const char* pAlias : {"GENERIC", "DATA"}) {
            std::filesystem::create_directories(m_Folder / pAlias / "art");
            FilePath::AddSource(
                pAlias, "HD", 1,
                FilePathHD::Create(OSFile::FromNative((m_Folder / pAlias).string()).c_str(), ByteStream::Mode_Both));
        }
        ra::SetGenericLoad(true);
        ra::InstallGenericModelLoader();
    }
    ~GenericOnDisk() override {
        ra::SetGenericLoad(false);
        RenderModelTypeInfo::SetGenericLoader(nullptr);
        for (const char* pAlias : {"GENERIC", "DATA"})
            FilePath::RemoveSource(pAlias, "HD");
        std::filesystem::remove_all(m_Folder);
    }

    // Under the name of the file, so that they can be told apart.
    static void Save(const char* pPath) {
        std::unique_ptr<RenderModel> pModel = MakeModel();
        pModel->SetName(pPath);
        ASSERT_TRUE(ra::SaveGeneric(*pModel, pPath)) << pPath;
        Forget(std::move(pModel));
    }
    static std::string Load(const char* pName, bool withMotionFile = false) {
        try {
            std::unique_ptr<RenderModel> pModel = ra::LoadGeneric(pName, withMotionFile);
            const std::string name = pModel ? pModel->GetName() : "none";
            Forget(std::move(pModel));
            return name;
        } catch (const std::runtime_error& error) {
            return error.what();
        }
    }
    void WriteFile(const std::string& name, const std::string& bytes) const {
        std::ofstream(m_Folder / name, std::ios::binary) << bytes;
    }
    std::string ReadFile(const std::string& name) const {
        std::ifstream file(m_Folder / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path m_Folder;
};
