#pragma once

#include "Shared/Cross/Assist/Inventory.h"
#include "Shared/Cross/FileSystem/Paths/FilePath.h"
#include "Shared/Cross/FileSystem/Paths/FilePathHD.h"
#include "Shared/Cross/Glaze/Device.h"
#include "Tests/Shared/PC/FileSystem/TempFolder.h"

// What models stand on, and a tree of files under "DATA", which go with this.
class ModelServices {
public:
    ModelServices() {
        gz::Start({.name = "Null"});
        Inv::Initialize();
        FilePath::AddSource("DATA", "HD", 0, FilePathHD::Create(m_Folder.Path().c_str(), ByteStream::Mode_Both));
    }
    ~ModelServices() {
        FilePath::RemoveSource("DATA", "HD");
        Inv::Shutdown();
        gz::Stop();
    }
    ModelServices(const ModelServices&) = delete;
    ModelServices& operator=(const ModelServices&) = delete;

private:
    TempFolder m_Folder;
};
