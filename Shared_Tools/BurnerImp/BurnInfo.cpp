#include "Shared_Tools/BurnerImp/BurnInfo.h"

#include "Shared/Cross/FileSystem/Chunky.h"
#include "Shared/Cross/FileSystem/ChunkyReservedTypes.h"
#include "Shared/PC/Debug/Process.h"
#include "Shared_Tools/BurnerImp/BurnPlugin.h"
#include "Shared_Tools/BurnerImp/BurnSession.h"

void WriteBurnInfo(Chunky& chunky, const BurnSource& source) {
    FileBurnInfo info;
    info.first = source.relative;
    info.number = s_BurnerVersion;
    info.second = Process::GetUserName();
    WriteFileBurnInfo(chunky, info);
}
